// Sessions on random pictures with random settings, and a digest of all that came out of them.
#pragma once

#include "tests/exports/host_library.h"
#include "tests/support/host_block.h"
#include "tests/support/portrait_scene.h"
#include "tests/support/sha256.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace orvane::test {

class RandomSessions {
public:
    explicit RandomSessions(HostLibrary& library) : lib_(library) {}

    /// One without a window; what it does depends on nothing but its number.
    void Run(int number) {
        Random random(static_cast<std::uint32_t>(number));
        if (random.Int(0, 49) == 0) {
            EXPECT_EQ(lib_.orv_ReleaseDLL(), ORV_OK);
            EXPECT_EQ(lib_.orv_InitDLL(), ORV_OK);
        }
        lib_.orv_SetVisibleMode(0);
        for (int slot = ORV_CROP; slot <= ORV_SCALE_OUTPUT; ++slot) lib_.orv_EnableAction(slot, random.Int(0, 2) != 0);
        const int width = random.Int(60, 240);
        lib_.orv_SetSizeOutputImage(width, random.Int(60, 240));
        lib_.orv_SetFaceCropRatio(static_cast<float>(random.Int(2, 16)) / 8.0F);
        const HostBlock block = Picture(random);
        Take(lib_.orv_GetBitDepth(block.Handle()));
        const std::int32_t result = lib_.orv_DetectFacePicture(block.Handle());
        EXPECT_NE(result, ORV_NO_FACE) << number;
        Take(result);
        HostBlock output;
        Take(lib_.orv_GetOutputImage(output.Receive()));
        if (output.Handle() != nullptr) Take(output.Bytes());
    }

    int Outputs() const { return outputs_; }

    /// Of the results since the last time.
    std::string Digest() {
        outputs_ = 0;
        return std::exchange(digest_, {});
    }

private:
    /// One whose face is found, or one that is refused: without a face a window would open where there can be one.
    static HostBlock Picture(Random& random) {
        const int32 side = random.Int(28, 72);
        const int32 width = random.Int(2 * side, 200), height = random.Int(2 * side, 200);
        const auto backdrop = static_cast<Backdrop>(random.Int(0, 1));
        Scene scene = PortraitScene(width, height, side, backdrop, random.Bits());
        DibHeader header = HeaderFor(width, height);
        switch (random.Int(0, 39)) {
        case 0:
            header.width = random.Int(0, 1) * random.Int(20'000, 2'000'000'000);
            break;
        case 1:
            header.height = random.Int(0, 1) * random.Int(20'000, 2'000'000'000);
            break;
        case 2:
            header.bitCount = static_cast<std::uint16_t>(random.Int(25, 65'535));
            break;
        case 3:
            scene.rows.resize(scene.rows.size() / 2);
            break;
        default:
            break;
        }
        return {header, scene.rows};
    }

    void Take(std::vector<std::uint8_t> bytes) {
        ++outputs_;
        bytes.insert(bytes.end(), digest_.begin(), digest_.end());
        digest_ = Sha256(std::move(bytes));
    }
    void Take(std::int32_t result) { digest_ += std::to_string(result) + " "; }

    HostLibrary& lib_;
    std::string digest_;
    int outputs_ = 0;
};

} // namespace orvane::test
