#include "tools/orvane/frame_options.h"

#include "tools/documents/documents.h"
#include "tools/support/picture.h"
#include "tools/support/picture_format.h"

#include <charconv>
#include <cmath>
#include <initializer_list>

namespace orvane::tools {
namespace {

constexpr std::string_view kUnit = "mm";

std::optional<double> Millimetres(std::string_view text) {
    double value = 0;
    const auto [stop, code] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (code != std::errc() || stop != text.data() + text.size() || !(value > 0) || value > kMostMillimetres) {
        return std::nullopt;
    }
    return value;
}

/// Two numbers with a mark between them and mm behind them.
bool ReadPair(std::string_view text, char mark, double* first, double* second) {
    if (!text.ends_with(kUnit)) return false;
    text.remove_suffix(kUnit.size());
    const std::size_t at = text.find(mark);
    if (at == std::string_view::npos) return false;
    const std::optional<double> one = Millimetres(text.substr(0, at));
    const std::optional<double> two = Millimetres(text.substr(at + 1));
    if (!one || !two) return false;
    *first = *one;
    *second = *two;
    return true;
}

std::optional<uint8> HexByte(std::string_view text) {
    int value = 0;
    const auto [stop, code] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (code != std::errc() || stop != text.data() + text.size() || text.front() == '-') return std::nullopt;
    return static_cast<uint8>(value);
}

/// Options that say what another one says too.
bool RefuseTogether(std::initializer_list<std::pair<bool, const char*>> others, const std::string& who,
                    std::string* error) {
    for (const auto& [given, name] : others) {
        if (!given) continue;
        *error = who + name;
        return false;
    }
    return true;
}

bool WishOfDocument(const PortraitSettings& settings, FrameOptions* frame, FrameWish* wish, std::string* error) {
    if (!RefuseTogether({{frame->sizeInPixels || frame->sizeInMillimetres, "--size"},
                         {frame->cropRatioGiven, "--crop-ratio"},
                         {frame->givenHead.has_value(), "--head"}},
                        "--document tells size and head itself; leave out ", error)) {
        return false;
    }
    Document document;
    if (!FindDocument(frame->document, &document, error)) return false;
    *wish = WishOf(document);
    frame->documentLeastBytes = document.leastBytes;
    frame->documentMostBytes = document.mostBytes;
    const Actions& actions = settings.actions;
    if (!document.forbidsEdits || frame->allowEdits || !(actions.background || actions.colour)) return true;
    *error = "'" + document.name + "' takes no altered photo, so no background and no colour in --actions; " +
             "--allow-edits does them all the same";
    return false;
}

bool WishOfSize(const PortraitSettings& settings, const FrameOptions& frame, FrameWish* wish, std::string* error) {
    if (frame.sizeInMillimetres) {
        wish->width = frame.givenWidth;
        wish->height = frame.givenHeight;
        wish->head = Band();
    }
    if (frame.cropRatioGiven) {
        if (!RefuseTogether({{frame.givenHead.has_value(), "--crop-ratio"}}, "--head tells the head's size; leave out ",
                            error)) {
            return false;
        }
        wish->cropRatio = settings.cropRatio;
        wish->head = Band();
    }
    if (!frame.givenHead) return true;
    wish->head = *frame.givenHead;
    wish->isStrict = true;
    if (*wish->head.high <= wish->height) return true;
    *error = "--head reaches beyond the height of the portrait";
    return false;
}

bool CheckPixels(const FrameWish& wish, std::string* error) {
    const int width = PixelsOf(wish.width, wish.resolution);
    const int height = PixelsOf(wish.height, wish.resolution);
    if (width >= kMinOutputSide && height >= kMinOutputSide && IsPictureSizeAllowed(width, height)) return true;
    *error = "the portrait would have " + std::to_string(width) + "x" + std::to_string(height) + " pixels, and takes " +
             Range(kMinOutputSide, kMaxOutputSide) + " a side and at most " + std::to_string(kMaxPicturePixels) +
             " in all";
    return false;
}

void PackBand(const Band& band, Packer* packer) {
    for (const std::optional<double>& end : {band.low, band.high}) packer->Flag(end.has_value()).Real(end.value_or(0));
}

Band UnpackBand(Unpacker* unpacker) {
    Band band;
    for (std::optional<double>* end : {&band.low, &band.high}) {
        const bool has = unpacker->Flag();
        const double value = unpacker->Real();
        if (has) *end = value;
    }
    return band;
}

} // namespace

bool SetPortraitSize(const std::string& text, PortraitSettings* settings, FrameOptions* frame, std::string* error) {
    frame->sizeInMillimetres = text.ends_with(kUnit);
    frame->sizeInPixels = !frame->sizeInMillimetres;
    if (frame->sizeInPixels) return SetSize(text, settings, error);
    if (ReadPair(text, 'x', &frame->givenWidth, &frame->givenHeight)) return true;
    *error = "--size wants WIDTHxHEIGHT in pixels, or in millimetres as in 35x45mm, not '" + text + "'";
    return false;
}

bool SetRatio(const std::string& text, PortraitSettings* settings, FrameOptions* frame, std::string* error) {
    frame->cropRatioGiven = true;
    return SetCropRatio(text, settings, error);
}

bool SetDocument(const std::string& text, FrameOptions* frame, std::string* error) {
    frame->document = text;
    if (text.empty()) *error = "--document wants a name of 'orvane documents', or a table of one's own";
    return !text.empty();
}

bool SetHead(const std::string& text, FrameOptions* frame, std::string* error) {
    double low = 0;
    double high = 0;
    if (ReadPair(text, '-', &low, &high) && low >= kLeastHead && low <= high) {
        frame->givenHead = Band{low, high};
        return true;
    }
    *error = "--head wants a band in millimetres, such as 32-36mm, not '" + text + "'";
    return false;
}

bool SetFill(const std::string& text, FrameOptions* frame, std::string* error) {
    Fill fill;
    if (text == "edge") {
        fill.kind = Fill::Kind::edge;
    } else if (text == "white") {
        fill = {Fill::Kind::colour, 255, 255, 255};
    } else if (text.size() == 7 && text[0] == '#') {
        const auto red = HexByte(text.substr(1, 2));
        const auto green = HexByte(text.substr(3, 2));
        const auto blue = HexByte(text.substr(5, 2));
        if (red && green && blue) fill = {Fill::Kind::colour, *red, *green, *blue};
    }
    frame->givenFill = fill;
    if (fill.kind != Fill::Kind::none) return true;
    *error = "--fill wants edge, white or a colour such as #e8e8e8, not '" + text + "'";
    return false;
}

bool FinishFrame(const PortraitSettings& settings, std::optional<int32> dpi, FrameOptions* frame, std::string* error) {
    frame->frame.reset();
    const bool asksForFrame =
        !frame->document.empty() || frame->sizeInMillimetres || frame->givenHead || frame->givenFill;
    if (frame->sizeInPixels && frame->document.empty()) {
        return RefuseTogether({{frame->givenHead.has_value(), "--head"}, {frame->givenFill.has_value(), "--fill"}},
                              "a --size in pixels does not go with ", error);
    }
    if (!settings.actions.crop) {
        if (!asksForFrame) return true; // the portrait keeps the photo's size
        *error = "a portrait in millimetres wants crop among --actions";
        return false;
    }
    FrameWish wish;
    const bool isGood = frame->document.empty() ? WishOfSize(settings, *frame, &wish, error)
                                                : WishOfDocument(settings, frame, &wish, error);
    if (!isGood) return false;
    if (dpi) wish.resolution = *dpi;
    if (frame->givenFill) wish.fill = *frame->givenFill;
    if (!CheckPixels(wish, error)) return false;
    frame->frame = wish;
    return true;
}

void SetFileOfFrame(const FrameOptions& frame, const std::string& output, FileSettings* file) {
    if (!frame.frame) return;
    if (!file->dpi) file->dpi = static_cast<int32>(std::lround(frame.frame->resolution));
    if (FormatOfName(output) != PictureFormat::jpeg) return;
    if (!file->leastBytes) file->leastBytes = frame.documentLeastBytes;
    if (!file->mostBytes) file->mostBytes = frame.documentMostBytes;
}

void PackFrame(const std::optional<FrameWish>& frame, Packer* packer) {
    packer->Flag(frame.has_value());
    if (!frame) return;
    packer->Real(frame->width).Real(frame->height).Real(frame->resolution);
    for (const Band* band : {&frame->head, &frame->eyes, &frame->above}) PackBand(*band, packer);
    packer->Integer(static_cast<int>(frame->headTop));
    packer->Flag(frame->cropRatio.has_value()).Real(frame->cropRatio.value_or(0)).Flag(frame->isStrict);
    const Fill& fill = frame->fill;
    packer->Integer(static_cast<int>(fill.kind)).Integer(fill.red).Integer(fill.green).Integer(fill.blue);
}

void UnpackFrame(Unpacker* unpacker, std::optional<FrameWish>* frame) {
    frame->reset();
    if (!unpacker->Flag()) return;
    FrameWish wish;
    for (double* value : {&wish.width, &wish.height, &wish.resolution}) *value = unpacker->Real();
    for (Band* band : {&wish.head, &wish.eyes, &wish.above}) *band = UnpackBand(unpacker);
    wish.headTop = static_cast<HeadTop>(unpacker->Integer());
    const bool hasRatio = unpacker->Flag();
    const double ratio = unpacker->Real();
    if (hasRatio) wish.cropRatio = ratio;
    wish.isStrict = unpacker->Flag();
    wish.fill.kind = static_cast<Fill::Kind>(unpacker->Integer());
    for (std::uint8_t* part : {&wish.fill.red, &wish.fill.green, &wish.fill.blue}) {
        *part = static_cast<std::uint8_t>(unpacker->Integer());
    }
    *frame = wish;
}

} // namespace orvane::tools
