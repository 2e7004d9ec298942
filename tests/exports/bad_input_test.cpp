// What a host may hand in by mistake or by malice: a code each time, and the next session works.
#include "tests/exports/exports_fixture.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace orvane {
namespace {

using test::DibHeader;
using test::HostBlock;

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

/// The gigabytes of addresses that this program has: on Windows half of what 32 bits reach.
#ifdef _WIN32
constexpr int kAddressGigabytes = sizeof(void*) == 4 ? 2 : 1 << 17;
#else
constexpr int kAddressGigabytes = sizeof(void*) == 4 ? 4 : 1 << 17;
#endif

class BadInput : public test::ExportsTest {
protected:
    void ExpectGoodSessionWorks() {
        ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 160), ORV_OK);
        ASSERT_EQ(lib.orv_SetFaceCropRatio(0.75F), ORV_OK);
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        EXPECT_GE(OutputHeader().width, 120);
    }
    void ExpectNoPicture(const DibHeader& header, std::size_t pixelBytes) {
        const HostBlock block(header, std::vector<std::uint8_t>(pixelBytes, 77));
        EXPECT_EQ(lib.orv_DetectFacePicture(block.Handle()), ORV_NO_PICTURE);
        ExpectNoOutput();
    }
};

/// Something that the host took for a block.
class NotABlock {
public:
#ifdef _WIN32
    NotABlock() : handle_(orv_BlockAlloc(100)) { orv_BlockFree(handle_); }
    orv_Handle Handle() const { return handle_; }

private:
    orv_Handle handle_;
#else
    orv_Handle Handle() { return bytes_ + 64; }

private:
    unsigned char bytes_[256] = {};
#endif
};

TEST_F(BadInput, ANullHandleIsNoPicture) {
    OpenHidden();
    EXPECT_EQ(lib.orv_DetectFacePicture(nullptr), ORV_NO_PICTURE);
    EXPECT_EQ(lib.orv_GetBitDepth(nullptr), ORV_LOCK_FAILED);
    ExpectNoOutput();
    ExpectGoodSessionWorks();
}

TEST_F(BadInput, AHandleThatCannotBeLockedIsNoPicture) {
    OpenHidden();
    NotABlock other;
    EXPECT_EQ(lib.orv_DetectFacePicture(other.Handle()), ORV_NO_PICTURE);
    EXPECT_EQ(lib.orv_GetBitDepth(other.Handle()), ORV_LOCK_FAILED);
    ExpectNoOutput();
    ExpectGoodSessionWorks();
}

TEST_F(BadInput, ABlockShorterThanItsHeaderIsNoPicture) {
    OpenHidden();
    const std::vector<std::uint8_t> whole = HostBlock(test::BlankScene(8, 8)).Bytes();
    for (std::size_t length = 0; length < 40; ++length) {
        const HostBlock block(std::vector<std::uint8_t>(whole.begin(), whole.begin() + static_cast<int>(length)));
        EXPECT_EQ(lib.orv_DetectFacePicture(block.Handle()), ORV_NO_PICTURE) << length << " bytes";
    }
    ExpectNoOutput();
    ExpectGoodSessionWorks();
}

TEST_F(BadInput, ABlockShorterThanItsPixelsIsNoPicture) {
    OpenHidden();
    const DibHeader header = test::HeaderFor(101, 90);
    ExpectNoPicture(header, 0);
    ExpectNoPicture(header, header.sizeImage - 304); // the last row is missing
    ExpectGoodSessionWorks();
}

