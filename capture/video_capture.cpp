#include "capture/video_capture.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <new>

namespace orvane {
namespace {

constexpr std::chrono::milliseconds kGrabPatience(1000);
constexpr int32 kFileHeaderBytes = 14;

std::optional<std::wstring> TextOf(VideoSource& source, int32 index, DeviceText which) {
    const wchar_t* text = source.Text(index, which);
    if (text == nullptr) return {};
    return text;
}

void PutLittleEndian(uint8* to, uint32 value) {
    for (int32 i = 0; i < 4; ++i) to[i] = static_cast<uint8>(value >> (8 * i));
}

} // namespace

CVideoCapture::CVideoCapture(VideoSystem& video, bool enumerate) : m_source(video.CreateVideoSource()) {
    if (enumerate && EnumerateDevices() > 0) OpenDevice(0);
}

CVideoCapture::~CVideoCapture() {
    m_source.reset(); // nobody calls BufferCB from here on
}

int32 CVideoCapture::EnumerateDevices() {
    m_devices.clear();
    if (m_source == nullptr) return 0;
    const int32 count = m_source->EnumerateDevices();
    for (int32 i = 0; i < count; ++i) {
        m_devices.push_back({TextOf(*m_source, i, DeviceText::friendlyName),
                             TextOf(*m_source, i, DeviceText::description),
                             TextOf(*m_source, i, DeviceText::devicePath)});
    }
    return DeviceCount();
}

bool CVideoCapture::OpenDevice(int32 index) {
    if (index != -1 && (index < 0 || index >= DeviceCount())) return false;
    m_openDevice = -1;
    if (m_source == nullptr) return true; // there was nothing to give back
    m_source->Close();
    m_playState = kNotStarted;
    if (index == -1) return true;
    ImageSize size{};
    if (!m_source->Open(index, &size)) return false;
    m_width = size.width;
    m_height = size.height;
    m_openDevice = index;
    return true;
}

bool CVideoCapture::ConfigureWindow(std::intptr_t owner) {
    return m_openDevice != -1 && m_source->ConfigureWindow(owner, *this);
}

void CVideoCapture::Run() {
    if (m_openDevice != -1) m_source->Run();
    m_playState = kRunning;
}

void CVideoCapture::Pause() {
    if (m_openDevice != -1) m_source->Pause();
    m_playState = kPaused;
}

int32 CVideoCapture::BufferCB(double /*time*/, const uint8* buffer, int32 length) {
    const std::lock_guard lock(m_frameMutex);
    m_frameSize = 0;
    if (buffer == nullptr || length < 1) return 0;
    if (length > m_frameCapacity) {
        m_frame.reset(); // before the new block comes, not beside it
        m_frame.reset(new (std::nothrow) uint8[static_cast<std::size_t>(length)]);
        m_frameCapacity = m_frame != nullptr ? length : 0;
    }
    if (m_frame == nullptr) return 0;
    std::memcpy(m_frame.get(), buffer, static_cast<std::size_t>(length));
    m_frameSize = length;
    return 0;
}

Bitmap CVideoCapture::GrabFrame() {
    Bitmap bitmap;
    if (m_playState != kRunning || m_openDevice == -1 || !bitmap.Create(m_width, m_height)) return {};
    const std::unique_lock lock(m_frameMutex, kGrabPatience);
    if (!lock) return {}; // as while paused: what another thread is writing must not be read
    // The whole block: behind a frame that was too short stands the end of the one before.
    const int32 bytes = std::min(m_frameCapacity, static_cast<int32>(bitmap.Header().biSizeImage));
    if (bytes > 0) std::memcpy(bitmap.Bits(), m_frame.get(), static_cast<std::size_t>(bytes));
    return bitmap;
}

bool CVideoCapture::GrabFrameFile(std::vector<uint8>& file) {
    file.clear();
    if (m_playState != kRunning || m_openDevice == -1) return false;
    const std::unique_lock lock(m_frameMutex, kGrabPatience);
    if (!lock) return false;
    constexpr uint32 kHeaders = kFileHeaderBytes + kBitmapHeaderBytes;
    file.resize(kHeaders + static_cast<std::size_t>(m_frameSize));
    file[0] = 'B';
    file[1] = 'M';
    PutLittleEndian(&file[2], kHeaders + static_cast<uint32>(m_frameSize));
    PutLittleEndian(&file[10], kHeaders);
    BitmapHeader header{};
    header.biSize = kBitmapHeaderBytes;
    header.biWidth = m_width;
    header.biHeight = m_height;
    header.biPlanes = 1;
    std::memcpy(&file[kFileHeaderBytes], &header, sizeof header);
    if (m_frameSize > 0) std::memcpy(&file[kHeaders], m_frame.get(), static_cast<std::size_t>(m_frameSize));
    return true;
}

} // namespace orvane
