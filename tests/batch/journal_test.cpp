// The journal: what was written down is known again, whatever became of the run that wrote it.
#include "tools/batch/journal.h"

#include "tests/tools/temp_folder.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

JournalEntry Entry(const std::string& output, std::uint64_t number = 1) {
    return {number, number + 1, number + 2, "640x480,1,2,3,4", output};
}

class JournalFile : public testing::Test {
protected:
    void Open(Journal* journal, const Shard& shard = {}) {
        std::string error;
        remark_.clear();
        ASSERT_TRUE(journal->Open(folder_.Path(), shard, &remark_, &error)) << error;
    }
    void Write(const std::vector<JournalEntry>& entries, const Shard& shard = {}) {
        Journal journal;
        Open(&journal, shard);
        std::string error;
        for (const JournalEntry& entry : entries) EXPECT_TRUE(journal.Add(entry, &error)) << error;
    }
    std::size_t Known(const std::string& output) {
        Journal journal;
        Open(&journal);
        return journal.Find(output).size();
    }

    TempFolder folder_;
    std::string remark_;
};

TEST(JournalLines, AreReadBackAsTheyWereWritten) {
    for (const std::string name : {"a.png", "a b.png", "a\nb\r.png", "100%.png", "%41.png", "\xFF\x01\x7F.png", ""}) {
        JournalEntry entry = Entry(name);
        entry.note = name;
        const std::string line = JournalLine(entry);
        EXPECT_EQ(line.find('\n'), line.size() - 1);
        JournalEntry back;
        ASSERT_TRUE(ReadJournalLine(line.substr(0, line.size() - 1), &back)) << line;
        EXPECT_EQ(back.output, name);
        EXPECT_EQ(back.note, name);
        EXPECT_EQ(back.photo, 1U);
        EXPECT_EQ(back.settings, 2U);
        EXPECT_EQ(back.portrait, 3U);
    }
}

TEST(JournalLines, AnyByteThatIsNotAsItWasMakesALineUnreadable) {
    const std::string line = JournalLine(Entry("a.png"));
    const std::string good = line.substr(0, line.size() - 1);
    JournalEntry entry;
    for (std::size_t at = 0; at < good.size(); ++at) {
        std::string bad = good;
        bad[at] ^= 4;
        EXPECT_FALSE(ReadJournalLine(bad, &entry)) << at;
        EXPECT_FALSE(ReadJournalLine(good.substr(0, at), &entry)) << at;
    }
}

TEST_F(JournalFile, KnowsWhatEarlierRunsWroteTheLatestLast) {
    Write({Entry("a.png", 10), Entry("b.png", 20)});
    Write({Entry("a.png", 30)});
    Journal journal;
    Open(&journal);
    const std::vector<JournalEntry> found = journal.Find("a.png");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0], Entry("a.png", 10));
    EXPECT_EQ(found[1], Entry("a.png", 30));
    EXPECT_TRUE(journal.Find("c.png").empty());
    EXPECT_EQ(remark_, "");
}

TEST_F(JournalFile, ALastLineThatWasCutOffIsForgivenAndHarmsNone) {
    Write({Entry("a.png"), Entry("b.png")});
    const std::string whole = folder_.Get(kJournalName);
    for (std::size_t cut = 1; cut < JournalLine(Entry("b.png")).size(); ++cut) {
        folder_.Put(kJournalName, whole.substr(0, whole.size() - cut));
        {
            Journal journal;
            Open(&journal);
            EXPECT_EQ(remark_, "") << cut;
            EXPECT_EQ(journal.Find("a.png").size(), 1U);
            EXPECT_EQ(journal.Find("b.png").size(), 0U) << cut;
            std::string error;
            ASSERT_TRUE(journal.Add(Entry("c.png"), &error));
        }
        EXPECT_EQ(Known("a.png") + Known("c.png"), 2U) << cut;
    }
}

TEST_F(JournalFile, ABrokenLineIsToldAndTheOthersCount) {
    Write({Entry("a.png"), Entry("b.png"), Entry("c.png")});
    std::string content = folder_.Get(kJournalName);
    content[content.find("b.png")] = 'x';
    folder_.Put(kJournalName, content);
    EXPECT_EQ(Known("a.png") + Known("c.png"), 2U);
    EXPECT_EQ(Known("b.png") + Known("x.png"), 0U);
    EXPECT_NE(remark_.find("has 1 damaged line; its portrait counts as unknown"), std::string::npos) << remark_;
    folder_.Put(kJournalName, "something else\nentirely\n" + content);
    EXPECT_EQ(Known("a.png"), 1U);
    EXPECT_NE(remark_.find("has 3 damaged lines; their portraits count as unknown"), std::string::npos) << remark_;
}

TEST_F(JournalFile, ShardsWriteTheirOwnAndReadAll) {
    Write({Entry("a.png")}, {1, 2});
    Write({Entry("b.png")}, {2, 2});
    EXPECT_EQ(JournalName({1, 2}), ".orvane-journal-1-of-2");
    EXPECT_NE(folder_.Get(JournalName({1, 2})), "");
    EXPECT_EQ(Known("a.png") + Known("b.png"), 2U);
}

TEST_F(JournalFile, TwoRunsOfOneShardDoNotMix) {
    Journal first;
    Open(&first);
    Journal second;
    std::string error;
    EXPECT_FALSE(second.Open(folder_.Path(), {}, &remark_, &error));
    EXPECT_EQ(error, "the journal '" + (folder_ / kJournalName) + "' is in use by another run");
    Journal other;
    EXPECT_TRUE(other.Open(folder_.Path(), {1, 2}, &remark_, &error)) << error;
}

TEST_F(JournalFile, WhatIsNoFileIsNoJournal) {
    std::filesystem::create_directory(TempFolder::Native(folder_ / kJournalName));
    Journal journal;
    std::string error;
    EXPECT_FALSE(journal.Open(folder_.Path(), {}, &remark_, &error));
    EXPECT_EQ(error.rfind("the journal '", 0), 0U) << error;
}

} // namespace
} // namespace orvane::tools
