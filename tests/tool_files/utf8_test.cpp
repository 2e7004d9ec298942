// Texts of others become UTF-8 on one line, whatever they hold.
#include "tools/support/utf8.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

constexpr bool kWideUnits = sizeof(wchar_t) == 4;

/// Wide characters by their values, which literals may not hold.
std::wstring Units(std::initializer_list<unsigned> values) {
    std::wstring text;
    for (const unsigned value : values) text += static_cast<wchar_t>(value);
    return text;
}

TEST(Utf8, WideTextOfEveryLengthIsEncoded) {
    EXPECT_EQ(Utf8({}), "");
    EXPECT_EQ(Utf8(Units({'a', 0x7F, 0x80, 0x7FF})), "a\x7F\xC2\x80\xDF\xBF");
    EXPECT_EQ(Utf8(Units({0x800, 0xFFFF})), "\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(Utf8(Units({0xD83D, 0xDE00})), "\xF0\x9F\x98\x80") << "two halves of 16 bits";
    EXPECT_EQ(Utf8(Units({0xDBFF, 0xDFFF})), "\xF4\x8F\xBF\xBF");
    if constexpr (kWideUnits) {
        EXPECT_EQ(Utf8(Units({0x1F600, 0x10FFFF})), "\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF");
    }
}

TEST(Utf8, WhatIsNoCharacterBecomesTheReplacementCharacter) {
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(Utf8(Units({0xD83D})), replaced);
    EXPECT_EQ(Utf8(Units({0xD83D, 'a'})), replaced + "a");
    EXPECT_EQ(Utf8(Units({0xDE00, 0xD83D})), replaced + replaced);
    EXPECT_EQ(Utf8(Units({0xD83D, 0xD83D, 0xDE00})), replaced + "\xF0\x9F\x98\x80");
    if constexpr (kWideUnits) {
        EXPECT_EQ(Utf8(Units({0x110000, 0xFFFFFFFF})), replaced + replaced);
    }
}

TEST(OneLine, ControlCharactersBecomeQuestionMarks) {
    EXPECT_EQ(OneLine("a\n\x1B[2J\x7F"), "a??[2J?");
    EXPECT_EQ(OneLine("a\xC2\x85\xC2\x9Bz"), "a??z") << "those beyond ASCII too";
    EXPECT_EQ(OneLine("\xC2\xA0\xC3\xA9"), "\xC2\xA0\xC3\xA9") << "no control characters";
    EXPECT_EQ(OneLine("\x85 \xC2"), "\x85 \xC2") << "a name that is no UTF-8 stays";
}

} // namespace
} // namespace orvane::tools
