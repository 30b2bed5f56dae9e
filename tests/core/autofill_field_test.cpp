#include "tools/autofill_field.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/text.h"

namespace qv {
namespace {

using Kind = AutofillKind;

TEST(AutofillKinds, AnEmptyCellHasNoTextButBlanks) {
  for (const wchar_t* text : {L"", L" ", L"\t\n", L"\u3000\u00A0"})
    EXPECT_EQ(ClassifyAutofillText(text), Kind::kEmpty);
}

TEST(AutofillKinds, AnExampleBeginsWithAKnownWordAndAColonOfEitherWidth) {
  for (const wchar_t* word :
       {L"example", L"eg", L"e.g.", L"示例", L"范例", L"例如", L"EXAMPLE", L"E.G.", L"Eg"}) {
    for (const wchar_t* rest : {L":", L"：", L": Ann", L"：张三"}) {
      for (const wchar_t* before : {L"", L"  ", L"\n"}) {
        const std::wstring text = Concat(before, word, rest);
        EXPECT_EQ(ClassifyAutofillText(text), Kind::kExamplePlaceholder) << ToUtf8(text);
      }
    }
  }
  for (const wchar_t* text :
       {L"example", L"example Ann: x", L"an example: Ann", L"e.g. Ann", L"examples: Ann", L"e.g : Ann",
        L"示例 ：", L"例", L"name: e.g.: Ann", L":", L"ＥＧ:"}) {
    EXPECT_EQ(ClassifyAutofillText(text), std::nullopt) << ToUtf8(text);
  }
}

TEST(AutofillKinds, AnUnderlineHoldsLinesAndBlanksOnly) {
  for (const wchar_t* text :
       {L"__", L"--", L"\u2013\u2014", L"\u2014 \u2014", L"  ____  ", L"_\u3000_", L"_ - _"})
    EXPECT_EQ(ClassifyAutofillText(text), Kind::kUnderlinePlaceholder) << ToUtf8(text);
  for (const wchar_t* text :
       {L"_", L"-", L" \u2014 ", L"Name: ____", L"__.__", L"____ (date)", L"\u2212\u2212"})
    EXPECT_EQ(ClassifyAutofillText(text), std::nullopt) << ToUtf8(text);
}

TEST(AutofillResults, CarryEveryFieldInItsOrder) {
  AutofillField field;
  field.id = L"R3C2";
  field.kind = Kind::kExamplePlaceholder;
  field.label = L"The \"name\"";
  field.placeholderText = L"e.g.: Ann";
  field.currentValue = L" e.g.: Ann\n";
  field.row = 3;
  field.col = 2;
  field.address = L"B3";
  field.context = {L"left\\", L"above", L"row\t"};
  AutofillField bare;
  bare.id = L"x";
  const std::vector<AutofillField> fields = {field, bare};
  EXPECT_EQ(
      AutofillScanResult(fields, {10, 4, 2, 3}, true),
      LR"({"fields":[{"id":"R3C2","kind":"example_placeholder","label":"The \"name\"","placeholderText":"e.g.: Ann",)"
      LR"("currentValue":" e.g.: Ann\n","row":3,"col":2,"address":"B3",)"
      LR"("context":{"left":"left\\","above":"above","rowText":"row\t"}},)"
      LR"({"id":"x","kind":"empty","label":"","placeholderText":"","currentValue":"","row":0,"col":0,"address":"",)"
      LR"("context":{"left":"","above":"","rowText":""}}],"usedRange":{"rows":10,"cols":4,"row0":2,"col0":3}})");
}

TEST(AutofillResults, TellAFormWithoutFieldsFromAnEmptySheet) {
  EXPECT_EQ(AutofillScanResult({}, {2, 1, 1, 1}, true),
            LR"({"fields":[],"usedRange":{"rows":2,"cols":1,"row0":1,"col0":1},)"
            LR"("fieldsEmptyButUsedRangePopulated":true})");
  EXPECT_EQ(AutofillScanResult({}, {1, 1, 1, 1}, false),
            LR"({"fields":[],"usedRange":{"rows":1,"cols":1,"row0":1,"col0":1}})");
  EXPECT_EQ(AutofillUnavailableResult(L"no \"sheet\""),
            LR"({"fields":[],"scanUnavailable":true,"scanError":"no \"sheet\""})");
}

}  // namespace
}  // namespace qv
