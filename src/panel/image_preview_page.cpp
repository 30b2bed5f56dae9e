#include "panel/image_preview_page.h"

#include <algorithm>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr wchar_t kDefaultName[] = L"image.png";
constexpr std::wstring_view kDefaultType = L"image/png";

// The policy lets the page load nothing and run only the script that carries the same mark; all that comes
// from outside is escaped.
constexpr char kHead[] =
    "<!doctype html><html><head><meta charset=\"utf-8\">"
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; img-src data:; "
    "style-src 'unsafe-inline'; script-src 'nonce-preview'\"><title>";
constexpr char kStyle[] =
    "</title><style>"
    ":root{color-scheme:light dark}"
    "body{margin:0;min-height:100vh;display:flex;flex-direction:column;background:Canvas;color:CanvasText;"
    "font:14px/1.4 system-ui,sans-serif}"
    "main{flex:1;display:flex;align-items:center;justify-content:center;padding:16px;min-height:0}"
    "img{max-width:100%;max-height:calc(100vh - 80px);object-fit:contain}"
    "footer{padding:8px 16px;text-align:end;border-top:1px solid GrayText}"
    "</style></head><body><main><img alt=\"";
constexpr char kAfterPicture[] = "\"></main><footer><a download=\"";
constexpr char kTail[] =
    "</a></footer><script nonce=\"preview\">"
    "document.querySelector('a').href=document.querySelector('img').src</script></body></html>\n";

bool IsBase64Unit(wchar_t unit) {
  return (unit >= L'A' && unit <= L'Z') || (unit >= L'a' && unit <= L'z') || (unit >= L'0' && unit <= L'9') ||
         unit == L'+' || unit == L'/' || unit == L'=';
}

/// The picture without prefix and line breaks; empty when it is not base64.
std::wstring PictureText(std::wstring_view given) {
  if (given.starts_with(L"data:")) given.remove_prefix(std::min(given.find(L',') + 1, given.size()));
  std::wstring text(given);
  std::erase_if(text, IsSpace);
  return std::all_of(text.begin(), text.end(), IsBase64Unit) ? text : std::wstring();
}

std::wstring_view PictureType(std::wstring_view given) {
  constexpr std::wstring_view kFamily = L"image/";
  const std::wstring_view kind = given.substr(std::min(kFamily.size(), given.size()));
  const bool plain = !kind.empty() && std::all_of(kind.begin(), kind.end(), [](wchar_t unit) {
    return (unit >= L'a' && unit <= L'z') || (unit >= L'0' && unit <= L'9') || unit == L'+' || unit == L'-' ||
           unit == L'.';
  });
  return given.starts_with(kFamily) && plain ? given : kDefaultType;
}

std::string HtmlText(std::wstring_view text) {
  std::wstring escaped;
  for (const wchar_t unit : text) {
    switch (unit) {
      case L'&':
        escaped += L"&amp;";
        break;
      case L'<':
        escaped += L"&lt;";
        break;
      case L'>':
        escaped += L"&gt;";
        break;
      case L'"':
        escaped += L"&quot;";
        break;
      default:
        escaped += unit;
    }
  }
  return ToUtf8(escaped);
}

}  // namespace

ImagePreview ReadImagePreview(std::wstring_view message) {
  ImagePreview preview{JsonGetString(message, L"imageBase64"), JsonGetString(message, L"mediaType"),
                       JsonGetString(message, L"title"), JsonGetString(message, L"downloadName")};
  if (preview.downloadName.empty()) preview.downloadName = kDefaultName;
  return preview;
}

std::string BuildImagePreviewPage(const ImagePreview& preview) {
  const std::wstring picture = PictureText(preview.imageBase64);
  if (picture.empty()) return {};
  const std::string name = HtmlText(preview.downloadName);
  const std::string title = HtmlText(preview.title.empty() ? preview.downloadName : preview.title);
  return kHead + title + kStyle + title + "\" src=\"data:" + ToUtf8(PictureType(preview.mediaType)) +
         ";base64," + ToUtf8(picture) + kAfterPicture + name + "\">\u2913 " + name + kTail;
}

}  // namespace qv
