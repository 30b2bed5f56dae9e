"""What a document window shows of its active sheet, gathered in one go for the development host to paint."""

from office import cell_values, drawing_kinds, fonts, picture, units, window_list
from office.cell_values import ERROR_RESULT, VALUE_RESULT
from office.fonts import SEMI_BOLD
from office.windows import AREAS, CELLS, Window

# com.sun.star.sheet.CellFlags
CONTENT = 1 | 2 | 4 | 16
RICH_TEXT = 512

HORIZONTAL = {"LEFT": "left", "CENTER": "center", "RIGHT": "right", "BLOCK": "justify", "REPEAT": "left"}
VERTICAL = {1: "top", 2: "center", 4: "top"}
FONT = ("CharColor", "CharFontName", "CharHeight", "CharPosture", "CharStrikeout", "CharUnderline", "CharWeight")
LOOK = ("BottomBorder2", "CellBackColor", "HoriJustify", "IsTextWrapped", "LeftBorder2", "RightBorder2", "TopBorder2",
        "VertJustify")
EDGES = ("LeftBorder2", "TopBorder2", "RightBorder2", "BottomBorder2")


def snapshot(window, row, column, rows, columns):
    """The members of GridSnapshot; row and column are 1-based, the area is cut where the sheet ends."""
    sheet = window.controller.ActiveSheet
    visible = [other.Name for other in window.document.Sheets if other.IsVisible]
    rows, columns = min(rows, units.MAX_ROWS - row + 1), min(columns, units.MAX_COLUMNS - column + 1)
    block = sheet.getCellRangeByPosition(column - 1, row - 1, column + columns - 2, row + rows - 2)
    shown = Window(window)
    extent = picture.extent(sheet).RangeAddress
    return {
        "sheets": visible,
        "activeSheet": visible.index(sheet.Name),
        "area": [row, column, rows, columns],
        "widths": [_length(block.Columns.getByIndex(index), "Width") for index in range(columns)],
        "heights": [_length(block.Rows.getByIndex(index), "Height") for index in range(rows)],
        **_Cells(window.document, sheet, block).gathered(),
        "selection": _selection(window.controller),
        "scroll": [shown.get_scroll_row(), shown.get_scroll_column()],
        "frozen": window_list.frozen(window.controller),
        "shapes": _shapes(sheet, block.Position),
        "used": [extent.EndRow + 1, extent.EndColumn + 1],
    }


def _length(line, name):
    return units.points(getattr(line, name)) if line.IsVisible else 0


def _selection(controller):
    selected = controller.getSelection()
    if selected is None:
        return []
    if selected.supportsService(AREAS):
        found = selected.RangeAddresses
    else:
        found = [selected.RangeAddress] if selected.supportsService(CELLS) else []
    return [[area.StartRow + 1, area.StartColumn + 1, area.EndRow - area.StartRow + 1,
             area.EndColumn - area.StartColumn + 1] for area in found]


def _shapes(sheet, origin):
    page = sheet.DrawPage
    found = []
    for shape in (page.getByIndex(index) for index in range(page.Count)):
        chart = drawing_kinds.chart_of(shape)
        has_title = chart is not None and chart.HasMainTitle
        found.append({
            "left": units.points(shape.Position.X - origin.X),
            "top": units.points(shape.Position.Y - origin.Y),
            "width": units.points(shape.Size.Width),
            "height": units.points(shape.Size.Height),
            "chart": chart is not None,
            "title": chart.Title.String if has_title else "" if chart is not None else shape.Name,
        })
    return found


def _font(values):
    return {
        "name": values["CharFontName"],
        "size": round(float(values["CharHeight"]), 2),
        "bold": values["CharWeight"] > SEMI_BOLD,
        "italic": values["CharPosture"].value != "NONE",
        "underline": values["CharUnderline"] != 0,
        "strikethrough": values["CharStrikeout"] != 0,
        "color": units.swap_colour(max(values["CharColor"], 0)),
    }


def _border(line):
    width = max(line.LineWidth, line.OuterLineWidth)
    return [width * 72 / 2540, units.swap_colour(max(line.Color, 0))]


