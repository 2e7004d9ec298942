// Whether a BMP file is whole is read from its header alone.
#include "tools/support/bmp_end.h"

#include "tests/tools/picture_files.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

/// A file and a header of 40 bytes for a picture whose rows start at byte 54.
std::string Header(std::uint32_t width, std::uint32_t height, std::uint32_t bits, std::uint32_t compression,
                   std::uint32_t rowsBytes) {
    return "BM" + Low32(0) + Low32(0) + Low32(54) + Low32(40) + Low32(width) + Low32(height) + Low16(1) + Low16(bits) +
           Low32(compression) + Low32(rowsBytes) + std::string(16, '\0');
}

TEST(BmpEnd, AllRowsMustBeThereButNotTheLastPadding) {
    struct {
        const char* what;
        std::string header;
        std::size_t rows; // bytes of the rows at the least
    } const cases[] = {
        {"24 bits", Header(5, 3, 24, 0, 0), 2 * 16 + 15},
        {"24 bits, top row first", Header(5, 0xFFFFFFFDU, 24, 0, 0), 2 * 16 + 15},
        {"one bit", Header(33, 2, 1, 0, 0), 8 + 5},
        {"32 bits with masks", Header(2, 2, 32, 3, 0), 16},
        {"runs", Header(100, 100, 8, 1, 77), 77},
        {"old header", "BM" + Low32(0) + Low32(0) + Low32(26) + Low32(12) + Low16(5) + Low16(3) + Low16(1) + Low16(24),
         47},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(BmpReachesItsEnd(c.header + std::string(c.rows, 'x'))) << c.what;
        EXPECT_FALSE(BmpReachesItsEnd(c.header + std::string(c.rows - 1, 'x'))) << c.what;
    }
}

TEST(BmpEnd, APaletteMustBeThere) {
    std::string header = Header(1, 1, 8, 0, 0);
    header.replace(46, 4, Low32(2)); // colours
    EXPECT_TRUE(BmpReachesItsEnd(header + std::string(8, 'x')));
    EXPECT_FALSE(BmpReachesItsEnd(header + std::string(7, 'x')));
    header.replace(46, 4, Low32(0xBCBCBCBC));
    EXPECT_FALSE(BmpReachesItsEnd(header + std::string(100, 'x')));
    std::string trueColour = Header(1, 1, 24, 0, 0);
    trueColour.replace(46, 4, Low32(1 << 24));
    EXPECT_TRUE(BmpReachesItsEnd(trueColour + std::string(3, 'x'))) << "where there is none they mean nothing";
}

TEST(BmpEnd, HugeSizesDoNotWrapAround) {
    for (const std::uint32_t size : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_FALSE(BmpReachesItsEnd(Header(size, size, 32, 0, 0) + std::string(100, 'x'))) << size;
        EXPECT_FALSE(BmpReachesItsEnd(Header(size, 0x7FFFFFFFU, 0xFFFFU, 0, 0) + std::string(100, 'x'))) << size;
        EXPECT_FALSE(BmpReachesItsEnd(Header(1, 1, 8, 1, size) + std::string(100, 'x'))) << size;
    }
}

TEST(BmpEnd, AHeaderThatBreaksOffIsNotWhole) {
    const std::string header = Header(1, 1, 24, 0, 0);
    for (std::size_t length = 0; length < header.size(); ++length) {
        EXPECT_FALSE(BmpReachesItsEnd(header.substr(0, length))) << length;
    }
    std::string endless = header + std::string(100, 'x');
    endless.replace(14, 4, Low32(0xDC000000));
    EXPECT_FALSE(BmpReachesItsEnd(endless)) << "longer than the file";
}

} // namespace
} // namespace orvane::tools
