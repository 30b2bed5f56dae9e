#pragma once

#include <ocidl.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/call_log.h"
#include "host/ribbon_description.h"
#include "host/ribbon_objects.h"

namespace qv::devhost {

/// One add-in's ribbon: its description, and what the add-in's callbacks say about it. Callbacks are called
/// late-bound and their answers kept until the add-in invalidates them, as Office does. UI thread.
class Ribbon {
 public:
  /// Reads the XML and gives the add-in its ribbon object. With XML that is refused the ribbon is empty, the
  /// reason is in `Refusal` and on standard error. `callbacks` is what GetCustomUI was asked of. The log is
  /// borrowed.
  Ribbon(ComPtr<IDispatch> callbacks, std::wstring_view xml, CallLog& log);
  Ribbon(const Ribbon&) = delete;
  Ribbon& operator=(const Ribbon&) = delete;
  ~Ribbon();

  [[nodiscard]] const RibbonDescription& Description() const { return description_; }
  /// Why nothing is shown; empty when the XML was taken.
  [[nodiscard]] const std::string& Refusal() const { return refusal_; }
  /// Callbacks that failed or gave the wrong type so far, "getLabel of btnX: 0x…".
  [[nodiscard]] const std::vector<std::string>& Errors() const { return errors_; }
  /// The item with this id, or null.
  [[nodiscard]] const RibbonItem* Find(const std::wstring& id) const;

  [[nodiscard]] std::wstring Label(const RibbonItem& item);
  [[nodiscard]] std::wstring Screentip(const RibbonItem& item);
  /// Null when there is none.
  [[nodiscard]] ComPtr<IPicture> Image(const RibbonItem& item);

  /// Presses a button as a user would. `window` is the host's Window object in which it was pressed. The
  /// add-in may open boxes with loops of their own before this comes back.
  void Press(const RibbonItem& button, ComPtr<IDispatch> window);

  /// Gives the host's Window object that label and picture callbacks find as their context; it may be null.
  void SetContext(std::function<ComPtr<IDispatch>()> context) { context_ = std::move(context); }
  /// Called after the add-in has invalidated anything.
  void OnChanged(std::function<void()> action) { changed_ = std::move(action); }

 private:
  /// What the callbacks have said about one control.
  struct Known {
    std::optional<std::wstring> label;
    std::optional<std::wstring> screentip;
    std::optional<ComPtr<IPicture>> image;
  };

  void Load();
  void Forget(const std::wstring& id);
  [[nodiscard]] std::wstring Text(const RibbonItem& item, const RibbonText& text,
                                  std::optional<std::wstring> Known::*place);
  /// Calls a callback with its one argument.
  HRESULT Call(const std::wstring& name, IDispatch* argument, const std::wstring& about, Variant& result);
  [[nodiscard]] ComPtr<IDispatch> ControlFor(const RibbonItem& item, ComPtr<IDispatch> window) const;
  void AddError(const std::wstring& callback, const std::wstring& about, const std::string& what);

  ComPtr<IDispatch> callbacks_;
  CallLog& log_;
  RibbonDescription description_;
  std::string refusal_;
  std::vector<std::string> errors_;
  std::map<std::wstring, Known> known_;
  ComPtr<RibbonUi> ui_;
  std::function<ComPtr<IDispatch>()> context_;
  std::function<void()> changed_;
};

}  // namespace qv::devhost
