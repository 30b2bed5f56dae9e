#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {
namespace {

struct KnownName {
  const wchar_t* name;
  DISPID id;
};

/// Excel's published dispatch ids. A name has the same id in every class that has it, with one exception
/// here: the ids of "Chart" and "LanguageID" are small numbers of their own interfaces, free in all others.
constexpr KnownName kKnownNames[] = {
    {L"LanguageID", 1},
    {L"Value", 6},
    {L"Chart", 7},
    {L"HasTitle", 54},
    {L"ChartTitle", 81},
    {L"Pattern", 95},
    {L"Bold", 96},
    {L"ColorIndex", 97},
    {L"Color", 99},
    {L"Italic", 101},
    {L"Size", 104},
    {L"Strikethrough", 105},
    {L"Underline", 106},
    {L"Type", 108},
    {L"Name", 110},
    {L"ClearContents", 113},
    {L"Delete", 117},
    {L"Count", 118},
    {L"Width", 122},
    {L"Height", 123},
    {L"Top", 126},
    {L"Left", 127},
    {L"Interior", 129},
    {L"HorizontalAlignment", 136},
    {L"VerticalAlignment", 137},
    {L"Text", 138},
    {L"Caption", 139},
    {L"Font", 146},
    {L"Selection", 147},
    {L"Application", 148},
    {L"Parent", 150},
    {L"Item", 170},
    {L"Add", 181},
    {L"NumberFormat", 193},
    {L"Range", 197},
    {L"MergeCells", 208},
    {L"Paste", 211},
    {L"CopyPicture", 213},
    {L"Select", 235},
    {L"Address", 236},
    {L"AutoFit", 237},
    {L"Cells", 238},
    {L"Column", 240},
    {L"Columns", 241},
    {L"ColumnWidth", 242},
    {L"EntireColumn", 246},
    {L"EntireRow", 247},
    {L"Insert", 252},
    {L"Offset", 254},
    {L"Resize", 256},
    {L"Row", 257},
    {L"Rows", 258},
    {L"Formula", 261},
    {L"HasFormula", 267},
    {L"Hidden", 268},
    {L"Locked", 269},
    {L"RowHeight", 272},
    {L"WrapText", 276},
    {L"Calculate", 279},
    {L"Unprotect", 285},
    {L"FullName", 289},
    {L"Path", 291},
    {L"ProtectContents", 292},
    {L"ReadOnly", 296},
    {L"Saved", 298},
    {L"Activate", 304},
    {L"ActiveCell", 305},
    {L"ActiveSheet", 307},
    {L"ActiveWorkbook", 308},
    {L"Build", 314},
    {L"Calculation", 316},
    {L"DisplayAlerts", 343},
    {L"Worksheet", 348},
    {L"Interactive", 361},
    {L"ScreenUpdating", 382},
    {L"Version", 392},
    {L"UsedRange", 412},
    {L"Windows", 430},
    {L"Borders", 435},
    {L"Sheets", 485},
    {L"Index", 486},
    {L"Worksheets", 494},
    {L"Copy", 551},
    {L"Visible", 558},
    {L"Merge", 564},
    {L"Areas", 568},
    {L"Workbooks", 572},
    {L"Characters", 603},
    {L"Placement", 617},
    {L"ScrollColumn", 654},
    {L"ScrollRow", 655},
    {L"ActiveWindow", 759},
    {L"ChartObjects", 1060},
    {L"VisibleRange", 1118},
    {L"RangeSelection", 1189},
    {L"EnableEvents", 1212},
    {L"Shapes", 1377},
    {L"UnMerge", 1384},
    {L"MergeArea", 1385},
    {L"Value2", 1388},
    {L"ChartType", 1400},
    {L"SetSourceData", 1413},
    {L"Export", 1414},
    {L"PictureFormat", 1631},
    {L"Fill", 1663},
    {L"GroupItems", 1698},
    {L"LockAspectRatio", 1700},
    {L"ZOrderPosition", 1705},
    {L"AddPicture", 1723},
    {L"LanguageSettings", 1801},
    {L"AlternativeText", 1891},
    {L"Ready", 1932},
    {L"Hwnd", 1950},
    {L"RemoveDuplicates", 2492},
    {L"CountLarge", 2499},
    {L"HasChart", 2658},
    {L"AddChart2", 3088},
};

/// Above every id in the table.
constexpr DISPID kFirstMadeUpId = 0x10000;

/// Lower-case ASCII, as all member names are.
struct FoldedHash {
  using is_transparent = void;
  size_t operator()(std::wstring_view text) const {
    size_t hash = 1469598103934665603ull;
    for (const wchar_t unit : text)
      hash = (hash ^ Fold(unit)) * 1099511628211ull;
    return hash;
  }
  static unsigned Fold(wchar_t unit) {
    return unit >= L'A' && unit <= L'Z' ? static_cast<unsigned>(unit) + 32u : static_cast<unsigned>(unit);
  }
};

struct FoldedEqual {
  using is_transparent = void;
  bool operator()(std::wstring_view left, std::wstring_view right) const {
    if (left.size() != right.size()) return false;
    for (size_t i = 0; i < left.size(); ++i) {
      if (FoldedHash::Fold(left[i]) != FoldedHash::Fold(right[i])) return false;
    }
    return true;
  }
};

using NameTable = std::unordered_map<std::wstring, DISPID, FoldedHash, FoldedEqual>;

NameTable& Names() {
  static NameTable names = [] {
    NameTable known;
    for (const KnownName& each : kKnownNames)
      known.emplace(each.name, each.id);
    return known;
  }();
  return names;
}

}  // namespace

DISPID FindNameId(std::wstring_view name) {
  const auto found = Names().find(name);
  return found == Names().end() ? DISPID_UNKNOWN : found->second;
}

DISPID InternName(std::wstring_view name) {
  const auto next = kFirstMadeUpId + static_cast<DISPID>(Names().size());
  return Names().try_emplace(std::wstring(name), next).first->second;
}

}  // namespace qv::devhost::memory
