#pragma once

#include <oaidl.h>

#include <array>
#include <atomic>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engines/memory/host.h"
#include "foundation/variant.h"

namespace qv::devhost::memory {

class DispatchObject;

/// Dispatch id of a member name, without regard to case: Excel's own number where one is published, otherwise
/// one that is made up on first use and stays the same for the process. DISPID_UNKNOWN for a name that no
/// class has.
[[nodiscard]] DISPID FindNameId(std::wstring_view name);
/// The same, but makes up a number for a new name.
[[nodiscard]] DISPID InternName(std::wstring_view name);

/// The arguments of one call in natural order.
class Call {
 public:
  /// Throws HostError for argument lists that no member takes.
  Call(WORD flags, const DISPPARAMS& params);

  [[nodiscard]] bool IsPut() const { return put_ != nullptr; }
  /// The value being put; only for a put.
  [[nodiscard]] const VARIANT& Value() const { return *put_; }
  [[nodiscard]] size_t Count() const { return count_; }
  /// Null for an argument that was left out. By-reference arguments stand for their targets.
  [[nodiscard]] const VARIANT* Arg(size_t index) const;
  [[nodiscard]] long Long(size_t index, long fallback) const;
  [[nodiscard]] double Double(size_t index, double fallback) const;
  [[nodiscard]] bool Bool(size_t index, bool fallback) const;

 private:
  static constexpr size_t kMaxArguments = 16;
  std::array<const VARIANT*, kMaxArguments> args_{};
  size_t count_ = 0;
  const VARIANT* put_ = nullptr;
};

// Conversions as the host does them; they throw HostError DISP_E_TYPEMISMATCH.
[[nodiscard]] long ToLong(const VARIANT& value);
[[nodiscard]] double ToDouble(const VARIANT& value);
[[nodiscard]] bool ToBool(const VARIANT& value);
[[nodiscard]] std::wstring ToText(const VARIANT& value);

inline constexpr unsigned kGet = DISPATCH_PROPERTYGET;
inline constexpr unsigned kPut = DISPATCH_PROPERTYPUT;
inline constexpr unsigned kMethod = DISPATCH_METHOD;

/// One member of a class: its name, the ways in which it may be called, and what it does.
struct Member {
  const wchar_t* name;
  unsigned kinds;
  Variant (*handler)(DispatchObject& self, Call& call);
};

/// Name and members of one class of the object model; one instance a class, made on first use.
class ClassInfo {
 public:
  /// `defaultMember` is what dispatch id 0 calls; empty for none. `isCollection` says that item faults apply.
  ClassInfo(std::string name, std::initializer_list<Member> members, std::wstring_view defaultMember = {},
            bool isCollection = false);

  struct Entry {
    Member member;
    std::string name;
    /// Process-wide number for the call counters.
    size_t number;
  };

  [[nodiscard]] const std::string& Name() const { return name_; }
  [[nodiscard]] bool IsCollection() const { return isCollection_; }
  /// Null when the class has no such member.
  [[nodiscard]] const Entry* Find(DISPID id) const;

  /// "Class.Member" of every member of every class made so far, by number.
  [[nodiscard]] static const std::vector<std::string>& CounterNames();

 private:
  std::string name_;
  bool isCollection_;
  std::unordered_map<DISPID, Entry> entries_;
};

/// Base of all objects of the model: one late-bound IDispatch over the class's member table, which counts
/// calls and live objects, applies faults and notices calls from a foreign thread. A new object has one
/// reference.
class DispatchObject : public IDispatch {
 public:
  explicit DispatchObject(std::shared_ptr<Host> host, bool counted = true);
  DispatchObject(const DispatchObject&) = delete;
  DispatchObject& operator=(const DispatchObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override;

  [[nodiscard]] virtual const ClassInfo& Class() const = 0;
  /// Throws when what the object stands for has gone (a closed window, a deleted sheet).
  virtual void RequireAlive() const {}

  [[nodiscard]] Host& GetHost() const { return *host_; }
  [[nodiscard]] const std::shared_ptr<Host>& SharedHost() const { return host_; }

 protected:
  virtual ~DispatchObject();
  /// Further interfaces; a plain pointer without a new reference, or null.
  [[nodiscard]] virtual void* OtherInterface(REFIID) { return nullptr; }
  /// Members that this very object lacks although its class has them.
  [[nodiscard]] virtual bool Lacks(std::string_view) const { return false; }

 private:
  [[nodiscard]] Variant CallMember(const ClassInfo::Entry& entry, DISPID id, WORD flags,
                                   const DISPPARAMS& params);
  [[nodiscard]] HRESULT CheckItemForm(const ClassInfo::Entry& entry, DISPID id, WORD flags) const;

  std::shared_ptr<Host> host_;
  bool counted_;
  std::atomic<ULONG> references_{1};
};

namespace detail {
template <typename>
struct MethodTraits;
template <typename Object>
struct MethodTraits<Variant (Object::*)(Call&)> {
  using Class = Object;
};
}  // namespace detail

/// Table entry function of a member function `Variant Object::Method(Call&)`.
template <auto Method>
Variant Do(DispatchObject& self, Call& call) {
  using Object = typename detail::MethodTraits<decltype(Method)>::Class;
  return (static_cast<Object&>(self).*Method)(call);
}

/// A new object as the answer of a call.
template <typename Object, typename... Args>
[[nodiscard]] Variant Make(Args&&... args) {
  Variant answer;
  VARIANT* const out = answer.Put();
  out->pdispVal = new Object(std::forward<Args>(args)...);
  out->vt = VT_DISPATCH;
  return answer;
}

/// The model's own object behind an argument, or null for anything foreign. Borrowed from the argument.
[[nodiscard]] DispatchObject* NativeObject(const VARIANT* argument);

/// What every object's "Application" answers.
[[nodiscard]] Variant ApplicationOf(DispatchObject& object);

}  // namespace qv::devhost::memory
