// Over cairo, and Pango, which finds letters of every script among the fonts that are there.
#include "tools/sheet/sheet_canvas.h"

#include "tools/support/picture_io.h"
#include "tools/support/utf8.h"

#include <cairo-pdf.h>
#include <cmath>
#include <cstring>
#include <pango/pangocairo.h>
#include <utility>

namespace orvane::tools {
namespace {

struct Unref {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
};
using Context = std::unique_ptr<cairo_t, Unref>;
using Surface = std::unique_ptr<cairo_surface_t, Unref>;

cairo_status_t Append(void* document, const unsigned char* data, unsigned int length) try {
    static_cast<std::string*>(document)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
} catch (const std::bad_alloc&) {
    return CAIRO_STATUS_NO_MEMORY;
}

/// The picture as an image of cairo's, its rows turned over.
Surface SurfaceOf(const Picture& picture) {
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, picture.width, picture.height));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return surface;
    unsigned char* rows = cairo_image_surface_get_data(surface.get());
    const std::ptrdiff_t step = cairo_image_surface_get_stride(surface.get());
    for (int32 y = 0; y < picture.height; ++y) {
        const uint8* from = picture.pixels.data() + std::ptrdiff_t{picture.step} * (picture.height - 1 - y);
        auto* to = reinterpret_cast<std::uint32_t*>(rows + step * y);
        for (int32 x = 0; x < picture.width; ++x, from += 3) {
            to[x] = std::uint32_t{from[2]} << 16 | std::uint32_t{from[1]} << 8 | from[0];
        }
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

/// A document takes the picture as a JPEG file, which is a tenth of its pixels.
void AddJpeg(const Picture& picture, cairo_surface_t* surface) {
    auto encoded = std::make_unique<std::string>();
    std::string ignored;
    if (!EncodePicture("small.jpg", picture, encoded.get(), &ignored)) return;
    std::string* bytes = encoded.release();
    const cairo_status_t status = cairo_surface_set_mime_data(
        surface, CAIRO_MIME_TYPE_JPEG, reinterpret_cast<const unsigned char*>(bytes->data()), bytes->size(),
        [](void* held) { delete static_cast<std::string*>(held); }, bytes);
    if (status != CAIRO_STATUS_SUCCESS) delete bytes;
}

class CairoCanvas : public SheetCanvas {
public:
    CairoCanvas(SheetKind kind, double width, double height) : kind_(kind), width_(width), height_(height) {
        if (kind == SheetKind::pdf) {
            surface_.reset(cairo_pdf_surface_create_for_stream(&Append, &document_, width, height));
        } else {
            surface_.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24, Pixels(width), Pixels(height)));
        }
        context_.reset(cairo_create(surface_.get()));
        if (kind == SheetKind::pictures) {
            cairo_scale(context_.get(), kSheetScale, kSheetScale);
            CairoCanvas::Fill({0, 0, width, height}, {1, 1, 1});
        }
    }

    bool IsGood() const { return cairo_status(context_.get()) == CAIRO_STATUS_SUCCESS; }

    void Fill(const SheetBox& box, const Shade& shade) override {
        cairo_set_source_rgb(context_.get(), shade.red, shade.green, shade.blue);
        cairo_rectangle(context_.get(), box.x, box.y, box.width, box.height);
        cairo_fill(context_.get());
    }

    void Draw(const Picture& picture, const SheetBox& box) override {
        const Surface image = SurfaceOf(picture);
        if (kind_ == SheetKind::pdf) AddJpeg(picture, image.get());
        cairo_save(context_.get());
        cairo_translate(context_.get(), box.x, box.y);
        cairo_scale(context_.get(), box.width / picture.width, box.height / picture.height);
        cairo_set_source_surface(context_.get(), image.get(), 0, 0);
        // Edges of a picture must not fade into what is behind; in a document this would keep the JPEG file out.
        if (kind_ == SheetKind::pictures) {
            cairo_pattern_set_extend(cairo_get_source(context_.get()), CAIRO_EXTEND_PAD);
        }
        cairo_rectangle(context_.get(), 0, 0, picture.width, picture.height);
        cairo_fill(context_.get());
        cairo_restore(context_.get());
    }

    void Write(const std::string& text, const SheetBox& box, double size, int lines, const Shade& shade) override {
        const std::unique_ptr<PangoLayout, Unref> layout(pango_cairo_create_layout(context_.get()));
        const std::unique_ptr<PangoFontDescription, Unref> font(pango_font_description_from_string("Sans"));
        pango_font_description_set_absolute_size(font.get(), size * PANGO_SCALE);
        pango_layout_set_font_description(layout.get(), font.get());
        pango_layout_set_width(layout.get(), static_cast<int>(box.width * PANGO_SCALE));
        pango_layout_set_height(layout.get(), -lines);
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
        pango_layout_set_ellipsize(layout.get(), lines > 1 ? PANGO_ELLIPSIZE_END : PANGO_ELLIPSIZE_MIDDLE);
        const std::string whole = OneLine(WholeUtf8(text));
        pango_layout_set_text(layout.get(), whole.data(), static_cast<int>(whole.size()));
        cairo_set_source_rgb(context_.get(), shade.red, shade.green, shade.blue);
        cairo_move_to(context_.get(), box.x, box.y);
        pango_cairo_show_layout(context_.get(), layout.get());
    }

    void EndPage(Picture* page) override {
        if (kind_ == SheetKind::pdf) {
            cairo_show_page(context_.get());
            return;
        }
        cairo_surface_flush(surface_.get());
        page->width = Pixels(width_);
        page->height = Pixels(height_);
        page->step = PictureStep(page->width);
        page->pixels = PixelBlock(PictureBytes(page->width, page->height));
        const unsigned char* rows = cairo_image_surface_get_data(surface_.get());
        const std::ptrdiff_t step = cairo_image_surface_get_stride(surface_.get());
        for (int32 y = 0; y < page->height; ++y) {
            const auto* from = reinterpret_cast<const std::uint32_t*>(rows + step * y);
            uint8* to = page->pixels.data() + std::ptrdiff_t{page->step} * (page->height - 1 - y);
            for (int32 x = 0; x < page->width; ++x, to += 3) {
                to[0] = static_cast<uint8>(from[x]);
                to[1] = static_cast<uint8>(from[x] >> 8);
                to[2] = static_cast<uint8>(from[x] >> 16);
            }
        }
        Fill({0, 0, width_, height_}, {1, 1, 1});
    }

    bool Finish(std::string* document) override {
        cairo_surface_finish(surface_.get());
        const bool good = cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS && IsGood();
        *document = std::move(document_);
        return good;
    }

private:
    static int32 Pixels(double points) { return static_cast<int32>(std::floor(points * kSheetScale + 0.5)); }

    const SheetKind kind_;
    const double width_;
    const double height_;
    std::string document_; // of a PDF; stays until its surface is gone
    Surface surface_;
    Context context_;
};

} // namespace

bool CanDrawSheets() { return true; }

std::unique_ptr<SheetCanvas> MakeSheetCanvas(SheetKind kind, double width, double height) {
    auto canvas = std::make_unique<CairoCanvas>(kind, width, height);
    if (!canvas->IsGood()) return nullptr;
    return canvas;
}

} // namespace orvane::tools
