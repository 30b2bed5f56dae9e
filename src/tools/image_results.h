#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/image_anchor.h"
#include "tools/image_data.h"

namespace qv {

// Result texts of the image translation actions.

/// Short codes of failures, as "error" of a result.
namespace image_error {
inline constexpr std::wstring_view kFailed = L"image_translate_failed";
inline constexpr std::wstring_view kUnknownAction = L"unknown_action";
inline constexpr std::wstring_view kInvalidRequest = L"invalid_request";
inline constexpr std::wstring_view kAnchorRequired = L"anchor_required";
inline constexpr std::wstring_view kAnchorStale = L"anchor_stale";
inline constexpr std::wstring_view kSheetChanged = L"sheet_changed";
inline constexpr std::wstring_view kNoSheet = L"no_sheet";
inline constexpr std::wstring_view kExportFailed = L"export_failed";
inline constexpr std::wstring_view kEncodeFailed = L"encode_failed";
inline constexpr std::wstring_view kDecodeFailed = L"decode_failed";
inline constexpr std::wstring_view kReplaceFailed = L"replace_failed";
inline constexpr std::wstring_view kNothingToUndo = L"nothing_to_undo";
/// "detail" of a failed replacement: a picture inside a group is not exchanged for another shape.
inline constexpr std::wstring_view kGroupChildInPlaceOnly = L"group_child_inplace_only";
/// Why a snapshot of a batch was not restored.
inline constexpr std::wstring_view kRestoreFailed = L"restore_failed";
inline constexpr std::wstring_view kMissingUndoSnapshot = L"missing_undo_snapshot";
}  // namespace image_error

/// {"error":"replace_failed"}, with "detail" where there is one.
[[nodiscard]] std::wstring ReplaceFailedResult(std::wstring_view detail);

/// A small picture of a picture; `base64` is empty when there is none.
struct ImageThumbnail {
  std::wstring base64;
  PixelSize size;
};

/// An anchor with the thumbnail's members behind its own; without a thumbnail just the anchor.
[[nodiscard]] std::wstring AnchorWithThumbnail(const ImageAnchor& anchor, const ImageThumbnail& thumbnail);

/// What was found on a sheet. `anchors` are JSON objects, none where they were not asked for.
[[nodiscard]] std::wstring ScanResult(std::wstring_view sheetName, std::size_t count, std::size_t unsupported,
                                      const std::vector<std::wstring>& anchors);

[[nodiscard]] std::wstring ExtractResult(PixelSize size, std::wstring_view base64);
[[nodiscard]] std::wstring ReplaceResult(bool hasUndo, const ImageAnchor& anchor);
[[nodiscard]] std::wstring UndoReplaceResult(const ImageAnchor& anchor, std::wstring_view base64);
[[nodiscard]] std::wstring BatchUndoResult(std::size_t restored,
                                           const std::vector<std::wstring>& failedReasons);

/// Tells the page that no picture is selected.
[[nodiscard]] std::wstring NoImageSelectedScript();
/// Tells the page which picture is selected; `size` is that of the picture, not of its thumbnail, and both
/// are left out where the picture could not be exported.
[[nodiscard]] std::wstring ImageSelectedScript(const ImageAnchor& anchor, PixelSize size,
                                               const ImageThumbnail& thumbnail);

}  // namespace qv
