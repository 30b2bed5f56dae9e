#include "engines/calc/dispatch_names.h"

namespace qv::devhost::calc {

namespace {

struct Published {
  const char* name;
  DISPID id;
};

/// Range's members and their ids, as in Excel's type library.
constexpr Published kRangeMembers[] = {
    {"_Default", DISPID_VALUE},
    {"Value", 6},
    {"Font", 146},
    {"Interior", 129},
    {"Value2", 1388},
    {"HasFormula", 267},
    {"MergeCells", 208},
    {"MergeArea", 1385},
    {"Row", 257},
    {"Column", 240},
    {"Rows", 258},
    {"Columns", 241},
    {"Count", 118},
    {"CountLarge", 2499},
    {"Text", 138},
    {"Formula", 261},
    {"Item", 170},
    {"Cells", 238},
    {"Address", 236},
    {"EntireRow", 247},
    {"EntireColumn", 246},
    {"WrapText", 276},
    {"Locked", 269},
    {"Areas", 568},
    {"Worksheet", 348},
    {"Parent", 150},
    {"Application", 148},
    {"NumberFormat", 193},
    {"Borders", 435},
    {"HorizontalAlignment", 136},
    {"VerticalAlignment", 137},
    {"Hidden", 268},
    {"Offset", 254},
    {"Resize", 256},
    {"End", 500},
    {"Insert", 252},
    {"Delete", 117},
    {"CopyPicture", 213},
    {"RemoveDuplicates", 2492},
    {"Characters", 603},
    {"Range", 197},
    {"Width", 122},
    {"Height", 123},
    {"Left", 127},
    {"Top", 126},
    {"ColumnWidth", 242},
    {"RowHeight", 272},
    {"Merge", 564},
    {"UnMerge", 1384},
    {"Clear", 111},
    {"ClearContents", 113},
    {"ClearFormats", 112},
    {"AutoFit", 237},
    {"Select", 235},
    {"SpecialCells", 410},
};

/// Beyond every id of Excel's own.
constexpr DISPID kFirstOwnId = 0x10000;

}  // namespace

DispatchNames::DispatchNames() : next_(kFirstOwnId) {
  for (const auto& [name, id] : kRangeMembers) {
    ids_.emplace(LowerAscii(name), id);
    names_.emplace(id, name);
  }
}

DISPID DispatchNames::IdOf(std::string_view name) {
  const auto [entry, added] = ids_.try_emplace(LowerAscii(name), next_);
  if (added) names_.emplace(next_++, name);
  return entry->second;
}

std::string DispatchNames::NameOf(DISPID id) const {
  const auto found = names_.find(id);
  return found == names_.end() ? std::string() : found->second;
}

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& unit : lower) {
    if (unit >= 'A' && unit <= 'Z') unit = static_cast<char>(unit - 'A' + 'a');
  }
  return lower;
}

}  // namespace qv::devhost::calc
