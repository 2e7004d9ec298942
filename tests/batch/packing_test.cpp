// The bytes between a run and its workers.
#include "tools/batch/packing.h"

#include <gtest/gtest.h>
#include <limits>

namespace orvane::tools {
namespace {

TEST(Packing, ValuesComeBackInTheirOrder) {
    const std::string text("a\0\xFF\n", 4);
    const std::string bytes = Packer()
                                  .Integer(-5)
                                  .Text(text)
                                  .Real(0.1)
                                  .Flag(true)
                                  .Text("")
                                  .Integer(std::numeric_limits<std::int64_t>::min())
                                  .Bytes();
    Unpacker unpacker(bytes);
    EXPECT_EQ(unpacker.Integer(), -5);
    EXPECT_EQ(unpacker.Text(), text);
    EXPECT_EQ(unpacker.Real(), 0.1);
    EXPECT_TRUE(unpacker.Flag());
    EXPECT_FALSE(unpacker.IsGood()) << "something is left";
    EXPECT_EQ(unpacker.Text(), "");
    EXPECT_EQ(unpacker.Integer(), std::numeric_limits<std::int64_t>::min());
    EXPECT_TRUE(unpacker.IsGood());
}

TEST(Packing, BytesThatBreakOffAreNotGoodAndReadNothingBeyond) {
    const std::string bytes = Packer().Integer(7).Text("hello").Bytes();
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const std::string cut = bytes.substr(0, length);
        Unpacker unpacker(cut);
        unpacker.Integer();
        EXPECT_EQ(unpacker.Text(), "") << length;
        EXPECT_FALSE(unpacker.IsGood()) << length;
    }
    const std::string huge = Packer().Integer(-1).Bytes(); // as a length
    EXPECT_EQ(Unpacker(huge).Text(), "");
}

TEST(Packing, AFrameTellsItsLength) {
    const std::string bytes = FrameBytes({'q', std::string(70000, 'x')});
    EXPECT_EQ(bytes.size(), kFrameStart + 70000);
    EXPECT_EQ(FrameLength(bytes.data()), 70000U);
    EXPECT_FALSE(FrameLength("no frame").has_value());
}

} // namespace
} // namespace orvane::tools
