#include "panel/image_preview_window.h"

#include <shlwapi.h>

#include <array>
#include <utility>

#include "foundation/file_io.h"
#include "foundation/logging.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// Pixels at 96 DPI.
constexpr SIZE kSize = {880, 680};

std::wstring TemporaryFolder() {
  // One more than MAX_PATH is what the function may need, its terminator included.
  std::array<wchar_t, MAX_PATH + 2> folder{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
  return length < folder.size() ? std::wstring(folder.data(), length) : std::wstring();
}

std::wstring FileAddress(const std::wstring& path) {
  // Every unit may become three bytes of "%XX".
  std::wstring address(path.size() * 9 + 16, L'\0');
  auto length = static_cast<DWORD>(address.size());
  if (FAILED(UrlCreateFromPathW(path.c_str(), address.data(), &length, 0))) return {};
  address.resize(length);
  return address;
}

}  // namespace

void ImagePreviewWindow::Open(const ImagePreview& preview) {
  const std::string page = BuildImagePreviewPage(preview);
  if (page.empty() || paneView_.Environment() == nullptr || !WritePage(page)) {
    LogPaneDiagnostic(context_.LogIdentity(), L"Image preview not shown", E_INVALIDARG);
    return;
  }
  const std::wstring& title = preview.title.empty() ? preview.downloadName : preview.title;
  if (frame_.IsOpen()) {
    frame_.SetTitle(title);
    frame_.Raise();
    if (view_.IsReady()) view_.Navigate(address_);
    return;
  }
  if (frame_.Create(title, kSize, context_.Window())) {
    view_.StartIn(paneView_.Environment(), frame_.Handle());
  } else {
    Close();
  }
}

bool ImagePreviewWindow::WritePage(const std::string& page) {
  const std::wstring folder = TemporaryFolder();
  if (folder.empty()) return false;
  const std::wstring file =
      Concat(folder, L"quorvantis-preview-", GetCurrentProcessId(), L"-", context_.Number(), L".html");
  std::wstring address = FileAddress(file);
  if (address.empty() || !WriteFileAtomically(file, page)) return false;
  file_ = file;
  address_ = std::move(address);
  return true;
}

void ImagePreviewWindow::OnWebViewFailed(const wchar_t* step, HRESULT hr) {
  LogPaneDiagnostic(context_.LogIdentity(), Concat(L"Image preview failed step=", step), hr);
  CloseLater();
}

void ImagePreviewWindow::CloseLater() {
  // A view is never closed from inside its own event.
  static_cast<void>(context_.Tasks().PostFunction([this] { Close(); }));
}

void ImagePreviewWindow::Close() {
  view_.Close();
  frame_.Destroy();
  if (const std::wstring file = std::exchange(file_, {}); !file.empty()) DeleteFileW(file.c_str());
  address_.clear();
}

}  // namespace qv
