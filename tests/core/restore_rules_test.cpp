#include "translation/restore_rules.h"

#include <gtest/gtest.h>

#include <memory>

namespace qv {
namespace {

/// A unit in column A of the sheet "Data" that was written.
CellUnit Written(std::int32_t row, bool bilingual) {
  static const auto kSheet = std::make_shared<SheetTexts>(L"Data");
  CellUnit unit;
  unit.row = row;
  unit.col = 1;
  unit.sheet = kSheet;
  unit.sourceText = L"One\nTwo";
  unit.translation = L"Uno\nDos";
  unit.written = true;
  unit.bilingual = bilingual;
  return unit;
}

TEST(RestoreRules, ACellIsOursWhenItShowsWhatWasWrittenOrItsSource) {
  const CellUnit dual = Written(1, true);
  for (const wchar_t* live : {L"One\nTwo\nUno\nDos", L"One\r\nTwo\rUno\r\nDos", L"One\nTwo\nUno\nDos \t\n",
                              L"One\nTwo", L"One\r\nTwo  "})
    EXPECT_TRUE(IsOurText(dual, live));
  for (const wchar_t* live : {L"", L"Uno\nDos", L"One\n\nTwo\nUno\nDos", L" One\nTwo", L"one\ntwo"})
    EXPECT_FALSE(IsOurText(dual, live));
  EXPECT_TRUE(IsOurText(Written(1, false), L"Uno\r\nDos"));
  EXPECT_FALSE(IsOurText(Written(1, false), L"One\nTwo\nUno\nDos"));
}

TEST(RestoreRules, AFormulaIsOursOnlyWhenItStoodThereBefore) {
  CellUnit unit = Written(1, false);
  EXPECT_TRUE(IsOurFormula(unit, L""));
  EXPECT_FALSE(IsOurFormula(unit, L"=B1"));
  unit.formulaBeforeWrite = std::wstring(L"=B1");
  EXPECT_TRUE(IsOurFormula(unit, L"=B1"));
  EXPECT_TRUE(IsOurFormula(unit, L""));
  EXPECT_FALSE(IsOurFormula(unit, L"=b1"));
}

TEST(RestoreRules, ARowIsDueOnceNoWrittenUnitIsLeftInIt) {
  TranslationSession session;
  EXPECT_TRUE(RowsToRestore(session).empty());
  session.units = {Written(1, true), Written(1, true), Written(2, true), Written(3, false), Written(4, true)};
  session.units[1].col = 2;
  for (const std::int32_t row : {1, 2, 3})
    session.previousRowHeights[{L"Data", row}] = 15.0;
  session.previousRowHeights[{L"More", 4}] = 15.0;
  for (const std::size_t restored : {1U, 2U, 4U})
    session.units[restored].written = false;
  // The row of another sheet has no unit at all: nothing is left in it.
  const std::vector<SheetRow> some = {{L"Data", 2}, {L"More", 4}};
  EXPECT_EQ(RowsToRestore(session), some);
  session.units[0].written = session.units[3].written = false;
  const std::vector<SheetRow> all = {{L"Data", 1}, {L"Data", 2}, {L"Data", 3}, {L"More", 4}};
  EXPECT_EQ(RowsToRestore(session), all);
}

}  // namespace
}  // namespace qv
