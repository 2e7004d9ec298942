// Whole sessions with every choice of slots, whose results are recorded: the same bytes on every system,
// compiler and processor. Of each session count the output and what stays for turning it later: the mask
// and the snapshots.
//
// A sum changes only with a change of the results that is meant. To record anew, run the test and take the
// sums that it prints; all builds must print the same.
#include "actions/action_settings.h"
#include "tests/session/session_fixture.h"
#include "tests/support/portrait_scene.h"
#include "tests/support/sha256.h"

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace orvane {
namespace {

constexpr int32 kChoices = 1 << kActionCount;

struct Photo {
    const char* what;
    ImageSize size;
    int32 face;
    test::Backdrop backdrop;
    ImageSize requested;
    int32 angle, tolerance;
    const char* sum; // of its 64 sessions, in the order of the flags
};

const Photo kPhotos[] = {
    {"plain backdrop, small turn",
     {84, 96},
     28,
     test::Backdrop::plain,
     {80, 120},
     5,
     40,
     "54adf3f82ce8e7a312aff0901c6f6c2b2144c2f2d3db76c6e432b1219a41cd23"},
    {"graded backdrop, quarter turn",
     {98, 77},
     26,
     test::Backdrop::graded,
     {76, 76},
     90,
     20,
     "0d6a677e7cd1c8765397a890423f36da26d7b4784fa37d07246e6d535b0555a6"},
    {"rubble, large turn",
     {81, 82},
     24,
     test::Backdrop::rubble,
     {100, 75},
     213,
     60,
     "9314f49b8b3b7c9a8beb7da4642edf086a25d5ecd0c5a9451d56f078d774f2ce"},
};

/// By flags, bit i for slot i, of all photos in their order.
const char* const kSums[kChoices] = {
    "a7372c5f998aa552ae7c3755eed6a0ab6eb0ebae9ae16b616746c4adc0fa2f71",
    "558fcc49683251fd4a441ed8e6478d3234fe6249c61259aa5ae264e6201ae2e9",
    "4132f723ec4821796dbbc126b55355f566689e41f3674a2c8e4d35bc790b910d",
    "d7f850ca2bb60a4023318ede662916afdf4a5bf920986c17c67c7be950ad6fd9",
    "de0938fc8111e382a9570cc5ee118bb010c30051b936d1702d1fa59f8244ae77",
    "a8758c6e449838e4d98199e237210a1a18bb1acb6975e94634417385c49f5fc9",
    "1163599cb3c6bfb6a0f9b1f016439c12d6533455456172eda5f8903e7e979a8e",
    "c46d41e45e0ef5f70fcd3747e868565a6b392ebe512ae7d3f467070ad405657c",
    "ec97731411a956935341a5e9283656a3bc4f908a8374b651abf76e95d80433a3",
    "b283c8bd79fffd605d71b75f67cdc10dfdd7a9038b1b45163a6f6a248a8c532b",
    "5bfb56bb28a7d28df9864aa42a92e7f8039f3ac696a41950c005375e4854d967",
    "61af5837f9515c87bc8400603d4c04cd0673903d9b0bb5d3a9806bd75c0deb4a",
    "e1e2bb809082acc89b1e8ecc8e0a7392fb88fceefa82d95c4b397b4a8e130c97",
    "2b4b9aa002bd96d362cc49b89d13af61f6fb06fba507bc98a9867d2c40b29c23",
    "c16ab3cdb1ee3070f85e02582c02c0054b219d0790d63f65aa66d1c015e7ff01",
    "414eb8a16831a4746ae626af9b3dfe3e5bb0bfb8d94943c4e7410d6b966f1152",
    "a7372c5f998aa552ae7c3755eed6a0ab6eb0ebae9ae16b616746c4adc0fa2f71",
    "558fcc49683251fd4a441ed8e6478d3234fe6249c61259aa5ae264e6201ae2e9",
    "4132f723ec4821796dbbc126b55355f566689e41f3674a2c8e4d35bc790b910d",
    "d7f850ca2bb60a4023318ede662916afdf4a5bf920986c17c67c7be950ad6fd9",
    "de0938fc8111e382a9570cc5ee118bb010c30051b936d1702d1fa59f8244ae77",
    "a8758c6e449838e4d98199e237210a1a18bb1acb6975e94634417385c49f5fc9",
    "1163599cb3c6bfb6a0f9b1f016439c12d6533455456172eda5f8903e7e979a8e",
    "c46d41e45e0ef5f70fcd3747e868565a6b392ebe512ae7d3f467070ad405657c",
    "ec97731411a956935341a5e9283656a3bc4f908a8374b651abf76e95d80433a3",
    "b283c8bd79fffd605d71b75f67cdc10dfdd7a9038b1b45163a6f6a248a8c532b",
    "5bfb56bb28a7d28df9864aa42a92e7f8039f3ac696a41950c005375e4854d967",
    "61af5837f9515c87bc8400603d4c04cd0673903d9b0bb5d3a9806bd75c0deb4a",
    "e1e2bb809082acc89b1e8ecc8e0a7392fb88fceefa82d95c4b397b4a8e130c97",
    "2b4b9aa002bd96d362cc49b89d13af61f6fb06fba507bc98a9867d2c40b29c23",
    "c16ab3cdb1ee3070f85e02582c02c0054b219d0790d63f65aa66d1c015e7ff01",
    "414eb8a16831a4746ae626af9b3dfe3e5bb0bfb8d94943c4e7410d6b966f1152",
    "b66b5adaa71a763527fb619ba82b4c8738f46b23693d2d70b8f1e123f3fe336c",
    "b864bc2cb4a27b91679069978a101adcb83c7b2b3632e6bd3080f678dd35f738",
    "d6ec7dd05b0de81cc48c888ba0ce9232be378d952efe857bc4b8a1ac09d0b399",
    "9c4187036e0a5d685713a891041884dba2753e7a8f4d3dd53ee873c6d0a2e4fd",
    "af00f7743dd707e6e18d9b08d6922dec76288413fdc7cac9a2add4a8344f414e",
    "99363b3ba36d0628e0b013c27e34edb3cee1db4a43810835a7ff1a0af36dc70b",
    "99a076ce591fb40066e1a58c813c5b1c57122c6730ae13fc8b1e1de406a9698a",
    "0a0871ab05115b889a24ba40554ef70248d4eac698d5028354a70f53e602ade7",
    "2ad2954439f7fef33847a612d65200e39d81cbc624d08d7f580eeb6d4f29bac4",
    "acf76f053d99055c0371fd5164916992aaa83411a46d6c3a292bca18dd38758b",
    "64dff09de636cbb62a364dcf662ebeae0a31b7a3888507575aabb4a6e45582f6",
    "0485ed0a3a3f6ebec85bb4da1c17f38939c323882e0b995bb6addb1b4dfdc426",
    "a2a2bf50c25ed4e9366e39e6a17184e14aeeea0be1fb7b158e9a5fb57cb55eee",
    "87b99673feef9cfc95ab2a62db963b8919a8b66ec26fc4bca20771cdc3e0a31d",
    "acee1f5fe7a5b8accbbc9220d5fbb2e20d0c4fafcd1f67a7477edace7bbc886f",
    "8ee60b717a40a848d4223f5c2580b71a9adea9639b0499bae5063135e3c655e5",
    "a7372c5f998aa552ae7c3755eed6a0ab6eb0ebae9ae16b616746c4adc0fa2f71",
    "558fcc49683251fd4a441ed8e6478d3234fe6249c61259aa5ae264e6201ae2e9",
    "4132f723ec4821796dbbc126b55355f566689e41f3674a2c8e4d35bc790b910d",
    "d7f850ca2bb60a4023318ede662916afdf4a5bf920986c17c67c7be950ad6fd9",
    "de0938fc8111e382a9570cc5ee118bb010c30051b936d1702d1fa59f8244ae77",
    "a8758c6e449838e4d98199e237210a1a18bb1acb6975e94634417385c49f5fc9",
    "1163599cb3c6bfb6a0f9b1f016439c12d6533455456172eda5f8903e7e979a8e",
    "c46d41e45e0ef5f70fcd3747e868565a6b392ebe512ae7d3f467070ad405657c",
    "ec97731411a956935341a5e9283656a3bc4f908a8374b651abf76e95d80433a3",
    "b283c8bd79fffd605d71b75f67cdc10dfdd7a9038b1b45163a6f6a248a8c532b",
    "5bfb56bb28a7d28df9864aa42a92e7f8039f3ac696a41950c005375e4854d967",
    "61af5837f9515c87bc8400603d4c04cd0673903d9b0bb5d3a9806bd75c0deb4a",
    "e1e2bb809082acc89b1e8ecc8e0a7392fb88fceefa82d95c4b397b4a8e130c97",
    "2b4b9aa002bd96d362cc49b89d13af61f6fb06fba507bc98a9867d2c40b29c23",
    "c16ab3cdb1ee3070f85e02582c02c0054b219d0790d63f65aa66d1c015e7ff01",
    "414eb8a16831a4746ae626af9b3dfe3e5bb0bfb8d94943c4e7410d6b966f1152",
};

void Append(std::vector<std::uint8_t>& bytes, const std::string& text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void Append(std::vector<std::uint8_t>& bytes, const ImageBuffer& image) {
    for (const int32 field : {image.width, image.height, image.channels, image.data == nullptr ? 0 : 1}) {
        for (int32 shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(field >> shift));
    }
    if (image.data == nullptr) return;
    for (int32 y = 0; y < image.height; ++y) {
        const uint8* row = image.data + static_cast<std::ptrdiff_t>(image.Step()) * y;
        bytes.insert(bytes.end(), row, row + std::ptrdiff_t{image.channels} * image.width);
    }
}

/// `crop+background` for 3.
std::string Names(int32 flags) {
    static const char* const kNames[] = {"crop", "background", "colour", "rotation", "none", "scaling"};
    std::string names;
    for (int32 slot = 0; slot < kActionCount; ++slot) {
        if ((flags >> slot & 1) == 0) continue;
        if (!names.empty()) names += '+';
        names += kNames[slot];
    }
    return names.empty() ? "no slot" : names;
}

class GoldenSlots : public test::SessionTest {
protected:
    /// The sum of a session in a library in which nothing has happened yet.
    std::string Run(const Photo& photo, int32 flags) {
        const test::FreshSession nothingBefore;
        std::vector<std::uint8_t> bytes;
        session.m_outputWidth = photo.requested.width;
        session.m_outputHeight = photo.requested.height;
        SetSource(test::PortraitScene(photo.size.width, photo.size.height, photo.face, photo.backdrop, 1));
        for (int32 slot = 0; slot < kActionCount; ++slot) {
            g_actionEnabled[static_cast<std::size_t>(slot)] = static_cast<uint8>(flags >> slot & 1);
        }
        EXPECT_EQ(session.BeginSession(), kSuccess) << "no face in " << photo.what;
        session.m_rotation = photo.angle;
        EXPECT_EQ(session.ProduceOutput(photo.tolerance, (flags >> kSlotOutputScaling & 1) != 0), kSuccess);
        ImageBuffer output;
        Take(session.m_resultBitmap, output);
        for (const ImageBuffer* image : {&std::as_const(output), &std::as_const(g_maskImage),
                                         &std::as_const(g_colourStageImage), &std::as_const(g_colourStageMask)}) {
            Append(bytes, *image);
        }
        session.EndSession();
        return test::Sha256(bytes);
    }
};

TEST_F(GoldenSlots, GiveTheRecordedResultsWithAllChoices) {
    std::vector<std::vector<std::uint8_t>> ofChoice(kChoices);
    for (const Photo& photo : kPhotos) {
        std::vector<std::uint8_t> ofPhoto;
        std::set<std::string> different;
        for (int32 flags = 0; flags < kChoices; ++flags) {
            const std::string sum = Run(photo, flags);
            Append(ofPhoto, sum);
            Append(ofChoice[static_cast<std::size_t>(flags)], sum);
            different.insert(sum);
        }
        EXPECT_EQ(test::Sha256(ofPhoto), photo.sum) << photo.what;
        EXPECT_EQ(different.size(), 32U) << photo.what
                                         << ": each slot makes a difference; 4 ends the chain, as a 5 that is off does";
    }
    for (int32 flags = 0; flags < kChoices; ++flags) {
        const auto i = static_cast<std::size_t>(flags);
        EXPECT_EQ(test::Sha256(ofChoice[i]), kSums[i]) << flags << ", " << Names(flags);
    }
}

} // namespace
} // namespace orvane
