#include "engines/calc/wire_values.h"

#include <cstdint>

#include "engines/calc/remote_object.h"
#include "foundation/text.h"

namespace qv::devhost::calc {

using nlohmann::json;

namespace {

class ArrayAccess {
 public:
  explicit ArrayAccess(SAFEARRAY* array) : array_(array) {
    if (FAILED(SafeArrayAccessData(array_, reinterpret_cast<void**>(&data_)))) throw std::bad_alloc();
  }
  ArrayAccess(const ArrayAccess&) = delete;
  ArrayAccess& operator=(const ArrayAccess&) = delete;
  ~ArrayAccess() { SafeArrayUnaccessData(array_); }
  [[nodiscard]] VARIANT& operator[](size_t index) const { return data_[index]; }

 private:
  SAFEARRAY* array_;
  VARIANT* data_ = nullptr;
};

long Extent(SAFEARRAY* array, UINT dimension) {
  long low = 0;
  long high = -1;
  static_cast<void>(SafeArrayGetLBound(array, dimension, &low));
  static_cast<void>(SafeArrayGetUBound(array, dimension, &high));
  return high - low + 1;
}

json ArrayToWire(const VARIANT& value, const RemoteSession* session) {
  SAFEARRAY* array = value.parray;
  const UINT dimensions = SafeArrayGetDim(array);
  if ((value.vt & VT_TYPEMASK) != VT_VARIANT || dimensions < 1 || dimensions > 2) {
    throw std::invalid_argument("array");
  }
  const auto rows = static_cast<size_t>(Extent(array, 1));
  const ArrayAccess elements(array);
  if (dimensions == 1) {
    json list = json::array();
    for (size_t i = 0; i < rows; ++i)
      list.push_back(ToWire(elements[i], session));
    LONG low = 0;
    static_cast<void>(SafeArrayGetLBound(array, 1, &low));
    return {{"list", std::move(list)}, {"low", low}};
  }
  const auto columns = static_cast<size_t>(Extent(array, 2));
  json lines = json::array();
  for (size_t row = 0; row < rows; ++row) {
    json line = json::array();
    // The first dimension runs fastest in memory.
    for (size_t column = 0; column < columns; ++column)
      line.push_back(ToWire(elements[column * rows + row], session));
    lines.push_back(std::move(line));
  }
  return {{"array", std::move(lines)}};
}

json ObjectToWire(IUnknown* object, const RemoteSession* session) {
  ComPtr<RemoteObject> held;
  if (object == nullptr ||
      FAILED(object->QueryInterface(kRemoteObjectIid, reinterpret_cast<void**>(held.GetAddressOf())))) {
    throw std::invalid_argument("object");
  }
  if (held->Session() != session) throw std::invalid_argument("object");
  return {{"object", held->Handle()}};
}

Variant ArrayFromWire(const json& value, const std::shared_ptr<RemoteSession>& session) {
  const json& lines = value.at("array");
  const auto rows = value.at("rows").get<ULONG>();
  const auto columns = value.at("columns").get<ULONG>();
  SAFEARRAYBOUND bounds[] = {{rows, 1}, {columns, 1}};
  Variant result;
  SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (array == nullptr) throw std::bad_alloc();
  result.Get().vt = VT_ARRAY | VT_VARIANT;
  result.Get().parray = array;
  const ArrayAccess elements(array);
  for (size_t row = 0; row < lines.size(); ++row) {
    const json& line = lines[row];
    for (size_t column = 0; column < line.size(); ++column)
      elements[column * rows + row] = FromWire(line[column], session).Detach();
  }
  return result;
}

Variant WholeNumber(std::int64_t number, bool always64) {
  if (!always64 && number >= INT32_MIN && number <= INT32_MAX) return Variant(static_cast<long>(number));
  Variant result;
  result.Get().vt = VT_I8;
  result.Get().llVal = number;
  return result;
}

Variant ErrorCode(const json& scode) {
  Variant result;
  result.Get().vt = VT_ERROR;
  result.Get().scode = static_cast<SCODE>(scode.get<std::int64_t>());
  return result;
}

Variant SerialDate(const json& serial) {
  Variant result;
  result.Get().vt = VT_DATE;
  result.Get().date = serial.get<double>();
  return result;
}

Variant TaggedFromWire(const json& value, const std::shared_ptr<RemoteSession>& session) {
  if (value.contains("array")) return ArrayFromWire(value, session);
  if (value.contains("object")) {
    ComPtr<IDispatch> object;
    // MinGW's ComPtr::Attach adds a reference, so the first one is handed over this way.
    *object.GetAddressOf() =
        new RemoteObject(session, value.at("object").get<int>(), value.at("type").get<std::string>());
    return Variant(object.Get());
  }
  if (value.contains("error")) return ErrorCode(value.at("error"));
  if (value.contains("date")) return SerialDate(value.at("date"));
  if (value.contains("long64")) return WholeNumber(value.at("long64").get<std::int64_t>(), true);
  if (value.contains("nothing")) return Variant(static_cast<IDispatch*>(nullptr));
  Variant null;
  null.Get().vt = VT_NULL;
  return null;
}

}  // namespace

json ToWire(const VARIANT& value, const RemoteSession* session) {
  if ((value.vt & VT_BYREF) != 0) {
    const Variant copy(value);
    return ToWire(copy.Get(), session);
  }
  if ((value.vt & VT_ARRAY) != 0) return ArrayToWire(value, session);
  switch (value.vt) {
    case VT_EMPTY:
      return nullptr;
    case VT_NULL:
      return {{"null", true}};
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE;
    case VT_BSTR:
      return ToUtf8({value.bstrVal != nullptr ? value.bstrVal : L"", SysStringLen(value.bstrVal)});
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return ObjectToWire(value.punkVal, session);
    case VT_ERROR:
      if (value.scode == DISP_E_PARAMNOTFOUND) return {{"missing", true}};
      return {{"error", static_cast<unsigned long>(value.scode)}};
    case VT_DATE:
      return {{"date", value.date}};
    case VT_R4:
      return static_cast<double>(value.fltVal);
    case VT_R8:
      return value.dblVal;
    default:
      break;
  }
  const bool whole = value.vt != VT_CY && value.vt != VT_DECIMAL;
  Variant number(value);
  if (FAILED(VariantChangeType(&number.Get(), &number.Get(), 0, whole ? VT_I8 : VT_R8))) {
    throw std::invalid_argument("value");
  }
  return whole ? json(static_cast<std::int64_t>(number->llVal)) : json(number->dblVal);
}

Variant FromWire(const json& value, const std::shared_ptr<RemoteSession>& session) {
  switch (value.type()) {
    case json::value_t::boolean:
      return Variant(value.get<bool>());
    case json::value_t::number_integer:
    case json::value_t::number_unsigned:
      return WholeNumber(value.get<std::int64_t>(), false);
    case json::value_t::number_float:
      return Variant(value.get<double>());
    case json::value_t::string:
      return Variant(FromUtf8(value.get_ref<const std::string&>()));
    case json::value_t::object:
      return TaggedFromWire(value, session);
    default:
      return Variant();
  }
}

}  // namespace qv::devhost::calc
