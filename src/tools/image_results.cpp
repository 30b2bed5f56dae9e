#include "tools/image_results.h"

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

std::wstring SizeMembers(PixelSize size) {
  return Concat(L",\"width\":", size.width, L",\"height\":", size.height);
}

std::wstring Joined(const std::vector<std::wstring>& objects) {
  std::wstring joined;
  for (const std::wstring& object : objects) {
    if (!joined.empty()) joined += L',';
    joined += object;
  }
  return joined;
}

std::wstring SelectionScript(std::wstring_view data) {
  return Concat(L"if(window.onImageSelectionPreview)onImageSelectionPreview(", data, L")");
}

}  // namespace

std::wstring ReplaceFailedResult(std::wstring_view detail) {
  const std::wstring more = detail.empty() ? std::wstring() : Concat(L",\"detail\":", JsonQuote(detail));
  return Concat(L"{\"error\":\"", image_error::kReplaceFailed, L'"', more, L'}');
}

std::wstring AnchorWithThumbnail(const ImageAnchor& anchor, const ImageThumbnail& thumbnail) {
  if (thumbnail.base64.empty()) return AnchorJson(anchor);
  return AnchorJson(anchor,
                    Concat(L",\"thumbBase64\":\"", thumbnail.base64, L'"', SizeMembers(thumbnail.size)));
}

std::wstring ScanResult(std::wstring_view sheetName, std::size_t count, std::size_t unsupported,
                        const std::vector<std::wstring>& anchors) {
  return Concat(L"{\"ok\":true,\"count\":", count, L",\"skippedUnsupported\":", unsupported,
                L",\"sheetSummary\":[{\"sheetName\":", JsonQuote(sheetName), L",\"count\":", count,
                L",\"anchors\":[", Joined(anchors), L"]}]}");
}

std::wstring ExtractResult(PixelSize size, std::wstring_view base64) {
  return Concat(L"{\"ok\":true,\"mediaType\":\"image/png\"", SizeMembers(size), L",\"data\":\"", base64,
                L"\"}");
}

std::wstring ReplaceResult(bool hasUndo, const ImageAnchor& anchor) {
  return Concat(L"{\"ok\":true,\"replaced\":true,\"hasUndo\":", BoolWord(hasUndo), L",\"anchor\":",
                AnchorJson(anchor), L'}');
}

std::wstring UndoReplaceResult(const ImageAnchor& anchor, std::wstring_view base64) {
  return Concat(L"{\"anchor\":", AnchorJson(anchor), L",\"imageBase64\":\"", base64,
                L"\",\"batchMode\":false}");
}

std::wstring BatchUndoResult(std::size_t restored, const std::vector<std::wstring>& failedReasons) {
  return Concat(L"{\"ok\":true,\"restored\":", restored, L",\"failed\":", failedReasons.size(),
                L",\"failedReasons\":", JsonQuotedArray(failedReasons), L'}');
}

std::wstring NoImageSelectedScript() {
  return SelectionScript(L"{\"scope\":\"empty\"}");
}

std::wstring ImageSelectedScript(const ImageAnchor& anchor, PixelSize size, const ImageThumbnail& thumbnail) {
  const std::wstring picture =
      thumbnail.base64.empty() ? std::wstring()
                               : Concat(SizeMembers(size), L",\"thumbBase64\":\"", thumbnail.base64, L'"');
  return SelectionScript(Concat(L"{\"scope\":\"shape\",\"anchor\":", AnchorJson(anchor), picture, L'}'));
}

}  // namespace qv
