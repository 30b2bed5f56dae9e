#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// Segments that travel together, as 0-based indices into the run's texts.
struct Batch {
  std::vector<std::size_t> segments;
  /// Texts passed on the way that hold nothing to translate; done as they stand.
  std::vector<std::size_t> blanks;
};

/// Whether a text consists of white space and control characters only.
[[nodiscard]] bool IsBlankSegment(std::wstring_view text);

/// Cuts the texts into batches, in order and in one pass.
class BatchFormer {
 public:
  /// The texts outlive the former.
  explicit BatchFormer(std::span<const std::wstring> texts) : texts_(texts) {}

  /// The next batch, nothing at the end. The last one may hold blanks only.
  [[nodiscard]] std::optional<Batch> Next();

 private:
  std::span<const std::wstring> texts_;
  std::size_t position_ = 0;
};

}  // namespace qv