class _Cells:
    """Styles and cells of a block. Cells of one format are asked for it once."""

    def __init__(self, document, sheet, block):
        self._document = document
        self._sheet = sheet
        self._inner = block.RangeAddress
        cursor = sheet.createCursorByRange(block)
        cursor.collapseToMergedArea()
        # The block and the merges that reach into it.
        self._origin = cursor.RangeAddress
        self._block = sheet.getCellRangeByPosition(self._origin.StartColumn, self._origin.StartRow,
                                                   self._origin.EndColumn, self._origin.EndRow)
        self._styles = []
        self._style_at = {}
        # Cells that show something even when they are empty.
        self._coloured = set()
        self._merges = {}
        # Cells whose text has fonts or paragraphs of its own.
        self._rich = set()

    def gathered(self):
        self._gather_styles()
        covered = {(row, column)
                   for (top, left), (rows, columns) in self._merges.items()
                   for row in range(top, top + rows)
                   for column in range(left, left + columns)} - set(self._merges)
        texts = self._texts()
        shown = (set(texts) | self._coloured | set(self._merges)) - covered
        cells = [self._cell(at, texts.get(at)) for at in sorted(shown) if self._reaches_in(at)]
        return {"styles": self._styles, "cells": cells}

    def _gather_styles(self):
        formats = self._block.getUniqueCellFormatRanges()
        for index in range(formats.Count):
            alike = formats.getByIndex(index)
            sample = alike.getByIndex(0).getCellByPosition(0, 0)
            names = tuple(sorted(FONT + LOOK))
            style = self._style(dict(zip(names, sample.getPropertyValues(names))))
            merged = sample.getIsMerged()
            for address in alike.RangeAddresses:
                for row in range(address.StartRow, address.EndRow + 1):
                    for column in range(address.StartColumn, address.EndColumn + 1):
                        self._style_at[row, column] = len(self._styles)
                        if "fill" in style or "borders" in style:
                            self._coloured.add((row, column))
                        if merged:
                            self._merges[row, column] = self._merge_size(row, column)
            self._styles.append(style)

    @staticmethod
    def _style(values):
        style = {
            "font": _font(values),
            "horizontal": HORIZONTAL.get(values["HoriJustify"].value, "general"),
            "vertical": VERTICAL.get(values["VertJustify"], "bottom"),
            "wrap": bool(values["IsTextWrapped"]),
        }
        if values["CellBackColor"] >= 0:
            style["fill"] = units.swap_colour(values["CellBackColor"])
        borders = [_border(values[edge]) for edge in EDGES]
        if any(width for width, _ in borders):
            style["borders"] = borders
        return style

    def _merge_size(self, row, column):
        cursor = self._sheet.createCursorByRange(self._sheet.getCellByPosition(column, row))
        cursor.collapseToMergedArea()
        area = cursor.RangeAddress
        return area.EndRow - area.StartRow + 1, area.EndColumn - area.StartColumn + 1

    def _positions(self, found):
        return cell_values.positions(self._origin, found.RangeAddresses)

    def _texts(self):
        """(text, kind) of every cell that has content, by its 0-based row and column."""
        data = self._block.getDataArray()
        errors = set(self._positions(self._block.queryFormulaCells(ERROR_RESULT)))
        numbers = set(self._positions(self._block.queryFormulaCells(VALUE_RESULT)))
        texts = {}
        for row, column in self._positions(self._block.queryContentCells(CONTENT)):
            value = data[row][column]
            at = row + self._origin.StartRow, column + self._origin.StartColumn
            if (row, column) in errors or (row, column) in numbers or not isinstance(value, str):
                text = cell_values.shown_text(self._document, self._block.getCellByPosition(column, row))
                is_word = (row, column) in errors or text in ("TRUE", "FALSE")
                texts[at] = (text, "logical" if is_word else "number")
            else:
                texts[at] = (value, "text")
        self._rich = {(row + self._origin.StartRow, column + self._origin.StartColumn)
                      for row, column in self._positions(self._block.queryContentCells(RICH_TEXT))}
        return texts

    def _reaches_in(self, at):
        row, column = at
        rows, columns = self._merges.get(at, (1, 1))
        area = self._inner
        return row <= area.EndRow and row + rows > area.StartRow and column <= area.EndColumn and \
            column + columns > area.StartColumn

    def _cell(self, at, content):
        row, column = at
        cell = {"row": row + 1, "column": column + 1, "style": self._style_at[at]}
        if content:
            cell["text"], cell["content"] = content
        if at in self._merges:
            cell["span"] = self._merges[at]
            cell["outside"] = self._outside(at)
        if at in self._rich:
            runs = self._runs(self._sheet.getCellByPosition(column, row))
            if any(font != self._styles[cell["style"]]["font"] for _, _, font in runs):
                cell["runs"] = runs
        return cell

    def _outside(self, at):
        """Points of a merge that lie left, above, right and below of the block that was asked for."""
        row, column = at
        rows, columns = self._merges[at]
        area = self._inner
        across, down = self._sheet.Columns, self._sheet.Rows
        return [
            sum(_length(across.getByIndex(index), "Width") for index in range(column, area.StartColumn)),
            sum(_length(down.getByIndex(index), "Height") for index in range(row, area.StartRow)),
            sum(_length(across.getByIndex(index), "Width") for index in range(area.EndColumn + 1, column + columns)),
            sum(_length(down.getByIndex(index), "Height") for index in range(area.EndRow + 1, row + rows)),
        ]

    @staticmethod
    def _runs(cell):
        """[start, length, font] of stretches that look alike; the start is 0-based."""
        runs = []
        start = 0
        for text, portion in fonts.portions(cell):
            length = units.utf16_length(text)
            font = _font(dict(zip(FONT, portion.getPropertyValues(FONT))))
            if runs and runs[-1][2] == font:
                runs[-1][1] += length
            elif length:
                runs.append([start, length, font])
            start += length
        return runs
