#include "capture/gstreamer/frame_gate.h"

#include <gst/video/video.h>

#include <cstddef>
#include <cstring>
#include <limits>

namespace orvane {
namespace {

constexpr int32 kLongestSide = 32767;

/// A frame's pixels while they are read.
class MappedFrame {
public:
    MappedFrame(GstVideoInfo* info, GstBuffer* buffer)
        : m_mapped(gst_video_frame_map(&m_frame, info, buffer, GST_MAP_READ) != FALSE) {}
    ~MappedFrame() {
        if (m_mapped) gst_video_frame_unmap(&m_frame);
    }
    MappedFrame(const MappedFrame&) = delete;
    MappedFrame& operator=(const MappedFrame&) = delete;

    /// The upper row; null unless `rows` rows of `used` bytes lie in the block.
    const uint8* Rows(int32 rows, int32 used) const {
        if (!m_mapped || Stride() < used) return nullptr;
        const auto* first = static_cast<const uint8*>(GST_VIDEO_FRAME_PLANE_DATA(&m_frame, 0));
        const GstMapInfo& block = m_frame.map[0];
        if (first < block.data) return nullptr;
        const int64 before = first - block.data;
        const int64 end = before + int64{Stride()} * (rows - 1) + used;
        return end <= static_cast<int64>(block.size) ? first : nullptr;
    }
    int32 Stride() const { return GST_VIDEO_FRAME_PLANE_STRIDE(&m_frame, 0); }

private:
    GstVideoFrame m_frame{};
    const bool m_mapped;
};

double SecondsOf(GstBuffer* buffer) {
    const GstClockTime time = GST_BUFFER_PTS(buffer);
    return GST_CLOCK_TIME_IS_VALID(time) ? static_cast<double>(time) / GST_SECOND : 0.0;
}

} // namespace

int32 RowBytes(ImageSize size) {
    if (size.width < 1 || size.width > kLongestSide) return 0;
    return (3 * size.width + 3) / 4 * 4;
}

int32 FrameBytes(ImageSize size) {
    if (size.height < 1 || size.height > kLongestSide) return 0;
    const int64 bytes = int64{RowBytes(size)} * size.height;
    return bytes <= std::numeric_limits<int32>::max() ? static_cast<int32>(bytes) : 0;
}

FrameGate::FrameGate(ImageSize size) : m_size(size), m_rows(static_cast<std::size_t>(FrameBytes(size))) {}

void FrameGate::SendTo(FrameSink* sink) {
    const std::lock_guard lock(m_mutex);
    m_sink = sink;
}

void FrameGate::Let(bool pass) {
    const std::lock_guard lock(m_mutex);
    m_pass = pass;
}

bool FrameGate::Copy(GstSample* sample) {
    const GstCaps* caps = gst_sample_get_caps(sample);
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    GstVideoInfo info;
    if (caps == nullptr || buffer == nullptr || gst_video_info_from_caps(&info, caps) == FALSE) return false;
    if (GST_VIDEO_INFO_FORMAT(&info) != GST_VIDEO_FORMAT_BGR) return false;
    if (info.width != m_size.width || info.height != m_size.height) return false;
    const int32 used = 3 * m_size.width;
    const MappedFrame frame(&info, buffer);
    const uint8* from = frame.Rows(m_size.height, used);
    if (from == nullptr) return false;
    uint8* to = m_rows.data() + m_rows.size();
    for (int32 row = 0; row < m_size.height; ++row) {
        to -= RowBytes(m_size);
        std::memcpy(to, from + std::ptrdiff_t{frame.Stride()} * row, static_cast<std::size_t>(used));
    }
    return true;
}

void FrameGate::Take(GstSample* sample) noexcept {
    try {
        const std::lock_guard lock(m_mutex);
        if (m_sink == nullptr || !m_pass || !Copy(sample)) return;
        m_sink->BufferCB(SecondsOf(gst_sample_get_buffer(sample)), m_rows.data(), static_cast<int32>(m_rows.size()));
    } catch (...) { // a sink that failed misses a frame
    }
}

} // namespace orvane
