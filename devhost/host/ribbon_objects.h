#pragma once

#include <functional>
#include <string>

#include "addin/office_interfaces.h"
#include "foundation/variant.h"
#include "host/host_dispatch.h"

namespace qv::devhost {

/// The control that a ribbon callback is about.
class RibbonControl final : public HostDispatch<IRibbonControl> {
 public:
  /// `context` is the host's Window object, or null.
  RibbonControl(std::wstring id, std::wstring tag, ComPtr<IDispatch> context)
      : id_(std::move(id)), tag_(std::move(tag)), context_(std::move(context)) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Id(BSTR* id) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Context(IDispatch** context) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Tag(BSTR* tag) noexcept override;

 private:
  [[nodiscard]] std::span<const DispatchName> Names() const noexcept override;

  std::wstring id_;
  std::wstring tag_;
  ComPtr<IDispatch> context_;
};

/// The ribbon object that the add-in's onLoad callback gets.
class RibbonUi final : public HostDispatch<IRibbonUI> {
 public:
  /// Gets the id of the control whose texts and picture are no longer valid, or an empty one for all.
  using Invalidated = std::function<void(const std::wstring& id)>;
  explicit RibbonUi(Invalidated invalidated) : invalidated_(std::move(invalidated)) {}

  /// The ribbon is gone; whoever still holds the object gets failures.
  void Detach() { invalidated_ = nullptr; }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) noexcept override;
  HRESULT STDMETHODCALLTYPE Invalidate() noexcept override;
  HRESULT STDMETHODCALLTYPE InvalidateControl(BSTR controlId) noexcept override;
  HRESULT STDMETHODCALLTYPE InvalidateControlMso(BSTR controlId) noexcept override;
  HRESULT STDMETHODCALLTYPE ActivateTab(BSTR controlId) noexcept override;
  HRESULT STDMETHODCALLTYPE ActivateTabMso(BSTR controlId) noexcept override;
  HRESULT STDMETHODCALLTYPE ActivateTabQ(BSTR controlId, BSTR namespaceUri) noexcept override;

 private:
  [[nodiscard]] std::span<const DispatchName> Names() const noexcept override;
  [[nodiscard]] HRESULT Tell(std::wstring_view id) noexcept;

  Invalidated invalidated_;
};

}  // namespace qv::devhost
