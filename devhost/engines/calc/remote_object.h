#pragma once

#include <oaidl.h>

#include <atomic>
#include <memory>
#include <string>

#include "engines/calc/remote_session.h"
#include "foundation/variant.h"

namespace qv::devhost::calc {

/// By this private interface an object of this engine is recognised among foreign ones; the pointer that
/// comes back is a `RemoteObject*`.
inline constexpr IID kRemoteObjectIid = {
    0x6f0c3a52, 0x8d1b, 0x4c5e, {0x9a, 0x27, 0x51, 0xe4, 0xd0, 0x3b, 0x77, 0xc8}};

/// The dispinterface of Excel's Range. Its seven slots are those of IDispatch.
inline constexpr IID kRangeDispatchIid = {
    0x00020846, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

/// An object of the office, late bound. Starts with one reference, which belongs to its creator.
class RemoteObject : public IDispatch {
 public:
  /// `handle` is the office's number of the object, `type` the class it belongs to, "Range" for example.
  RemoteObject(std::shared_ptr<RemoteSession> session, int handle, std::string type);
  RemoteObject(const RemoteObject&) = delete;
  RemoteObject& operator=(const RemoteObject&) = delete;

  [[nodiscard]] int Handle() const { return handle_; }
  [[nodiscard]] const RemoteSession* Session() const { return session_.get(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID unused, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID unused, LCID locale, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override;

 protected:
  virtual ~RemoteObject();
  [[nodiscard]] const std::shared_ptr<RemoteSession>& SharedSession() const { return session_; }

 private:
  /// The wire form of a call. Throws std::invalid_argument for an argument that cannot travel.
  [[nodiscard]] nlohmann::json Request(const std::string& name, WORD flags, const DISPPARAMS& params) const;
  [[nodiscard]] HRESULT Perform(DISPID member, WORD flags, const DISPPARAMS& params, VARIANT* result,
                                EXCEPINFO* exception);

  std::shared_ptr<RemoteSession> session_;
  int handle_;
  std::string type_;
  std::atomic<ULONG> references_{1};
};

}  // namespace qv::devhost::calc
