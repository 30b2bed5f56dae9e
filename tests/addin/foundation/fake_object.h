#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "foundation/com_object.h"
#include "foundation/variant.h"

namespace qv {

/// An automation object whose members are functions of the test.
class FakeObject : public ComObject<IDispatch> {
 public:
  struct Call {
    WORD flags = 0;
    LCID locale = 0;
    /// In natural order.
    std::vector<Variant> args;
    bool putNamed = false;
    EXCEPINFO* exception = nullptr;
    VARIANT* result = nullptr;
  };
  using Member = std::function<HRESULT(Call&)>;

  void Add(const wchar_t* name, Member member) {
    names_.emplace(name, static_cast<DISPID>(members_.size()));
    members_.push_back(std::move(member));
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    const auto found = names_.find(names[0]);
    ids[0] = found == names_.end() ? DISPID_UNKNOWN : found->second;
    return found == names_.end() ? DISP_E_UNKNOWNNAME : S_OK;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    Call call{flags, locale, {}, false, exception, result};
    for (UINT i = params->cArgs; i > 0; --i)
      call.args.emplace_back(params->rgvarg[i - 1]);
    call.putNamed = params->cNamedArgs == 1 && params->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    return members_.at(static_cast<std::size_t>(id))(call);
  }

 private:
  std::map<std::wstring, DISPID, std::less<>> names_;
  std::vector<Member> members_;
};

}  // namespace qv
