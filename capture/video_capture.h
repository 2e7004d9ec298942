// What a live session has of a camera: the list of devices, the one that is open, and its newest frame.
#pragma once

#include "capture/video_source.h"
#include "image/bitmap.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// A device as it was listed. A text that the device does not give is absent.
struct CaptureDeviceInfo {
    std::optional<std::wstring> friendlyName;
    std::optional<std::wstring> description;
    std::optional<std::wstring> devicePath;
};

/// What m_playState says.
enum PlayState : int32 { kRunning = 0, kNotStarted = 1, kPaused = 2 };

/// One capture of a session. It belongs to one thread; BufferCB apart, which belongs to the source's thread,
/// and the GrabFrame functions, which any one thread may call.
class CVideoCapture final : public FrameSink {
public:
    /// @param video where the devices are; it outlives the capture
    /// @param enumerate lists the devices at once and opens the first
    CVideoCapture(VideoSystem& video, bool enumerate);
    virtual ~CVideoCapture();
    CVideoCapture(const CVideoCapture&) = delete;
    CVideoCapture& operator=(const CVideoCapture&) = delete;

    /// Lists the devices anew; how many there are.
    int32 EnumerateDevices();
    /// Connects a device in place of the one before. -1 only gives that back, and is true. False for an index
    /// beyond the list, which changes nothing, and for a device that can't be used; then none is open.
    bool OpenDevice(int32 index);
    /// Lets the frames of the open device come here, with nothing of them on the screen. False without an open
    /// device.
    bool ConfigureWindow(std::intptr_t owner);

    /// Lets the device deliver, at first or again.
    void Run();
    /// Holds it back: no frame is grabbed until the next Run.
    void Pause();

    /// A copy of the newest frame, of the connected size; what no frame has filled yet is black. Empty while
    /// paused or not started, without a device, and when memory is exhausted.
    Bitmap GrabFrame();
    /// The newest frame as a bitmap file: a header of 54 bytes, in which depth and image size are 0, and the
    /// frame as it came. False where GrabFrame gives an empty bitmap.
    bool GrabFrameFile(std::vector<uint8>& file);

    /// Keeps a copy of a frame, whatever its length. Always 0.
    int32 BufferCB(double time, const uint8* buffer, int32 length) override;

    int32 DeviceCount() const { return static_cast<int32>(m_devices.size()); }

    std::vector<CaptureDeviceInfo> m_devices; // in the system's order
    int32 m_width = 0;                        // of the frames, as connected
    int32 m_height = 0;
    int32 m_openDevice = -1; // index of the device in use
    std::atomic<int32> m_playState = kNotStarted;

private:
    std::unique_ptr<VideoSource> m_source; // null where there is no video
    std::timed_mutex m_frameMutex;         // guards the newest frame; held for copies alone
    std::unique_ptr<uint8[]> m_frame;      // newest frame; the block grows and never shrinks
    int32 m_frameCapacity = 0;
    int32 m_frameSize = 0;
};

} // namespace orvane
