#include "services/mcp_contract.h"

#include <algorithm>

namespace qv {
namespace {

// Agents are taught by these texts; they are the server's contract.

constexpr McpTool kTools[] = {
    {L"range",
     L"Read, write, or format cells in the currently open Excel workbook. action='read' "
     L"returns actual values and formulas of an A1 range (call before analyzing or "
     L"modifying). action='write' writes scalar, 1D, or 2D values into an A1 range. "
     L"action='format' applies font, fill, border, alignment, or number format. Use A1 "
     L"notation on the active sheet.",
     LR"({"type":"object","properties":{"action":{"type":"string","enum":["read","write",)"
     LR"("format"]},"range":{"type":"string","description":"A1 range, e.g. B2:D10"},)"
     LR"("values":{"description":"For action=write: 2D array of values or scalar to fill."},)"
     LR"("font":{"type":"object","description":"For action=format: )"
     LR"({bold,italic,underline,size,name,color(#RRGGBB)}"},)"
     LR"("fill":{"type":"object","description":"For action=format: {color(#RRGGBB)}"},)"
     LR"("alignment":{"type":"object","description":"For action=format: )"
     LR"({horizontal:left/center/right,vertical:top/middle/bottom,wrapText:bool}"},)"
     LR"("numberFormat":{"type":"string",)"
     LR"("description":"For action=format: e.g. '0.00%','yyyy-mm-dd'"},)"
     LR"("border":{"type":"object","description":"For action=format: )"
     LR"({edges:[all/top/bottom/left/right/inside_h/inside_v],style:thin/thick/dashed/none,)"
     LR"(color:#RRGGBB}"}},"required":["action","range"]})"},
    {L"worksheet",
     L"Worksheet operations. action='list' returns all sheets; 'set_active' switches "
     L"active sheet by name or index; 'add'/'delete'/'rename' manage sheets; "
     L"'merge'/'unmerge' on a range; 'set_size' sets column widths / row heights / "
     L"autofit; 'delete_rows_cols' deletes rows or columns; 'insert_rows_cols' inserts "
     L"rows or columns; 'remove_duplicates' removes duplicate rows via Excel native Remove "
     L"Duplicates. Call worksheet(action=list) first when the target sheet is ambiguous. "
     L"Destructive actions (delete, delete_rows_cols, remove_duplicates) require explicit "
     L"user intent.",
     LR"({"type":"object","properties":{"action":{"type":"string","enum":["list",)"
     LR"("set_active","add","delete","rename","merge","unmerge","set_size",)"
     LR"("delete_rows_cols","insert_rows_cols","remove_duplicates"]},)"
     LR"("name":{"type":"string","description":"For set_active/delete/rename: sheet name"},)"
     LR"("index":{"type":"integer","description":"For set_active/delete/rename: 1-based )"
     LR"(sheet index"},"new_name":{"type":"string","description":"For rename"},)"
     LR"("before":{"type":"string","description":"For add: insert before sheet name"},)"
     LR"("after":{"type":"string","description":"For add: insert after sheet name"},)"
     LR"("range":{"type":"string","description":"For )"
     LR"(merge/unmerge/set_size/delete_rows_cols/insert_rows_cols/remove_duplicates: A1 )"
     LR"(range"},"columns":{"type":"array",)"
     LR"("description":"For set_size: [{col|range,width}]"},)"
     LR"("rows":{"type":"array","description":"For set_size: [{row|range,height}]"},)"
     LR"("autofit":{"type":"array","description":"For set_size: ['columns'|'rows']"},)"
     LR"("mode":{"type":"string","enum":["columns","rows"],)"
     LR"("description":"For delete_rows_cols/insert_rows_cols"},)"
     LR"("indices":{"type":"array","description":"For delete_rows_cols/insert_rows_cols: )"
     LR"(1-based indices"},"compare_columns":{"type":"array",)"
     LR"("description":"For remove_duplicates: 1-based column indices within range; omit for )"
     LR"(all columns"},"has_header":{"type":"boolean",)"
     LR"j("description":"For remove_duplicates: first row is header (default true)"},)j"
     LR"("match_case":{"type":"boolean",)"
     LR"("description":"For remove_duplicates: case-sensitive comparison"},)"
     LR"("confirm":{"type":"boolean","description":"For remove_duplicates: must be true"}},)"
     LR"("required":["action"]})"},
    {L"chart",
     L"Create a chart on the active sheet from a source range. action='create'. Choose "
     L"type by intent: column/bar for comparisons, line for trends, pie for part-of-whole. "
     L"Call range(action=read) first if the data layout is uncertain.",
     LR"({"type":"object","properties":{"action":{"type":"string","enum":["create"]},)"
     LR"("type":{"type":"string","enum":["column","line","pie","bar"],)"
     LR"("description":"Chart type"},"source":{"type":"string",)"
     LR"("description":"A1 range of source data, e.g. A1:C10"},"title":{"type":"string"},)"
     LR"j("left":{"type":"integer","description":"Position in points (default 300)"},)j"
     LR"j("top":{"type":"integer","description":"Position in points (default 50)"},)j"
     LR"j("width":{"type":"integer","description":"Size in points (default 400)"},)j"
     LR"j("height":{"type":"integer","description":"Size in points (default 300)"}},)j"
     LR"("required":["action","source"]})"},
    {L"calc",
     L"Application calculation control. action='set_mode' sets "
     L"manual/automatic/semiautomatic; 'calculate_now' triggers recalculation; 'get_mode' "
     L"returns current mode. Use manual mode for large bulk writes, then calculate_now, "
     L"and usually restore automatic.",
     LR"({"type":"object","properties":{"action":{"type":"string","enum":["set_mode",)"
     LR"("calculate_now","get_mode"]},"mode":{"type":"string","enum":["manual","automatic",)"
     LR"("semiautomatic"],"description":"For action=set_mode"}},"required":["action"]})"},
    {L"screenshot",
     L"Capture an A1 range as a PNG image (base64). action='range'. Use to verify visual "
     L"layout, confirm formatting was applied correctly, or inspect content that is easier "
     L"to see than read.",
     LR"({"type":"object","properties":{"action":{"type":"string","enum":["range"]},)"
     LR"("range":{"type":"string","description":"A1 range to capture"}},)"
     LR"("required":["action","range"]})"},
};

