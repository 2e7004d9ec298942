// Coded data of JPEG files, bit by bit.
#include "tools/support/jpeg_bits.h"

#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::tools {
namespace {

using test::Random;

/// A table of random codes that leaves no or some bits without any.
JpegCode RandomCode(Random& random) {
    unsigned char counts[16] = {}, symbols[256];
    std::size_t count = 0;
    int free = 1; // codes of a length
    for (unsigned char& ofLength : counts) {
        free *= 2;
        const int most = std::min(free, 256 - static_cast<int>(count));
        ofLength = static_cast<unsigned char>(random.Int(0, std::min(most, 255)) / random.Int(1, 4));
        free -= ofLength;
        count += ofLength;
    }
    for (unsigned char& symbol : symbols) {
        const int kind = random.Int(0, 9); // mostly short runs of small coefficients
        symbol = static_cast<unsigned char>(kind == 0   ? 0xF0
                                            : kind == 1 ? random.Int(0, 255)
                                                        : random.Int(0, 3) * 16 + random.Int(0, 5));
    }
    JpegCode code;
    EXPECT_TRUE(code.Set(counts, symbols, count));
    return code;
}

/// The coefficients of a block behind the first one, symbol by symbol.
bool BandBySymbols(const JpegCode& code, JpegBits* bits) {
    for (int k = 1; k <= 63; ++k) {
        const int symbol = code.Take(bits);
        if (symbol < 0) return false;
        const int size = symbol & 15;
        if (size == 0) {
            if (symbol != 0xF0) return true; // the rest is zero
            k += 15;
            continue;
        }
        k += symbol >> 4;
        if (k > 63 || size > 10) return false;
        bits->Drop(size);
    }
    return true;
}

TEST(JpegBits, AreTakenUpToTheMarker) {
    const std::string data("\xA5\xFF\x00\x3C\x01\x02\x03\x04\xFF\xD9", 10);
    JpegBits bits(data, 0);
    EXPECT_EQ(0xAU, bits.Take(4));
    EXPECT_EQ(0U, bits.Take(0));
    EXPECT_EQ(0x5FFU, bits.Take(12)) << "the zero behind FF is none of the data";
    EXPECT_EQ(0x3C01U, bits.Take(16));
    std::size_t marker = 0;
    EXPECT_FALSE(bits.ReachMarker(&marker)) << "three bytes are left";
    EXPECT_EQ(0x0203U, bits.Take(16));
    EXPECT_EQ(0U, bits.Take(1));
    EXPECT_TRUE(bits.ReachMarker(&marker));
    EXPECT_EQ(8U, marker);
    EXPECT_EQ(4U, bits.Take(7));
    EXPECT_FALSE(bits.HasRunDry());
    EXPECT_EQ(0U, bits.Take(1));
    EXPECT_TRUE(bits.HasRunDry());
    EXPECT_FALSE(bits.ReachMarker(&marker));
}

TEST(JpegCodes, ABandIsTakenAsItsSymbolsAre) {
    Random random(12);
    int good = 0, bad = 0, dry = 0;
    for (int round = 0; round < 3000; ++round) {
        const JpegCode code = RandomCode(random);
        std::string data;
        for (int i = random.Int(0, 400); i > 0; --i) {
            const int byte = random.Int(0, 7) == 0 ? 255 : random.Int(0, 255);
            data += static_cast<char>(byte);
            if (byte == 255 && random.Int(0, 60) > 0) data += '\0';
        }
        JpegBits fast(data, 0), plain(data, 0);
        for (int block = 0; block < 40 && !plain.HasRunDry(); ++block) {
            const bool expected = BandBySymbols(code, &plain);
            ASSERT_EQ(expected, code.TakeBand(&fast)) << "round " << round << ", block " << block;
            if (!expected) {
                ++bad;
                break;
            }
            ++good;
            ASSERT_EQ(plain.HasRunDry(), fast.HasRunDry()) << "round " << round << ", block " << block;
            JpegBits plainAhead = plain, fastAhead = fast;
            for (int i = 0; i < 4; ++i)
                ASSERT_EQ(plainAhead.Take(16), fastAhead.Take(16)) << "round " << round << ", block " << block;
        }
        dry += plain.HasRunDry() ? 1 : 0;
    }
    EXPECT_GT(good, 3000);
    EXPECT_GT(bad, 300);
    EXPECT_GT(dry, 100);
}

} // namespace
} // namespace orvane::tools
