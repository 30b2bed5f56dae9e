#include "translation/batch_former.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

/// Segments of the given lengths, cut into batches; the number of segments of each.
std::vector<std::size_t> SizesOf(const std::vector<std::size_t>& lengths) {
  std::vector<std::wstring> texts;
  for (const std::size_t length : lengths)
    texts.emplace_back(length, L'x');
  BatchFormer former(texts);
  std::vector<std::size_t> sizes;
  while (const std::optional<Batch> batch = former.Next())
    sizes.push_back(batch->segments.size());
  return sizes;
}

std::vector<std::size_t> Repeated(std::size_t count, std::size_t length, std::vector<std::size_t> tail = {}) {
  std::vector<std::size_t> lengths(count, length);
  lengths.insert(lengths.end(), tail.begin(), tail.end());
  return lengths;
}

using Sizes = std::vector<std::size_t>;

TEST(Batching, ClosesAtTwentySegments) {
  EXPECT_EQ(SizesOf(Repeated(20, 5)), (Sizes{20}));
  EXPECT_EQ(SizesOf(Repeated(21, 5)), (Sizes{20, 1}));
  EXPECT_EQ(SizesOf({}), Sizes{});
}

TEST(Batching, ClosesATenSegmentBatchThatWouldExceed2500) {
  EXPECT_EQ(SizesOf(Repeated(10, 249, {10})), (Sizes{11}));  // exactly 2500
  EXPECT_EQ(SizesOf(Repeated(10, 249, {11})), (Sizes{10, 1}));
  EXPECT_EQ(SizesOf(Repeated(10, 250, {1})), (Sizes{10, 1}));
  // Nine segments do not care.
  EXPECT_EQ(SizesOf(Repeated(9, 500, {1, 1})), (Sizes{10, 1}));
}

TEST(Batching, ClosesBefore18000Characters) {
  EXPECT_EQ(SizesOf({9000, 9000}), (Sizes{2}));
  EXPECT_EQ(SizesOf({9000, 9001}), (Sizes{1, 1}));
  EXPECT_EQ(SizesOf({5, 19000, 5}), (Sizes{1, 1, 1}));
}

TEST(Batching, PassesBlankTextsBy) {
  const std::vector<std::wstring> texts = {L" \t", L"a", std::wstring(L"\x01\x1F"), L"\x7F", L"\u3000"};
  BatchFormer former(texts);
  const std::optional<Batch> batch = former.Next();
  ASSERT_TRUE(batch);
  EXPECT_EQ(batch->segments, (Sizes{1, 3}));
  EXPECT_EQ(batch->blanks, (Sizes{0, 2, 4}));
  EXPECT_FALSE(former.Next());
}

TEST(Batching, BlanksAtTheEndMakeABatchWithoutSegments) {
  std::vector<std::wstring> texts(20, L"a");
  texts.insert(texts.end(), {L"b", L" "});
  BatchFormer former(texts);
  EXPECT_EQ(former.Next()->segments.size(), 20U);
  EXPECT_EQ(former.Next()->blanks, (Sizes{21}));
  EXPECT_FALSE(former.Next());

  const std::vector<std::wstring> onlyBlank = {L""};
  BatchFormer blankFormer(onlyBlank);
  EXPECT_TRUE(blankFormer.Next()->segments.empty());
}

}  // namespace
}  // namespace qv