struct McpAction {
  std::wstring_view tool;
  std::wstring_view action;
  std::wstring_view workbookAction;
};

constexpr McpAction kActions[] = {
    {L"range", L"read", L"excelReadRange"},
    {L"range", L"write", L"excelWriteRange"},
    {L"range", L"format", L"excelFormatRange"},
    {L"worksheet", L"list", L"excelListSheets"},
    {L"worksheet", L"set_active", L"excelSetActiveSheet"},
    {L"worksheet", L"add", L"excelAddSheet"},
    {L"worksheet", L"delete", L"excelDeleteSheet"},
    {L"worksheet", L"rename", L"excelRenameSheet"},
    {L"worksheet", L"merge", L"excelMergeCells"},
    {L"worksheet", L"unmerge", L"excelUnmergeCells"},
    {L"worksheet", L"set_size", L"excelSetSize"},
    {L"worksheet", L"delete_rows_cols", L"excelDeleteRowsCols"},
    {L"worksheet", L"insert_rows_cols", L"excelInsertRowsCols"},
    {L"worksheet", L"remove_duplicates", L"excelRemoveDuplicates"},
    {L"chart", L"create", L"excelChartCreate"},
    {L"calc", L"set_mode", L"excelCalcSetMode"},
    {L"calc", L"calculate_now", L"excelCalculateNow"},
    {L"calc", L"get_mode", L"excelCalcGetMode"},
    {L"screenshot", L"range", L"excelScreenshotRange"},
};

constexpr std::wstring_view kInstructions =
    L"'qv-excel' is a live, direct connection to the Excel workbook the user currently "
    L"has open. Use it for any spreadsheet task instead of reading or writing files on "
    L"disk. Typical workflow: worksheet(action=list) to see available sheets, "
    L"range(action=read) to inspect real data, then range(action=write) or "
    L"range(action=format) to modify the live workbook. For charts call "
    L"chart(action=create). For visual verification call screenshot(action=range). Ranges "
    L"use A1 notation on the active sheet; switch sheets with "
    L"worksheet(action=set_active). Do not read or write disk copies — the open workbook "
    L"may have unsaved edits and external access sees stale data.";

}  // namespace

std::span<const McpTool> McpToolTable() {
  return kTools;
}

std::wstring_view McpInstructions() {
  return kInstructions;
}

std::wstring_view WorkbookActionOf(std::wstring_view tool, std::wstring_view action) {
  const auto* const row = std::ranges::find_if(
      kActions, [&](const McpAction& each) { return each.tool == tool && each.action == action; });
  return row == std::end(kActions) ? std::wstring_view() : row->workbookAction;
}

}  // namespace qv
