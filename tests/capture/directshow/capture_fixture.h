// A thread that may use component interfaces, and a sink that looks at what comes.
#pragma once

#include "capture/directshow/directshow_source.h"
#include "platform/thread_apartment.h"
#include "tests/capture/directshow/test_cameras.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace orvane::test {

class CountingSink final : public FrameSink {
public:
    int32 BufferCB(double time, const uint8* buffer, int32 length) override {
        {
            const std::lock_guard lock(mutex_);
            ++count_;
            time_ = time;
            frame_.assign(buffer, buffer + length);
        }
        came_.notify_all();
        return 0;
    }

    /// Waits for frames beyond those that came before; false when they don't come.
    bool Wait(int more, int milliseconds = 5000) {
        std::unique_lock lock(mutex_);
        const int wanted = count_ + more;
        return came_.wait_for(lock, std::chrono::milliseconds(milliseconds), [&] { return count_ >= wanted; });
    }

    int Count() {
        const std::lock_guard lock(mutex_);
        return count_;
    }
    double Time() {
        const std::lock_guard lock(mutex_);
        return time_;
    }
    std::vector<uint8> Frame() {
        const std::lock_guard lock(mutex_);
        return frame_;
    }

private:
    std::mutex mutex_;
    std::condition_variable came_;
    int count_ = 0;
    double time_ = 0;
    std::vector<uint8> frame_;
};

class DirectShow : public testing::Test {
protected:
    /// The cameras of the list from here on, in their order.
    void Plug(std::vector<TestCamera> which) {
        cameras_.reset();
        cameras_.emplace(std::move(which));
        first_ = 0;
        const int32 count = source_.EnumerateDevices();
        // The machine's own cameras may stand before them.
        while (first_ < count && std::wstring(Text(source_, first_)).rfind(L"Played", 0) != 0) ++first_;
    }
    static const wchar_t* Text(VideoSource& source, int32 index) {
        const wchar_t* const text = source.Text(index, DeviceText::friendlyName);
        return text != nullptr ? text : L"";
    }

    /// Plugs one camera in and opens it.
    bool Open(TestCamera camera) {
        Plug({camera});
        return source_.Open(first_, &size_);
    }
    bool OpenAndRun(TestCamera camera) {
        constexpr std::intptr_t kNobody = 1;
        return Open(camera) && source_.ConfigureWindow(kNobody, sink_) && source_.Run();
    }

    /// Nothing of the filters is left. What runs out of their calls still may take a moment.
    static void ExpectNothingLeft() {
        for (int i = 0; i < 100 && TestCameras::Counters().objects > 0; ++i) Sleep(10);
        EXPECT_EQ(TestCameras::Counters().objects, 0);
        EXPECT_EQ(TestCameras::Counters().threads, 0);
    }

    ThreadApartment apartment_;
    std::optional<TestCameras> cameras_;
    int32 first_ = 0; // index of the first played camera
    CountingSink sink_;
    DirectShowSource source_; // goes first
    ImageSize size_{};
};

} // namespace orvane::test
