#include <map>

#include "addin_test.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/addin_library.h"

namespace qv {
namespace {

using Export = HRESULT(STDAPICALLTYPE*)();

/// Every value of a key of the current user and of the keys below it, "key@name" → data; the module's path
/// reads %MODULE%.
void Collect(const std::wstring& path, std::map<std::string, std::string>& values) {
  UniqueRegistryKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, key.Put()) != ERROR_SUCCESS) return;
  values[ToUtf8(path)] = "key";
  wchar_t name[256];
  BYTE data[2048];
  for (DWORD index = 0;; ++index) {
    DWORD nameLength = 256;
    DWORD bytes = sizeof(data);
    DWORD type = 0;
    if (RegEnumValueW(key.Get(), index, name, &nameLength, nullptr, &type, data, &bytes) != ERROR_SUCCESS)
      break;
    std::string text;
    if (type == REG_DWORD) {
      text = "dword " + std::to_string(*reinterpret_cast<const DWORD*>(data));
    } else {
      text = ToUtf8(ReplaceAll(reinterpret_cast<const wchar_t*>(data), AddinPath(), L"%MODULE%"));
    }
    values[ToUtf8(path + L"@" + name)] = text;
  }
  for (DWORD index = 0;; ++index) {
    DWORD nameLength = 256;
    if (RegEnumKeyExW(key.Get(), index, name, &nameLength, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS)
      break;
    Collect(path + L"\\" + name, values);
  }
}

constexpr wchar_t kAllowList[] = L"Software\\Kingsoft\\Office\\ET\\AddinsWL";

std::map<std::string, std::string> OwnValues() {
  std::map<std::string, std::string> values;
  for (const wchar_t* key :
       {L"Software\\Classes\\ExcelAddin.Connect", L"Software\\Classes\\ExcelAddin.Connect.1",
        L"Software\\Classes\\Quorvantis.ExcelPane", L"Software\\Classes\\Quorvantis.ExcelPane.1",
        L"Software\\Classes\\CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}",
        L"Software\\Classes\\CLSID\\{B2C3D4E5-F6A7-8901-BCDE-F12345678901}",
        L"Software\\Microsoft\\Office\\Excel\\Addins\\ExcelAddin.Connect", kAllowList}) {
    Collect(key, values);
  }
  return values;
}

class Registration : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(Call("DllUnregisterServer"), S_OK); }

  HRESULT Call(const char* name) {
    const auto function =
        reinterpret_cast<Export>(reinterpret_cast<void*>(GetProcAddress(module_.Get(), name)));
    return function != nullptr ? function() : E_NOTIMPL;
  }

  UniqueModule module_{LoadLibraryW(AddinPath().c_str())};
};

TEST_F(Registration, WritesEveryValueAndTwiceTheSame) {
  const std::map<std::string, std::string> expected = {
      {"Software\\Classes\\ExcelAddin.Connect@", "Connect Class"},
      {"Software\\Classes\\ExcelAddin.Connect\\CLSID@", "{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}"},
      {"Software\\Classes\\ExcelAddin.Connect\\CurVer@", "ExcelAddin.Connect.1"},
      {"Software\\Classes\\Quorvantis.ExcelPane\\CurVer@", "Quorvantis.ExcelPane.1"},
      {"Software\\Classes\\CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\\InprocServer32@", "%MODULE%"},
      {"Software\\Classes\\CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\\InprocServer32@ThreadingModel",
       "Apartment"},
      {"Software\\Classes\\CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\\Programmable", "key"},
      {"Software\\Classes\\CLSID\\{B2C3D4E5-F6A7-8901-BCDE-F12345678901}@", "Quorvantis Excel Pane"},
      {"Software\\Classes\\CLSID\\{B2C3D4E5-F6A7-8901-BCDE-F12345678901}\\Control", "key"},
      {"Software\\Classes\\CLSID\\{B2C3D4E5-F6A7-8901-BCDE-F12345678901}\\Insertable", "key"},
      {"Software\\Classes\\CLSID\\{B2C3D4E5-F6A7-8901-BCDE-F12345678901}\\MiscStatus@", "0"},
      {"Software\\Classes\\CLSID\\{B2C3D4E5-F6A7-8901-BCDE-F12345678901}\\MiscStatus\\1@", "131473"},
      {"Software\\Classes\\CLSID\\{B2C3D4E5-F6A7-8901-BCDE-F12345678901}\\TypeLib@",
       "{E1F2A3B4-C5D6-7890-1234-567890ABCDEF}"},
      {"Software\\Microsoft\\Office\\Excel\\Addins\\ExcelAddin.Connect@FriendlyName", "Quorvantis Excel"},
      {"Software\\Microsoft\\Office\\Excel\\Addins\\ExcelAddin.Connect@Description",
       "整表或选区翻译，写回 Excel 单元格。"},
      {"Software\\Microsoft\\Office\\Excel\\Addins\\ExcelAddin.Connect@LoadBehavior", "dword 3"},
      {"Software\\Microsoft\\Office\\Excel\\Addins\\ExcelAddin.Connect@CommandLineSafe", "dword 1"},
      {"Software\\Kingsoft\\Office\\ET\\AddinsWL@ExcelAddin.Connect", ""},
  };
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);
  const auto first = OwnValues();
  for (const auto& [name, data] : expected) {
    ASSERT_TRUE(first.contains(name)) << name;
    EXPECT_EQ(first.at(name), data) << name;
  }
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);
  EXPECT_EQ(OwnValues(), first);
}

