#include "addin/registrar_script.h"

#include <gtest/gtest.h>

#include "foundation/text.h"

namespace qv {
namespace {

/// One line a change: "+key", "-tree", "-empty", "=value", "-value".
std::string Text(const std::optional<std::vector<RegistryChange>>& changes) {
  if (!changes) return "malformed";
  std::string out;
  for (const RegistryChange& change : *changes) {
    const std::string path = (change.root == RegistryRoot::kClasses ? "C:" : "U:") + ToUtf8(change.path);
    const std::string value = path + "@" + ToUtf8(change.name);
    switch (change.step) {
      case RegistryStep::kCreateKey:
        out += "+key " + path;
        break;
      case RegistryStep::kDeleteTree:
        out += "-tree " + path;
        break;
      case RegistryStep::kDeleteKeyIfEmpty:
        out += "-empty " + path;
        break;
      case RegistryStep::kSetValue:
        out +=
            "=value " + value + "=" + (change.isNumber ? std::to_string(change.number) : ToUtf8(change.text));
        break;
      case RegistryStep::kDeleteValue:
        out += "-value " + value;
        break;
    }
    out += '\n';
  }
  return out;
}

constexpr wchar_t kScript[] =
    LR"(
HKCR
{
  ForceRemove My.Class = s 'It''s mine'
  NoRemove CLSID
  {
    ForceRemove {A1B2C3D4-E5F6-7890-ABCD-EF0123456789} = s 'Name'
    {
      InprocServer32 = s '%MODULE%' { val ThreadingModel = s 'Apartment' }
      'Key with blanks'
    }
  }
  Delete Old.Class
}
HKCU
{
  Plain { val Count = d '3'  val 'A B' = s '' }
}
)";

TEST(RegistrarScript, PlansARegistration) {
  EXPECT_EQ(
      Text(PlanRegistration(kScript, L"C:\\a b\\x.dll")),
      "-tree C:My.Class\n"
      "+key C:My.Class\n"
      "=value C:My.Class@=It's mine\n"
      "+key C:CLSID\n"
      "-tree C:CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\n"
      "+key C:CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\n"
      "=value C:CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}@=Name\n"
      "+key C:CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\\InprocServer32\n"
      "=value C:CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\\InprocServer32@=C:\\a b\\x.dll\n"
      "=value C:CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\\InprocServer32@ThreadingModel=Apartment\n"
      "+key C:CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\\Key with blanks\n"
      "-tree C:Old.Class\n"
      "+key U:Plain\n"
      "=value U:Plain@Count=3\n"
      "=value U:Plain@A B=\n");
}

TEST(RegistrarScript, PlansAnUnregistrationThatLeavesSharedKeys) {
  EXPECT_EQ(Text(PlanUnregistration(kScript)),
            "-tree C:My.Class\n"
            "-tree C:CLSID\\{A1B2C3D4-E5F6-7890-ABCD-EF0123456789}\n"
            "-value U:Plain@Count\n"
            "-value U:Plain@A B\n"
            "-empty U:Plain\n");
}

TEST(RegistrarScript, RefusesWhatIsMalformed) {
  const wchar_t* const scripts[] = {
      L"HKLM { Key }",                   // a root that is not the user's
      L"HKCR { Key",                     // not closed
      L"HKCR Key",                       // no braces
      L"HKCR { Key = s 'open }",         // text not closed
      L"HKCR { Key = x 'text' }",        // unknown type
      L"HKCR { Key = s text }",          // text without apostrophes
      L"HKCR { Key = d '12a' }",         // no number
      L"HKCR { Key = d '4294967296' }",  // beyond 32 bits
      L"HKCR { Key { val = s 'x' } }",   // value without a name
      L"HKCR { ForceRemove }",           // no key
      L"HKCR { Key } }",                 // one brace too many
  };
  for (const wchar_t* script : scripts)
    EXPECT_EQ(Text(PlanRegistration(script, L"m")), "malformed") << ToUtf8(script);
  EXPECT_EQ(Text(PlanRegistration(L"", L"m")), "");

  std::wstring deep = L"HKCR {";
  for (int level = 0; level < 100000; ++level)
    deep += L" Key {";
  EXPECT_EQ(Text(PlanRegistration(deep, L"m")), "malformed");
}

}  // namespace
}  // namespace qv
