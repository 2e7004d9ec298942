#include "capture/gstreamer/caps_values.h"

#include <algorithm>
#include <limits>

namespace orvane {
namespace {

/// Calls `each` with every value of a list, or with the one value that is no list.
template <typename Each>
void ForEach(const GValue* value, Each each) {
    if (value == nullptr) return;
    if (!GST_VALUE_HOLDS_LIST(value)) return each(value);
    for (guint i = 0; i < gst_value_list_get_size(value); ++i) each(gst_value_list_get_value(value, i));
}

int32 Rate(const GValue* fraction) {
    const int64 frames = gst_value_get_fraction_numerator(fraction);
    const int64 seconds = gst_value_get_fraction_denominator(fraction);
    constexpr int64 kNoLimit = std::numeric_limits<int32>::max();
    if (frames <= 0 || seconds <= 0 || frames == kNoLimit) return 0;
    const int64 rate = frames * 1000 / seconds;
    return rate < kNoLimit ? static_cast<int32>(rate) : 0;
}

} // namespace

int32 GreatestNumber(const GstStructure* form, const char* field) {
    int32 greatest = 0;
    ForEach(gst_structure_get_value(form, field), [&](const GValue* value) {
        if (G_VALUE_HOLDS_INT(value)) greatest = std::max(greatest, g_value_get_int(value));
        if (GST_VALUE_HOLDS_INT_RANGE(value)) greatest = std::max(greatest, gst_value_get_int_range_max(value));
    });
    return greatest;
}

int32 GreatestRate(const GstStructure* form) {
    int32 greatest = 0;
    ForEach(gst_structure_get_value(form, "framerate"), [&](const GValue* value) {
        if (GST_VALUE_HOLDS_FRACTION(value)) greatest = std::max(greatest, Rate(value));
        if (GST_VALUE_HOLDS_FRACTION_RANGE(value))
            greatest = std::max(greatest, Rate(gst_value_get_fraction_range_max(value)));
    });
    return greatest;
}

std::vector<const char*> Texts(const GstStructure* form, const char* field) {
    std::vector<const char*> texts;
    ForEach(gst_structure_get_value(form, field), [&](const GValue* value) {
        if (G_VALUE_HOLDS_STRING(value) && g_value_get_string(value) != nullptr)
            texts.push_back(g_value_get_string(value));
    });
    return texts;
}

} // namespace orvane
