// A video source over the cameras for tests, and a sink that counts and keeps.
#pragma once

#include "capture/gstreamer/video_system_gst.h"
#include "capture/gstreamer/wide_text.h"
#include "tests/capture/gstreamer/test_cameras.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace orvane::test {

/// Longer than anything takes that happens at all, on a machine with other work.
inline constexpr std::chrono::seconds kLong(20);
/// Long enough for some frames, if any came.
inline constexpr std::chrono::milliseconds kSomeFrames(200);

inline void Rest() { std::this_thread::sleep_for(kSomeFrames); }

class KeepingSink final : public FrameSink {
public:
    int32 BufferCB(double time, const uint8* buffer, int32 length) override {
        const std::lock_guard lock(m_mutex);
        m_last.assign(buffer, buffer + length);
        m_time = time;
        ++m_count;
        m_changed.notify_all();
        return 0;
    }

    int Count() {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }
    double Time() {
        const std::lock_guard lock(m_mutex);
        return m_time;
    }
    std::vector<uint8> Last() {
        const std::lock_guard lock(m_mutex);
        return m_last;
    }
    /// Waits until so many frames more have come.
    bool WaitForFrames(int frames) {
        std::unique_lock lock(m_mutex);
        const int wanted = m_count + frames;
        return m_changed.wait_for(lock, kLong, [&] { return m_count >= wanted; });
    }

private:
    std::mutex m_mutex; // guards all below
    std::condition_variable m_changed;
    std::vector<uint8> m_last;
    double m_time = -1;
    int m_count = 0;
};

class Source : public ::testing::Test {
protected:
    Source() {
        RegisterTestCameras();
        PlugAllTestCameras();
        HoldStuckCameras();
        source_.reset(GstVideo().CreateVideoSource());
    }
    ~Source() override {
        source_.reset();
        ReleaseStuckCameras();
    }

    /// Looks for devices and finds a camera among them; -1 where it is not.
    int32 Find(const std::string& name) {
        const std::wstring wide = WideText(name.c_str());
        const int32 count = source_->EnumerateDevices();
        for (int32 i = 0; i < count; ++i) {
            const wchar_t* text = source_->Text(i, DeviceText::friendlyName);
            if (text != nullptr && wide == text) return i;
        }
        return -1;
    }

    bool Open(const std::string& name) { return source_->Open(Find(name), &size_); }

    /// Opens a camera and lets its frames come to the sink.
    ::testing::AssertionResult Start(const std::string& name) {
        if (!Open(name)) return ::testing::AssertionFailure() << name << " does not open";
        if (!source_->ConfigureWindow(1, sink_)) return ::testing::AssertionFailure() << "no sink for " << name;
        if (!source_->Run()) return ::testing::AssertionFailure() << name << " does not run";
        return ::testing::AssertionSuccess();
    }

    KeepingSink sink_; // outlives the source
    std::unique_ptr<VideoSource> source_;
    ImageSize size_{-1, -1};
};

} // namespace orvane::test
