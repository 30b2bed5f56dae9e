#include "panel/image_preview_window.h"

#include <array>
#include <utility>

#include "foundation/file_replacement.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "panel/page_url.h"

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

}  // namespace

void ImagePreviewWindow::Open(const ImagePreview& preview) {
  const std::string page = BuildImagePreviewPage(preview);
  HRESULT hr = S_OK;
  if (page.empty()) {
    hr = E_INVALIDARG;
  } else if (paneView_.Environment() == nullptr) {
    hr = E_ABORT;
  } else if (!WritePage(page)) {
    hr = HRESULT_FROM_WIN32(ERROR_WRITE_FAULT);
  }
  if (FAILED(hr)) {
    LogPaneDiagnostic(context_.LogIdentity(), L"Image preview not shown", hr);
    return;
  }
  ++shown_;
  Show(preview.title.empty() ? preview.downloadName : preview.title);
}

void ImagePreviewWindow::Show(const std::wstring& title) {
  if (frame_.IsOpen() && view_.IsReady() && view_.Navigate(address_)) {
    frame_.SetTitle(title);
    frame_.Raise();
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
  if (!WriteFileAtomically(file, page)) return false;
  file_ = file;
  address_ = FileAddress(file);
  return true;
}

void ImagePreviewWindow::OnWebViewFailed(const wchar_t* step, HRESULT hr) {
  LogPaneDiagnostic(context_.LogIdentity(), Concat(L"Image preview failed step=", step), hr);
  CloseLater();
}

void ImagePreviewWindow::CloseLater() {
  // A view is never closed from inside its own event, nor a frame from inside its own message.
  static_cast<void>(context_.Tasks().PostFunction([this, shown = shown_] {
    if (shown == shown_) Close();
  }));
}

void ImagePreviewWindow::Close() {
  view_.Close();
  frame_.Destroy();
  if (const std::wstring file = std::exchange(file_, {}); !file.empty()) DeleteFileW(file.c_str());
  address_.clear();
}

}  // namespace qv
