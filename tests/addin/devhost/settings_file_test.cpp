#include "host/settings_file.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "foundation/unique_handle.h"
#include "host/windows_path.h"

namespace qv::test {
namespace {

using namespace devhost;

std::filesystem::path SettingsPath() {
  wchar_t folder[MAX_PATH] = {};
  EXPECT_HRESULT_SUCCEEDED(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, 0, folder));
  return std::filesystem::path(folder) / L"Quorvantis" / L"config.json";
}

nlohmann::json Settings() {
  std::ifstream file(SettingsPath());
  return nlohmann::json::parse(file);
}

TEST(SettingsFile, KeepsOtherMembersAndReplacesWhatIsNoObject) {
  WriteServiceAddress(kNoService);
  std::ofstream(SettingsPath()) << R"({"uiLang":"de","servicePort":443})";
  WriteServiceAddress({"https", "localhost", 8443});
  EXPECT_EQ(Settings(), nlohmann::json::parse(R"({"uiLang":"de","serviceHost":"localhost","servicePort":8443,
                                                  "serviceScheme":"https"})"));
  std::ofstream(SettingsPath()) << "[1,";
  WriteServiceAddress(kNoService);
  EXPECT_EQ(Settings(), nlohmann::json::parse(R"({"serviceHost":"127.0.0.1","servicePort":9,
                                                  "serviceScheme":"http"})"));
}

TEST(SettingsFile, OneThatCannotBeReadStaysAsItIs) {
  WriteServiceAddress(kNoService);
  const nlohmann::json before = Settings();
  {
    const UniqueFile lock(
        CreateFileW(SettingsPath().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_THROW(WriteServiceAddress({"https", "localhost", 8443}), std::runtime_error);
  }
  EXPECT_EQ(Settings(), before);
  // A long one is read as a whole.
  std::ofstream(SettingsPath()) << nlohmann::json{{"long", std::string(100'000, 'x')}};
  WriteServiceAddress(kNoService);
  EXPECT_EQ(Settings()["long"], std::string(100'000, 'x'));
}

TEST(CommandLine, TakesServiceAddressesWithTheirDefaultPorts) {
  const struct {
    const char* url;
    const char* host;
    int port;
  } valid[] = {
      {"http://127.0.0.1:8080", "127.0.0.1", 8080},
      {"http://localhost/", "localhost", 80},
      {"https://localhost", "localhost", 443},
  };
  for (const auto& entry : valid) {
    const auto address = ParseServiceAddress(entry.url);
    ASSERT_TRUE(address) << entry.url;
    EXPECT_EQ(address->host, entry.host);
    EXPECT_EQ(address->port, entry.port);
  }
  for (const char* url : {"", "127.0.0.1:80", "ftp://h", "http://", "http://:80", "http://h:0",
                          "http://h:65536", "http://h:8x", "http://h/path", "http://u@h"}) {
    EXPECT_FALSE(ParseServiceAddress(url)) << url;
  }
}

TEST(WindowsPath, RootedUnixPathsLieOnDriveZ) {
  EXPECT_EQ(ToWindowsPath(L"/tmp/a b/x.xlsx"), L"Z:\\tmp\\a b\\x.xlsx");
  EXPECT_EQ(ToWindowsPath(L"C:/Users/x.json"), L"C:\\Users\\x.json");
  EXPECT_TRUE(ToWindowsPath(L"x.json").ends_with(L"\\x.json"));
}

}  // namespace
}  // namespace qv::test
