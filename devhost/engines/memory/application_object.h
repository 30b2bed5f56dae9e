#pragma once

#include <memory>
#include <string>

#include "engines/common/app_events.h"
#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// The root of the model and the source of its events. Not among the counted objects: the host holds it for
/// the add-in's whole life.
class ApplicationObject final : public DispatchObject {
 public:
  explicit ApplicationObject(std::shared_ptr<Host> host);

  [[nodiscard]] const ClassInfo& Class() const override;
  [[nodiscard]] AppEvents& Events() { return events_; }

  Variant Name(Call& call);
  Variant Version(Call& call);
  Variant Build(Call& call);
  Variant Path(Call& call);
  Variant Caption(Call& call);
  Variant Hwnd(Call& call);
  Variant Self(Call& call);
  Variant Workbooks(Call& call);
  Variant Windows(Call& call);
  Variant ActiveWorkbook(Call& call);
  Variant ActiveWindow(Call& call);
  Variant ActiveSheet(Call& call);
  Variant ActiveCell(Call& call);
  Variant ActiveChart(Call& call);
  Variant Selection(Call& call);
  Variant Worksheets(Call& call);
  Variant Range(Call& call);
  Variant Cells(Call& call);
  template <bool Host::*Field>
  Variant Switch(Call& call) {
    return AccessSwitch(Field, call);
  }
  Variant CutCopyMode(Call& call);
  Variant Calculation(Call& call);
  Variant Calculate(Call& call);
  Variant Union(Call& call);
  Variant Ready(Call& call);
  Variant LanguageSettings(Call& call);

 protected:
  ~ApplicationObject() override;
  void* OtherInterface(REFIID iid) override;

 private:
  [[nodiscard]] Variant AccessSwitch(bool Host::*field, Call& call);
  [[nodiscard]] ComPtr<IDispatch> ActiveSheetObject() const;

  AppEvents events_;
};

/// Answers the user-interface language for every purpose.
class LanguageSettingsObject final : public DispatchObject {
 public:
  explicit LanguageSettingsObject(std::shared_ptr<Host> host) : DispatchObject(std::move(host)) {}

  [[nodiscard]] const ClassInfo& Class() const override;

  Variant LanguageId(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }
};

}  // namespace qv::devhost::memory
