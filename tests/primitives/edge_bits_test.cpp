#include "primitives/edge_bits.h"

#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane::test {
namespace {

/// A map as rows of text: '#' a ridge, 'E' an edge, which is a ridge too, '.' nothing.
using Map = std::vector<std::string>;

std::vector<uint64> BitsOf(const Map& map, const std::string& marks, int32 words) {
    std::vector<uint64> bits(map.size() * static_cast<std::size_t>(words));
    for (std::size_t y = 0; y < map.size(); ++y) {
        for (std::size_t x = 0; x < map[y].size(); ++x) {
            if (marks.find(map[y][x]) == std::string::npos) continue;
            bits[y * static_cast<std::size_t>(words) + x / 64] |= uint64{1} << x % 64;
        }
    }
    return bits;
}

/// The map after the following of its ridges.
Map Followed(const Map& map) {
    const int32 words = WordsOf(static_cast<int32>(map[0].size()));
    const std::vector<uint64> ridges = BitsOf(map, "#E", words);
    std::vector<uint64> edges = BitsOf(map, "E", words);
    std::vector<uint8> marks(map.size());
    FollowRidges(ridges.data(), edges.data(), words, static_cast<int32>(map.size()), marks.data());
    Map result = map;
    for (std::size_t y = 0; y < map.size(); ++y) {
        for (std::size_t x = 0; x < map[y].size(); ++x) {
            if ((edges[y * static_cast<std::size_t>(words) + x / 64] >> x % 64 & 1) != 0) result[y][x] = 'E';
        }
    }
    return result;
}

/// The same by a flood from each edge, a pixel at a time.
Map Flooded(Map map) {
    const auto height = static_cast<int32>(map.size()), width = static_cast<int32>(map[0].size());
    const auto at = [&](int32 x, int32 y) -> char& {
        return map[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
    };
    std::vector<std::pair<int32, int32>> open;
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            if (at(x, y) == 'E') open.emplace_back(x, y);
        }
    }
    while (!open.empty()) {
        const auto [x, y] = open.back();
        open.pop_back();
        for (int32 v = std::max(y - 1, 0); v <= std::min(y + 1, height - 1); ++v) {
            for (int32 u = std::max(x - 1, 0); u <= std::min(x + 1, width - 1); ++u) {
                if (at(u, v) != '#') continue;
                at(u, v) = 'E';
                open.emplace_back(u, v);
            }
        }
    }
    return map;
}

TEST(FollowRidges, TakesWhatIsJoinedBySidesAndCorners) {
    EXPECT_EQ((Map{"EEE..#", "...E..", "E...E."}), Followed({"##E..#", "...#..", "E...#."}));
}

TEST(FollowRidges, CrossesTheBordersOfWordsBothWays) {
    for (const int32 start : {0, 63, 64, 100, 127, 128, 191}) {
        Map map(3, std::string(192, '.'));
        map[1] = std::string(192, '#');
        map[1][static_cast<std::size_t>(start)] = 'E';
        Map expected = map;
        expected[1] = std::string(192, 'E');
        EXPECT_EQ(expected, Followed(map)) << "from " << start;
    }
}

TEST(FollowRidges, PassesCornersBetweenWords) {
    Map map(2, std::string(128, '.'));
    map[0][63] = 'E';
    map[1][64] = '#';
    EXPECT_EQ('E', Followed(map)[1][64]);
    Map other(2, std::string(128, '.'));
    other[0][64] = 'E';
    other[1][63] = '#';
    EXPECT_EQ('E', Followed(other)[1][63]);
}

TEST(FollowRidges, FollowsARidgeThatWindsUpAndDown) {
    // Teeth: each is climbed and left again, so that no single sweep gets far.
    Map map(40, std::string(150, '.'));
    for (std::size_t x = 0; x < 150; x += 4) {
        for (std::size_t y = 0; y < 40; ++y) map[y][x] = '#';
        for (std::size_t i = 1; i < 4 && x + i < 150; ++i) map[x % 8 == 0 ? 39 : 0][x + i] = '#';
    }
    map[0][0] = 'E';
    const Map followed = Followed(map);
    EXPECT_EQ(Flooded(map), followed);
    EXPECT_EQ('E', followed[20][148]) << "the last tooth";
}

TEST(FollowRidges, LeavesAMapWithoutEdgesAlone) {
    const Map map = {"###", "#.#", "###"};
    EXPECT_EQ(map, Followed(map));
}

TEST(FollowRidges, IsAFloodOnRandomMaps) {
    Random random(7);
    for (int32 n = 0; n < 3000; ++n) {
        const int32 width = random.Int(1, 200), height = random.Int(1, 24), density = random.Int(20, 75);
        Map map(static_cast<std::size_t>(height), std::string(static_cast<std::size_t>(width), '.'));
        for (std::string& row : map) {
            for (char& pixel : row) {
                if (random.Int(0, 99) < density) pixel = random.Int(0, 60) == 0 ? 'E' : '#';
            }
        }
        ASSERT_EQ(Flooded(map), Followed(map)) << width << " by " << height << ", density " << density;
    }
}

} // namespace
} // namespace orvane::test
