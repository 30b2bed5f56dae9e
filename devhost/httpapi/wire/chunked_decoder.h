#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qv::devhost {

/// Reads a body of the chunked transfer coding, in whatever pieces it arrives. Chunk extensions and trailers
/// are skipped.
class ChunkedDecoder {
 public:
  struct Step {
    /// Bytes of the input that are done with.
    std::size_t consumed;
    /// Bytes written to the output.
    std::size_t written;
  };

  /// Decodes until the input is used up, the output is full, or the body ends or is broken.
  [[nodiscard]] Step Feed(std::string_view input, char* output, std::size_t room);

  [[nodiscard]] bool IsDone() const { return state_ == State::Done; }
  [[nodiscard]] bool IsBroken() const { return state_ == State::Broken; }

 private:
  enum class State {
    Size,
    Extension,
    SizeEnd,
    Data,
    DataReturn,
    DataEnd,
    TrailerStart,
    Trailer,
    TrailerEnd,
    LastEnd,
    Done,
    Broken
  };

  State Next(char c);
  State NextInSize(char c);

  State state_ = State::Size;
  /// What the current chunk still has.
  std::uint64_t left_ = 0;
  int digits_ = 0;
  /// Extensions and trailers together are bounded: nobody may send them for ever.
  std::size_t skipped_ = 0;
};

}  // namespace qv::devhost
