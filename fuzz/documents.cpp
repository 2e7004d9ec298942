// Tables of documents: whatever stands in one, it is refused with the line that is wrong, or each of its documents is
// found again and makes frames that lie within the picture or tell what it lacks, and that can be cut.
#include "tools/documents/documents.h"
#include "fuzz/support/any_table.h"
#include "fuzz/support/written_file.h"
#include "tests/support/temp_folder.h"
#include "tools/documents/cut_frame.h"
#include "tools/documents/frame.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <vector>

using namespace orvane;
using namespace orvane::tools;
using fuzz::Expect;
using fuzz::ExpectOneLine;

namespace {

constexpr double kRounding = 1e-6; // of a side or a length

bool IsNear(double value, double other) {
    return std::abs(value - other) <= kRounding * std::max(1.0, std::abs(other));
}

void ExpectBounded(const Document& document) {
    Expect(document.width >= kLeastMillimetres && document.width <= kMostMillimetres, "a width is within its bounds");
    Expect(document.height >= kLeastMillimetres && document.height <= kMostMillimetres, "so is a height");
    Expect(IsPictureSizeAllowed(PixelsOf(document.width, document.resolution),
                                PixelsOf(document.height, document.resolution)),
           "a document has the pixels of a picture");
    for (const std::string& text : {document.title, document.authority, document.source, document.read}) {
        ExpectOneLine(text);
    }
}

/// A refused table tells its line.
void ExpectPlace(const std::string& error, const std::string& file) {
    ExpectOneLine(error);
    Expect(error.starts_with(file + ":") && std::isdigit(static_cast<unsigned char>(error[file.size() + 1])) != 0,
           "what is refused tells its line");
}

void Find(const std::string& table, const std::vector<Document>& documents) {
    static const test::TempFolder folder;
    const std::string path = (folder.Path() / "table.toml").string();
    std::string error;
    fuzz::WriteFile(path, table);
    Document found;
    for (const Document& document : documents) {
        Expect(FindDocument(path + "#" + document.name, &found, &error), "a document is found by its name");
        Expect(found.name == document.name && found.width == document.width, "it is the one that was meant");
    }
    Expect(FindDocument(path, &found, &error) == (documents.size() == 1), "one alone needs no name");
    if (documents.size() != 1) ExpectOneLine(error);
    Expect(!FindDocument(path + "#-", &found, &error), "no document has such a name");
    ExpectOneLine(error);
}

/// A document and a table that nobody has.
bool RefusesWhatIsNowhere() {
    Document document;
    for (const char* name : {"no-such-document", "nowhere/none.toml"}) {
        std::string error;
        if (FindDocument(name, &document, &error)) return false;
        ExpectOneLine(error);
    }
    return true;
}

void ExpectFrame(const FrameWish& wish, const PlaneRect& frame) {
    for (const double value : {frame.left, frame.top, frame.width, frame.height}) {
        Expect(std::isfinite(value), "a frame is finite");
    }
    Expect(frame.width > 0 && frame.height > 0, "a frame is not empty");
    Expect(IsNear(frame.width * wish.height, frame.height * wish.width), "a frame has its document's proportions");
}

bool IsWithin(const PlaneRect& frame, const PlaneRect& bounds, double beyond) {
    beyond += kRounding * (bounds.width + bounds.height + frame.width + frame.height);
    return frame.left >= bounds.left - beyond && frame.top >= bounds.top - beyond &&
           frame.Right() <= bounds.Right() + beyond && frame.Bottom() <= bounds.Bottom() + beyond;
}

void ExpectInBand(const Band& band, double value) {
    Expect(value >= band.low.value_or(value) - kRounding && value <= band.high.value_or(value) + kRounding,
           "what a band asks for is kept");
}

FramePlan PlanOf(const FrameWish& wish, const PlaneRect& square, const PlaneRect& bounds) {
    const FramePlan plain = PlainFrame(wish, square);
    ExpectFrame(wish, plain.frame);
    const FramePlan plan = FrameWithin(wish, square, bounds);
    ExpectFrame(wish, plan.frame);
    if (!wish.cropRatio) {
        ExpectInBand(wish.head, plan.head);
        ExpectInBand(wish.eyes, plan.eyes);
    }
    Expect(plan.fits || !IsWithin(plain.frame, bounds, -2 * kRounding * (plain.frame.width + plain.frame.height)),
           "a plain frame that fits is taken");
    Expect(plan.fits == ShortageText(plan.missing).empty(), "a frame fits, or tells what is missing");
    const double pixels = plan.frame.height / wish.height;
    Expect(!plan.fits || IsWithin(plan.frame, bounds, 0.05 * pixels), "a frame that fits lies within the picture");
    for (const double missing : {plan.missing.left, plan.missing.top, plan.missing.right, plan.missing.bottom}) {
        Expect(std::isfinite(missing) && missing >= 0, "what is missing is a length");
    }
    const PlaneRect inside = MovedInside(plan.frame, bounds);
    ExpectFrame(wish, inside);
    Expect(IsWithin(inside, bounds, 0), "a frame that is moved inside is inside");
    return plan;
}

/// Cuts it out of a picture of one colour, of which no other may come.
void Cut(const FrameWish& wish, const PlaneRect& frame, int32 side) {
    constexpr double kLargestCut = 1 << 18;
    const double cut = frame.width * frame.height;
    const int32 width = PixelsOf(wish.width, wish.resolution), height = PixelsOf(wish.height, wish.resolution);
    const bool isHuge = cut > 4.0 * static_cast<double>(kMaxPicturePixels);
    if (!isHuge && (cut > kLargestCut || width * height > (1 << 16))) return; // would take the fuzzer's time
    constexpr uint8 kLevel = 77;
    const std::vector<uint8> pixels(PictureBytes(side, side), kLevel);
    Picture portrait;
    const bool done = CutFrame({pixels.data(), side, side, PictureStep(side)}, frame, width, height,
                               {wish.fill.kind, kLevel, kLevel, kLevel}, &portrait);
    Expect(done != isHuge, "a frame is cut, or refused where it is too large");
    if (!done) return;
    Expect(portrait.width == width && portrait.height == height, "a portrait has its document's pixels");
    for (int32 y = 0; y < height; ++y) {
        const uint8* row = RowAt(portrait.pixels.data(), portrait.step, y);
        for (int32 x = 0; x < 3 * width; ++x) Expect(std::abs(row[x] - kLevel) <= 1, "one colour stays one colour");
        for (int32 x = 3 * width; x < portrait.step; ++x) Expect(row[x] == 0, "padding is zero");
    }
}

/// A face somewhere in a picture, or beyond.
struct Place {
    PlaneRect square;
    int32 side; ///< Of the picture.
};

Place PlaceOf(fuzz::Choices& choices) {
    const int32 side = choices.Flag() ? choices.Int(1, 64) : choices.Int(1, static_cast<int32>(kMaxPictureSide));
    const double share = side / 64.0;
    const double width = choices.Int(1, 64) * share;
    return {{choices.Int(-16, 80) * share, choices.Int(-16, 80) * share, width, width}, side};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    static const bool ready = RefusesWhatIsNowhere();
    Expect(ready, "what is nowhere is refused");
    fuzz::Choices choices(bytes, size);
    const Place places[] = {PlaceOf(choices), PlaceOf(choices)};
    const Fill::Kind fill = choices.OneOf({Fill::Kind::colour, Fill::Kind::edge});
    const bool byRatio = choices.Int(0, 7) == 0;
    const double ratio = choices.Int(1, 640) / 64.0;
    const std::string table = choices.Flag() ? fuzz::AnyTable(choices) : choices.Rest();

    std::vector<Document> documents;
    std::string error;
    if (!ReadDocuments(table, "t", &documents, &error)) {
        ExpectPlace(error, "t");
        return 0;
    }
    for (const Document& document : documents) {
        ExpectBounded(document);
        FrameWish wish = WishOf(document);
        wish.fill.kind = fill;
        if (byRatio) wish.cropRatio = ratio;
        for (const Place& place : places) {
            const auto side = static_cast<double>(place.side);
            const FramePlan plan = PlanOf(wish, place.square, {0, 0, side, side});
            if (place.side <= 64) Cut(wish, plan.frame, place.side);
        }
    }
    Find(table, documents);
    return 0;
}
