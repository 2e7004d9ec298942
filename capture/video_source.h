// The seam between live sessions and the system's cameras: what the capture asks of a video source, and what a
// source tells the capture. Only plain values cross it, so that a source may be linked in or stand in a module
// of its own.
#pragma once

#include "primitives/types.h"

#include <cstdint>

namespace orvane {

/// Version of everything in this file, for video systems that stand in a module.
inline constexpr int32 kVideoSeamVersion = 1;

/// Takes the frames of a source.
class FrameSink {
public:
    /// A frame of the size that VideoSource::Open told: 24-bit rows (blue, green, red), the bottom row first,
    /// padded to a multiple of 4 bytes. Comes on the source's own thread, one call at a time; the buffer is
    /// good for the call alone.
    /// @param time seconds of the stream
    /// @return 0
    virtual int32 BufferCB(double time, const uint8* buffer, int32 length) = 0;

protected:
    ~FrameSink() = default;
};

/// What a device tells of itself.
enum class DeviceText : int32 { friendlyName, description, devicePath };

/// A form in which a device delivers frames.
struct VideoFormat {
    int32 width; // pixels; the greatest where the device leaves a range open
    int32 height;
    int32 framesIn1000s; // frames in a thousand seconds, the most where there is a range; 0 unknown
    char pixels[16];     // the device's name for its pixels, for instance "YUY2"; ends with a zero
};

/// One camera at a time, and the list of all. Calls go to one thread, the one that made the source. Nothing is
/// thrown.
class VideoSource {
public:
    /// Closes what is open.
    virtual ~VideoSource() = default;

    /// Looks for devices anew, and says how many there are. They are numbered from 0 in the system's own order,
    /// which stays while no device comes or goes. What is open stays open.
    virtual int32 EnumerateDevices() = 0;
    /// A text of a device; null where it has none. Good until the next EnumerateDevices.
    virtual const wchar_t* Text(int32 index, DeviceText text) = 0;
    /// Writes up to `capacity` of the device's forms, in its own order; how many it wrote.
    virtual int32 Formats(int32 index, VideoFormat* formats, int32 capacity) = 0;

    /// Connects a device, ready to run; what was open before is closed first.
    /// @param size receives the size of its frames, which stays while it is open
    /// @return false when the device can't be used, and nothing is open then
    virtual bool Open(int32 index, ImageSize* size) = 0;
    /// From now on frames go to `sink`, and nothing of them shows in windows of the system's own.
    /// @param owner the handle that such windows get for an owner
    virtual bool ConfigureWindow(std::intptr_t owner, FrameSink& sink) = 0;
    /// Lets the frames come, at first or again. False when the device refuses; a device that is gone since
    /// Open just delivers nothing.
    virtual bool Run() = 0;
    /// Holds the frames back until the next Run.
    virtual bool Pause() = 0;
    /// Gives the device back. Nobody calls the sink once this has returned. Harmless when nothing is open.
    virtual void Close() = 0;
};

/// The system's video. There is one in a process; it lives as long as the library.
class VideoSystem {
public:
    /// A source with nothing open; null where there is no video at all. The caller deletes it.
    virtual VideoSource* CreateVideoSource() = 0;

protected:
    ~VideoSystem() = default;
};

} // namespace orvane
