// Cameras that the test plays. They record what the capture asks of them and deliver what the test hands over,
// on the test's own thread.
#pragma once

#include "capture/video_source.h"
#include "tests/support/face_scene.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace orvane::test {

struct FakeDevice {
    ImageSize size{160, 120}; // of its frames
    bool opens = true;
    std::optional<std::wstring> friendlyName = L"Camera";
    std::optional<std::wstring> description = {};
    std::optional<std::wstring> devicePath = {};
};

class FakeVideo final : public VideoSystem {
public:
    // Set by the test.
    std::vector<FakeDevice> devices;
    bool hasVideo = true;

    // Found by the test.
    std::vector<std::string> log; // every call of a source, in order
    int32 sourcesAlive = 0;       // made and not deleted

    VideoSource* CreateVideoSource() override;

    /// Hands bytes to whoever takes the frames; false when nobody does at present.
    bool Deliver(const uint8* bytes, int32 length) {
        const std::lock_guard lock(mutex_); // held by Close as well: nobody is called once it has returned
        if (!running_ || sink_ == nullptr) return false;
        sink_->BufferCB(0.04 * ++delivered_, bytes, length);
        return true;
    }
    bool Deliver(const Scene& frame) { return Deliver(frame.rows.data(), static_cast<int32>(frame.rows.size())); }

    int32 Count(const std::string& line) const { return static_cast<int32>(std::count(log.begin(), log.end(), line)); }

private:
    friend class FakeSource;

    std::mutex mutex_; // guards the three below
    FrameSink* sink_ = nullptr;
    bool running_ = false;
    int32 delivered_ = 0;
};

class FakeSource final : public VideoSource {
public:
    explicit FakeSource(FakeVideo& video) : video_(video) { ++video_.sourcesAlive; }
    ~FakeSource() override {
        Close();
        --video_.sourcesAlive;
    }
    FakeSource(const FakeSource&) = delete;
    FakeSource& operator=(const FakeSource&) = delete;

    int32 EnumerateDevices() override {
        video_.log.push_back("enumerate");
        listed_ = video_.devices;
        return static_cast<int32>(listed_.size());
    }
    const wchar_t* Text(int32 index, DeviceText text) override {
        const FakeDevice& device = listed_.at(static_cast<std::size_t>(index));
        const auto& value = text == DeviceText::friendlyName  ? device.friendlyName
                            : text == DeviceText::description ? device.description
                                                              : device.devicePath;
        return value ? value->c_str() : nullptr;
    }
    int32 Formats(int32, VideoFormat*, int32) override { return 0; }
    bool Open(int32 index, ImageSize* size) override {
        Close();
        video_.log.push_back("open " + std::to_string(index));
        const FakeDevice& device = listed_.at(static_cast<std::size_t>(index));
        if (!device.opens) return false;
        open_ = true;
        *size = device.size;
        return true;
    }
    bool ConfigureWindow(std::intptr_t owner, FrameSink& sink) override {
        video_.log.push_back("configure " + std::to_string(owner));
        const std::lock_guard lock(video_.mutex_);
        video_.sink_ = &sink;
        return true;
    }
    bool Run() override { return Set("run", true); }
    bool Pause() override { return Set("pause", false); }
    void Close() override {
        if (!open_) return;
        open_ = false;
        Set("close", false);
        const std::lock_guard lock(video_.mutex_);
        video_.sink_ = nullptr;
    }

private:
    bool Set(const char* line, bool running) {
        video_.log.emplace_back(line);
        const std::lock_guard lock(video_.mutex_);
        video_.running_ = running;
        return true;
    }

    FakeVideo& video_;
    std::vector<FakeDevice> listed_;
    bool open_ = false;
};

inline VideoSource* FakeVideo::CreateVideoSource() { return hasVideo ? new FakeSource(*this) : nullptr; }

} // namespace orvane::test
