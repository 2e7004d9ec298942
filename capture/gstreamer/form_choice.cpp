// A portrait wants pixels, and the operator's preview wants some 25 frames a second; more of either only costs
// time, since every frame is converted, copied and drawn. So the largest picture that comes at 25 frames a second
// wins, up to about 1280 by 960. A device without such a form is too slow, too small or too large: then pixels
// and rate are weighed against each other.
#include "capture/gstreamer/form_choice.h"

#include "capture/gstreamer/caps_values.h"

#include <gst/video/video.h>

#include <algorithm>
#include <tuple>
#include <vector>

namespace orvane {
namespace {

constexpr ImageSize kMost{1280, 960};
constexpr ImageSize kLeast{640, 480}; // below, a face has too few pixels for a card
constexpr int32 kWantedRate = 25000;  // frames in 1000 seconds
constexpr guint kMostSizes = 64;      // of a list in one field

int64 Pixels(ImageSize size) { return int64{size.width} * size.height; }

/// The values that a field may be given; of a range the one nearest to `wanted`.
std::vector<int32> Choices(const GstStructure* form, const char* field, int32 wanted) {
    std::vector<int32> choices;
    const GValue* value = gst_structure_get_value(form, field);
    if (value != nullptr && GST_VALUE_HOLDS_LIST(value)) {
        for (guint i = 0; i < std::min(gst_value_list_get_size(value), kMostSizes); ++i) {
            const GValue* entry = gst_value_list_get_value(value, i);
            if (G_VALUE_HOLDS_INT(entry)) choices.push_back(g_value_get_int(entry));
        }
        return choices;
    }
    if (value == nullptr) return choices;
    const GstOwner<GstStructure> copy(gst_structure_copy(form));
    int chosen = 0;
    gst_structure_fixate_field_nearest_int(copy.get(), field, wanted);
    if (gst_structure_get_int(copy.get(), field, &chosen)) choices.push_back(chosen);
    return choices;
}

bool HasDecoder(const GstCaps* caps) {
    GList* all = gst_element_factory_list_get_elements(GST_ELEMENT_FACTORY_TYPE_DECODER, GST_RANK_MARGINAL);
    GList* fitting = gst_element_factory_list_filter(all, caps, GST_PAD_SINK, FALSE);
    const bool found = fitting != nullptr;
    gst_plugin_feature_list_free(fitting);
    gst_plugin_feature_list_free(all);
    return found;
}

/// A form of the device without what can't be shown; null where nothing is left.
CapsOwner Usable(const GstCaps* caps, guint index, bool& packed) {
    CapsOwner form(gst_caps_copy_nth(caps, index));
    packed = !gst_structure_has_name(gst_caps_get_structure(form.get(), 0), "video/x-raw");
    if (packed) return HasDecoder(form.get()) ? std::move(form) : nullptr;
    // In memory that the processor can read, and of pixels that are known.
    static const char* const kReadable = GST_VIDEO_CAPS_MAKE(GST_VIDEO_FORMATS_ALL);
    const CapsOwner readable(gst_caps_from_string(kReadable));
    form.reset(gst_caps_intersect(form.get(), readable.get()));
    return gst_caps_is_empty(form.get()) ? nullptr : std::move(form);
}

/// The form at one size, and at a rate not far above what is wanted, if the device has that.
CapsOwner At(const GstCaps* form, ImageSize size, int32 rate) {
    CapsOwner chosen(gst_caps_copy(form));
    gst_caps_set_simple(chosen.get(), "width", G_TYPE_INT, size.width, "height", G_TYPE_INT, size.height, nullptr);
    if (rate == 0) return chosen;
    const auto limited = [&](int least, int most) {
        CapsOwner limit(gst_caps_copy(chosen.get()));
        gst_caps_set_simple(limit.get(), "framerate", GST_TYPE_FRACTION_RANGE, least, 1, most, 1, nullptr);
        return CapsOwner(gst_caps_intersect(chosen.get(), limit.get()));
    };
    constexpr int kLeastRate = kWantedRate / 1000, kPlenty = 30;
    for (const int most : {kPlenty, G_MAXINT}) {
        CapsOwner fitting = limited(kLeastRate, most);
        if (!gst_caps_is_empty(fitting.get())) return fitting;
    }
    return chosen;
}

/// How good a form is; the greater the better, of equals the first.
auto Worth(ImageSize size, int32 rate, bool packed) {
    const int64 pixels = Pixels(size);
    const bool moves = rate == 0 || rate >= kWantedRate; // who tells no rate is taken to be fast enough
    if (pixels > Pixels(kMost)) return std::tuple(0, moves ? int64{1} : int64{0}, -pixels, !packed);
    if (!moves || pixels < Pixels(kLeast))
        return std::tuple(1, pixels * std::min(rate == 0 ? kWantedRate : rate, kWantedRate), int64{0}, !packed);
    return std::tuple(2, pixels, int64{0}, !packed);
}

} // namespace

std::optional<CameraForm> ChooseForm(const GstCaps* caps) {
    if (caps == nullptr) return {};
    // Who tells nothing of its frames gets them scaled, whatever they are.
    if (gst_caps_is_any(caps)) return CameraForm{CapsOwner(gst_caps_new_any()), kLeast, true};
    std::optional<CameraForm> best;
    auto bestWorth = Worth({0, 0}, 0, false);
    for (guint i = 0; i < gst_caps_get_size(caps); ++i) {
        bool packed = false;
        const CapsOwner form = Usable(caps, i, packed);
        if (form == nullptr) continue;
        const GstStructure* fields = gst_caps_get_structure(form.get(), 0);
        const int32 rate = GreatestRate(fields);
        for (const int32 width : Choices(fields, "width", kMost.width)) {
            for (const int32 height : Choices(fields, "height", kMost.height)) {
                const auto worth = Worth({width, height}, rate, packed);
                if (width < 1 || height < 1 || (best && worth <= bestWorth)) continue;
                best = CameraForm{At(form.get(), {width, height}, rate), {width, height}, packed};
                bestWorth = worth;
            }
        }
    }
    return best;
}

} // namespace orvane
