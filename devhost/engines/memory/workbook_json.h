#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "engines/memory/host.h"

namespace qv::devhost::memory {

// A workbook as JSON text. All members but "sheets" are optional, and whatever has its default is left out on
// writing.
//
// {"readOnly":true,"active":"Sheet name",
//  "sheets":[{
//    "name":"Data","hidden":true,"protected":true,"frozenRows":1,"frozenColumns":0,
//    "cells":{"A1":"text","A2":12.5,"A3":true,"A4":{…}},
//    "merges":["A1:B2"],
//    "rowHeights":{"3":30.5},"columnWidths":{"B":20},
//    "charts":[{"title":"Sales","name":"Chart 1","type":51,"left":0,"top":0,"width":360,"height":216}],
//    "shapes":[{"name":"Picture 1","type":13,"png":"base64 of a PNG file","left":0,"top":0,"width":75,
//               "height":37.5,"alt":"What is seen","placement":2},
//              {"name":"Group 1","type":6,"left":0,"top":0,"width":99,"height":99,"children":[…]}]}]}
//
// Types of shapes are the host's: 13 a picture, 6 a group, 9 a line, 8 a form control, 1 a plain shape, which
// "png" fills. Without a size a picture has its own, 0.75 points a pixel. Charts lie below shapes.
//
// A cell in its long form:
// {"v":value,"e":2042,"f":"=A1","wrap":true,"locked":false,"format":"0%","bold":true,
// "italic":true,"size":14,"font":"Arial","color":255,"fill":65535,"runs":[{"start":3,"length":2,"bold":true,…}]}.
// "e" is an error's number; with "f", "v" is the formula's result; runs are 1-based, and parts of the text
// between them have the cell's font. Texts stand as they are: "12" is a text, 12 a number.

/// Sheets of a description. Throws std::runtime_error with a text for people; nothing is half read then.
[[nodiscard]] std::vector<std::shared_ptr<Sheet>> SheetsFromJson(const nlohmann::json& description);

[[nodiscard]] nlohmann::json WorkbookToJson(const Workbook& workbook);

/// The fonts of a cell's text, 1-based: [{"start","length","text","font","size","bold","italic","color"}].
[[nodiscard]] nlohmann::json RunsToJson(const Cell& cell, const std::wstring& text);

[[nodiscard]] nlohmann::json ValueToJson(const CellValue& value);

}  // namespace qv::devhost::memory
