#pragma once

#include <unknwn.h>
#include <windows.h>
#include <wrl/client.h>

#include <atomic>
#include <utility>

namespace qv {

/// Number of live COM objects and server locks of this module; `DllCanUnloadNow` asks for zero.
class ModuleLocks {
 public:
  static void Add() { ++count_; }
  static void Remove() { --count_; }
  [[nodiscard]] static long Count() { return count_; }

 private:
  static inline std::atomic<long> count_{0};
};

/// The interfaces that a COM interface derives from, besides IUnknown; specialise it where an object must
/// answer them too (IOleWindow for IOleInPlaceObject, IDispatch for a dual interface).
template <typename Interface>
struct ComBaseOf {
  using Type = IUnknown;
};

/// Base of every COM object of the add-in: reference count, the module's lock count and `QueryInterface` over
/// the listed interfaces and their direct bases (`ComBaseOf`). The first interface gives the object's
/// identity. A new object starts with one reference, which belongs to its creator: make it with `MakeCom`, or
/// hand that reference over with `TakeReference`.
template <typename First, typename... Rest>
class ComObject : public First, public Rest... {
 public:
  ComObject() { ModuleLocks::Add(); }
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (IsEqualIID(iid, __uuidof(IUnknown))) {
      *object = static_cast<First*>(this);
    } else if (!(Answer<First>(iid, object) || ... || Answer<Rest>(iid, object))) {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }

  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      // A destructor that hands out `this` once more must not end in a second delete.
      references_ = 1;
      delete this;
    }
    return left;
  }

 protected:
  virtual ~ComObject() { ModuleLocks::Remove(); }

 private:
  template <typename Interface>
  bool Answer(REFIID iid, void** object) {
    using Base = typename ComBaseOf<Interface>::Type;
    if (!IsEqualIID(iid, __uuidof(Interface)) && !IsEqualIID(iid, __uuidof(Base))) return false;
    *object = static_cast<Interface*>(this);
    return true;
  }

  std::atomic<ULONG> references_{1};
};

/// A pointer that takes over the reference that the caller holds. Used instead of ComPtr::Attach, which in
/// MinGW's header adds a reference of its own, so that the object would never go away.
template <typename Interface>
[[nodiscard]] Microsoft::WRL::ComPtr<Interface> TakeReference(Interface* object) {
  Microsoft::WRL::ComPtr<Interface> pointer;
  *pointer.GetAddressOf() = object;
  return pointer;
}

/// A new COM object, owned by the pointer.
template <typename Object, typename... Arguments>
[[nodiscard]] Microsoft::WRL::ComPtr<Object> MakeCom(Arguments&&... arguments) {
  return TakeReference(new Object(std::forward<Arguments>(arguments)...));
}

}  // namespace qv
