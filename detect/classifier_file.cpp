// Reading of "Orvane.dat". The file has no magic number and no checksum, so nothing in it is believed:
// the counts must agree with the file's length before a table is made, and every range and rectangle
// is checked before the scan may follow it.
#include "detect/classifier_file.h"

#include "detect/stage_range.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <new>
#include <utility>

namespace orvane {

static_assert(std::endian::native == std::endian::little, "the file's numbers are read as they stand");

ClassifierTables g_classifier;

namespace {

constexpr int32 kHeaderBytes = 20;
// The window is bounded by what a scan could ever place: larger ones meet no picture.
constexpr int32 kMaxWindowSide = 4096;
// Rectangles of all stages together, shared ones counted for each: stages that claim one another's ranges
// could otherwise ask for the square of the file's length.
constexpr int64 kMaxStageRects = 1'000'000;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

/// Bytes in an open file, or -1.
int64 LengthOf(std::FILE* file) {
    if (std::fseek(file, 0, SEEK_END) != 0) return -1;
    const long length = std::ftell(file);
    return std::fseek(file, 0, SEEK_SET) == 0 ? length : -1;
}

template <typename T>
bool ReadArray(std::FILE* file, std::vector<T>& array, int32 count) {
    array.resize(static_cast<std::size_t>(count));
    return std::fread(array.data(), sizeof(T), array.size(), file) == array.size();
}

bool ReadHeader(std::FILE* file, ClassifierTables& t) {
    int32 header[5];
    if (std::fread(header, 1, kHeaderBytes, file) != kHeaderBytes) return false;
    t.windowWidth = header[0];
    t.windowHeight = header[1];
    t.stageCount = header[2];
    t.classifierCount = header[3];
    t.featureCount = header[4];
    return true;
}

bool CountsAreSane(const ClassifierTables& t, int64 fileLength) {
    if (t.windowWidth < 1 || t.windowHeight < 1 || t.windowWidth > kMaxWindowSide || t.windowHeight > kMaxWindowSide) {
        return false;
    }
    if (t.stageCount < 0 || t.classifierCount < 0 || t.featureCount < 0) return false;
    const int64 needed =
        kHeaderBytes + int64{20} * t.stageCount + int64{16} * t.classifierCount + int64{20} * t.featureCount;
    return needed <= fileLength;
}

bool ReadArrays(std::FILE* file, ClassifierTables& t) {
    return ReadArray(file, t.stageThreshold, t.stageCount) && ReadArray(file, t.stageClassifierCount, t.stageCount) &&
           ReadArray(file, t.stageReserved, t.stageCount) && ReadArray(file, t.stageClassifierStart, t.stageCount) &&
           ReadArray(file, t.stageFeatureStart, t.stageCount) &&
           ReadArray(file, t.classifierFeatureCount, t.classifierCount) &&
           ReadArray(file, t.classifierThreshold, t.classifierCount) &&
           ReadArray(file, t.classifierVal1, t.classifierCount) &&
           ReadArray(file, t.classifierVal2, t.classifierCount) && ReadArray(file, t.featureRect, t.featureCount) &&
           ReadArray(file, t.featureWeight, t.featureCount);
}

/// Whether a rectangle of the file, which counts from the window's top, lies at or right of the window's left edge and,
/// turned upside down, at or above its bottom row. It may leave the window by the other two edges: the scan keeps
/// windows as far from the picture's as the farthest rectangle reaches.
bool IsUsable(const ImageRect& r, const ClassifierTables& t) {
    return r.x >= 0 && r.width >= 1 && r.height >= 1 && int64{r.y} + r.height <= t.windowHeight &&
           int64{r.x} + r.width <= kMaxWindowSide && int64{t.windowHeight} - r.y <= kMaxWindowSide;
}

bool AllFinite(const std::vector<float>& values) {
    return std::all_of(values.begin(), values.end(), [](float v) { return std::isfinite(v); });
}

/// Rectangles of a stage, or -1. Stages may share ranges, but every range must lie in its array.
int64 CountStageRects(const ClassifierTables& t, std::size_t stage) {
    const int64 start = t.stageClassifierStart[stage];
    const int64 count = t.stageClassifierCount[stage];
    const int64 featureStart = t.stageFeatureStart[stage];
    if (start < 0 || count < 0 || start + count > t.classifierCount) return -1;
    if (featureStart < 0 || featureStart > t.featureCount) return -1;
    int64 features = 0;
    for (int64 c = start; c < start + count; ++c) {
        const int32 n = t.classifierFeatureCount[static_cast<std::size_t>(c)];
        if (n < 1) return -1;
        features += n;
    }
    return featureStart + features <= t.featureCount ? features : -1;
}

bool ContentIsSane(const ClassifierTables& t) {
    int64 stageRects = 0;
    for (std::size_t stage = 0; stage < t.stageThreshold.size(); ++stage) {
        const int64 rects = CountStageRects(t, stage);
        stageRects += rects;
        if (rects < 0 || stageRects > kMaxStageRects) return false;
    }
    return std::all_of(t.featureRect.begin(), t.featureRect.end(),
                       [&](const ImageRect& r) { return IsUsable(r, t); }) &&
           AllFinite(t.stageThreshold) && AllFinite(t.classifierThreshold) && AllFinite(t.classifierVal1) &&
           AllFinite(t.classifierVal2) && AllFinite(t.featureWeight);
}

/// Raises the bounds to those of a stage.
void FindBounds(std::size_t stage, ClassifierTables& t) {
    const StageRange range = RangeOf(t, stage);
    const int32 known = Continues(t, stage) ? RangeOf(t, stage - 1).classifiers : 0;
    const auto first = t.featureRect.begin() + range.firstRect;
    const auto end = first + RectsOf(t, range.firstClassifier, range.classifiers);
    for (auto rect = first + RectsOf(t, range.firstClassifier, known); rect != end; ++rect) {
        t.maxFeatureWidth = std::max(t.maxFeatureWidth, rect->x + rect->width);
        t.maxFeatureHeight = std::max(t.maxFeatureHeight, rect->y + rect->height);
    }
}

PathString ClassifierFileName() {
    PathString name;
    for (const char c : {'O', 'r', 'v', 'a', 'n', 'e', '.', 'd', 'a', 't'})
        name.push_back(static_cast<PathString::value_type>(c));
    return name;
}

} // namespace

int32 LoadClassifier() {
    FreeClassifier(g_classifier);
    g_classifier = {};
    const int32 read = ReadClassifierFile(ClassifierFileName(), g_classifier);
    const int32 prepared = read == kSuccess ? PrepareClassifier(1, 0.0001F, g_classifier) : kOk;
    if (read == kSuccess && prepared == kOk) return kSuccess;
    FreeClassifier(g_classifier);
    g_classifier = {};
    return read == kOutOfMemory || prepared == kNoMemory ? kOutOfMemory : kNoClassifier;
}

int32 ReadClassifierFile(const PathString& name, ClassifierTables& tables) {
    const File file(OpenInModuleFolder(name));
    if (file == nullptr) return kFileNotOpened;
    ClassifierTables read;
    if (!ReadHeader(file.get(), read) || !CountsAreSane(read, LengthOf(file.get()))) return kNoClassifier;
    if (std::fseek(file.get(), kHeaderBytes, SEEK_SET) != 0) return kNoClassifier;
    try {
        if (!ReadArrays(file.get(), read)) return kNoClassifier;
        read.stageObject.resize(read.stageThreshold.size());
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    }
    if (!ContentIsSane(read)) return kNoClassifier;
    tables = std::move(read);
    return kSuccess;
}

int32 PrepareClassifier(int32 border, float thresholdBias, ClassifierTables& tables) {
    const int32 innerHeight = tables.windowHeight - 2 * border;
    const int32 innerWidth = tables.windowWidth - 2 * border;
    // A window without an inside has no norm; the scan would refuse it at every scale.
    if (innerHeight < 1 || innerWidth < 1) return kBadSize;
    const auto norm = static_cast<float>(1.0 / (innerHeight * innerWidth));
    tables.maxFeatureWidth = 0;
    tables.maxFeatureHeight = 0;
    for (float& weight : tables.featureWeight) weight *= norm;
    for (float& threshold : tables.stageThreshold) threshold -= thresholdBias;
    for (ImageRect& rect : tables.featureRect) rect.y = tables.windowHeight - rect.height - rect.y;

    if (!tables.stageThreshold.empty() && (tables.classifierThreshold.empty() || tables.featureRect.empty())) {
        return kNullPointer;
    }
    for (std::size_t i = 0; i < tables.stageThreshold.size(); ++i) FindBounds(i, tables);
    try {
        tables.plan = PlanCascade(tables);
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    }
    return kOk;
}

int32 MakeStages(ClassifierTables& tables) {
    for (std::size_t i = 0; i < tables.stageObject.size(); ++i) {
        if (tables.stageObject[i] != nullptr) continue;
        const int32 features = tables.stageFeatureStart[i];
        const int32 classifiers = tables.stageClassifierStart[i];
        HaarClassifier* stage = nullptr;
        const int32 status = primHaarClassifierInitAlloc_32f(
            &stage, tables.featureRect.data() + features, tables.featureWeight.data() + features,
            tables.classifierThreshold.data() + classifiers, tables.classifierVal1.data() + classifiers,
            tables.classifierVal2.data() + classifiers, tables.classifierFeatureCount.data() + classifiers,
            tables.stageClassifierCount[i]);
        if (status != kOk) return status;
        tables.stageObject[i].reset(stage);
    }
    return kOk;
}

int32 FreeClassifier(ClassifierTables& tables) {
    int32 status = kOk;
    for (HaarStage& stage : tables.stageObject) {
        if (stage != nullptr) status = primHaarClassifierFree_32f(stage.release());
    }
    ClassifierTables emptied;
    emptied.windowWidth = tables.windowWidth;
    emptied.windowHeight = tables.windowHeight;
    emptied.stageCount = tables.stageCount;
    emptied.classifierCount = tables.classifierCount;
    emptied.featureCount = tables.featureCount;
    tables = std::move(emptied);
    return status;
}

} // namespace orvane
