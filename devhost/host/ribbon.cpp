#include "host/ribbon.h"

#include <cstdio>
#include <stdexcept>

#include "foundation/text.h"

namespace qv::devhost {
namespace {

const RibbonItem* FindIn(const std::vector<RibbonItem>& items, const std::wstring& id) {
  for (const auto& item : items) {
    if (item.id == id) return &item;
    if (const auto* found = FindIn(item.children, id)) return found;
  }
  return nullptr;
}

}  // namespace

Ribbon::Ribbon(ComPtr<IDispatch> callbacks, std::wstring_view xml, CallLog& log)
    : callbacks_(std::move(callbacks)), log_(log) {
  try {
    description_ = ReadRibbon(xml);
  } catch (const std::runtime_error& failure) {
    refusal_ = failure.what();
    std::fprintf(stderr, "devhost: the ribbon is not shown: %s\n", failure.what());
    return;
  }
  Load();
}

Ribbon::~Ribbon() {
  if (ui_) ui_->Detach();
}

void Ribbon::Load() {
  if (description_.onLoad.empty()) return;
  ui_ = MakeCom<RibbonUi>([this](const std::wstring& id) { Forget(id); });
  Variant ignored;
  static_cast<void>(Call(description_.onLoad, ui_.Get(), L"the ribbon", ignored));
}

void Ribbon::Forget(const std::wstring& id) {
  if (id.empty()) {
    known_.clear();
  } else {
    known_.erase(id);
  }
  if (changed_) changed_();
}

const RibbonItem* Ribbon::Find(const std::wstring& id) const {
  return FindIn(description_.tabs, id);
}

std::wstring Ribbon::Label(const RibbonItem& item) {
  return Text(item, item.label, &Known::label);
}

std::wstring Ribbon::Screentip(const RibbonItem& item) {
  return Text(item, item.screentip, &Known::screentip);
}

std::wstring Ribbon::Text(const RibbonItem& item, const RibbonText& text,
                          std::optional<std::wstring> Known::*place) {
  if (text.callback.empty()) return text.fixed;
  if (const auto& known = known_[item.id].*place) return *known;
  Variant result;
  const HRESULT hr = Call(text.callback, ControlFor(item, nullptr).Get(), item.id, result);
  if (SUCCEEDED(hr) && !result.IsText()) AddError(text.callback, item.id, "the answer is no text");
  // Looked up anew: the callback may have invalidated it.
  return *(known_[item.id].*place = result.Text());
}

ComPtr<IPicture> Ribbon::Image(const RibbonItem& item) {
  if (item.getImage.empty()) return nullptr;
  if (const auto& known = known_[item.id].image) return *known;
  Variant result;
  ComPtr<IPicture> picture;
  if (SUCCEEDED(Call(item.getImage, ControlFor(item, nullptr).Get(), item.id, result))) {
    const auto object = result.Object();
    const bool isPicture = object && SUCCEEDED(object.As(&picture));
    const bool isNone = !object && (result.Type() == VT_EMPTY || result.Type() == VT_DISPATCH);
    if (!isPicture && !isNone) AddError(item.getImage, item.id, "the answer is no picture");
  }
  known_[item.id].image = picture;
  return picture;
}

void Ribbon::Press(const RibbonItem& button, ComPtr<IDispatch> window) {
  Variant ignored;
  if (button.onAction.empty()) return;
  static_cast<void>(Call(button.onAction, ControlFor(button, std::move(window)).Get(), button.id, ignored));
}

ComPtr<IDispatch> Ribbon::ControlFor(const RibbonItem& item, ComPtr<IDispatch> window) const {
  if (!window && context_) window = context_();
  return MakeCom<RibbonControl>(item.id, item.tag, std::move(window));
}

HRESULT Ribbon::Call(const std::wstring& name, IDispatch* argument, const std::wstring& about,
                     Variant& result) {
  std::wstring mutableName = name;
  LPOLESTR names[] = {mutableName.data()};
  DISPID id = DISPID_UNKNOWN;
  HRESULT hr = callbacks_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (SUCCEEDED(hr)) {
    Variant value(argument);
    DISPPARAMS arguments{&value.Get(), nullptr, 1, 0};
    hr = callbacks_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments, result.Put(),
                            nullptr, nullptr);
  }
  log_.Add(ToUtf8(Concat(L"ribbon ", name, L" ", about)), hr);
  if (FAILED(hr)) AddError(name, about, HresultText(hr));
  return hr;
}

void Ribbon::AddError(const std::wstring& callback, const std::wstring& about, const std::string& what) {
  errors_.push_back(ToUtf8(Concat(callback, L" of ", about, L": ")) + what);
}

}  // namespace qv::devhost
