#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/tool_arguments.h"

namespace qv {

/// The host's number of a colour text: "RRGGBB", optionally behind one "#", becomes R + 256·G + 65536·B.
/// Nothing for any other text.
[[nodiscard]] std::optional<std::int32_t> ParseColor(std::wstring_view text);

struct FontFormat {
  [[nodiscard]] bool IsEmpty() const { return !bold && !italic && !underline && !size && !name && !color; }

  std::optional<bool> bold;
  std::optional<bool> italic;
  std::optional<bool> underline;
  /// Points.
  std::optional<double> size;
  std::optional<std::wstring> name;
  std::optional<std::int32_t> color;
};

/// How a border line is drawn: the host's XlLineStyle and XlBorderWeight.
struct BorderLine {
  std::int32_t style;
  /// Nothing for no line.
  std::optional<std::int32_t> weight;
};

struct BorderFormat {
  /// The host's XlBordersIndex numbers, each once, in the order of the argument; none when nothing is to do.
  std::vector<std::int32_t> edges;
  std::optional<BorderLine> line;
  std::optional<std::int32_t> color;
};

/// What "excelFormatRange" shall change; absent and unknown values are absent here. Alignments are the host's
/// XlHAlign and XlVAlign numbers.
struct RangeFormat {
  FontFormat font;
  std::optional<std::int32_t> fill;
  std::optional<std::int32_t> horizontal;
  std::optional<std::int32_t> vertical;
  std::optional<bool> wrapText;
  std::optional<std::wstring> numberFormat;
  BorderFormat border;
};

/// "fill" is a colour or an object with "color"; "wrapText" stands beside or inside "alignment"; "edges" is
/// one name or a list, all edges where it is left out; a border without "style" keeps its lines, and one
/// that is taken away has no colour.
[[nodiscard]] RangeFormat ParseRangeFormat(const ToolArguments& arguments);

}  // namespace qv
