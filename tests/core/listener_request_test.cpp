#include "services/listener_request.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(ListenerRequest, AVerbWithANumberOfItsOwnIsOtherAndItsBodyUnread) {
  struct Case {
    ListenerVerb verb;
    const char* raw;
    const char* method;
    bool readsBody;
  };
  const Case cases[] = {
      {ListenerVerb::Post, "", "POST", true},
      {ListenerVerb::Get, "", "GET", false},
      {ListenerVerb::Options, "", "OPTIONS", false},
      {ListenerVerb::Unknown, "PATCH", "PATCH", true},
      {ListenerVerb::Unknown, "PUT", "PUT", true},
      {ListenerVerb::Unknown, "patch", "patch", false},
      {ListenerVerb::Unknown, "", "OTHER", false},
      // The text of a numbered verb is not asked for.
      {ListenerVerb::Other, "PUT", "OTHER", false},
  };
  for (const Case& c : cases) {
    const std::string method = ListenerMethod(c.verb, c.raw);
    EXPECT_EQ(method, c.method) << c.raw;
    EXPECT_EQ(ReadsBody(method), c.readsBody) << c.raw;
  }
}

TEST(ListenerRequest, OnlyTheWholeHeaderNameWithAOneYields) {
  struct Case {
    const char* name;
    const char* value;
    bool yields;
  };
  const Case cases[] = {
      {"X-Quorvantis-Yield", "1", true},   {"x-QUORVANTIS-yield", "1", true},
      {"X-Quorvantis-Yield", "10", true},  {"X-Quorvantis-Yield", "", false},
      {"X-Quorvantis-Yield", "0", false},  {"X-Quorvantis-Yield", "true", false},
      {"X-Quorvantis-Yields", "1", false}, {"X-Quorvantis-Yiel", "1", false},
      {"X_Quorvantis-Yield", "1", false},  {"", "1", false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(IsYieldHeader(c.name, c.value), c.yields) << c.name << ": " << c.value;
}

TEST(ListenerRequest, AYieldIsItsExactPathAndAnyMethodButOptions) {
  struct Case {
    const char* method;
    const char* path;
    YieldDecision withHeader;
  };
  const Case cases[] = {
      {"POST", "/yield", YieldDecision::Granted},       {"POST", "/yield/", YieldDecision::Granted},
      {"GET", "/yield", YieldDecision::Granted},        {"OTHER", "/yield", YieldDecision::Granted},
      {"OPTIONS", "/yield", YieldDecision::NotAYield},  {"POST", "/yield?x=1", YieldDecision::NotAYield},
      {"POST", "/yield//", YieldDecision::NotAYield},   {"POST", "/Yield", YieldDecision::NotAYield},
      {"POST", "/mcp/yield", YieldDecision::NotAYield}, {"POST", "", YieldDecision::NotAYield},
  };
  for (const Case& c : cases) {
    ListenerRequest request;
    request.method = c.method;
    request.path = c.path;
    request.yield = true;
    EXPECT_EQ(DecideYield(request), c.withHeader) << c.method << " " << c.path;
    request.yield = false;
    const YieldDecision without =
        c.withHeader == YieldDecision::Granted ? YieldDecision::Refused : YieldDecision::NotAYield;
    EXPECT_EQ(DecideYield(request), without) << c.method << " " << c.path;
  }
}

}  // namespace
}  // namespace qv
