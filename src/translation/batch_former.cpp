#include "translation/batch_former.h"

#include <algorithm>
#include <cstdint>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::size_t kMaxSegments = 20;
constexpr std::size_t kMaxCharacters = 18000;
/// A batch of this many segments is closed early, so that a translation shows soon.
constexpr std::size_t kManySegments = 10;
constexpr std::size_t kManySegmentsCharacters = 2500;

bool IsFull(std::size_t segments, std::size_t charactersWithNext) {
  if (segments == 0) return false;
  return segments >= kMaxSegments || charactersWithNext > kMaxCharacters ||
         (segments >= kManySegments && charactersWithNext > kManySegmentsCharacters);
}

}  // namespace

bool IsBlankSegment(std::wstring_view text) {
  return std::ranges::all_of(
      text, [](wchar_t unit) { return static_cast<std::uint32_t>(unit) <= 0x1F || IsSpace(unit); });
}

std::optional<Batch> BatchFormer::Next() {
  if (position_ == texts_.size()) return std::nullopt;
  Batch batch;
  batch.segments.reserve(kMaxSegments);
  std::size_t characters = 0;
  for (; position_ < texts_.size(); ++position_) {
    const std::wstring& text = texts_[position_];
    if (IsBlankSegment(text)) {
      batch.blanks.push_back(position_);
      continue;
    }
    if (IsFull(batch.segments.size(), characters + text.size())) break;
    batch.segments.push_back(position_);
    characters += text.size();
  }
  return batch;
}

}  // namespace qv
