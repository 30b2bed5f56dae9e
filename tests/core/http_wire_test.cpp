#include <gtest/gtest.h>

#include "foundation/text.h"
#include "httpapi/wire/chunked_decoder.h"
#include "httpapi/wire/request_head.h"
#include "httpapi/wire/response_head.h"
#include "httpapi/wire/url_prefix.h"

namespace qv::devhost {
namespace {

constexpr std::size_t kLimit = 16 * 1024;
constexpr HttpDate kDate{6, 21, 11, 2026, 23, 5, 9};

/// 0 for a whole head, -1 for one that is not there yet, else the refusal.
int StatusOf(const std::string& bytes, RequestHead& head) {
  const HeadResult result = ParseRequestHead(bytes, kLimit, head);
  if (result.state == HeadResult::State::Complete) return 0;
  return result.state == HeadResult::State::Incomplete ? -1 : result.status;
}

TEST(HttpWire, HeadersAreSplitIntoKnownAndUnknownOnes) {
  const std::string bytes =
      "\r\nPOST /mcp?x=%20 HTTP/1.1\r\nHOST: 127.0.0.1:7878\r\nAuthorization: \t Bearer t \r\n"
      "x-Quorvantis-Yield:1\r\nAccept: a\r\naccept: b\r\nCookie: c\r\nCookie: d\r\nContent-Length: "
      "12\r\n\r\nrest";
  RequestHead head;
  const HeadResult result = ParseRequestHead(bytes, kLimit, head);
  ASSERT_EQ(result.state, HeadResult::State::Complete);
  EXPECT_EQ(bytes.substr(result.size), "rest");
  EXPECT_EQ(head.verb, 6);
  EXPECT_EQ(head.rawUrl, "/mcp?x=%20");
  EXPECT_EQ(head.known[28], "127.0.0.1:7878");
  EXPECT_EQ(head.known[24], "Bearer t");
  EXPECT_EQ(head.known[20], "a, b");
  EXPECT_EQ(head.known[25], "c; d");
  EXPECT_EQ(head.contentLength, 12u);
  ASSERT_EQ(head.unknown.size(), 1u);
  EXPECT_EQ(head.unknown[0].first, "x-Quorvantis-Yield");
  EXPECT_EQ(head.unknown[0].second, "1");
}

TEST(HttpWire, VerbsHaveTheNumbersOfHttpSysAndOthersNone) {
  struct Case {
    const char* method;
    int number;
  };
  const Case cases[] = {{"OPTIONS", 3}, {"GET", 4},   {"HEAD", 5},    {"POST", 6},  {"PUT", 7},
                        {"DELETE", 8},  {"TRACE", 9}, {"SEARCH", 19}, {"PATCH", 1}, {"post", 1}};
  for (const Case& c : cases)
    EXPECT_EQ(VerbNumber(c.method), c.number) << c.method;
}

TEST(HttpWire, BadHeadsAreRefusedWithTheStatusOfHttpSys) {
  struct Case {
    const char* name;
    std::string bytes;
    int status;
  };
  const std::string host = "Host: h\r\n";
  const Case cases[] = {
      {"a plain one", "GET / HTTP/1.1\r\n" + host + "\r\n", 0},
      {"no host in 1.0", "GET / HTTP/1.0\r\n\r\n", 0},
      {"an absolute address", "GET http://h/p HTTP/1.1\r\n" + host + "\r\n", 0},
      {"all resources", "OPTIONS * HTTP/1.1\r\n" + host + "\r\n", 0},
      {"the same length twice",
       "POST / HTTP/1.1\r\n" + host + "Content-Length: 1\r\nContent-Length: 1\r\n\r\n", 0},
      {"not all of it", "GET / HTTP/1.1\r\n" + host, -1},
      {"nothing", "", -1},
      {"no host", "GET / HTTP/1.1\r\n\r\n", 400},
      {"two hosts", "GET / HTTP/1.1\r\n" + host + host + "\r\n", 400},
      {"no words", "\x16\x03\x01\r\n\r\n", 400},
      {"no target", "GET HTTP/1.1\r\n" + host + "\r\n", 400},
      {"a relative target", "GET x HTTP/1.1\r\n" + host + "\r\n", 400},
      {"two blanks", "GET  / HTTP/1.1\r\n" + host + "\r\n", 400},
      {"no version", "GET /\r\n" + host + "\r\n", 400},
      {"another version", "GET / HTTP/2.0\r\n" + host + "\r\n", 505},
      {"a blank in a name", "GET / HTTP/1.1\r\n" + host + "A b: c\r\n\r\n", 400},
      {"a continued line", "GET / HTTP/1.1\r\n" + host + "A: b\r\n c\r\n\r\n", 400},
      {"a bare line feed", "GET / HTTP/1.1\r\n" + host + "A: b\nC: d\r\n\r\n", 400},
      {"a control character", "GET / HTTP/1.1\r\n" + host + "A: \x01\r\n\r\n", 400},
      {"no length for a body", "POST / HTTP/1.1\r\n" + host + "\r\n", 411},
      {"no length for a put", "PUT / HTTP/1.1\r\n" + host + "\r\n", 411},
      {"a negative length", "POST / HTTP/1.1\r\n" + host + "Content-Length: -1\r\n\r\n", 400},
      {"a huge length", "POST / HTTP/1.1\r\n" + host + "Content-Length: 9999999999999999999\r\n\r\n", 400},
      {"two lengths", "POST / HTTP/1.1\r\n" + host + "Content-Length: 1\r\nContent-Length: 2\r\n\r\n", 400},
      {"length and chunks",
       "POST / HTTP/1.1\r\n" + host + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n", 400},
      {"another coding", "POST / HTTP/1.1\r\n" + host + "Transfer-Encoding: gzip\r\n\r\n", 501},
      {"chunks in 1.0", "POST / HTTP/1.0\r\nTransfer-Encoding: chunked\r\n\r\n", 400},
  };
  for (const Case& c : cases) {
    RequestHead head;
    EXPECT_EQ(StatusOf(c.bytes, head), c.status) << c.name;
  }
}

TEST(HttpWire, AHeadMayBeAsLongAsTheLimitAndNoByteLonger) {
  const std::string start = "GET / HTTP/1.1\r\nHost: h\r\nA: ";
  const std::string fitting = start + std::string(kLimit - start.size() - 4, 'x') + "\r\n\r\n";
  RequestHead head;
  EXPECT_EQ(StatusOf(fitting, head), 0);
  EXPECT_EQ(StatusOf(fitting + "body beyond the limit", head), 0);
  EXPECT_EQ(StatusOf("\r\n" + fitting, head), 400);
  EXPECT_EQ(StatusOf(start + std::string(kLimit, 'x'), head), 400) << "also while it is not all there";
}

TEST(HttpWire, ConnectionsPersistAsTheVersionAndTheClientSay) {
  struct Case {
    const char* bytes;
    bool keepAlive;
    bool expectsContinue;
  };
  const Case cases[] = {
      {"GET / HTTP/1.1\r\nHost: h\r\n\r\n", true, false},
      {"GET / HTTP/1.1\r\nHost: h\r\nConnection: Upgrade, Close\r\n\r\n", false, false},
      {"GET / HTTP/1.0\r\nHost: h\r\n\r\n", false, false},
      {"GET / HTTP/1.0\r\nConnection: keep-alive\r\n\r\n", true, false},
      {"GET / HTTP/1.1\r\nHost: h\r\nExpect: 100-Continue\r\n\r\n", true, true},
      {"GET / HTTP/1.0\r\nExpect: 100-continue\r\n\r\n", false, false},
  };
  for (const Case& c : cases) {
    RequestHead head;
    ASSERT_EQ(StatusOf(c.bytes, head), 0) << c.bytes;
    EXPECT_EQ(head.keepAlive, c.keepAlive) << c.bytes;
    EXPECT_EQ(head.expectsContinue, c.expectsContinue) << c.bytes;
  }
}

/// Decodes with input pieces and output rooms of the given size; "!" for a broken body, "?" for an unfinished
/// one.
std::string Decode(std::string_view body, std::size_t piece, std::size_t room, std::string* rest = nullptr) {
  ChunkedDecoder decoder;
  std::string out;
  std::string buffer(room, '\0');
  std::size_t at = 0;
  while (at < body.size() && !decoder.IsDone() && !decoder.IsBroken()) {
    const auto step = decoder.Feed(body.substr(at, piece), buffer.data(), room);
    at += step.consumed;
    out.append(buffer, 0, step.written);
  }
  if (rest != nullptr) *rest = body.substr(at);
  if (decoder.IsBroken()) return "!";
  return decoder.IsDone() ? out : "?";
}

TEST(HttpWire, ChunksAreJoinedHoweverTheyArrive) {
  struct Case {
    const char* body;
    const char* decoded;
  };
  const Case cases[] = {
      {"0\r\n\r\n", ""},
      {"3\r\nabc\r\n0\r\n\r\n", "abc"},
      {"3;x=y\r\nabc\r\nA\r\n0123456789\r\n00\r\nTrailer: t\r\n\r\n", "abc0123456789"},
      {"2\r\n\r\n\r\n0\r\n\r\n", "\r\n"},
      {"3\r\nabc\r\n", "?"},
      {"3\r\nabcd\r\n0\r\n\r\n", "!"},
      {"\r\n", "!"},
      {"g\r\n", "!"},
      {"-1\r\n", "!"},
      {"3\nabc\r\n", "!"},
      {"1000000000000000\r\n", "!"},
  };
  for (const Case& c : cases) {
    for (const std::size_t piece : {1u, 2u, 5u, 100u}) {
      for (const std::size_t room : {1u, 4u, 100u})
        EXPECT_EQ(Decode(c.body, piece, room), c.decoded) << c.body << piece << " " << room;
    }
  }
  std::string rest;
  EXPECT_EQ(Decode("1\r\nx\r\n0\r\n\r\nGET /", 100, 100, &rest), "x");
  EXPECT_EQ(rest, "GET /") << "the next request stays";
  EXPECT_EQ(Decode("1;" + std::string(20'000, 'x'), 1000, 10), "!") << "extensions are bounded";
}

TEST(HttpWire, TheEndOfABodyShowsAsHttpSysShowsIt) {
  struct Case {
    const char* name;
    const char* method;
    int minorVersion;
    ResponseHead response;
    std::optional<std::uint64_t> bytes;
    bool disconnect;
    std::optional<std::uint64_t> length;
    bool sendsBody;
    bool closes;
  };
  const Case cases[] = {
      {"a whole body", "POST", 1, {200, "OK", {}}, 5, false, 5, true, false},
      {"no body", "POST", 1, {200, "OK", {}}, 0, false, 0, true, false},
      {"no content", "OPTIONS", 1, {204, "No Content", {}}, 0, false, std::nullopt, false, false},
      {"a head only", "HEAD", 1, {200, "OK", {}}, 5, false, 5, false, false},
      {"more comes", "POST", 1, {200, "OK", {}}, std::nullopt, false, std::nullopt, true, true},
      {"more of an announced length",
       "POST",
       1,
       {200, "OK", {{"content-length", "9"}}},
       std::nullopt,
       false,
       std::nullopt,
       true,
       false},
      {"more in chunks of its own",
       "POST",
       1,
       {200, "OK", {{"Transfer-Encoding", "chunked"}}},
       std::nullopt,
       false,
       std::nullopt,
       true,
       false},
      {"told to close", "POST", 1, {200, "OK", {}}, 5, true, 5, true, true},
      {"closes by a header", "POST", 1, {200, "OK", {{"connection", "CLOSE"}}}, 5, false, 5, true, true},
      {"an old client", "POST", 0, {200, "OK", {}}, 5, false, 5, true, true},
  };
  for (const Case& c : cases) {
    RequestHead request;
    request.method = c.method;
    request.minorVersion = c.minorVersion;
    request.keepAlive = c.minorVersion == 1;
    const ResponseFraming framing = DecideFraming(request, c.response, c.bytes, c.disconnect);
    EXPECT_EQ(framing.contentLength, c.length) << c.name;
    EXPECT_EQ(framing.sendsBody, c.sendsBody) << c.name;
    EXPECT_EQ(framing.closes, c.closes) << c.name;
  }
}

TEST(HttpWire, AResponseHeadHasWhatTheApplicationGaveAndWhatHttpSysAdds) {
  ResponseFraming framing;
  framing.contentLength = 7;
  EXPECT_EQ(WriteResponseHead({401, "Unauthorized", {{"A", "b"}}}, framing, kDate),
            "HTTP/1.1 401 Unauthorized\r\nA: b\r\nServer: Microsoft-HTTPAPI/2.0\r\n"
            "Date: Sat, 21 Nov 2026 23:05:09 GMT\r\nContent-Length: 7\r\n\r\n");
  framing = {};
  framing.closes = true;
  EXPECT_EQ(WriteResponseHead({200, "OK", {{"server", "s"}, {"date", "d"}}}, framing, kDate),
            "HTTP/1.1 200 OK\r\nserver: s\r\ndate: d\r\nConnection: close\r\n\r\n");
  EXPECT_TRUE(WriteRefusal(503, kDate).starts_with("HTTP/1.1 503 Service Unavailable\r\n"));
  EXPECT_TRUE(WriteRefusal(400, kDate).ends_with("\r\n\r\n<h2>Bad Request</h2>\r\n"));
}

TEST(HttpWire, PrefixesAreTakenApart) {
  const auto prefix = ParseUrlPrefix(L"http://127.0.0.1:7878/a/");
  ASSERT_TRUE(prefix);
  EXPECT_EQ(prefix->host, L"127.0.0.1");
  EXPECT_EQ(prefix->port, 7878);
  EXPECT_EQ(prefix->path, L"/a/");
  for (const wchar_t* bad : {L"", L"http://", L"https://127.0.0.1:1/", L"http://127.0.0.1/", L"http://:1/",
                             L"http://127.0.0.1:0/", L"http://127.0.0.1:65536/", L"http://127.0.0.1:1x/",
                             L"http://127.0.0.1:1", L"http://127.0.0.1:1/a"}) {
    EXPECT_FALSE(ParseUrlPrefix(bad)) << ToUtf8(bad);
  }
}

TEST(HttpWire, AddressesAreCooked) {
  struct Case {
    const char* raw;
    const wchar_t* host;
    const wchar_t* path;
    const wchar_t* query;
  };
  const Case cases[] = {
      {"/a%20b?c=%20", L"h:1", L"/a b", L"?c=%20"}, {"/%e4%b8%ad", L"h:1", L"/\u4E2D", L""},
      {"/%zz%4", L"h:1", L"/%zz%4", L""},           {"http://other:2/x?y", L"other:2", L"/x", L"?y"},
      {"http://other?y", L"other", L"/", L"?y"},    {"*", L"h:1", L"/*", L""},
  };
  for (const Case& c : cases) {
    const CookedUrl cooked = CookUrl(c.raw, "h:1");
    EXPECT_EQ(ToUtf8(cooked.host), ToUtf8(c.host)) << c.raw;
    EXPECT_EQ(ToUtf8(cooked.path), ToUtf8(c.path)) << c.raw;
    EXPECT_EQ(ToUtf8(cooked.query), ToUtf8(c.query)) << c.raw;
    EXPECT_EQ(cooked.full, L"http://" + cooked.host + cooked.path + cooked.query) << c.raw;
  }
}

}  // namespace
}  // namespace qv::devhost
