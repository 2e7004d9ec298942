// Whole sessions whose outputs are recorded: the same bytes on every system, compiler and processor.
//
// A sum changes only with a change of the results that is meant. To record anew, run the test and take the
// sums that it prints; all builds must print the same.
#include "tests/exports/exports_fixture.h"
#include "tests/support/sha256.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane {
namespace {

using test::Scene;

TEST(Sha256, GivesTheKnownDigests) {
    EXPECT_EQ(test::Sha256({}), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(test::Sha256({'a', 'b', 'c'}), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(test::Sha256(std::vector<std::uint8_t>(1'000'000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

/// Light ground that changes its colour across the picture, crossed by faint lines.
Scene Ground(int32 width, int32 height) {
    Scene scene = test::BlankScene(width, height);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            const int32 line = (x * 3 + y * 5) % 61 < 4 ? 24 : 0;
            scene.Pixel(x, y)[0] = static_cast<uint8>(160 + 60 * x / width - line);
            scene.Pixel(x, y)[1] = static_cast<uint8>(170 + 50 * y / height - line);
            scene.Pixel(x, y)[2] = static_cast<uint8>(225 - 50 * x / width - line);
        }
    }
    return scene;
}

/// Ground full of edges, large and small.
Scene Rubble(int32 width, int32 height) {
    Scene scene = test::BlankScene(width, height);
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            scene.Pixel(x, y)[0] = static_cast<uint8>(150 + ((x ^ y) & 63));
            scene.Pixel(x, y)[1] = static_cast<uint8>(150 + ((x / 9 + y / 7) % 5) * 16);
            scene.Pixel(x, y)[2] = static_cast<uint8>(150 + (x * y / 16 & 63));
        }
    }
    return scene;
}

/// A picture: its ground, its size, where its face stands (side 0: nowhere), and the seed of its noise.
struct Photo {
    Scene (*ground)(int32 width, int32 height);
    int32 width, height;
    int32 left, bottom, side;
    std::uint32_t seed;
};

test::HostBlock Print(const Photo& photo) {
    Scene scene = photo.ground(photo.width, photo.height);
    test::DrawFace(scene, photo.left, photo.bottom, photo.side);
    test::Random random(photo.seed);
    test::AddTexture(scene, 8, random);
    return test::HostBlock(scene);
}

struct Golden {
    const char* what;
    Photo photo;
    std::int32_t crop;
    ImageSize requested;
    float ratio;
    std::int32_t result;
    ImageSize output;
    const char* sum;
};

// Of each class of area by which the work picture is sized.
const Golden kSessions[] = {
    {"small, cropped",
     {Ground, 160, 120, 55, 40, 44, 1},
     1,
     {120, 160},
     0.75F,
     0,
     {120, 161},
     "f1c155e6157bd540478c27ea0cbd5d255d7434b96fcd3fb79a1f7be6cede9b4c"},
    {"small, as it is",
     {Ground, 163, 121, 55, 40, 44, 2},
     0,
     {480, 860},
     0.75F,
     0,
     {163, 121},
     "36900266ddc6c2e983ccbec39889156e24145600158dbacf96b2e3c6f0c87d75"},
    {"small, without a face",
     {Rubble, 200, 150, 0, 0, 0, 3},
     1,
     {480, 860},
     0.75F,
     10,
     {800, 600},
     "baf53737d416db9a3202fd299c4701878e889cb0112f23c32b964f4263278bc6"},
    {"upright, the default portrait",
     {Ground, 300, 420, 90, 200, 110, 4},
     1,
     {480, 860},
     0.75F,
     0,
     {480, 862},
     "74666679cebd79eee29583c7271cbe19a815b79a6e9bb53713b8e42362c22ce5"},
    {"exactly 160,000 pixels",
     {Rubble, 400, 400, 130, 120, 130, 5},
     1,
     {200, 200},
     1.0F,
     0,
     {200, 200},
     "8aacfdfbcfa953d904b9f79e6534e662cfa62c56e05a60d517b4e410197b34ee"},
    {"one column more",
     {Rubble, 401, 400, 130, 120, 130, 5},
     1,
     {200, 200},
     1.0F,
     0,
     {200, 201},
     "4256c0cd3b9a91042a0bb78c7ffdc6765f5ebd19b21cc5f1abbad15b5de2318d"},
    {"of a camera",
     {Ground, 641, 481, 240, 150, 170, 6},
     1,
     {240, 430},
     0.6F,
     0,
     {240, 430},
     "c964bbdb364af4da762d33114195981ab36adba48def63d02affbb94f5fbca39"},
    {"of a camera, as it is",
     {Ground, 641, 481, 240, 150, 170, 6},
     0,
     {75, 75},
     0.6F,
     0,
     {641, 481},
     "ce9e7b0fb21361483cf9e17ab5fd99090f116b8642e2dc7eedc39c5c40d00a76"},
    {"of a camera, face in the corner",
     {Rubble, 640, 480, 4, 6, 120, 7},
     1,
     {300, 300},
     0.9F,
     0,
     {300, 302},
     "d2bb55e5af3a2b07b965c009b3af43511d057f950f84a096f9c3611e099202a6"},
    {"of a camera, without a face",
     {Rubble, 640, 480, 0, 0, 0, 8},
     1,
     {300, 300},
     0.9F,
     10,
     {800, 600},
     "cf4b5138abdacb4eeef2a7e44f71c295e9731b53b027af215e3d1e47427ccb39"},
    {"large, thumbnail",
     {Ground, 1024, 768, 420, 260, 260, 9},
     1,
     {75, 100},
     0.5F,
     0,
     {72, 101},
     "114bb9ed22c41471b2b28c8b181701b87b65b82f2fde860cefaa930efb2f1a18"},
    {"larger, shrunk to work on",
     {Rubble, 1500, 1100, 600, 420, 330, 10},
     1,
     {480, 860},
     0.75F,
     0,
     {480, 869},
     "c486747e40bb0a1e81116e186a59d8baee8a891e474617487d0f4ac7b589a018"},
    {"1600 by 1200",
     {Ground, 1600, 1200, 700, 500, 300, 11},
     1,
     {480, 640},
     0.8F,
     0,
     {480, 647},
     "b437d609526cf2b28cde5b034ebde46b1d699bff3318cc861e066245ebd61ae7"},
    {"1600 by 1200, as it is",
     {Ground, 1600, 1200, 700, 500, 300, 11},
     0,
     {480, 640},
     0.8F,
     0,
     {1600, 1200},
     "e5f7e1c02a297bded5d19ff3bb512d6709382c32bd342fbde141b0c13fbe452b"},
    {"past 1,920,000 pixels",
     {Rubble, 1280, 1600, 500, 800, 350, 12},
     1,
     {480, 860},
     0.7F,
     0,
     {480, 866},
     "3acc853568c4ef73bea1f9e57104519228cc665cf8113320e5c76db8f63b6eaf"},
    {"past 1,920,000 pixels, without a face",
     {Ground, 1601, 1201, 0, 0, 0, 13},
     1,
     {480, 860},
     0.7F,
     10,
     {1121, 841},
     "880891247b025d5cfba57b2e5a563a9f5e8ee0f5b5056d353a7b30730b050cc1"},
};

class GoldenSessions : public test::ExportsTest {};

void ExpectRecorded(const test::HostLibrary& lib, const Golden& golden) {
    SCOPED_TRACE(golden.what);
    ASSERT_EQ(lib.orv_EnableAction(ORV_CROP, golden.crop), ORV_OK);
    ASSERT_EQ(lib.orv_SetSizeOutputImage(golden.requested.width, golden.requested.height), ORV_OK);
    ASSERT_EQ(lib.orv_SetFaceCropRatio(golden.ratio), ORV_OK);
    EXPECT_EQ(lib.orv_DetectFacePicture(Print(golden.photo).Handle()), golden.result);
    test::HostBlock output;
    ASSERT_EQ(lib.orv_GetOutputImage(output.Receive()), ORV_OK);
    const test::DibHeader header = output.Header();
    EXPECT_EQ(header.width, golden.output.width);
    EXPECT_EQ(header.height, golden.output.height);
    std::vector<std::uint8_t> bytes = output.Bytes();
    bytes.resize(sizeof header + header.sizeImage); // a system may round blocks up
    EXPECT_EQ(test::Sha256(bytes), golden.sum);
}

TEST_F(GoldenSessions, GiveTheRecordedOutputs) {
    OpenHidden();
    for (const Golden& golden : kSessions) ExpectRecorded(lib, golden);
}

// Each in a library just loaded: nothing may depend on what ran before.
TEST(GoldenFirstSessions, GiveTheRecordedOutputsToo) {
    for (const Golden& golden : kSessions) {
        if (golden.photo.width > 700) continue; // the large ones would take their time twice
        const test::HostLibrary lib;
        ASSERT_TRUE(test::WriteClassifier(lib.Folder(), test::FaceCascade().Bytes()));
        ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
        ExpectRecorded(lib, golden);
    }
}

} // namespace
} // namespace orvane
