// The table of documents: what is read from it, and which nonsense is refused with which line.
#include "tools/documents/documents.h"

#include "tools/support/whole_file.h"

#include <gtest/gtest.h>

#include <set>

namespace orvane::tools {
namespace {

constexpr const char* kHead = "# one\n\n[own]\ntitle = \"Own\"\nauthority = \"We\"\nsource = \"here\"\n";
constexpr const char* kRest = "read = 2026-11-22\nwidth = 35\nheight = 45\n";

/// A good document with more lines, of which the first is the tenth line.
std::string With(const std::string& more) { return std::string(kHead) + kRest + more; }

std::vector<Document> Read(const std::string& text) {
    std::vector<Document> documents;
    std::string error;
    EXPECT_TRUE(ReadDocuments(text, "t", &documents, &error)) << error;
    return documents;
}

std::string Refused(const std::string& text) {
    std::vector<Document> documents;
    std::string error;
    EXPECT_FALSE(ReadDocuments(text, "t", &documents, &error)) << "taken: " << text;
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

TEST(Documents, ADocumentOfTheKeysThatItMustHaveHasOpenBands) {
    const std::vector<Document> documents = Read(With(""));
    ASSERT_EQ(documents.size(), 1U);
    const Document& own = documents[0];
    EXPECT_EQ(own.name, "own");
    EXPECT_EQ(own.title, "Own");
    EXPECT_EQ(own.authority, "We");
    EXPECT_EQ(own.source, "here");
    EXPECT_EQ(own.read, "2026-11-22");
    EXPECT_EQ(own.width, 35);
    EXPECT_EQ(own.height, 45);
    EXPECT_EQ(own.resolution, 300);
    EXPECT_TRUE(own.head.IsOpen() && own.eyes.IsOpen() && own.above.IsOpen());
    EXPECT_EQ(own.headTop, HeadTop::unsaid);
    EXPECT_EQ(own.background, BackgroundRule::any);
    EXPECT_FALSE(own.forbidsEdits);
    EXPECT_FALSE(own.leastBytes || own.mostBytes);
    EXPECT_TRUE(own.remarks.empty());
}

TEST(Documents, EveryKeyIsRead) {
    const Document own = Read(With("resolution = 290.3\nhead = { from = 32, to = 36.5 }\nhead-top = \"hair\"\n"
                                   "eyes = { from = 22 }\nabove = { to = 6 }\nbackground = \"plain light\"\n"
                                   "edits = \"forbidden\"\nleast-kb = 54\nmost-kb = 240\n"
                                   "remarks = [\"one\", \"two\"]\n"))[0];
    EXPECT_EQ(own.resolution, 290.3);
    EXPECT_EQ(own.head.low, 32);
    EXPECT_EQ(own.head.high, 36.5);
    EXPECT_EQ(own.headTop, HeadTop::hair);
    EXPECT_EQ(own.eyes.low, 22);
    EXPECT_FALSE(own.eyes.high);
    EXPECT_FALSE(own.above.low);
    EXPECT_EQ(own.above.high, 6);
    EXPECT_EQ(own.background, BackgroundRule::plainLight);
    EXPECT_TRUE(own.forbidsEdits);
    EXPECT_EQ(own.leastBytes, 54U * 1024);
    EXPECT_EQ(own.mostBytes, 240U * 1000);
    EXPECT_EQ(own.remarks, (std::vector<std::string>{"one", "two"}));
}

TEST(Documents, DocumentsStandInTheOrderOfTheFile) {
    const std::string rest = std::string("title = \"T\"\nauthority = \"A\"\nsource = \"S\"\n") + kRest;
    const std::vector<Document> documents = Read("[zebra]\n" + rest + "[apple]\n" + rest + "[mole]\n" + rest);
    ASSERT_EQ(documents.size(), 3U);
    EXPECT_EQ(documents[0].name, "zebra");
    EXPECT_EQ(documents[1].name, "apple");
    EXPECT_EQ(documents[2].name, "mole");
}

TEST(Documents, NonsenseIsToldWithItsLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"colour = 3\n", "t:10: no document has a key 'colour'"},
        {"resolution = -300\n", "t:10: resolution wants a number, 50 to 2400, not -300"},
        {"resolution = nan\n", "t:10: resolution wants a number, 50 to 2400, not nan"},
        {"resolution = \"300\"\n", "t:10: resolution wants a number, 50 to 2400"},
        {"\nhead = { from = 36, to = 32 }\n", "t:11: head is upside down, from 36 to 32"},
        {"head = { from = -1, to = 32 }\n", "t:10: head wants a number, 1 to 1000, not -1"},
        {"head = { from = 0, to = 0 }\n", "t:10: head wants a number, 1 to 1000, not 0"},
        {"eyes = { from = -1 }\n", "t:10: eyes wants a number, 0 to 1000, not -1"},
        {"head = { least = 1 }\n", "t:10: head knows from and to, not 'least'"},
        {"head = {}\n", "t:10: head wants a band such as { from = 32, to = 36 }"},
        {"head = [32, 36]\n", "t:10: head wants a band such as { from = 32, to = 36 }"},
        {"head = { from = 32, to = 46 }\n", "t:10: head reaches beyond the height of 45"},
        {"eyes = { from = 45 }\n", "t:10: eyes reaches beyond the height of 45"},
        {"above = { to = 50 }\n", "t:10: above reaches beyond the height of 45"},
        {"head-top = \"hat\"\n", "t:10: head-top wants one of \"skull\", \"hair\""},
        {"background = \"blue\"\n", "t:10: background wants one of \"any\", \"plain light\", \"white\""},
        {"edits = true\n", "t:10: edits wants one of \"forbidden\", \"not mentioned\""},
        {"least-kb = 0\n", "t:10: least-kb wants a number, 1 to 99999, not 0"},
        {"most-kb = 1.5\n", "t:10: most-kb wants a whole number of kilobytes"},
        {"least-kb = 300\nmost-kb = 240\n", "t:10: the floor least-kb is above the ceiling most-kb"},
        {"remarks = \"one\"\n", "t:10: remarks wants a list of texts"},
        {"remarks = [3]\n", "t:10: remarks wants one line of text in quotes"},
        {"title = \"again\"\n", "t:10: "}, // the rest is the parser's
        {"head = { from = 32\n", "t:10: "}};
    for (const auto& [more, line] : cases) EXPECT_EQ(Refused(With(more)).substr(0, std::string(line).size()), line);
}

TEST(Documents, WhatADocumentMustHaveIsToldWhenItIsMissingOrWrong) {
    const std::string head = kHead;
    EXPECT_EQ(Refused(head + "width = 35\nheight = 45\n"), "t:3: 'own' has no read");
    EXPECT_EQ(Refused("[own]\n"), "t:1: 'own' has no title");
    EXPECT_EQ(Refused("[Own]\n"), "t:1: a document's name has small letters, digits and dashes, not 'Own'");
    EXPECT_EQ(Refused("own = 3\n"), "t:1: 'own' stands outside of a document");
    EXPECT_EQ(Refused(""), "t:1: holds no document");
    EXPECT_EQ(Refused("[#own]\n").substr(0, 4), "t:1:") << "the rest is the parser's";
    EXPECT_EQ(Refused("# nothing\n"), "t:1: holds no document");
    EXPECT_EQ(Refused("[own]\ntitle = \"\"\n"), "t:2: title wants one line of text in quotes");
    EXPECT_EQ(Refused("[own]\ntitle = \"a\\nb\"\n"), "t:2: title wants one line of text in quotes");
    EXPECT_EQ(Refused(head + "width = -35\n"), "t:7: width wants a number, 5 to 1000, not -35");
    EXPECT_EQ(Refused(head + "read = 2026-11-22\nwidth = 1000\nheight = 1000\nresolution = 1200\n"),
              "t:3: 'own' has 47244x47244 pixels, more than a picture may have");
}

TEST(Documents, WhatIsRepeatedOfATableStaysOneLine) {
    EXPECT_EQ(Refused("[\"a\\nb\"]\n"), "t:1: a document's name has small letters, digits and dashes, not 'a?b'");
    EXPECT_EQ(Refused(With("\"a\\nb\" = 1\n")), "t:10: no document has a key 'a?b'");
    EXPECT_EQ(Refused("[own]\ntitle = t\n").substr(0, 4), "t:2:") << "the rest is the parser's";
    EXPECT_EQ(Refused("[own]\ntitle = \"a\\u001Bb\"\n"), "t:2: title wants one line of text in quotes");
}

TEST(Documents, LettersBeyondAsciiStandInQuotesAlone) {
    EXPECT_EQ(Read(With("remarks = [ \"gr\u00FC\u00DFe\", \"\"\"a\\\n \u00E9\"\"\" ] # \u00DF\n"))[0].remarks,
              (std::vector<std::string>{"gr\u00FC\u00DFe", "a\u00E9"}));
    for (const char* letter : {"\u00E9", "\u03A9", "\u1681", "\u3001", "\uFE00"}) {
        for (const std::string& line :
             {letter + std::string(" = 1\n"), std::string("head-top = \"hair\"") + letter + "\n",
              std::string("resolution = 30") + letter + "\n"}) {
            EXPECT_EQ(Refused(With(line)).substr(0, 5), "t:10:") << line;
        }
    }
}

TEST(Documents, ADayThatIsNoneIsRefused) {
    const std::string head = kHead;
    const std::string wants = "t:7: read wants the day when the rule was read, such as 2026-11-22";
    EXPECT_EQ(Refused(head + "read = \"2026-11-22\"\n"), wants);
    EXPECT_EQ(Refused(head + "read = 2026-11-22T10:00:00Z\n"), wants);
    EXPECT_EQ(Refused(head + "read = 0001-01-01\n"), wants);
    EXPECT_EQ(Refused(head + "read = 2026-02-30\n").substr(0, 4), "t:7:");
    EXPECT_EQ(Refused(head + "read = 2026-13-01\n").substr(0, 4), "t:7:");
}

TEST(Documents, AFileIsNamedWithWhatIsWrongWithIt) {
    std::vector<Document> documents;
    std::string error;
    EXPECT_FALSE(LoadDocuments("nowhere/none.toml", &documents, &error));
    EXPECT_EQ(error.rfind("the table 'nowhere/none.toml': ", 0), 0U) << error;
}

/// Millimetres whose pixels must be those of the portraits that bureaus know.
TEST(Documents, PixelsAreRoundedFromMillimetres) {
    EXPECT_EQ(PixelsOf(35, 300), 413);
    EXPECT_EQ(PixelsOf(45, 300), 531);
    EXPECT_EQ(PixelsOf(35, 600), 827);
    EXPECT_EQ(PixelsOf(45, 600), 1063);
    EXPECT_EQ(PixelsOf(50.8, 300), 600);
    EXPECT_EQ(PixelsOf(33, 300), 390);
    EXPECT_EQ(PixelsOf(48, 300), 567);
    EXPECT_EQ(PixelsOf(50, 300), 591);
    EXPECT_EQ(PixelsOf(70, 300), 827);
}

class ShippedTable : public testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(LoadDocuments(ORVANE_DOCUMENTS, &documents_, &error)) << error;
    }
    const Document& Find(const std::string& name) const {
        const auto found = std::find_if(documents_.begin(), documents_.end(), [&](auto& d) { return d.name == name; });
        EXPECT_NE(found, documents_.end()) << name;
        return found == documents_.end() ? documents_.front() : *found;
    }
    std::vector<Document> documents_;
};

