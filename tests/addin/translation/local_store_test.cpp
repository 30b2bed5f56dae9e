#include "translation/local_store.h"
#include "translation/local_snapshot_worker.h"

#include <gtest/gtest.h>

#include "foundation/text.h"
#include "run_fixture.h"
#include "trace_tails.h"

namespace qv {
namespace {

class LocalStore : public testing::Test {
 protected:
  void Write(std::wstring_view name, std::string_view bytes) {
    const std::filesystem::path path(scratch.Path(name));
    std::filesystem::create_directories(path.parent_path());
    WriteBytes(path.wstring(), bytes);
  }
  void Glossary(std::wstring_view name) { Write(name, R"({"meta":{"name":"n"},"entries":[]})"); }

  static std::wstring Ids(const LocalSnapshot& snapshot) {
    std::wstring ids;
    for (const StoredGlossary& glossary : snapshot.glossaries)
      ids += glossary.id + L";";
    for (const StoredInstruction& instruction : snapshot.instructions)
      ids += instruction.id + L";";
    return ids;
  }

  ScratchFolder scratch;
};

TEST_F(LocalStore, MissingFoldersAreMade) {
  const std::wstring folder = scratch.Path(L"Quorvantis");
  EXPECT_EQ(Ids(ReadLocalStore(folder)), L"");
  for (const wchar_t* part : {L"\\glossaries\\global", L"\\instructions\\global"})
    EXPECT_TRUE(std::filesystem::is_directory(folder + part));
  EXPECT_EQ(Ids(ReadLocalStore(L"")), L"");
  EXPECT_TRUE(LocalStoreFolder().ends_with(L"\\Quorvantis"));
}

TEST_F(LocalStore, EveryReadableItemIsThereInOrder) {
  Glossary(L"glossaries\\b.json");
  Glossary(L"glossaries\\a b'%.x.JSON");
  Glossary(L"glossaries\\名\xD83D\xDE00.json");
  Glossary(L"glossaries\\global\\a.json");
  Write(L"instructions\\global\\i.json", R"({"content":"c"})");
  // None of these is an item.
  Glossary(L"glossaries\\c.jsonx");
  Glossary(L"glossaries\\.json");
  Glossary(L"glossaries\\folder.json\\inner.json");
  Glossary(L"glossaries\\other\\d.json");
  Write(L"glossaries\\empty.json", "");
  Write(L"glossaries\\broken.json", R"({"meta":{"name":"n"},"entries":[)");
  Write(L"instructions\\glossary.json", R"({"meta":{"name":"n"},"entries":[]})");
  const TraceTails logs;
  EXPECT_EQ(Ids(ReadLocalStore(scratch.Path())), L"a b'%.x;b;名\xD83D\xDE00;a;i;");
  for (const wchar_t* skipped :
       {L"glossaries\\empty.json", L"glossaries\\broken.json", L"instructions\\glossary.json"})
    EXPECT_TRUE(Contains(logs.PaneLines(),
                         Concat(L"Local store skipped malformed ", scratch.Path(skipped), L"\r\n")));
}

TEST_F(LocalStore, WhatIsTooLargeIsSkippedAlone) {
  const std::string fits = R"({"meta":{},"entries":[]})";
  Write(L"glossaries\\a.json", fits + " ");
  Write(L"glossaries\\b.json", fits);
  Write(L"glossaries\\c.json", fits);
  Write(L"instructions\\d.json", R"({"content":"c"})");
  const TraceTails logs;
  EXPECT_EQ(Ids(ReadLocalStore(scratch.Path(), {fits.size(), 1000})), L"b;c;d;");
  EXPECT_TRUE(Contains(logs.PaneLines(), L"Local store skipped unreadable or too large "));
  // The total counts what was read; a smaller item behind a skipped one may still fit.
  EXPECT_EQ(Ids(ReadLocalStore(scratch.Path(), {1000, 2 * fits.size()})), L"a;d;");
}

class LocalSnapshotAnswer : public RunTest {};

TEST_F(LocalSnapshotAnswer, ComesLaterFromAWorker) {
  const long uses = pane->context.use_count();
  AnswerWithLocalSnapshot(pane->context, pane->page, L"r\"1");
  EXPECT_TRUE(pane->page.received.empty()) << "the store was read on this thread";
  ASSERT_TRUE(
      PumpUntilPageHas(L"_onResponse({\"requestId\":\"r\\\"1\",\"ok\":true,\"data\":{\"glossaries\":["));
  EXPECT_TRUE(PumpUntil([&] { return pane->context.use_count() == uses; }));

  AnswerWithLocalSnapshot(pane->context, pane->page, L"late");
  pane->Close();
  EXPECT_TRUE(PumpUntil([&] { return pane->context.use_count() == uses; }));
  EXPECT_FALSE(pane->page.Has(L"late"));
}

}  // namespace
}  // namespace qv
