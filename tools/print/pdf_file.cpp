#include "tools/print/pdf_file.h"

#include <cstdio>

namespace orvane::tools {
namespace {

constexpr double kPointsAMillimetre = 72 / 25.4;

/// Digits with a point, whatever the locale.
std::string Points(double millimetres) {
    char text[64];
    const double tenThousandths = millimetres * kPointsAMillimetre * 10000;
    const auto value = static_cast<long long>(tenThousandths < 0 ? tenThousandths - 0.5 : tenThousandths + 0.5);
    const long long magnitude = value < 0 ? -value : value;
    std::snprintf(text, sizeof text, "%s%lld.%04lld", value < 0 ? "-" : "", magnitude / 10000, magnitude % 10000);
    return text;
}

std::string Reference(std::size_t number) { return std::to_string(number) + " 0 R"; }

std::string Stream(const std::string& entries, const std::string& bytes) {
    return "<< " + entries + "/Length " + std::to_string(bytes.size()) + " >>\nstream\n" + bytes + "\nendstream";
}

/// Objects one after the other, and where each begins.
class ObjectWriter {
public:
    void Add(const std::string& object) {
        places_.push_back(bytes_.size());
        bytes_ += std::to_string(places_.size()) + " 0 obj\n" + object + "\nendobj\n";
    }

    std::string Finish() {
        const std::size_t table = bytes_.size();
        bytes_ += "xref\n0 " + std::to_string(places_.size() + 1) + "\n0000000000 65535 f \n";
        for (const std::size_t place : places_) {
            char line[32];
            std::snprintf(line, sizeof line, "%010llu 00000 n \n", static_cast<unsigned long long>(place));
            bytes_ += line;
        }
        bytes_ += "trailer\n<< /Size " + std::to_string(places_.size() + 1) + " /Root 1 0 R >>\nstartxref\n";
        return bytes_ + std::to_string(table) + "\n%%EOF\n";
    }

private:
    std::string bytes_ = "%PDF-1.6\n%\xE2\xE3\xCF\xD3\n"; // the second line says that there are bytes beyond ASCII
    std::vector<std::size_t> places_;
};

} // namespace

std::size_t PdfFile::AddPicture(const PdfPicture& picture) {
    pictures_.push_back(picture);
    return pictures_.size() - 1;
}

void PdfFile::AddPage(const PaperSize& size) { pages_.push_back({size, ""}); }

void PdfFile::Rectangle(double x, double y, const PaperSize& size) {
    Page& page = pages_.back();
    page.content += Points(x) + " " + Points(page.size.height - y - size.height) + " " + Points(size.width) + " " +
                    Points(size.height) + " re f\n";
}

void PdfFile::Place(std::size_t picture, double x, double y, const PaperSize& size) {
    Page& page = pages_.back();
    page.content += "q " + Points(size.width) + " 0 0 " + Points(size.height) + " " + Points(x) + " " +
                    Points(page.size.height - y - size.height) + " cm /P" + std::to_string(picture) + " Do Q\n";
}

std::string PdfFile::Bytes() const {
    // 1 the catalogue, 2 the list of pages, then the pictures, then a page and its content each.
    constexpr std::size_t kFirstPicture = 3;
    const std::size_t firstPage = kFirstPicture + pictures_.size();
    ObjectWriter writer;
    // Viewers are asked not to fit pages to the paper.
    writer.Add("<< /Type /Catalog /Pages 2 0 R /ViewerPreferences << /PrintScaling /None >> >>");
    std::string kids;
    for (std::size_t i = 0; i < pages_.size(); ++i) kids += Reference(firstPage + 2 * i) + " ";
    writer.Add("<< /Type /Pages /Count " + std::to_string(pages_.size()) + " /Kids [ " + kids + "] >>");
    std::string names;
    for (std::size_t i = 0; i < pictures_.size(); ++i) {
        const PdfPicture& picture = pictures_[i];
        names += "/P" + std::to_string(i) + " " + Reference(kFirstPicture + i) + " ";
        writer.Add(Stream("/Type /XObject /Subtype /Image /Width " + std::to_string(picture.width) + " /Height " +
                              std::to_string(picture.height) + " " + picture.entries + " ",
                          picture.bytes));
    }
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        const Page& page = pages_[i];
        writer.Add("<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 " + Points(page.size.width) + " " +
                   Points(page.size.height) + " ] /Resources << /XObject << " + names + ">> >> /Contents " +
                   Reference(firstPage + 2 * i + 1) + " >>");
        writer.Add(Stream("", page.content));
    }
    return writer.Finish();
}

} // namespace orvane::tools
