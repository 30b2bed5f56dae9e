#include "engines/memory/application_object.h"

#include <algorithm>

#include "engines/memory/chart_objects.h"
#include "engines/memory/host_events.h"
#include "engines/memory/range_object.h"
#include "engines/memory/window_object.h"
#include "engines/memory/workbook_object.h"
#include "engines/memory/worksheet_object.h"
#include "engines/memory/worksheets_object.h"
#include "foundation/text.h"

namespace qv::devhost::memory {
namespace {

/// How the two kinds of host introduce themselves. What WPS answers for "Name" is not documented; its folder
/// bears the maker's name.
struct HostIdentity {
  const wchar_t* name;
  const wchar_t* version;
  const wchar_t* path;
};
constexpr HostIdentity kExcelIdentity{L"Microsoft Excel", L"16.0",
                                      L"C:\\Program Files\\Microsoft Office\\root\\Office16"};
constexpr HostIdentity kWpsIdentity{L"WPS Spreadsheets", L"12.0",
                                    L"C:\\Program Files\\Kingsoft\\WPS Office\\office6"};
constexpr long kBuild = 17328;

const HostIdentity& IdentityOf(const Host& host) {
  return host.isWps ? kWpsIdentity : kExcelIdentity;
}

Variant NoObject() {
  return Variant(static_cast<IDispatch*>(nullptr));
}

/// Hands a call on to another object of the model.
Variant Forward(IDispatch* object, Call& call, Variant (*handler)(DispatchObject&, Call&)) {
  // Every object here is the model's own.
  if (object == nullptr) Refuse();
  return handler(*static_cast<DispatchObject*>(object), call);
}

}  // namespace

ApplicationObject::ApplicationObject(std::shared_ptr<Host> host)
    : DispatchObject(std::move(host), false),
      events_(*this, GetHost().isWps ? EventStyle::kPositional : EventStyle::kNamed) {
  GetHost().application = this;
  GetHost().events = &events_;
}

ApplicationObject::~ApplicationObject() {
  GetHost().application = nullptr;
  GetHost().events = nullptr;
}

const ClassInfo& ApplicationObject::Class() const {
  using A = ApplicationObject;
  static const ClassInfo info("Application",
                              {
                                  {L"Name", kGet, Do<&A::Name>},
                                  {L"Version", kGet, Do<&A::Version>},
                                  {L"Build", kGet, Do<&A::Build>},
                                  {L"Path", kGet, Do<&A::Path>},
                                  {L"Caption", kGet, Do<&A::Caption>},
                                  {L"Hwnd", kGet, Do<&A::Hwnd>},
                                  {L"Application", kGet, Do<&A::Self>},
                                  {L"Parent", kGet, Do<&A::Self>},
                                  {L"Workbooks", kGet, Do<&A::Workbooks>},
                                  {L"Windows", kGet, Do<&A::Windows>},
                                  {L"ActiveWorkbook", kGet, Do<&A::ActiveWorkbook>},
                                  {L"ActiveWindow", kGet, Do<&A::ActiveWindow>},
                                  {L"ActiveSheet", kGet, Do<&A::ActiveSheet>},
                                  {L"ActiveCell", kGet, Do<&A::ActiveCell>},
                                  {L"ActiveChart", kGet, Do<&A::ActiveChart>},
                                  {L"Selection", kGet, Do<&A::Selection>},
                                  {L"Worksheets", kGet, Do<&A::Worksheets>},
                                  {L"Sheets", kGet, Do<&A::Worksheets>},
                                  {L"Range", kGet, Do<&A::Range>},
                                  {L"Cells", kGet, Do<&A::Cells>},
                                  {L"DisplayAlerts", kGet | kPut, Do<&A::Switch<&Host::displayAlerts>>},
                                  {L"ScreenUpdating", kGet | kPut, Do<&A::Switch<&Host::screenUpdating>>},
                                  {L"EnableEvents", kGet | kPut, Do<&A::Switch<&Host::enableEvents>>},
                                  {L"Interactive", kGet | kPut, Do<&A::Switch<&Host::interactive>>},
                                  {L"CutCopyMode", kGet | kPut, Do<&A::CutCopyMode>},
                                  {L"Calculation", kGet | kPut, Do<&A::Calculation>},
                                  {L"Calculate", kMethod, Do<&A::Calculate>},
                                  {L"Union", kMethod, Do<&A::Union>},
                                  {L"Ready", kGet, Do<&A::Ready>},
                                  {L"LanguageSettings", kGet, Do<&A::LanguageSettings>},
                              },
                              L"Name");
  return info;
}

void* ApplicationObject::OtherInterface(REFIID iid) {
  return events_.Query(iid);
}

Variant ApplicationObject::Name(Call&) {
  return Variant(IdentityOf(GetHost()).name);
}
Variant ApplicationObject::Version(Call&) {
  return Variant(IdentityOf(GetHost()).version);
}
Variant ApplicationObject::Build(Call&) {
  return Variant(kBuild);
}
Variant ApplicationObject::Path(Call&) {
  return Variant(IdentityOf(GetHost()).path);
}

Variant ApplicationObject::Caption(Call&) {
  const std::wstring name = IdentityOf(GetHost()).name;
  const auto window = GetHost().ActiveWindow();
  return Variant(window == nullptr ? name : Concat(GetHost().CaptionOf(*window), L" - ", name));
}

Variant ApplicationObject::Hwnd(Call&) {
  if (GetHost().givenHwnd != 0) return Variant(GetHost().givenHwnd);
  // One top-level window a document in the one host, one for all of them in the other.
  constexpr long kFrame = 0x10000;
  const auto window = GetHost().ActiveWindow();
  return Variant(GetHost().isWps || window == nullptr ? kFrame : window->hwnd);
}

Variant ApplicationObject::Self(Call&) {
  return Variant(this);
}
Variant ApplicationObject::Workbooks(Call&) {
  return Make<WorkbooksObject>(SharedHost());
}

Variant ApplicationObject::Windows(Call& call) {
  const VARIANT* index = call.Arg(0);
  if (index == nullptr) return Make<WindowsObject>(SharedHost(), nullptr);
  return Make<WindowObject>(SharedHost(), FindWindowItem(GetHost(), nullptr, *index));
}

Variant ApplicationObject::ActiveWorkbook(Call&) {
  const auto workbook = GetHost().ActiveWorkbook();
  return workbook == nullptr ? NoObject() : Make<WorkbookObject>(SharedHost(), workbook);
}

Variant ApplicationObject::ActiveWindow(Call&) {
  const auto window = GetHost().ActiveWindow();
  return window == nullptr ? NoObject() : Make<WindowObject>(SharedHost(), window);
}

ComPtr<IDispatch> ApplicationObject::ActiveSheetObject() const {
  const auto window = GetHost().ActiveWindow();
  if (window == nullptr || window->activeSheet == nullptr) return nullptr;
  return Make<WorksheetObject>(SharedHost(), window->activeSheet).Object();
}

Variant ApplicationObject::ActiveSheet(Call&) {
  return Variant(ActiveSheetObject().Get());
}

Variant ApplicationObject::ActiveCell(Call& call) {
  if (GetHost().ActiveWindow() == nullptr) return NoObject();
  return Forward(ActiveWindow(call).Object().Get(), call, Do<&WindowObject::ActiveCell>);
}

Variant ApplicationObject::ActiveChart(Call&) {
  const auto window = GetHost().ActiveWindow();
  if (window == nullptr || window->activeSheet == nullptr) return NoObject();
  const SheetView& view = window->ViewOf(*window->activeSheet);
  auto chart = view.selectedChart;
  if (!view.selectedShapes.empty()) chart = std::dynamic_pointer_cast<Chart>(view.selectedShapes.front());
  if (chart == nullptr || chart->deleted) return NoObject();
  return Make<ChartObject>(SharedHost(), window->activeSheet, chart);
}

Variant ApplicationObject::Selection(Call& call) {
  if (GetHost().ActiveWindow() == nullptr) return NoObject();
  return Forward(ActiveWindow(call).Object().Get(), call, Do<&WindowObject::Selection>);
}

Variant ApplicationObject::Worksheets(Call& call) {
  return Forward(ActiveWorkbook(call).Object().Get(), call, Do<&WorkbookObject::Worksheets>);
}

Variant ApplicationObject::Range(Call& call) {
  return Forward(ActiveSheetObject().Get(), call, Do<&WorksheetObject::Range>);
}

Variant ApplicationObject::Cells(Call& call) {
  return Forward(ActiveSheetObject().Get(), call, Do<&WorksheetObject::Cells>);
}

Variant ApplicationObject::AccessSwitch(bool Host::*field, Call& call) {
  if (!call.IsPut()) return Variant(GetHost().*field);
  GetHost().*field = ToBool(call.Value());
  return {};
}

Variant ApplicationObject::CutCopyMode(Call& call) {
  if (!call.IsPut()) return Variant(GetHost().cutCopyMode);
  // Whatever is put ends the mode.
  GetHost().cutCopyMode = 0;
  return {};
}

Variant ApplicationObject::Calculation(Call& call) {
  // Without a workbook there is nothing that has a mode.
  if (GetHost().workbooks.empty()) Refuse();
  if (!call.IsPut()) return Variant(GetHost().calculation);
  constexpr long kModes[] = {-4105, -4135, 2};
  const long mode = ToLong(call.Value());
  if (std::find(std::begin(kModes), std::end(kModes), mode) == std::end(kModes)) Refuse();
  GetHost().calculation = mode;
  return {};
}

Variant ApplicationObject::Calculate(Call&) {
  return {};
}
Variant ApplicationObject::Union(Call& call) {
  return UnionOfArguments(SharedHost(), call);
}
Variant ApplicationObject::Ready(Call&) {
  return Variant(true);
}
Variant ApplicationObject::LanguageSettings(Call&) {
  return Make<LanguageSettingsObject>(SharedHost());
}

const ClassInfo& LanguageSettingsObject::Class() const {
  using L = LanguageSettingsObject;
  static const ClassInfo info("LanguageSettings", {
                                                      {L"LanguageID", kGet, Do<&L::LanguageId>},
                                                      {L"Application", kGet, Do<&L::Application>},
                                                  });
  return info;
}

Variant LanguageSettingsObject::LanguageId(Call& call) {
  constexpr long kPurposes = 5;
  const long purpose = call.Long(0, 0);
  if (purpose < 1 || purpose > kPurposes) throw HostError{E_INVALIDARG};
  return Variant(GetHost().uiLanguage);
}

}  // namespace qv::devhost::memory
