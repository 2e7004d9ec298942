#include "capture/gstreamer/wide_text.h"

#include "capture/gstreamer/gst_handles.h"

namespace orvane {

std::wstring WideText(const char* utf8) {
    static_assert(sizeof(wchar_t) == sizeof(gunichar), "a wide character holds every character");
    const TextOwner valid(g_utf8_make_valid(utf8, -1));
    std::wstring wide;
    for (const char* at = valid.get(); *at != '\0'; at = g_utf8_next_char(at)) {
        wide.push_back(static_cast<wchar_t>(g_utf8_get_char(at)));
    }
    return wide;
}

} // namespace orvane
