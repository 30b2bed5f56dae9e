#include "httpapi/wire/chunked_decoder.h"

#include <algorithm>
#include <cstring>

namespace qv::devhost {
namespace {

constexpr std::size_t kMostSkipped = 16 * 1024;
/// 15 hexadecimal digits cannot overflow.
constexpr int kMostDigits = 15;

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

ChunkedDecoder::State ChunkedDecoder::NextInSize(char c) {
  if (const int value = HexValue(c); value >= 0) {
    if (++digits_ > kMostDigits) return State::Broken;
    left_ = left_ * 16 + static_cast<std::uint64_t>(value);
    return State::Size;
  }
  if (digits_ == 0) return State::Broken;
  if (c == '\r') return State::SizeEnd;
  return c == ';' || c == ' ' || c == '\t' ? State::Extension : State::Broken;
}

ChunkedDecoder::State ChunkedDecoder::Next(char c) {
  switch (state_) {
    case State::Size:
      return NextInSize(c);
    case State::Extension:
      if (c == '\r') return State::SizeEnd;
      return c == '\n' || ++skipped_ > kMostSkipped ? State::Broken : State::Extension;
    case State::SizeEnd:
      digits_ = 0;
      if (c != '\n') return State::Broken;
      return left_ == 0 ? State::TrailerStart : State::Data;
    case State::DataReturn:
      return c == '\r' ? State::DataEnd : State::Broken;
    case State::DataEnd:
      return c == '\n' ? State::Size : State::Broken;
    case State::TrailerStart:
      if (c == '\r') return State::LastEnd;
      [[fallthrough]];
    case State::Trailer:
      if (c == '\r') return State::TrailerEnd;
      return c == '\n' || ++skipped_ > kMostSkipped ? State::Broken : State::Trailer;
    case State::TrailerEnd:
      return c == '\n' ? State::TrailerStart : State::Broken;
    case State::LastEnd:
      return c == '\n' ? State::Done : State::Broken;
    case State::Data:
    case State::Done:
    case State::Broken:
      break;
  }
  return state_;
}

ChunkedDecoder::Step ChunkedDecoder::Feed(std::string_view input, char* output, std::size_t room) {
  Step step{0, 0};
  while (step.consumed < input.size() && !IsDone() && !IsBroken()) {
    if (state_ != State::Data) {
      state_ = Next(input[step.consumed++]);
      continue;
    }
    const std::size_t size = static_cast<std::size_t>(
        std::min<std::uint64_t>({left_, input.size() - step.consumed, room - step.written}));
    if (size == 0) break;
    std::memcpy(output + step.written, input.data() + step.consumed, size);
    step.consumed += size;
    step.written += size;
    left_ -= size;
    if (left_ == 0) state_ = State::DataReturn;
  }
  return step;
}

}  // namespace qv::devhost
