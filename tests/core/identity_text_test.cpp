#include "foundation/identity_text.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

const ClientFacts kFacts{L"id-1",  L"stable",     L"Windows_NT x64 10.0.22631",
                         L"excel", L"16.0 \"x\"", L"1.2.3",
                         L"abc",   L"2026-01-02", L"Microsoft Excel"};

TEST(IdentityText, OsStringNamesTheArchitecture) {
  EXPECT_EQ(FormatOsString(9, 10, 0, 22631), L"Windows_NT x64 10.0.22631");
  EXPECT_EQ(FormatOsString(0, 6, 1, 7601), L"Windows_NT x86 6.1.7601");
  EXPECT_EQ(FormatOsString(12), L"Windows_NT arm64");
}

TEST(IdentityText, VersionFileWithoutAVersionReadsAsZero) {
  EXPECT_EQ(ClientVersionFrom(LR"({"name":"x","version":"1.4.0"})"), L"1.4.0");
  EXPECT_EQ(ClientVersionFrom(LR"({"name":"x"})"), L"0.0.0");
  EXPECT_EQ(ClientVersionFrom(LR"({"version":""})"), L"0.0.0");
  EXPECT_EQ(ClientVersionFrom(L""), L"0.0.0");
}

TEST(IdentityText, ContextHoldsItsMembersInOrder) {
  EXPECT_EQ(BuildClientContext(kFacts),
            LR"({"installId":"id-1","channel":"stable","os":"Windows_NT x64 10.0.22631","hostApp":"excel",)"
            LR"("hostVersion":"16.0 \"x\"","clientVersion":"1.2.3"})");
}

TEST(IdentityText, InformationHoldsItsMembersInOrder) {
  const std::wstring info = BuildClientInfo(kFacts);
  const std::wstring head =
      LR"({"productId":"quorvantis-office-ai","platform":"windows","version":"1.2.3","commit":"abc",)"
      LR"("buildDate":"2026-01-02","os":"Windows_NT x64 10.0.22631","installId":"id-1","hostApp":"excel",)"
      LR"("hostAppVersion":"16.0 \"x\"","hostAppName":"Microsoft Excel","capabilities":{)";
  EXPECT_EQ(info.substr(0, head.size()), head);
  const std::wstring capabilities = info.substr(head.size());
  EXPECT_NE(capabilities.find(L"\"pptBilingualSlides\":false"), std::wstring::npos);
  EXPECT_NE(capabilities.find(L"\"targetFontBold\":true"), std::wstring::npos);
  EXPECT_TRUE(capabilities.ends_with(L"}}"));
}

TEST(IdentityText, EventsCarryTheContextUnquoted) {
  EXPECT_EQ(
      BuildBeaconBody(L"addin:loaded", L"{\"a\":1}", L"client"),
      LR"({"events":[{"event":"addin:loaded","context":{"a":1},"outcome":"ok","props":{"source":"client"}}]})");
  EXPECT_EQ(BuildBeaconBody(L"e", L"{}", L""),
            LR"({"events":[{"event":"e","context":{},"outcome":"ok","props":{"source":"unknown"}}]})");
}

TEST(IdentityText, FailureStageComesFromTheStep) {
  const std::pair<std::wstring, std::wstring> cases[] = {
      {L"CreateCoreWebView2Controller", L"controller"},
      {L"CreateCoreWebView2EnvironmentWithOptions", L"environment"},
      {L"EnvironmentController", L"controller"},
      {L"QuorvantisWebView2UserDataDir", L"user_data_dir"},
      {L"", L"init"},
  };
  for (const auto& [step, stage] : cases) {
    EXPECT_EQ(
        BuildWebViewFailureBody(step, static_cast<std::int32_t>(0x80070002), L"{}"),
        LR"({"events":[{"event":"plugin:error","context":{},"outcome":"error","errorCode":"webview2_init",)"
        LR"("props":{"feature":"pane","stage":")" +
            stage + LR"(","rawErrorCode":"0x80070002"}}]})");
  }
}

}  // namespace
}  // namespace qv