TEST_F(ShippedTable, HasPassportsOfEachItsOwnBand) {
    const std::tuple<const char*, double, double, double, double> heads[] = {
        {"schengen-visa", 35, 45, 32, 36},   {"germany-passport", 35, 45, 32, 36},
        {"uk-passport", 35, 45, 29, 34},     {"australia-passport", 35, 45, 32, 36},
        {"japan-passport", 35, 45, 32, 36},  {"netherlands-passport", 35, 45, 26, 30},
        {"canada-passport", 50, 70, 31, 36}, {"china-passport", 33, 48, 28, 33},
        {"china-visa", 33, 48, 28, 33},      {"india-passport", 35, 45, 36, 38.25},
        {"korea-passport", 35, 45, 32, 36},  {"us-passport", 50.8, 50.8, 25, 35},
        {"us-visa", 50.8, 50.8, 25.4, 35.05}};
    for (const auto& [name, width, height, low, high] : heads) {
        const Document& document = Find(name);
        EXPECT_EQ(document.width, width) << name;
        EXPECT_EQ(document.height, height) << name;
        EXPECT_EQ(document.head.low, low) << name;
        EXPECT_EQ(document.head.high, high) << name;
    }
    for (const char* name : {"brazil-passport", "id-1-card", "cr80-badge"}) Find(name);
}

TEST_F(ShippedTable, GivesThePixelsThatAuthoritiesName) {
    const std::tuple<const char*, int, int> sizes[] = {{"schengen-visa", 413, 531},
                                                       {"us-visa", 600, 600},
                                                       {"india-passport", 630, 810},
                                                       {"singapore-passport", 400, 514},
                                                       {"new-zealand-passport", 900, 1200},
                                                       {"india-pan", 197, 276},
                                                       {"india-exam-form", 200, 230},
                                                       {"saudi-e-visa", 200, 200},
                                                       {"nigeria-passport", 600, 800},
                                                       {"kenya-e-visa", 500, 500},
                                                       {"cr80-badge", 300, 375}};
    for (const auto& [name, width, height] : sizes) {
        const Document& document = Find(name);
        EXPECT_EQ(PixelsOf(document.width, document.resolution), width) << name;
        EXPECT_EQ(PixelsOf(document.height, document.resolution), height) << name;
    }
}

TEST_F(ShippedTable, HasEveryNameOnce) {
    std::set<std::string> names;
    for (const Document& document : documents_) EXPECT_TRUE(names.insert(document.name).second) << document.name;
    EXPECT_GT(names.size(), 40U);
}

} // namespace
} // namespace orvane::tools