TEST_F(Registration, LeavesNothingBehind) {
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);
  ASSERT_EQ(Call("DllUnregisterServer"), S_OK);
  auto left = OwnValues();
  // The list itself belongs to WPS.
  left.erase(ToUtf8(kAllowList));
  EXPECT_TRUE(left.empty()) << left.begin()->first;
  ComPtr<ITypeLib> library;
  const GUID libraryId = {0xE1F2A3B4, 0xC5D6, 0x7890, {0x12, 0x34, 0x56, 0x78, 0x90, 0xAB, 0xCD, 0xEF}};
  EXPECT_NE(LoadRegTypeLib(libraryId, 1, 0, LOCALE_NEUTRAL, &library), S_OK);
}

TEST_F(Registration, UnregistersWithoutWps) {
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);
  ASSERT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Kingsoft"), ERROR_SUCCESS);
  EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
  EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
}

TEST_F(Registration, TakesAwayWhatItCan) {
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);
  // Of the first script's first key, nobody may do anything with it.
  UniqueRegistryKey key;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Classes\\ExcelAddin.Connect.1", 0,
                          WRITE_DAC | READ_CONTROL, key.Put()),
            ERROR_SUCCESS);
  ACL nobody{};
  InitializeAcl(&nobody, sizeof(nobody), ACL_REVISION);
  SECURITY_DESCRIPTOR descriptor{};
  InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
  SetSecurityDescriptorDacl(&descriptor, TRUE, &nobody, FALSE);
  ASSERT_EQ(RegSetKeySecurity(key.Get(), DACL_SECURITY_INFORMATION, &descriptor), ERROR_SUCCESS);

  EXPECT_EQ(Call("DllUnregisterServer"), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  SetSecurityDescriptorDacl(&descriptor, TRUE, nullptr, FALSE);
  ASSERT_EQ(RegSetKeySecurity(key.Get(), DACL_SECURITY_INFORMATION, &descriptor), ERROR_SUCCESS);
  for (const auto& [name, data] : OwnValues()) {
    EXPECT_TRUE(name.starts_with("Software\\Classes\\ExcelAddin.Connect.1") || name == ToUtf8(kAllowList))
        << name;
  }
}

TEST_F(Registration, MakesTheTypeLibraryLoadable) {
  ASSERT_EQ(Call("DllRegisterServer"), S_OK);
  ComPtr<ITypeLib> library;
  const GUID libraryId = {0xE1F2A3B4, 0xC5D6, 0x7890, {0x12, 0x34, 0x56, 0x78, 0x90, 0xAB, 0xCD, 0xEF}};
  ASSERT_EQ(LoadRegTypeLib(libraryId, 1, 0, LOCALE_NEUTRAL, &library), S_OK);
  Bstr name;
  Bstr help;
  ASSERT_EQ(library->GetDocumentation(-1, name.Put(), help.Put(), nullptr, nullptr), S_OK);
  EXPECT_EQ(ToUtf8(name.View()), "ExcelAddinLib");
  EXPECT_EQ(ToUtf8(help.View()), "ExcelAddin 1.0 Type Library");

  const std::pair<const wchar_t*, const char*> types[] = {
      {L"{C3D4E5F6-A7B8-4901-8CDE-F23456789012}", "IRibbonCallback"},
      {L"{D4E5F6A7-B8C9-4012-8DEF-A34567890123}", "IQuorvantisExcelPane"},
      {L"{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}", "Connect"},
      {L"{B2C3D4E5-F6A7-8901-BCDE-F12345678901}", "Pane"},
  };
  for (const auto& [id, typeName] : types) {
    GUID guid{};
    ASSERT_EQ(IIDFromString(id, &guid), S_OK);
    ComPtr<ITypeInfo> type;
    ASSERT_EQ(library->GetTypeInfoOfGuid(guid, &type), S_OK) << typeName;
    EXPECT_EQ(type->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(ToUtf8(name.View()), typeName);
  }
}

TEST_F(Registration, KnowsItsTwoClassesOnly) {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto getClassObject = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(module_.Get(), "DllGetClassObject")));
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(getClassObject(CLSID_NULL, IID_PPV_ARGS(&factory)), CLASS_E_CLASSNOTAVAILABLE);

  const CLSID connect = {0xA1B2C3D4, 0xE5F6, 0x7890, {0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67, 0x89}};
  EXPECT_EQ(Call("DllCanUnloadNow"), S_OK);
  ASSERT_EQ(getClassObject(connect, IID_PPV_ARGS(&factory)), S_OK);
  EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE);
  ComPtr<IUnknown> object;
  EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_PPV_ARGS(&object)), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&object)), S_OK);
  object.Reset();
  factory->LockServer(TRUE);
  IClassFactory* const last = factory.Get();
  last->AddRef();
  factory.Reset();
  EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE);
  last->LockServer(FALSE);
  last->Release();
  EXPECT_EQ(Call("DllCanUnloadNow"), S_OK);
}

}  // namespace
}  // namespace qv
