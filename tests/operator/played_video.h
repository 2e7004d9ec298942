// Cameras that a test makes up: their texts and formats. They are listed and never opened.
#pragma once

#include "capture/video_source.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace orvane::test {

struct PlayedCamera {
    std::optional<std::wstring> name;
    std::optional<std::wstring> description;
    std::optional<std::wstring> path;
    std::vector<VideoFormat> formats;
};

class PlayedVideo final : public VideoSystem {
public:
    bool present = true; ///< False plays a system without video.
    std::vector<PlayedCamera> cameras;
    int32 count = -2; ///< What the source says of their number; -2 the truth.
    int live = 0;     ///< Sources that were made and not deleted.

    VideoSource* CreateVideoSource() override { return present ? new Source(*this) : nullptr; }

private:
    class Source final : public VideoSource {
    public:
        explicit Source(PlayedVideo& video) : video_(video) { ++video_.live; }
        ~Source() override { --video_.live; }
        Source(const Source&) = delete;
        Source& operator=(const Source&) = delete;

        int32 EnumerateDevices() override {
            return video_.count != -2 ? video_.count : static_cast<int32>(video_.cameras.size());
        }
        const wchar_t* Text(int32 index, DeviceText text) override {
            const PlayedCamera& camera = video_.cameras.at(static_cast<std::size_t>(index));
            const auto& wide = text == DeviceText::friendlyName  ? camera.name
                               : text == DeviceText::description ? camera.description
                                                                 : camera.path;
            return wide ? wide->c_str() : nullptr;
        }
        int32 Formats(int32 index, VideoFormat* formats, int32 capacity) override {
            const auto& all = video_.cameras.at(static_cast<std::size_t>(index)).formats;
            const int32 count = std::min(capacity, static_cast<int32>(all.size()));
            std::copy_n(all.begin(), count, formats);
            return count;
        }

        bool Open(int32, ImageSize*) override { return false; }
        bool ConfigureWindow(std::intptr_t, FrameSink&) override { return false; }
        bool Run() override { return false; }
        bool Pause() override { return false; }
        void Close() override {}

    private:
        PlayedVideo& video_;
    };
};

} // namespace orvane::test
