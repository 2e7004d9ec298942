#include "bench/linux/picture_library.h"

#include "bench/processor_time.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <memory>

namespace orvane::bench {
namespace {

struct Unref {
    void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using PixbufPtr = std::unique_ptr<GdkPixbuf, Unref>;

bool Save(GdkPixbuf* pixbuf, const std::string& file) {
    const bool png = file.ends_with(".png");
    return gdk_pixbuf_save(pixbuf, file.c_str(), png ? "png" : "jpeg", nullptr, png ? "compression" : "quality",
                           png ? "4" : "95", nullptr) != FALSE;
}

} // namespace

bool ScalePlainly(const std::string& from, const std::string& to, ImageSize size, PlainTimes* times) {
    PixbufPtr photo, portrait;
    bool good = false;
    times->decode = SecondsOf([&] { photo.reset(gdk_pixbuf_new_from_file(from.c_str(), nullptr)); });
    if (photo == nullptr) return false;
    times->scale = SecondsOf([&] {
        portrait.reset(gdk_pixbuf_scale_simple(photo.get(), size.width, size.height, GDK_INTERP_BILINEAR));
        photo.reset();
    });
    if (portrait == nullptr) return false;
    times->encode = SecondsOf([&] {
        good = Save(portrait.get(), to);
        portrait.reset();
    });
    return good;
}

} // namespace orvane::bench
