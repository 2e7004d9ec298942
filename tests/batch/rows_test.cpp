// Rows of reports, written and read.
#include "tools/support/csv.h"
#include "tools/support/json_members.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

TEST(Csv, FieldsAreQuotedWhereTheyMustBe) {
    EXPECT_EQ(CsvRecord().Text("a").Text("").Text("b c").Line(), "a,,b c\r\n");
    EXPECT_EQ(CsvRecord().Text("a,b").Text("say \"x\"").Text("1\n2").Line(), "\"a,b\",\"say \"\"x\"\"\",\"1\n2\"\r\n");
    EXPECT_EQ(CsvRecord().Text("\xFF\xC3\xBC").Line(), "\xEF\xBF\xBD\xC3\xBC\r\n");
}

TEST(Csv, RecordsAreReadBack) {
    const std::vector<std::string> fields{"plain", "", "a,b", "q\"q", "l\r\nl", "\"", ","};
    CsvRecord record;
    for (const std::string& field : fields) record.Text(field);
    const std::string content = record.Line() + "x,y\n";
    std::size_t at = 0;
    std::vector<std::string> read;
    ASSERT_TRUE(ReadCsvRecord(content, &at, &read));
    EXPECT_EQ(read, fields);
    ASSERT_TRUE(ReadCsvRecord(content, &at, &read));
    EXPECT_EQ(read, (std::vector<std::string>{"x", "y"}));
    EXPECT_FALSE(ReadCsvRecord(content, &at, &read));
    EXPECT_EQ(at, content.size());
}

TEST(Csv, ARecordThatBreaksOffIsNone) {
    const std::string content = CsvRecord().Text("a").Text("b\nc").Line();
    for (std::size_t length = 0; length + 1 < content.size(); ++length) {
        std::size_t at = 0;
        std::vector<std::string> read;
        const std::string cut = content.substr(0, length);
        EXPECT_FALSE(ReadCsvRecord(cut, &at, &read)) << length;
        EXPECT_EQ(at, 0U);
    }
}

TEST(JsonMembers, ValuesStandUnderTheirNames) {
    const auto members =
        JsonMembers(R"({"number":12,"input":"a\"b,{}","face":{"x":1,"y":[2,"}"]},"none":null, "s" : "" })");
    ASSERT_TRUE(members.has_value());
    EXPECT_EQ(members->at("number"), "12");
    EXPECT_EQ(JsonValueText(members->at("input")), "a\"b,{}");
    EXPECT_EQ(members->at("face"), R"({"x":1,"y":[2,"}"]})");
    EXPECT_EQ(members->at("none"), "null");
    EXPECT_EQ(JsonValueText(members->at("s")), "");
    EXPECT_TRUE(JsonMembers("{}").has_value());
}

TEST(JsonMembers, WhatIsNoObjectHasNone) {
    const std::string whole = R"({"a":{"b":"c"},"d":1})";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(JsonMembers(whole.substr(0, length)).has_value()) << length;
    }
    for (const char* line : {"", "12", "[1]", R"({"a"})", R"({a:1})", R"({"a":1}x)", R"({"a":})", R"({"a":"\)"}) {
        EXPECT_FALSE(JsonMembers(line).has_value()) << line;
    }
}

} // namespace
} // namespace orvane::tools
