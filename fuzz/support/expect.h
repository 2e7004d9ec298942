// What must hold whatever the input: where it doesn't, the process ends, which is a finding.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>

namespace orvane::fuzz {

inline void Expect(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

/// What is said of something refused, or left out.
inline void ExpectOneLine(const std::string& said) {
    if (!said.empty() && said.find('\n') == std::string::npos) return;
    std::fprintf(stderr, "said '%s'\n", said.c_str());
    Expect(false, "what is refused gets one line");
}

/// That a result code is one of these.
inline void ExpectOneOf(int result, std::initializer_list<int> documented, const char* what) {
    if (std::find(documented.begin(), documented.end(), result) != documented.end()) return;
    std::fprintf(stderr, "result %d\n", result);
    Expect(false, what);
}

} // namespace orvane::fuzz
