#include "addin/ribbon_icons.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "foundation/dpi.h"

namespace qv {
namespace {

struct ControlIcon {
  std::wstring_view controlId;
  std::wstring_view tag;
  int iconId;
};

constexpr ControlIcon kControls[] = {
    {L"btnTranslateFullDoc", L"translate_full", 110},
    {L"btnTranslateSelection", L"translate_selection", 111},
    {L"btnQuickTranslate", L"quick_translate", 112},
    {L"btnImageTranslate", L"image_translate", 119},
    {L"btnGrammar", L"grammar", 167},
    {L"btnImageToTable", L"image_to_table", 172},
    {L"btnPdfToTable", L"pdf_to_table", 177},
    {L"btnPdfTranslate", L"pdf_translate", 192},
    {L"btnAiChat", L"ai_chat", 114},
    {L"btnAiAgents", L"ai_agent", 118},
    {L"btnDeleteBlankRows", L"delete_blank_lines", 182},
    {L"btnGlossary", L"glossary", 115},
    {L"btnInstruction", L"instruction", 116},
    {L"btnAccount", L"account", 117},
    {L"btnSupport", L"support", 129},
    {L"btnSettings", L"settings", 197},
    // Other hosts' ribbons.
    {L"btnTranslateCurrentSlide", L"translate_slide", 110},
    {L"btnAiAutofill", L"ai_autofill", 113},
    {L"btnImageToWord", L"image_to_word", 172},
    {L"btnDeleteBlankLines", L"delete_blank_lines", 182},
};

constexpr std::array<int, 4> kSizes = {32, 48, 64, 96};

/// The oldest icons stand in one row of resources a size, in the order of their ids.
constexpr int kFirstRowIcon = 110;
constexpr int kLastRowIcon = 118;
constexpr std::array<int, kSizes.size()> kRowBases = {120, 130, 140, 150};

struct IconResources {
  int iconId;
  std::array<int, kSizes.size()> bySize;
};

constexpr IconResources kResources[] = {
    {119, {159, 161, 163, 165}}, {129, {160, 162, 164, 166}}, {167, {168, 169, 170, 171}},
    {172, {173, 174, 175, 176}}, {177, {178, 179, 180, 181}}, {182, {183, 184, 185, 186}},
    {187, {188, 189, 190, 191}}, {192, {193, 194, 195, 196}}, {197, {198, 199, 200, 201}},
};

int IconOf(std::wstring_view ControlIcon::*field, std::wstring_view value) {
  const auto* const row = std::find_if(std::begin(kControls), std::end(kControls),
                                       [&](const ControlIcon& control) { return control.*field == value; });
  return row != std::end(kControls) ? row->iconId : 0;
}

}  // namespace

int RibbonIconId(std::wstring_view controlId, std::wstring_view tag) {
  const int byId = IconOf(&ControlIcon::controlId, controlId);
  return byId != 0 ? byId : IconOf(&ControlIcon::tag, tag);
}

int RibbonIconPixels(int dpi, bool wps) {
  const int scaled = ScaleToDpi(wps ? 48 : 32, dpi);
  if (scaled <= 40) return 32;
  if (scaled <= 56) return 48;
  return scaled <= 80 ? 64 : 96;
}

int RibbonIconResource(int iconId, int pixels) {
  const auto* const size = std::find(kSizes.begin(), kSizes.end(), pixels);
  if (size == kSizes.end()) return 0;
  const auto column = static_cast<std::size_t>(size - kSizes.begin());
  if (iconId >= kFirstRowIcon && iconId <= kLastRowIcon) return kRowBases[column] + iconId - kFirstRowIcon;
  for (const IconResources& row : kResources) {
    if (row.iconId == iconId) return row.bySize[column];
  }
  return 0;
}

}  // namespace qv
