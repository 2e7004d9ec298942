// A file with the bytes that a target was given.
#pragma once

#include "fuzz/support/expect.h"

#include <fstream>
#include <string>

namespace orvane::fuzz {

inline void WriteFile(const std::string& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    Expect(file.good(), "a file is written");
}

} // namespace orvane::fuzz
