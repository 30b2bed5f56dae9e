#include "tools/undo_log.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qv {
namespace {

UndoRecord Record(std::int32_t row) {
  return {.row = row, .col = 1, .sheetName = L"Sheet1", .previous = {}, .book = {}, .format = {}};
}

std::vector<std::int32_t> TakeAll(UndoLog& log) {
  std::vector<std::int32_t> rows;
  while (const std::optional<UndoRecord> record = log.TakeNewest())
    rows.push_back(record->row);
  return rows;
}

TEST(UndoLogs, GiveAMessagesRecordsNewestFirstAndNoOthers) {
  UndoLog log;
  log.Append(Record(1));
  log.PushMarker();
  log.Append(Record(2));
  log.Append(Record(3));
  log.PushMarker();
  log.Append(Record(4));
  EXPECT_EQ(log.Depth(), 2u);
  EXPECT_EQ(TakeAll(log), (std::vector<std::int32_t>{4}));
  log.PopMarker();
  EXPECT_EQ(TakeAll(log), (std::vector<std::int32_t>{3, 2}));
  log.PopMarker();
  // What was written before the first marker belongs to no message.
  EXPECT_EQ(TakeAll(log), std::vector<std::int32_t>{});
  EXPECT_EQ(log.Depth(), 0u);
  log.PopMarker();
  EXPECT_EQ(log.Depth(), 0u);
}

TEST(UndoLogs, KeepARecordThatIsPutBackOnTop) {
  UndoLog log;
  log.PushMarker();
  log.Append(Record(1));
  log.Append(Record(2));
  log.Append(*log.TakeNewest());
  EXPECT_EQ(TakeAll(log), (std::vector<std::int32_t>{2, 1}));
}

TEST(UndoBooks, AreTheSameByPinOrByName) {
  EXPECT_TRUE((UndoBook{3, L"Old.xlsx"}.IsSame({3, L"New.xlsx"})));
  EXPECT_TRUE((UndoBook{3, L"Book.xlsx"}.IsSame({4, L"Book.xlsx"})));
  EXPECT_FALSE((UndoBook{3, L"Old.xlsx"}.IsSame({4, L"New.xlsx"})));
  // Without a pin nothing but the name tells.
  EXPECT_FALSE((UndoBook{0, L"Old.xlsx"}.IsSame({0, L"New.xlsx"})));
  EXPECT_FALSE((UndoBook{0, L""}.IsSame({0, L""})));
}

}  // namespace
}  // namespace qv