TEST_F(BadInput, AHeaderThatDoesNotFitIsNoPicture) {
    OpenHidden();
    const DibHeader good = test::HeaderFor(16, 12);
    const auto with = [&](auto field, auto value) {
        DibHeader header = good;
        header.*field = value;
        return header;
    };
    struct Case {
        const char* what;
        DibHeader header;
    };
    std::vector<Case> cases;
    for (const std::uint32_t size : {0u, 12u, 39u, 41u, 108u, 124u, 0x80000000u, 0xFFFFFFFFu}) {
        cases.push_back({"biSize", with(&DibHeader::size, size)});
    }
    for (const int bits : {0, 1, 4, 8, 16, 23, 25, 32, 0x7FFF, 0xFFFF}) {
        cases.push_back({"biBitCount", with(&DibHeader::bitCount, static_cast<std::uint16_t>(bits))});
    }
    for (const std::uint32_t compression : {1u, 2u, 3u, 4u, 0xFFFFFFFFu}) {
        cases.push_back({"biCompression", with(&DibHeader::compression, compression)});
    }
    for (const std::uint32_t bytes : {good.sizeImage + 1, good.sizeImage * 2, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        cases.push_back({"biSizeImage", with(&DibHeader::sizeImage, bytes)});
    }
    for (const std::int32_t side : {0, -1, -16, kLeast, 32'768, 1 << 20, 1 << 30, kMost}) {
        cases.push_back({"biWidth", with(&DibHeader::width, side)});
        cases.push_back({"biHeight", with(&DibHeader::height, side)});
        DibHeader noPixels = with(&DibHeader::width, side);
        noPixels.sizeImage = 0;
        cases.push_back({"biWidth without pixels", noPixels});
        noPixels = with(&DibHeader::height, side);
        noPixels.sizeImage = 0;
        cases.push_back({"biHeight without pixels", noPixels});
    }
    DibHeader tooMany = good;
    tooMany.width = tooMany.height = 32'767;
    tooMany.sizeImage = 0;
    cases.push_back({"more pixels than a picture takes", tooMany});

    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.what << ": " << c.header.size << ", " << c.header.width << " by "
                                          << c.header.height << ", " << c.header.bitCount << " bits, compression "
                                          << c.header.compression << ", " << c.header.sizeImage << " bytes");
        ExpectNoPicture(c.header, std::size_t{good.sizeImage} * 2);
    }
    ExpectGoodSessionWorks();
}

TEST_F(BadInput, AnUnusablePictureLeavesTheOutputOfBefore) {
    OpenHidden();
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    const DibHeader before = OutputHeader();
    EXPECT_EQ(lib.orv_DetectFacePicture(nullptr), ORV_NO_PICTURE);
    EXPECT_EQ(OutputHeader().width, before.width);
    EXPECT_EQ(OutputHeader().height, before.height);
}

TEST_F(BadInput, TheBitDepthIsReadAndNothingElse) {
    DibHeader header = test::HeaderFor(16, 12);
    for (const int bits : {8, 0, 1, 24, 32, 0x7FFF, 0xFFFF}) {
        header.bitCount = static_cast<std::uint16_t>(bits);
        EXPECT_EQ(lib.orv_GetBitDepth(HostBlock(header, {}).Handle()), bits);
    }
    EXPECT_EQ(lib.orv_GetBitDepth(HostBlock(std::vector<std::uint8_t>(8, 24)).Handle()), ORV_LOCK_FAILED)
        << "too short to tell";
    EXPECT_EQ(lib.orv_GetBitDepth(HostBlock(std::vector<std::uint8_t>()).Handle()), ORV_LOCK_FAILED);
}

