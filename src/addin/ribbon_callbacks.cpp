#include "addin/ribbon_callbacks.h"

#include "addin/host_window.h"
#include "addin/pdf_translation_command.h"
#include "addin/ribbon_icons.h"
#include "addin/ribbon_labels.h"
#include "addin/ribbon_names.h"
#include "addin/task_panes.h"
#include "addin/ui_language_dialog.h"
#include "foundation/host_session.h"
#include "foundation/identity.h"
#include "foundation/logging.h"
#include "foundation/settings.h"
#include "foundation/text.h"
#include "foundation/window_dpi.h"
#include "workbook/automation.h"

namespace qv {
namespace {

/// A host that shows a dialog or edits a cell is often through with it by then.
constexpr UINT kSecondTryMs = 2000;

/// Some hosts' ribbons are no IRibbonUI, but answer to the method's name.
HostAnswer Invalidate(IDispatch* ribbon) {
  HostAnswer answer;
  ComPtr<IRibbonUI> typed;
  if (SUCCEEDED(ribbon->QueryInterface(IID_PPV_ARGS(&typed)))) {
    answer.hr = typed->Invalidate();
  } else {
    answer.hr = InvokeByName(ribbon, L"Invalidate", {}, nullptr, &answer.exceptionCode);
  }
  return answer;
}

}  // namespace

void RibbonCallbacks::Call(DISPID id, IDispatch* argument, VARIANT* result) {
  Variant answer;
  switch (id) {
    case kRibbonOnLoad:
      KeepRibbon(argument);
      return;
    case kRibbonGetLabel:
      answer = Variant(RibbonLabel(Language(), ReadRibbonControl(argument).id));
      break;
    case kRibbonGetScreentip:
      answer = Variant(RibbonScreentip(Language(), ReadRibbonControl(argument).id));
      break;
    case kRibbonGetImage:
      if (const auto image = Image(ReadRibbonControl(argument))) answer = Variant(image.Get());
      break;
    default:
      if (const RibbonCommand* const command = FindRibbonCommand(id)) Press(*command, argument);
      return;
  }
  if (result != nullptr) *result = answer.Detach();
}

const std::wstring& RibbonCallbacks::Language() {
  // A language that was guessed before the host connected must not stay.
  const bool lasts = ribbon_ != nullptr && HostSession::Get().Application() != nullptr;
  if (!language_ || !lasts) language_ = GetUiLanguage();
  return *language_;
}

ComPtr<IDispatch> RibbonCallbacks::Image(const RibbonControlNames& control) {
  const int iconId = RibbonIconId(control.id, control.tag);
  if (iconId == 0) return nullptr;
  const int dpi = WindowDpi(ApplicationWindow());
  const bool wps = IsWpsProcess();
  const int pixels = RibbonIconPixels(dpi, wps);
  PaneLog(Concat(L"Excel GetImage dpi=", dpi, L" px=", pixels, L" wps=", wps, L" host=",
                 HostKindText(HostSession::Get().Kind()), L"\r\n"));
  ComPtr<IPictureDisp> picture;
  const HRESULT hr = pictures_.LoadPng(RibbonIconResource(iconId, pixels), picture);
  if (FAILED(hr)) {
    PaneLog(Concat(L"Excel GetImage iconId=", iconId, L" px=", pixels, L" hr=0x", Hex8(hr),
                   L" (ribbon continues)\r\n"));
  }
  return picture;
}

void RibbonCallbacks::KeepRibbon(IDispatch* ribbon) {
  secondTry_.Stop();
  language_.reset();
  ribbon_ = ribbon;
}

void RibbonCallbacks::ReleaseRibbon() {
  secondTry_.Stop();
  ribbon_.Reset();
  language_.reset();
  pictures_.Release();
  blankRows_.Release();
}

void RibbonCallbacks::InvalidateRibbon() {
  language_.reset();
  // A reference of its own: the host may load its ribbon anew inside the call.
  const ComPtr<IDispatch> ribbon = ribbon_;
  if (ribbon == nullptr || !Invalidate(ribbon.Get()).IsBusy()) return;
  // Without a timer the labels change when the host loads its ribbon the next time.
  static_cast<void>(secondTry_.Start(nullptr, kSecondTryMs, [this] {
    if (const ComPtr<IDispatch> later = ribbon_) static_cast<void>(Invalidate(later.Get()));
  }));
}

void RibbonCallbacks::Press(const RibbonCommand& command, IDispatch* control) {
  if (!command.event.empty()) SendBeacon(command.event, L"ribbon");
  if (!command.logLine.empty()) PaneLog(command.logLine);
  switch (command.action) {
    case RibbonAction::kShowPage:
      // Whatever keeps the page from being shown was told to the user there.
      static_cast<void>(panes_.ShowPanePage(command.page, command.mode, control));
      break;
    case RibbonAction::kRemoveBlankRows:
      blankRows_.Press(control);
      break;
    case RibbonAction::kOpenPdfTranslation:
      OpenPdfTranslation(BoxOwner());
      break;
    case RibbonAction::kChooseLanguage:
      ShowUiLanguageDialog(BoxOwner(), [this] { InvalidateRibbon(); });
      break;
  }
}

}  // namespace qv
