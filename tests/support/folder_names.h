// Names of folders and files as people give them, in many scripts.
#pragma once

namespace orvane::test {

struct FolderName {
    const char* what;
    const char8_t* text;
};

inline constexpr FolderName kFolderNames[] = {
    {"spaces", u8"My  Photos (2) & more"},
    {"Greek", u8"\u03A6\u03C9\u03C4\u03BF\u03B3\u03C1\u03B1\u03C6\u03AF\u03B5\u03C2"},
    {"Chinese", u8"\u8BC1\u4EF6\u7167\u7247"},
    {"Arabic", u8"\u0635\u0648\u0631 \u0634\u062E\u0635\u064A\u0629"},
    {"Latin with accents", u8"Universit\u00E4t \u00D8st \u00E7a"},
    {"accents apart from their letters", u8"Cafe\u0301 Mu\u0308nchen"},
    {"pictures beyond the first 65,536 characters", u8"\U0001F4F7 \U0001F642"},
    {"signs that other programs give a meaning", u8"100% [a]{b}c,d=e'f!^~#"},
};

} // namespace orvane::test
