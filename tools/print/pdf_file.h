// The little of PDF that sheets need: pages of a size in millimetres, with pictures and black rectangles on them. The
// same calls give the same bytes: there is neither a date nor a name in them.
#pragma once

#include "tools/print/lengths.h"

#include <cstddef>
#include <string>
#include <vector>

namespace orvane::tools {

/// A picture as a PDF holds it: coded bytes, and the entries of its dictionary that tell how.
struct PdfPicture {
    int width = 0;
    int height = 0;
    std::string entries;
    std::string bytes;
};

class PdfFile {
public:
    /// Each picture is held once, however often it is placed; gives its number.
    std::size_t AddPicture(const PdfPicture& picture);

    /// Pages come in this order. Places count from the page's upper left corner, in millimetres.
    void AddPage(const PaperSize& size);
    void Rectangle(double x, double y, const PaperSize& size);
    void Place(std::size_t picture, double x, double y, const PaperSize& size);

    /// The whole file.
    std::string Bytes() const;

private:
    struct Page {
        PaperSize size;
        std::string content;
    };
    std::vector<PdfPicture> pictures_;
    std::vector<Page> pages_;
};

} // namespace orvane::tools
