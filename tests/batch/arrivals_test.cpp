// When photographs that arrive are given out, over files that the test plays.
#include "tools/batch/arrivals.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using std::chrono::milliseconds;

class ArrivalsTest : public testing::Test {
protected:
    struct Played {
        FileStamp stamp;
        Writers writers = Writers::none;
    };

    FileEyes Eyes() {
        return {[this](const std::string& name) {
                    const auto file = files_.find(name);
                    return file == files_.end() ? std::nullopt : std::optional(file->second.stamp);
                },
                [this](const std::string& name) { return files_.at(name).writers; }};
    }

    void Put(const std::string& name, std::uint64_t size, Writers writers = Writers::none) {
        files_[name] = {{{1, 1}, size, 0, 0}, writers};
    }

    void Notice(const std::string& name, bool isComplete = false) { arrivals_.Notice({name, isComplete}, now_); }

    /// Names that are given out in a while, looked at some ten times a second.
    std::vector<std::string> GivenWithin(milliseconds span) {
        std::vector<std::string> names;
        for (const Arrivals::Time end = now_ + span; now_ < end; now_ += milliseconds(100)) {
            for (Arrivals::Arrival arrival; arrivals_.Next(now_, &arrival);) {
                names.push_back(arrival.name);
                given_[arrival.name] = arrival;
            }
        }
        return names;
    }

    void Finish(const std::string& name) { arrivals_.Finish(given_.at(name), now_); }

    using Names = std::vector<std::string>;

    std::map<std::string, Played> files_;
    std::map<std::string, Arrivals::Arrival> given_;
    Arrivals arrivals_{Eyes()};
    Arrivals::Time now_;
};

TEST_F(ArrivalsTest, ACompleteFileIsGivenOutOnceAndSoon) {
    Put("a.jpg", 1);
    Notice("a.jpg");
    EXPECT_EQ(GivenWithin(milliseconds(300)), Names{"a.jpg"});
    EXPECT_EQ(GivenWithin(milliseconds(5000)), Names());
    Finish("a.jpg");
    EXPECT_EQ(GivenWithin(milliseconds(5000)), Names());
    Notice("a.jpg"); // nobody wrote to it
    arrivals_.NoticeAll({"a.jpg"}, now_);
    EXPECT_EQ(GivenWithin(milliseconds(5000)), Names());
}

TEST_F(ArrivalsTest, AFileIsNotGivenOutAsLongAsSomebodyWrites) {
    Put("a.jpg", 1, Writers::some);
    Notice("a.jpg");
    EXPECT_EQ(GivenWithin(milliseconds(60000)), Names());
    files_["a.jpg"].writers = Writers::none; // told by no event
    EXPECT_EQ(GivenWithin(milliseconds(1000)), Names{"a.jpg"});
}

TEST_F(ArrivalsTest, AFileThatGrowsWithoutWritersIsNotGivenOut) {
    Notice("a.jpg");
    for (std::uint64_t size = 1; size < 50; ++size) {
        Put("a.jpg", size);
        Notice("a.jpg", true);
        EXPECT_EQ(GivenWithin(milliseconds(100)), Names()) << size;
    }
    EXPECT_EQ(GivenWithin(milliseconds(300)), Names{"a.jpg"});
}

TEST_F(ArrivalsTest, AFileOfWhichTheSystemTellsNothingMustStayTheSameForAWhile) {
    Put("a.jpg", 1, Writers::unknown);
    Put("b.jpg", 1, Writers::unknown);
    Notice("a.jpg");
    Notice("b.jpg", true); // closed by its writer
    EXPECT_EQ(GivenWithin(milliseconds(1500)), Names{"b.jpg"});
    Put("a.jpg", 2, Writers::unknown);
    Notice("a.jpg");
    EXPECT_EQ(GivenWithin(milliseconds(1500)), Names());
    EXPECT_EQ(GivenWithin(milliseconds(1000)), Names{"a.jpg"});
}

