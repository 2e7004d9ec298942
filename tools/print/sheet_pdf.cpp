#include "tools/print/sheet_pdf.h"

#include "tools/print/cut_marks.h"
#include "tools/print/pdf_file.h"
#include "tools/support/byte_order.h"
#include "tools/support/colour_profile.h"
#include "tools/support/jpeg_segments.h"
#include "tools/support/orientation.h"
#include "tools/support/picture_codec.h"
#include "tools/support/png_chunks.h"

namespace orvane::tools {
namespace {

bool IsAsItShows(const std::string& jpeg, const JpegFrame& frame) {
    const bool coding = frame.marker >= 0xC0 && frame.marker <= 0xC2;
    const bool colours = frame.components == 1 || frame.components == 3;
    return coding && colours && frame.bits == 8 && NotedOrientation(jpeg) == 1 && !NamesProfile(jpeg);
}

PdfPicture OfJpeg(const std::string& jpeg, const JpegFrame& frame) {
    PdfPicture picture;
    picture.width = static_cast<int>(frame.width);
    picture.height = static_cast<int>(frame.height);
    picture.entries = std::string("/ColorSpace ") + (frame.components == 1 ? "/DeviceGray" : "/DeviceRGB") +
                      " /BitsPerComponent 8 /Filter /DCTDecode";
    picture.bytes = jpeg;
    return picture;
}

/// The pixels of a PNG file are stored as PDF stores them too.
bool OfPng(const std::string& png, PdfPicture* picture) {
    const FileParts<PngChunk> chunks = PngChunks(png);
    const auto header = chunks.begin();
    const std::string plainColour("\10\2\0\0\0", 5); // 8 bits, red green blue, the one compression, filter and order
    if (header == chunks.end() || header->size != 13 || png.compare(header->content + 8, 5, plainColour) != 0) {
        return false;
    }
    picture->width = static_cast<int>(HighFirst(png, header->content, 4));
    picture->height = static_cast<int>(HighFirst(png, header->content + 4, 4));
    picture->entries = "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter /FlateDecode /DecodeParms << /Predictor 15 "
                       "/Colors 3 /BitsPerComponent 8 /Columns " +
                       std::to_string(picture->width) + " >>";
    for (const PngChunk& chunk : chunks) {
        if (chunk.type == "IDAT") picture->bytes.append(png, chunk.content, chunk.size);
    }
    return true;
}

bool ForPdf(PrintedPortrait& portrait, PdfPicture* picture, std::string* error) {
    const std::optional<JpegFrame> frame = FrameOf(portrait.content);
    if (frame && IsAsItShows(portrait.content, *frame)) {
        *picture = OfJpeg(portrait.content, *frame);
        return true;
    }
    std::string png;
    if (!EncodePixels(PictureFormat::png, portrait.picture, EncoderSettings(), &png, error)) return false;
    if (OfPng(png, picture)) return true;
    *error = "cannot be put into a PDF file";
    return false;
}

} // namespace

bool MakePdf(const SheetPlan& plan, std::vector<PrintedPortrait>& portraits, bool cutMarks, std::string* pdf,
             std::string* error) {
    PdfFile file;
    for (PrintedPortrait& portrait : portraits) {
        PdfPicture picture;
        if (!ForPdf(portrait, &picture, error)) {
            *error = "'" + portrait.path + "' " + *error;
            return false;
        }
        file.AddPicture(picture);
    }
    for (const Sheet& sheet : plan.sheets) {
        file.AddPage(plan.paper);
        if (cutMarks) {
            for (const CutMark& mark : CutMarks(sheet, plan.paper)) {
                file.Rectangle(mark.left, mark.top, {mark.right - mark.left, mark.bottom - mark.top});
            }
        }
        for (const PlacedPortrait& placed : sheet) file.Place(placed.portrait, placed.x, placed.y, placed.size);
    }
    *pdf = file.Bytes();
    return true;
}

} // namespace orvane::tools