TEST_F(BadInput, OddSizesGiveACode) {
    struct Case {
        const char* what;
        std::int32_t width, height, expected;
    };
    const Case cases[] = {
        {"a single pixel is too small for a face", 1, 1, ORV_BAD_ARGUMENT},
        {"19 pixels of width leave a smallest face of no size", 19, 40, ORV_BAD_ARGUMENT},
        {"19 by 19", 19, 19, ORV_BAD_ARGUMENT},
        {"20 pixels of width are searched", 20, 40, ORV_NO_FACE},
        {"a picture of the window's size has no face", 24, 24, ORV_NO_FACE},
        {"29 pixels of width are no scale at all", 29, 60, ORV_NO_FACE},
        {"too low for its smallest face", 640, 20, ORV_BAD_ARGUMENT},
        {"a row, too low though no work picture can follow it", 1500, 1, ORV_BAD_ARGUMENT},
        {"the longest row", 32'767, 1, ORV_BAD_ARGUMENT},
        {"a column, too narrow though no work picture can follow it", 1, 32'767, ORV_BAD_ARGUMENT},
        {"a strip of the greatest width", 32'767, 150, ORV_BAD_ARGUMENT},
        // Its work picture and what is made of it take more than two gigabytes.
        {"a strip of the greatest height", 30, 32'767, kAddressGigabytes > 2 ? ORV_NO_FACE : ORV_NO_MEMORY},
    };
    for (const bool visible : {false, true}) {
        OpenHidden();
        ASSERT_EQ(lib.orv_SetVisibleMode(visible), ORV_OK);
        for (const Case& c : cases) {
            if (visible && std::int64_t{c.width} * c.height > 100'000) continue; // once is enough
            EXPECT_EQ(Detect(test::BlankScene(c.width, c.height)), c.expected)
                << c.what << ", " << (visible ? "visible" : "hidden");
        }
        ExpectGoodSessionWorks();
    }
}

TEST_F(BadInput, HostileOutputSizesGiveACode) {
    struct Case {
        const char* what;
        std::int32_t width, height, expected;
        bool output;
    };
    const Case cases[] = {
        {"no such picture fits memory", kMost, kMost, ORV_NO_MEMORY, false},
        {"nor does one so wide", kMost, 75, ORV_NO_MEMORY, false},
        {"more pixels than a picture takes", 40'000, 40'000, ORV_NO_MEMORY, false},
        {"the crop of so narrow proportions has no pixels", 75, kMost, ORV_OK, false},
        {"refused: that of the work picture stays", 0, 0, ORV_OK, true},
        {"refused as well", -480, -860, ORV_OK, true},
        {"refused for its width", kLeast, kMost, ORV_OK, true},
        {"refused for its height", kMost, kLeast, ORV_OK, true},
    };
    OpenHidden();
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.width << " by " << c.height << ": " << c.what);
        EXPECT_EQ(lib.orv_SetSizeOutputImage(c.width, c.height), ORV_OK) << "sizes are stored untested";
        EXPECT_EQ(Detect(test::SmallFaceScene()), c.expected);
        if (c.output) {
            EXPECT_GE(OutputHeader().width, 640);
        } else {
            ExpectNoOutput();
        }
        ExpectGoodSessionWorks();
    }
}

TEST_F(BadInput, HostileCropRatiosGiveACodeAndAreKept) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    struct Case {
        const char* what;
        float ratio;
        std::int32_t expected;
        bool output; // whether a crop with this ratio has pixels
    };
    const Case cases[] = {
        {"zero", 0.0F, ORV_BAD_ARGUMENT, false},
        {"below zero", -1.0F, ORV_BAD_ARGUMENT, false},
        {"endlessly below zero", -kInfinity, ORV_BAD_ARGUMENT, false},
        {"no number", std::numeric_limits<float>::quiet_NaN(), ORV_BAD_ARGUMENT, true},
        {"hardly above zero", std::numeric_limits<float>::denorm_min(), ORV_OK, false},
        {"huge", 1e30F, ORV_OK, true},
        {"endless", kInfinity, ORV_OK, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        OpenHidden();
        ASSERT_EQ(lib.orv_SetSizeOutputImage(120, 160), ORV_OK);
        EXPECT_EQ(lib.orv_SetFaceCropRatio(c.ratio), c.expected);
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK) << "a crop without pixels fails no session";
        if (c.output) {
            EXPECT_EQ(OutputHeader().width, 212) << "the whole picture";
        } else {
            ExpectNoOutput();
        }
        ExpectGoodSessionWorks();
    }
}

TEST_F(BadInput, ActionsBeyondTheLastAreRefused) {
    OpenHidden();
    for (const std::int32_t action : {6, 7, 255, 256, kMost}) {
        EXPECT_EQ(lib.orv_EnableAction(action, 1), ORV_BAD_ARGUMENT);
        EXPECT_EQ(lib.orv_EnableAction(action, 0), ORV_BAD_ARGUMENT);
    }
    ExpectGoodSessionWorks();
}

TEST_F(BadInput, ALiveSessionWithoutADeviceIsRefused) {
    OpenHidden();
    for (const std::int32_t visible : {0, 1}) {
        ASSERT_EQ(lib.orv_SetVisibleMode(visible), ORV_OK);
        for (const std::int32_t device : {0, 1, 1000, -1, kMost, kLeast}) {
            EXPECT_EQ(lib.orv_DetectFaceLive(device), ORV_CAPTURE_FAILED) << device;
        }
        ExpectNoOutput();
    }
    ExpectGoodSessionWorks();
}

} // namespace
} // namespace orvane
