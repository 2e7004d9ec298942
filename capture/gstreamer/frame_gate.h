// Where a camera's frames turn into those of the seam, and where they are held back. Both sides may come at any
// time: the streaming thread with frames, the owner's thread with wishes.
#pragma once

#include "capture/video_source.h"

#include <gst/gst.h>

#include <mutex>
#include <vector>

namespace orvane {

class FrameGate {
public:
    /// @param size of the frames that pass; others are dropped. It has a frame's length that fits an int32.
    explicit FrameGate(ImageSize size);

    /// Who gets the frames; null is nobody. The one before is not called any more once this has returned.
    void SendTo(FrameSink* sink);
    /// Lets frames pass or holds them back; while held the sink is not called.
    void Let(bool pass);

    /// Hands a frame on: bottom row first, rows padded with zeros.
    void Take(GstSample* sample) noexcept;

private:
    bool Copy(GstSample* sample);

    std::mutex m_mutex; // guards all below; held while the sink is called
    const ImageSize m_size;
    FrameSink* m_sink = nullptr;
    bool m_pass = false;
    std::vector<uint8> m_rows;
};

/// Length of a padded row and of a whole frame; 0 for a size that no frame may have.
int32 RowBytes(ImageSize size);
int32 FrameBytes(ImageSize size);

} // namespace orvane
