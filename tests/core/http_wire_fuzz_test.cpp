#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "httpapi/wire/chunked_decoder.h"
#include "httpapi/wire/request_head.h"
#include "httpapi/wire/url_prefix.h"

namespace qv::devhost {
namespace {

constexpr int kCases = 20'000;
constexpr std::size_t kLimit = 256;

/// Requests that were damaged in a few places, and texts made of the pieces on which the readers decide. The
/// same on every run.
class HttpishTexts {
 public:
  std::string Damaged(std::string text) {
    for (int i = Pick(0, 4); i > 0 && !text.empty(); --i) {
      const std::size_t at = static_cast<std::size_t>(Pick(0, static_cast<int>(text.size()) - 1));
      if (Pick(0, 2) == 0) {
        text.erase(at, static_cast<std::size_t>(Pick(1, 5)));
      } else {
        text.insert(at, Piece());
      }
    }
    return text;
  }

  std::string Pieces() {
    std::string text;
    for (int i = Pick(0, 20); i > 0; --i)
      text += Piece();
    return text;
  }

  int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

 private:
  std::string Piece() {
    static const std::string kPieces[] = {"\r\n",
                                          "\r",
                                          "\n",
                                          " ",
                                          "\t",
                                          ":",
                                          "GET",
                                          "POST",
                                          "/",
                                          "?",
                                          "%",
                                          "%4",
                                          "%41",
                                          "http://",
                                          "HTTP/1.1",
                                          "Host: h",
                                          "Content-Length: ",
                                          "9",
                                          "0",
                                          "f",
                                          ";",
                                          "Transfer-Encoding: chunked",
                                          "\x01",
                                          "\xFF",
                                          std::string(1, '\0'),
                                          "*",
                                          "0\r\n\r\n",
                                          "5\r\nabcde\r\n",
                                          "ffffffffffffffff"};
    return kPieces[static_cast<std::size_t>(Pick(0, static_cast<int>(std::size(kPieces)) - 1))];
  }

  std::mt19937 random_{20261121};
};

TEST(HttpWireFuzz, AHeadReadsTheSameHoweverItArrives) {
  HttpishTexts texts;
  const std::string good = "POST /mcp?x HTTP/1.1\r\nHost: h\r\nX-A: b\r\nContent-Length: 5\r\n\r\nabcde";
  for (int i = 0; i < kCases; ++i) {
    const std::string text = i % 2 == 0 ? texts.Damaged(good) : texts.Pieces();
    RequestHead head;
    const HeadResult whole = ParseRequestHead(text, kLimit, head);
    EXPECT_LE(whole.size, text.size());
    if (whole.state == HeadResult::State::Complete) {
      static_cast<void>(CookUrl(head.rawUrl, head.known[28]));
      // What was complete is so without what follows, and is not without its last byte.
      RequestHead again;
      EXPECT_EQ(ParseRequestHead(text.substr(0, whole.size), kLimit, again).state,
                HeadResult::State::Complete);
      EXPECT_EQ(again.rawUrl, head.rawUrl);
      EXPECT_EQ(ParseRequestHead(text.substr(0, whole.size - 1), kLimit, again).state,
                HeadResult::State::Incomplete);
    }
  }
}

TEST(HttpWireFuzz, AChunkedBodyReadsTheSameInAnyPieces) {
  HttpishTexts texts;
  const std::string good = "5\r\nabcde\r\n3;x=y\r\nfgh\r\n0\r\nT: t\r\n\r\nnext";
  for (int i = 0; i < kCases; ++i) {
    const std::string text = i % 2 == 0 ? texts.Damaged(good) : texts.Pieces();
    ChunkedDecoder whole;
    std::string expected(text.size(), '\0');
    const auto all = whole.Feed(text, expected.data(), expected.size());
    expected.resize(all.written);

    ChunkedDecoder pieces;
    std::string decoded;
    std::size_t at = 0;
    while (at < text.size() && !pieces.IsDone() && !pieces.IsBroken()) {
      char room[3];
      const auto step = pieces.Feed(text.substr(at, static_cast<std::size_t>(texts.Pick(1, 4))), room,
                                    static_cast<std::size_t>(texts.Pick(1, 3)));
      ASSERT_GT(step.consumed, 0u);
      at += step.consumed;
      decoded.append(room, step.written);
    }
    EXPECT_EQ(decoded, expected) << text;
    EXPECT_EQ(at, all.consumed) << text;
    EXPECT_EQ(pieces.IsDone(), whole.IsDone()) << text;
    EXPECT_EQ(pieces.IsBroken(), whole.IsBroken()) << text;
  }
}

TEST(HttpWireFuzz, PrefixesTakeAnything) {
  HttpishTexts texts;
  for (int i = 0; i < kCases; ++i) {
    const std::string text = "http://h:" + texts.Pieces();
    const auto prefix = ParseUrlPrefix(std::wstring(text.begin(), text.end()));
    EXPECT_TRUE(!prefix || (prefix->path.starts_with(L'/') && prefix->path.ends_with(L'/'))) << text;
  }
}

}  // namespace
}  // namespace qv::devhost
