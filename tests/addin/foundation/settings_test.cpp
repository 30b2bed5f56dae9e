#include "foundation/settings.h"

#include <gtest/gtest.h>

#include "fake_object.h"
#include "foundation/catalog.h"
#include "foundation/host_session.h"
#include "foundation/unique_handle.h"
#include "scratch_folder.h"

namespace qv {
namespace {

/// The user's real settings file, put back afterwards.
class Settings : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(GetSettingsPath().ends_with(L"\\Quorvantis\\config.json"));
    std::filesystem::remove(GetSettingsPath());
    ForgetAutomaticLanguage();
  }
  void TearDown() override {
    HostSession::Get().Disconnect();
    ForgetAutomaticLanguage();
  }

  /// An application whose user-interface language is the given id.
  void ConnectHost(int languageId) {
    const auto languages = MakeCom<FakeObject>();
    languages->Add(L"LanguageID", [this, languageId](FakeObject::Call& call) {
      ++asked_;
      const bool isUserInterface = call.args.size() == 1 && call.args[0]->lVal == 2;
      *call.result = Variant(isUserInterface ? languageId : 0).Detach();
      return S_OK;
    });
    const auto application = MakeCom<FakeObject>();
    application->Add(L"LanguageSettings", [languages](FakeObject::Call& call) {
      *call.result = Variant(languages.Get()).Detach();
      return S_OK;
    });
    HostSession::Get().Connect(application, HostKind::kExcel, L"16.0");
  }

  KeptFile kept_{GetSettingsPath()};
  int asked_ = 0;
};

TEST_F(Settings, AreSavedAndLoadedBesideWhatOthersWrote) {
  std::wstring code;
  EXPECT_EQ(LoadPaneWidthPt(), 520);
  EXPECT_FALSE(LoadUiLang(code));
  EXPECT_TRUE(SaveUiLang(L"zh-CN"));
  EXPECT_EQ(ReadBytes(GetSettingsPath()), "{\n  \"uiLang\": \"zh-CN\"\n}\n");
  EXPECT_TRUE(SavePaneWidthPt(600));
  EXPECT_EQ(ReadBytes(GetSettingsPath()), "{\n  \"uiLang\": \"zh-CN\",\n  \"paneWidthPt\": 600\n}\n");
  EXPECT_TRUE(LoadUiLang(code));
  EXPECT_EQ(code, L"zh-CN");
  EXPECT_EQ(LoadPaneWidthPt(), 600);

  // Bytes that are no UTF-8, from an editor with another idea of text.
  WriteBytes(GetSettingsPath(), "{\"note\":\"\xB0\xFC\",\"uiLang\":\"de\"}");
  EXPECT_TRUE(SaveUiLang(L"fr"));
  EXPECT_EQ(ReadBytes(GetSettingsPath()), "{\"note\":\"\xB0\xFC\",\"uiLang\":\"fr\"}");
}

TEST_F(Settings, AFileThatCannotBeReadIsNotReplaced) {
  WriteBytes(GetSettingsPath(), "{\"uiLang\":\"de\"}");
  {
    const UniqueFile lock(
        CreateFileW(GetSettingsPath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_FALSE(SaveUiLang(L"fr"));
    EXPECT_EQ(LoadPaneWidthPt(), 520);
  }
  const std::string large = "{\"a\":\"" + std::string(1 << 20, 'x') + "\"}";
  WriteBytes(GetSettingsPath(), large);
  EXPECT_FALSE(SaveUiLang(L"fr"));
  EXPECT_EQ(ReadBytes(GetSettingsPath()), large);
}

TEST_F(Settings, UiLanguageFollowsTheHostUntilTheUserChooses) {
  ConnectHost(0x0C04);
  EXPECT_EQ(GetUiLanguage(), L"zh-TW");
  ConnectHost(0x0407);
  EXPECT_EQ(GetUiLanguage(), L"zh-TW") << "the automatic choice holds for the process";
  EXPECT_EQ(asked_, 1);
  EXPECT_TRUE(SaveUiLang(L"ja"));
  EXPECT_EQ(GetUiLanguage(), L"ja");
  std::filesystem::remove(GetSettingsPath());
  EXPECT_EQ(GetUiLanguage(), L"de") << "a stored language made the automatic one forgotten";
}

TEST_F(Settings, AHostWithoutALanguageIsNoFailure) {
  EXPECT_EQ(HostSession::Get().HostLanguageId(), 0u);
  HostSession::Get().Connect(MakeCom<FakeObject>(), HostKind::kWpsExcel, L"12");
  EXPECT_EQ(HostSession::Get().HostLanguageId(), 0u);
  EXPECT_FALSE(GetUiLanguage().empty());
  EXPECT_TRUE(SaveUiLang(L"pt"));
  EXPECT_EQ(GetCatalogText(L"msg.title"), L"AI Assistant");
}

TEST_F(Settings, TheEndpointIsReadAtEachConnection) {
  WriteBytes(GetSettingsPath(), R"({"serviceHost":"127.0.0.1","servicePort":9,"serviceScheme":"http"})");
  ConnectHost(0x0409);
  EXPECT_EQ(HostSession::Get().Endpoint(), (ServiceEndpoint{L"127.0.0.1", 9, false}));
  std::filesystem::remove(GetSettingsPath());
  EXPECT_EQ(HostSession::Get().Endpoint().port, 9);
  ConnectHost(0x0409);
  EXPECT_EQ(HostSession::Get().Endpoint(), DefaultServiceEndpoint());
}

}  // namespace
}  // namespace qv
