#include "translation/local_snapshot.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

TEST(LocalSnapshot, HoldsWhatTheFilesSayInTheAgreedOrder) {
  LocalSnapshot snapshot;
  snapshot.glossaries.push_back(
      ParseGlossaryFile(
          L"g\"1",
          "\xEF\xBB\xBF{\"meta\":{\"updatedAt\":1700000000000,\"name\":\"Caf\xC3\xA9\"},\"entries\":["
          "{\"source\":\"target\",\"target\":\"Ziel\",\"note\":\"n\",\"enabled\":false},"
          "7,{\"source\":\"enabled\",\"target\":\"note\"}]}")
          .value());
  snapshot.glossaries.push_back(ParseGlossaryFile(L"g2", "{\"meta\":{},\"entries\":[]}").value());
  snapshot.instructions.push_back(
      ParseInstructionFile(L"i", "{\"name\":\"n\",\"content\":\"Be\\nbrief\",\"updatedAt\":\"2026-03-01\"}")
          .value());
  EXPECT_EQ(LocalSnapshotData(snapshot),
            L"{\"glossaries\":[{\"id\":\"g\\\"1\",\"name\":\"Café\",\"updatedAt\":1700000000000,\"entries\":["
            L"{\"source\":\"target\",\"target\":\"Ziel\",\"note\":\"n\",\"enabled\":false},"
            L"{\"source\":\"enabled\",\"target\":\"note\",\"note\":\"\",\"enabled\":true}]},"
            L"{\"id\":\"g2\",\"name\":\"\",\"updatedAt\":null,\"entries\":[]}],"
            L"\"instructions\":[{\"id\":\"i\",\"name\":\"n\",\"content\":\"Be\\nbrief\","
            L"\"updatedAt\":\"2026-03-01\"}]}");
  EXPECT_EQ(LocalSnapshotData({}), L"{\"glossaries\":[],\"instructions\":[]}");
}

/// The value goes into a script: only what is harmless there may.
TEST(LocalSnapshot, ATimeThatIsNoScalarIsLeftOut) {
  EXPECT_EQ(ParseInstructionFile(L"i", "{\"content\":\"\",\"updatedAt\":{\"a\":alert}}")->updatedAt, L"null");
  EXPECT_EQ(ParseInstructionFile(L"i", "{\"content\":\"\",\"updatedAt\":\"a\\\"b\"}")->updatedAt,
            L"\"a\\\"b\"");
}

TEST(LocalSnapshot, MalformedFilesAreNoItems) {
  for (const char* bytes :
       {"", "null", "[]", "{}", "{\"meta\":{},\"entries\":{}}", "{\"meta\":[],\"entries\":[]}",
        "{\"entries\":[]}", "{\"meta\":{}}", "{\"meta\":{},\"entries\":[}", "{\"meta\":{},\"entries\":[]",
        "{\"meta\":{\"name\":\"\xE9\"},\"entries\":[]}", "{\"meta\":{\"updatedAt\":alert},\"entries\":[]}"})
    EXPECT_FALSE(ParseGlossaryFile(L"g", bytes)) << bytes;
  for (const char* bytes : {"", "{\"name\":\"n\"}", "{\"content\":1}", "{\"content\":\"x\"",
                            "{\"content\":\"\xFF\"}", "{\"content\":\"\",\"updatedAt\":1;alert(1)}"})
    EXPECT_FALSE(ParseInstructionFile(L"i", bytes)) << bytes;
}

TEST(LocalSnapshot, AnIdIsTheNameBeforeTheExtension) {
  EXPECT_EQ(ItemIdOf(L"a.b.json"), L"a.b");
  EXPECT_EQ(ItemIdOf(L"名.JSON"), L"名");
  for (const wchar_t* name : {L".json", L"json", L"", L"a.jsonx", L"a.json.bak", L"a.txt"})
    EXPECT_FALSE(ItemIdOf(name));
}

}  // namespace
}  // namespace qv