TEST_F(ArrivalsTest, AFileThatChangesWhileItIsGivenOutIsGivenOutAgain) {
    for (const char* name : {"a.jpg", "b.jpg"}) {
        Put(name, 1);
        Notice(name);
    }
    EXPECT_EQ(GivenWithin(milliseconds(300)), (Names{"a.jpg", "b.jpg"}));
    Put("a.jpg", 2);
    Notice("a.jpg");
    Notice("b.jpg"); // as it was
    EXPECT_EQ(GivenWithin(milliseconds(1000)), Names());
    Finish("a.jpg");
    Finish("b.jpg");
    EXPECT_EQ(GivenWithin(milliseconds(1000)), Names{"a.jpg"});
}

TEST_F(ArrivalsTest, AReturnedFileIsGivenOutAgain) {
    Put("a.jpg", 1);
    Notice("a.jpg");
    EXPECT_EQ(GivenWithin(milliseconds(300)), Names{"a.jpg"});
    arrivals_.Return(given_.at("a.jpg"), now_);
    EXPECT_EQ(GivenWithin(milliseconds(100)), Names{"a.jpg"});
}

TEST_F(ArrivalsTest, AWholeFolderIsGivenOutInTheOrderOfItsNames) {
    for (const char* name : {"c.jpg", "a.jpg", "b.jpg"}) Put(name, 1);
    arrivals_.NoticeAll({"a.jpg", "b.jpg", "c.jpg"}, now_);
    EXPECT_EQ(GivenWithin(milliseconds(300)), (Names{"a.jpg", "b.jpg", "c.jpg"}));
    for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) Finish(name);
    Put("b.jpg", 2); // no event told of it
    arrivals_.NoticeAll({"a.jpg", "b.jpg", "c.jpg"}, now_);
    EXPECT_EQ(GivenWithin(milliseconds(300)), Names{"b.jpg"});
}

TEST_F(ArrivalsTest, AFileThatWasGoneIsANewOne) {
    Put("a.jpg", 1);
    Notice("a.jpg");
    EXPECT_EQ(GivenWithin(milliseconds(300)), Names{"a.jpg"});
    Finish("a.jpg");
    arrivals_.NoticeAll({}, now_);
    arrivals_.NoticeAll({"a.jpg"}, now_);
    EXPECT_EQ(GivenWithin(milliseconds(300)), Names{"a.jpg"});
}

TEST_F(ArrivalsTest, AFileThatGoesBeforeItsTurnIsNotGivenOut) {
    Put("a.jpg", 1);
    Notice("a.jpg");
    files_.clear();
    EXPECT_EQ(GivenWithin(milliseconds(5000)), Names());
}

TEST_F(ArrivalsTest, WhatIsForgottenIsGivenOutAgain) {
    for (const char* name : {"a.jpg", "b.jpg"}) {
        Put(name, 1);
        Notice(name);
    }
    EXPECT_EQ(GivenWithin(milliseconds(300)), (Names{"a.jpg", "b.jpg"}));
    Finish("a.jpg");
    arrivals_.Forget();
    arrivals_.NoticeAll({"a.jpg", "b.jpg"}, now_);
    EXPECT_EQ(GivenWithin(milliseconds(300)), Names{"a.jpg"}); // the other one is still at work
    Finish("b.jpg");
    EXPECT_EQ(GivenWithin(milliseconds(300)), Names{"b.jpg"});
}

TEST_F(ArrivalsTest, NamesOfUnfinishedFilesAreNoPhotographs) {
    for (const char* name :
         {"a.jpg.part", ".a.jpg", "a.tmp", "a.jpg~", "a.jpg.filepart", "a.jpg.crdownload", "a", ""}) {
        EXPECT_FALSE(IsArrivalName(name)) << name;
    }
    for (const char* name : {"a.jpg", "A.JPEG", "\xFF\n.png", "a b'.tif"}) EXPECT_TRUE(IsArrivalName(name)) << name;
    Put("a.jpg.part", 1);
    Notice("a.jpg.part", true);
    arrivals_.NoticeAll({"a.jpg.part"}, now_);
    EXPECT_EQ(GivenWithin(milliseconds(5000)), Names());
}

} // namespace
} // namespace orvane::tools
