// Classifier files that are none: the session opens, every detection says -70.
#include "tests/exports/exports_fixture.h"

#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace orvane {
namespace {

class BadClassifier : public test::ExportsTest {
protected:
    void ExpectRefused() {
        EXPECT_EQ(lib.orv_InitDLL(), ORV_OK) << "only the first detection tells";
        EXPECT_EQ(lib.orv_SetVisibleMode(0), ORV_OK);
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_NO_CLASSIFIER);
        EXPECT_EQ(Detect(test::BlankScene(40, 30)), ORV_NO_CLASSIFIER);
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    }
};

TEST_F(BadClassifier, AbsentIsRefusedAtTheFirstDetection) {
    std::filesystem::remove(lib.Folder() / "Orvane.dat");
    ExpectRefused();
}

TEST_F(BadClassifier, AFolderOfItsNameIsRefused) {
    std::filesystem::remove(lib.Folder() / "Orvane.dat");
    std::filesystem::create_directory(lib.Folder() / "Orvane.dat");
    ExpectRefused();
}

TEST_F(BadClassifier, AbsentItComesAfterAnUnusablePicture) {
    std::filesystem::remove(lib.Folder() / "Orvane.dat");
    ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
    EXPECT_EQ(lib.orv_DetectFacePicture(nullptr), ORV_NO_PICTURE);
}

TEST_F(BadClassifier, AShortFileIsRefused) {
    const std::string whole = test::FaceCascade().Bytes();
    for (const std::size_t length : {std::size_t{0}, std::size_t{1}, std::size_t{19}, std::size_t{20}, std::size_t{24},
                                     whole.size() / 2, whole.size() - 4, whole.size() - 1}) {
        SCOPED_TRACE(::testing::Message() << length << " of " << whole.size() << " bytes");
        PutClassifier(whole.substr(0, length));
        ExpectRefused();
    }
}

TEST_F(BadClassifier, ALyingFileIsRefused) {
    constexpr int32 kMost = std::numeric_limits<int32>::max();
    constexpr int32 kLeast = std::numeric_limits<int32>::min();
    struct Case {
        const char* what;
        int32 value;
        std::function<void(test::CascadeFile&)> lie;
    };
    std::vector<Case> cases;
    const char* const header[] = {"window width", "window height", "stages", "classifiers", "rectangles"};
    for (std::size_t i = 0; i < 5; ++i) {
        for (const int32 value : {-1, kLeast, kMost, 1 << 28}) {
            cases.push_back({header[i], value, [=](test::CascadeFile& f) { f.header[i] = value; }});
        }
    }
    for (std::size_t i = 0; i < 2; ++i) {
        cases.push_back({header[i], 0, [=](test::CascadeFile& f) { f.header[i] = 0; }});
    }
    for (const int32 value : {-1, 100, kLeast, kMost}) {
        cases.push_back({"first classifier", value, [=](test::CascadeFile& f) { f.stageClassifierStart[1] = value; }});
        cases.push_back(
            {"classifiers of a stage", value, [=](test::CascadeFile& f) { f.stageClassifierCount[1] = value; }});
        cases.push_back({"first rectangle", value, [=](test::CascadeFile& f) { f.stageFeatureStart[2] = value; }});
        cases.push_back(
            {"rectangles of a classifier", value, [=](test::CascadeFile& f) { f.classifierFeatureCount[2] = value; }});
    }
    for (const int32 value : {-1, 5000, kLeast, kMost}) { // a little beyond the window they may lie
        cases.push_back({"rectangle x", value, [=](test::CascadeFile& f) { f.featureRect[3].x = value; }});
        cases.push_back({"rectangle width", value, [=](test::CascadeFile& f) { f.featureRect[3].width = value; }});
    }
    for (const int32 value : {-1, 100, kLeast, kMost}) {
        cases.push_back({"rectangle height", value, [=](test::CascadeFile& f) { f.featureRect[3].height = value; }});
    }
    for (const int32 value : {100, -5000, kLeast, kMost}) {
        cases.push_back({"rectangle y", value, [=](test::CascadeFile& f) { f.featureRect[3].y = value; }});
    }
    cases.push_back({"rectangle width", 0, [](test::CascadeFile& f) { f.featureRect[0].width = 0; }});
    cases.push_back({"rectangle height", 0, [](test::CascadeFile& f) { f.featureRect[0].height = 0; }});
    cases.push_back({"rectangles of a classifier", 0, [](test::CascadeFile& f) { f.classifierFeatureCount[0] = 0; }});

    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.what << " " << c.value);
        test::CascadeFile file = test::FaceCascade();
        c.lie(file);
        PutClassifier(file.Bytes());
        ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
        ASSERT_EQ(lib.orv_SetVisibleMode(0), ORV_OK);
        EXPECT_EQ(Detect(test::BlankScene(40, 30)), ORV_NO_CLASSIFIER);
        ASSERT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    }
    PutClassifier(test::FaceCascade().Bytes());
    OpenHidden();
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
}

TEST_F(BadClassifier, BytesBehindTheLastTableAreNotRead) {
    PutClassifier(test::FaceCascade().Bytes() + std::string(1000, '\x7F'));
    OpenHidden();
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
}

TEST_F(BadClassifier, OneWithoutStagesFailsTheScan) {
    PutClassifier(test::BuildCascade({24, 24}, {}).Bytes());
    OpenHidden();
    EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_STEP_FAILED);
}

} // namespace
} // namespace orvane
