#include "foundation/identity.h"

#include <gtest/gtest.h>

#include "foundation/host_session.h"
#include "foundation/logging.h"
#include "foundation/settings.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "loopback_server.h"
#include "scratch_folder.h"

namespace qv {
namespace {

constexpr const wchar_t* kKey = L"Software\\Quorvantis";
constexpr const char* kAnswer = "HTTP/1.1 202 OK\r\nContent-Length: 0\r\n\r\n";

/// The registry value of the install id, put back afterwards.
class InstallId : public testing::Test {
 protected:
  void SetUp() override {
    kept_ = Stored();
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, L"InstallId");
  }
  void TearDown() override {
    if (!kept_.empty()) Store(REG_SZ, kept_);
  }
  static std::wstring Stored() {
    wchar_t text[200] = {};
    DWORD size = sizeof(text);
    RegGetValueW(HKEY_CURRENT_USER, kKey, L"InstallId", RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
  }
  static void Store(DWORD type, const std::wstring& text) {
    RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"InstallId", type, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

 private:
  std::wstring kept_;
};

TEST_F(InstallId, IsMadeOnceInGuidFormAndKept) {
  const std::wstring id = GetInstallId();
  ASSERT_EQ(id.size(), 36u) << id;
  for (std::size_t i = 0; i < id.size(); ++i) {
    const bool isDash = i == 8 || i == 13 || i == 18 || i == 23;
    EXPECT_TRUE(isDash ? id[i] == L'-' : Contains(L"0123456789abcdef", id.substr(i, 1))) << id;
  }
  EXPECT_EQ(Stored(), id);
  EXPECT_EQ(GetInstallId(), id);
}

TEST_F(InstallId, AcceptsOnlyNonEmptyTextValues) {
  Store(REG_EXPAND_SZ, L"%TEMP%-id");
  EXPECT_EQ(GetInstallId(), L"%TEMP%-id");
  // The id is the user's own, however long an installer made it.
  Store(REG_SZ, std::wstring(300, L'7'));
  EXPECT_EQ(GetInstallId(), std::wstring(300, L'7'));
  Store(REG_BINARY, L"binary");
  EXPECT_EQ(GetInstallId().size(), 36u);
  Store(REG_SZ, L"");
  EXPECT_EQ(GetInstallId().size(), 36u);
}

/// Every request carries the facts: neither registry nor file is read for each of them.
TEST_F(InstallId, IsReadOnceForTheFactsOfAProcess) {
  const std::wstring id = GatherClientFacts().installId;
  EXPECT_FALSE(id.empty());
  Store(REG_SZ, L"another");
  EXPECT_EQ(GatherClientFacts().installId, id);
}

TEST(Identity, OsStringNamesTheRunningSystem) {
  const std::wstring os = GetOsString();
  EXPECT_TRUE(os.starts_with(L"Windows_NT x64 ") || os.starts_with(L"Windows_NT arm64 ")) << os;
  EXPECT_EQ(std::count(os.begin(), os.end(), L'.'), 2) << os;
}

class Beacon : public testing::Test {
 protected:
  void ConnectTo(const ServiceEndpoint& endpoint) {
    WriteBytes(GetSettingsPath(), ToUtf8(Concat(L"{\"serviceHost\":\"", endpoint.host, L"\",\"servicePort\":",
                                                endpoint.port, L",\"serviceScheme\":\"http\"}")));
    HostSession::Get().Connect(nullptr, HostKind::kWpsExcel, L"12.1");
  }

 private:
  KeptFile kept_{GetSettingsPath()};
};

TEST_F(Beacon, IsPostedWithTheClientContext) {
  LoopbackServer server({kAnswer});
  ConnectTo(server.Endpoint());
  SendBeacon(L"", L"client");
  SendBeacon(L"addin:loaded", L"client");
  const auto requests = server.WaitForRequests(1);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_TRUE(requests[0].starts_with("POST /v1/analytics/events HTTP/1.1\r\n")) << requests[0];
  EXPECT_NE(requests[0].find("\r\nContent-Type: application/json\r\n"), std::string::npos);
  const std::string body =
      ToUtf8(BuildBeaconBody(L"addin:loaded", BuildClientContext(GatherClientFacts()), L"client"));
  EXPECT_TRUE(requests[0].ends_with("\r\n\r\n" + body)) << requests[0];
  EXPECT_NE(body.find(R"("hostApp":"wps-excel","hostVersion":"12.1","clientVersion":")"), std::string::npos)
      << body;
}

TEST_F(Beacon, BrowserFailureIsReportedOncePerProcess) {
  LoopbackServer server({kAnswer, kAnswer, kAnswer});
  ConnectTo(server.Endpoint());
  ReportWebViewInitFailure(L"CreateCoreWebView2Controller", E_FAIL);
  ReportWebViewInitFailure(L"CreateCoreWebView2Controller", E_FAIL);
  ASSERT_EQ(server.WaitForRequests(1).size(), 1u);
  // A later event stands for the second report, had there been one.
  SendBeacon(L"after", L"client");
  const auto requests = server.WaitForRequests(2);
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_NE(requests[0].find("\"stage\":\"controller\",\"rawErrorCode\":\"0x80004005\""), std::string::npos);
  EXPECT_NE(requests[1].find("\"event\":\"after\""), std::string::npos);
}

TEST_F(Beacon, FailureIsOneLogLine) {
  const auto countFailures = [](const char* detail) {
    // The trace is UTF-16; dropping the high bytes leaves its ASCII text.
    std::string text;
    for (const char byte : ReadBytes(GetPaneTraceLogPath())) {
      if (byte != '\0') text += byte;
    }
    const std::string line = std::string(" beacon failed: ") + detail;
    int count = 0;
    for (std::size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + 1))
      ++count;
    return count;
  };
  // The folder's own notice tells when to look again; the slices only bound the wait.
  const HANDLE change =
      FindFirstChangeNotificationW(GetLogDirectory().c_str(), FALSE, FILE_NOTIFY_CHANGE_LAST_WRITE);
  const auto waitForOneMore = [&](const char* detail, int before) {
    const ULONGLONG deadline = GetTickCount64() + 10'000;
    while (countFailures(detail) == before && GetTickCount64() < deadline) {
      WaitForSingleObject(change, 100);
      FindNextChangeNotification(change);
    }
    return countFailures(detail) - before;
  };
  const int refused = countFailures("HTTP request failed\r\n");
  ConnectTo({L"127.0.0.1", ClosedPort(), false});
  SendBeacon(L"e", L"client");
  EXPECT_EQ(waitForOneMore("HTTP request failed\r\n", refused), 1);

  const int rejected = countFailures("HTTP 500\r\n");
  LoopbackServer server({"HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n"});
  ConnectTo(server.Endpoint());
  SendBeacon(L"e", L"client");
  EXPECT_EQ(waitForOneMore("HTTP 500\r\n", rejected), 1);
  FindCloseChangeNotification(change);
}

}  // namespace
}  // namespace qv
