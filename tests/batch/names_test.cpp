// Fingerprints, shards and names of outputs: the same on every system and for ever.
#include "tools/batch/output_pattern.h"
#include "tools/batch/shard.h"
#include "tools/support/fingerprint.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

TEST(Fingerprint, IsTheSameOnEverySystem) {
    // By a plain calculation of the same formulas in another language.
    EXPECT_EQ(FingerprintText(NameFingerprint("")), "8570e250fe4c2473");
    EXPECT_EQ(FingerprintText(NameFingerprint("a.jpg")), "302d5598fe33794f");
    EXPECT_EQ(FingerprintText(NameFingerprint("folder/\xC3\xBC\xFF.png")), "6623a443ab2989df");
    EXPECT_EQ(FingerprintText(ContentFingerprint("")), "f259329cf78411c5");
    EXPECT_EQ(FingerprintText(ContentFingerprint("0123456789")), "e7b8d622410fa5d7");
    EXPECT_EQ(FingerprintText(ContentFingerprint(std::string("\0\xFF\x80", 3))), "142e29c7966bba8d");
}

TEST(Fingerprint, OfContentsThatDifferInAByteOrTheirLengthDiffer) {
    const std::string content(1000, 'x');
    for (std::size_t at = 0; at < content.size(); at += 7) {
        std::string other = content;
        other[at] ^= 1;
        EXPECT_NE(ContentFingerprint(other), ContentFingerprint(content)) << at;
    }
    EXPECT_NE(ContentFingerprint(std::string(8, '\0')), ContentFingerprint(std::string(9, '\0')));
    EXPECT_NE(ContentFingerprint("ab"), ContentFingerprint("ba"));
}

TEST(Fingerprint, IsReadBackFromItsTextAndFromNoOther) {
    for (const std::uint64_t value :
         {std::uint64_t{0}, std::uint64_t{1}, ~std::uint64_t{0}, std::uint64_t{0x123456789ABCDEF}}) {
        EXPECT_EQ(FingerprintOf(FingerprintText(value)), value);
    }
    for (const char* text :
         {"", "123", "00000000000000001", "000000000000000g", " 00000000000000a", "-00000000000000a"}) {
        EXPECT_FALSE(FingerprintOf(text).has_value()) << text;
    }
}

TEST(Shard, EveryNameFallsToExactlyOne) {
    for (const int count : {1, 2, 3, 7, 100}) {
        for (int i = 0; i < 500; ++i) {
            const std::string name = "IMG_" + std::to_string(i) + ".jpg";
            int owners = 0;
            for (int index = 1; index <= count; ++index) owners += Shard{index, count}.Has(name) ? 1 : 0;
            EXPECT_EQ(owners, 1) << name << " of " << count;
        }
    }
}

TEST(Shard, NamesAreSharedOutEvenly) {
    for (const int count : {2, 3, 8}) {
        int first = 0;
        for (int i = 0; i < 8000; ++i) first += Shard{1, count}.Has("IMG_" + std::to_string(2 * i) + ".jpg") ? 1 : 0;
        EXPECT_NEAR(first, 8000 / count, 250) << count;
    }
}

TEST(Shard, IsReadFromItsText) {
    ASSERT_TRUE(ShardOf("2/5").has_value());
    EXPECT_EQ(ShardOf("2/5")->index, 2);
    EXPECT_EQ(ShardOf("2/5")->count, 5);
    EXPECT_TRUE(ShardOf("1/1")->IsWhole());
    for (const char* text : {"", "1", "/", "0/2", "3/2", "1/0", "-1/2", "1/2/3", "1 / 2", "a/b", "1/100001"}) {
        EXPECT_FALSE(ShardOf(text).has_value()) << text;
    }
}

TEST(OutputPattern, WordsStandForValues) {
    const PatternValues values{"ann", "b/c", 42};
    const std::pair<const char*, const char*> cases[] = {{"{stem}.png", "ann.png"},
                                                         {"{folder}/{stem}.jpg", "b/c/ann.jpg"},
                                                         {"{number}.png", "000042.png"},
                                                         {"x-{stem}{stem}-{number}.tif", "x-annann-000042.tif"},
                                                         {"sub//{stem}.png", "sub/ann.png"}};
    for (const auto& [pattern, name] : cases) {
        std::string error;
        EXPECT_TRUE(CheckPattern(pattern, &error)) << error;
        EXPECT_EQ(NameByPattern(pattern, values), name);
    }
}

TEST(OutputPattern, AFolderWithoutANameIsLeftOut) {
    EXPECT_EQ(NameByPattern("{folder}/{stem}.png", {"a", "", 1}), "a.png");
}

TEST(OutputPattern, LargeNumbersAreNotCut) {
    EXPECT_EQ(NameByPattern("{number}.png", {"a", "", 12345678}), "12345678.png");
}

TEST(OutputPattern, ValuesAreNotTakenForWords) {
    EXPECT_EQ(NameByPattern("{stem}.png", {"{number}", "", 1}), "{number}.png");
}

TEST(OutputPattern, WhatNamesNoFileBelowTheFolderIsRefused) {
    for (const char* pattern :
         {"{name}.png", "{stem.png", "stem}.png", "{}.png", "/{stem}.png", "../{stem}.png", "a/../../{stem}.png",
          "./{stem}.png", "a\\{stem}.png", "c:{stem}.png", "{stem}", "{stem}.gif", "", "{STEM}.png"}) {
        std::string error;
        EXPECT_FALSE(CheckPattern(pattern, &error)) << pattern;
        EXPECT_EQ(error.rfind("--output-name", 0), 0U) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
}

} // namespace
} // namespace orvane::tools
