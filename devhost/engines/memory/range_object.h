#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// The typed Range interface: a dispinterface, so it is the object's own IDispatch with the published ids.
inline constexpr IID kRangeIid = {0x00020846, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// Whether a range counts and numbers its cells, its rows or its columns.
enum class RangeView { kCells, kRows, kColumns };

/// A block of cells, or several. Reads answer for the first block where the host does the same; puts go to
/// all.
class RangeObject final : public DispatchObject {
 public:
  RangeObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::vector<Area> areas,
              RangeView view = RangeView::kCells);

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  [[nodiscard]] const std::shared_ptr<Sheet>& GetSheet() const { return sheet_; }
  [[nodiscard]] const std::vector<Area>& Areas() const { return areas_; }

  // The members' handlers.
  // Places and parts (range_object.cpp)
  Variant Item(Call& call);
  Variant Cells(Call& call);
  Variant Rows(Call& call);
  Variant Columns(Call& call);
  Variant Row(Call& call);
  Variant Column(Call& call);
  Variant Count(Call& call);
  Variant CountLarge(Call& call);
  Variant Address(Call& call);
  Variant AreasOf(Call& call);
  Variant EntireRow(Call& call);
  Variant EntireColumn(Call& call);
  Variant Offset(Call& call);
  Variant Resize(Call& call);
  Variant Worksheet(Call& call);
  Variant Application(Call& call);
  Variant Select(Call& call);
  /// A cell inside the selection leaves that as it is.
  Variant Activate(Call& call);
  Variant MergeArea(Call& call);
  Variant Font(Call& call);
  Variant Interior(Call& call);
  Variant Borders(Call& call);
  Variant Characters(Call& call);
  // Content (range_content.cpp)
  Variant Default(Call& call);
  Variant Value(Call& call);
  Variant Value2(Call& call);
  Variant Formula(Call& call);
  Variant HasFormula(Call& call);
  Variant Text(Call& call);
  Variant ClearContents(Call& call);
  // Form (range_form.cpp)
  template <const StyleProperty<CellStyle>& Property>
  Variant StyleOf(Call& call) {
    return StyleMember(Property, call);
  }
  Variant MergeCells(Call& call);
  Variant Merge(Call& call);
  Variant UnMerge(Call& call);
  Variant RowHeight(Call& call);
  Variant ColumnWidth(Call& call);
  Variant Width(Call& call);
  Variant Height(Call& call);
  Variant Left(Call& call);
  Variant Top(Call& call);
  Variant Hidden(Call& call);
  Variant AutoFit(Call& call);
  // Rows and columns that go and come, and the picture (range_edit.cpp)
  Variant Delete(Call& call);
  Variant Insert(Call& call);
  Variant RemoveDuplicates(Call& call);
  Variant CopyPicture(Call& call);

 protected:
  void* OtherInterface(REFIID iid) override;

 private:
  [[nodiscard]] const Area& First() const { return areas_.front(); }
  [[nodiscard]] bool IsOneCell() const { return areas_.size() == 1 && First().Cells() == 1; }
  /// Whether all blocks are whole rows, or whole columns.
  [[nodiscard]] bool IsEntire(bool rows) const;
  [[nodiscard]] long long CountAll() const;
  [[nodiscard]] Variant Sub(const Area& area, RangeView view = RangeView::kCells) const;
  [[nodiscard]] Variant RowOrColumnPart(Call& call, RangeView view);
  [[nodiscard]] Variant StyleMember(const StyleProperty<CellStyle>& property, Call& call);

  enum class Content { kValue, kValue2, kFormula };
  [[nodiscard]] Variant ReadContent(Content content) const;
  [[nodiscard]] Variant ContentOf(const Cell& cell, Content content) const;
  [[nodiscard]] Variant AccessContent(Call& call, Content content);
  void PutContent(const VARIANT& value);
  void PutArray(const VARIANT& value);
  void PutScalar(const VARIANT& value);
  [[nodiscard]] Variant FlagArray(bool (*flag)(const Sheet& sheet, long row, long col)) const;
  [[nodiscard]] bool AnswersArray() const;

  std::shared_ptr<Sheet> sheet_;
  std::vector<Area> areas_;
  RangeView view_;
};

/// The first positions of a range or sheet named by "Item", "Cells", "Range" arguments: a cell by numbers or
/// by number and column letters, counted from the area's first cell; refused outside the sheet.
[[nodiscard]] Area CellFromArguments(const Area& within, Call& call);

/// Whole rows or columns named by a number or a text such as "3", "C", "2:4" or "A:C", counted from the area.
[[nodiscard]] Area RowsOrColumnsFromArgument(const Area& within, const VARIANT& argument, RangeView view);

/// The areas that the two arguments of "Range" name: texts or Range objects.
[[nodiscard]] std::vector<Area> AreasFromArguments(Call& call);

/// All areas of the Range objects that the arguments of "Union" are, in their order; neighbours are not
/// joined.
[[nodiscard]] Variant UnionOfArguments(const std::shared_ptr<Host>& host, Call& call);

}  // namespace qv::devhost::memory
