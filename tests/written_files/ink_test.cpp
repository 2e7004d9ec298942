// Photographs in four inks, as print houses send them: with a profile they look as it says.
#include "tests/tool_files/icc_profile.h"
#include "tests/tools/temp_folder.h"

#include <array>
#include <cmath>
#include <lcms2.h>
#include <memory>
#include <turbojpeg.h>

namespace orvane::tools {
namespace {

/// Shares of cyan, magenta, yellow and black, 0 for no ink.
struct Inks {
    double c, m, y, k;
};

/// What inks look like on the test's press: magenta takes red, yellow takes green, cyan takes blue. No decoder without
/// the profile comes to that.
Colour OnThePress(const Inks& inks) {
    const auto level = [&](double ink) { return static_cast<int>(std::lround(255 * (1 - ink) * (1 - inks.k))); };
    return {level(inks.m), level(inks.y), level(inks.c)};
}

cmsInt32Number Press(const cmsUInt16Number in[], cmsUInt16Number out[], void* toLab) {
    const auto share = [&](int i) { return in[i] / 65535.0; };
    const Colour colour = OnThePress({share(0), share(1), share(2), share(3)});
    const std::array<std::uint8_t, 3> levels{static_cast<std::uint8_t>(colour.red),
                                             static_cast<std::uint8_t>(colour.green),
                                             static_cast<std::uint8_t>(colour.blue)};
    cmsDoTransform(toLab, levels.data(), out, 1);
    return TRUE;
}

std::string InkProfile() {
    const cmsHPROFILE srgb = cmsCreate_sRGBProfile();
    const cmsHPROFILE lab = cmsCreateLab2Profile(nullptr);
    const cmsHTRANSFORM toLab =
        cmsCreateTransform(srgb, TYPE_RGB_8, lab, TYPE_LabV2_16, INTENT_RELATIVE_COLORIMETRIC, 0);
    const cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.1);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage* table = cmsStageAllocCLut16bit(nullptr, 11, 4, 3, nullptr);
    cmsStageSampleCLut16bit(table, Press, toLab, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsUInt32Number size = 0;
    EXPECT_TRUE(cmsSaveProfileToMem(profile, nullptr, &size));
    std::string bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsPipelineFree(pipeline);
    for (const cmsHPROFILE closed : {profile, lab, srgb}) cmsCloseProfile(closed);
    cmsDeleteTransform(toLab);
    return bytes;
}

/// A flat picture whose samples are stored as Adobe's programs do: 255 for no ink.
std::string InkJpeg(const Inks& inks) {
    constexpr int kSide = 32;
    std::vector<unsigned char> samples;
    for (int i = 0; i < kSide * kSide; ++i) {
        for (const double ink : {inks.c, inks.m, inks.y, inks.k}) {
            samples.push_back(static_cast<unsigned char>(std::lround(255 * (1 - ink))));
        }
    }
    const tjhandle turbo = tjInitCompress();
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    EXPECT_EQ(tjCompress2(turbo, samples.data(), kSide, 0, kSide, TJPF_CMYK, &bytes, &size, TJSAMP_444, 100, 0), 0);
    std::string jpeg(reinterpret_cast<const char*>(bytes), size);
    tjFree(bytes);
    tjDestroy(turbo);
    return jpeg;
}

Colour Middle(const std::string& jpeg, std::string* warning) {
    const TempFolder folder;
    Picture picture;
    PictureNotes notes;
    std::string error;
    EXPECT_TRUE(ReadPicture(folder.Put("p.jpg", jpeg), &picture, &notes, &error)) << error;
    EXPECT_EQ(picture.width, 32);
    *warning = notes.warning;
    return picture.pixels.empty() ? Colour{} : PixelAt(picture, 16, 16);
}

constexpr Inks kPrints[] = {{0.1, 0.3, 0.5, 0.1}, {0.0, 0.2, 0.2, 0.0}, {0.6, 0.4, 0.2, 0.3}};

TEST(Inks, AreTheColoursThatTheirProfileSays) {
    for (const Inks& inks : kPrints) {
        std::string warning;
        EXPECT_TRUE(IsNear(Middle(WithProfile(InkJpeg(inks), InkProfile()), &warning), OnThePress(inks), 8));
        EXPECT_EQ(warning, "");
    }
}

TEST(Inks, WithoutAProfileEachTakesItsOwnColour) {
    for (const Inks& inks : kPrints) {
        std::string warning;
        const auto level = [&](double ink) { return static_cast<int>(std::lround(255 * (1 - ink) * (1 - inks.k))); };
        EXPECT_TRUE(IsNear(Middle(InkJpeg(inks), &warning), {level(inks.c), level(inks.m), level(inks.y)}, 4));
        EXPECT_EQ(warning, "");
    }
}

TEST(Inks, WithoutAdobesMarkSamplesAreInk) {
    // Brightness, twice no colour, and black were stored; without the mark they are the four inks as they stand.
    std::string jpeg = InkJpeg({0.25, 0.25, 0.25, 0.9});
    const std::size_t mark = jpeg.find("\xFF\xEE");
    ASSERT_NE(mark, std::string::npos);
    jpeg.erase(mark, 2 + 14);
    std::string warning;
    const Inks inks{0.25, 0.5, 0.5, 0.1};
    EXPECT_TRUE(IsNear(Middle(WithProfile(jpeg, InkProfile()), &warning), OnThePress(inks), 8));
    EXPECT_EQ(warning, "");
}

TEST(Inks, AProfileThatIsNoneOfInksIsToldAndTheDecodersColoursTaken) {
    const std::string jpeg = InkJpeg(kPrints[0]);
    for (const std::string& profile : {std::string("no profile"), ColourProfile(kDisplayP3)}) {
        std::string warning;
        const Colour plain = Middle(jpeg, &warning);
        EXPECT_TRUE(IsNear(Middle(WithProfile(jpeg, profile), &warning), plain, 0));
        EXPECT_EQ(warning, "its colour profile cannot be used; its colours were taken as sRGB");
    }
}

} // namespace
} // namespace orvane::tools
