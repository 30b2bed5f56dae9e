#include <gtest/gtest.h>

#include <vector>

#include "panel/event_arguments.h"

namespace qv {
namespace {

struct Case {
  const char* what;
  std::size_t parameter;
  std::size_t count;
  std::vector<std::int32_t> named;
  std::optional<std::size_t> index;
};

TEST(EventArguments, AreFoundInEveryStyleOfCall) {
  const Case cases[] = {
      {"all named: first stands first", 0, 2, {0, 1}, 0},
      {"all named: second stands second", 1, 2, {0, 1}, 1},
      {"named in another order", 0, 2, {1, 0}, 1},
      {"positional: first stands last", 0, 2, {}, 1},
      {"positional: last stands first", 1, 2, {}, 0},
      {"one argument, positional", 0, 1, {}, 0},
      // The last parameter by name, the others by position.
      {"mixed: named one", 2, 3, {2}, 0},
      {"mixed: first positional", 0, 3, {2}, 2},
      {"mixed: second positional", 1, 3, {2}, 1},
      {"not passed", 2, 2, {}, std::nullopt},
      {"no arguments", 0, 0, {}, std::nullopt},
      {"named call without it", 0, 1, {1}, std::nullopt},
      {"a property put names nothing that is a parameter", 1, 1, {-3}, std::nullopt},
      {"more names than arguments", 0, 1, {0, 1}, std::nullopt},
  };
  for (const Case& c : cases)
    EXPECT_EQ(ArgumentIndex(c.parameter, c.count, c.named), c.index) << c.what;
}

}  // namespace
}  // namespace qv
