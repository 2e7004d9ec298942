// The delivering half of a played camera's pin, and the list of its forms.
#include "tests/capture/directshow/camera/camera_pin.h"
#include "tests/capture/directshow/camera/counted.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace orvane::test {

HRESULT CameraPin::Start() {
    if (input_ == nullptr || thread_.joinable()) return S_OK;
    const HRESULT result = allocator_->Commit();
    if (FAILED(result)) return result;
    stopping_ = running_ = false;
    thread_ = std::thread([this] { DeliverFrames(); });
    return S_OK;
}

void CameraPin::Stop() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    allocator_->Decommit(); // lets go a thread that waits for memory
    thread_.join();
}

void CameraPin::Deliver(bool running, IReferenceClock* clock, REFERENCE_TIME start) {
    {
        const std::lock_guard lock(mutex_);
        running_ = running;
        clock_ = clock;
        start_ = start;
    }
    changed_.notify_all();
}

void CameraPin::DeliverFrames() {
    ++g_live.threads;
    const int last = kCameraKinds[static_cast<int>(camera_)].framesUntilGone;
    auto next = std::chrono::steady_clock::now();
    for (std::size_t count = 0;; ++count) {
        {
            std::unique_lock lock(mutex_);
            next += std::chrono::microseconds(33333);
            changed_.wait_until(lock, next, [this] { return stopping_; });
            changed_.wait(lock, [this] { return running_ || stopping_ || camera_ == TestCamera::eager; });
            if (stopping_) break;
            next = std::max(next, std::chrono::steady_clock::now() - std::chrono::milliseconds(33)); // none catches up
        }
        if (camera_ == TestCamera::silent || (last > 0 && count >= static_cast<std::size_t>(last))) continue;
        if (!DeliverOne(frames_[count % frames_.size()])) break;
    }
    --g_live.threads;
}

bool CameraPin::DeliverOne(const Frame& frame) {
    IMediaSample* sample = nullptr;
    if (FAILED(allocator_->GetBuffer(&sample, nullptr, nullptr, 0))) return false;
    BYTE* to = nullptr;
    HRESULT result = sample->GetPointer(&to);
    LONG length = static_cast<LONG>(frame.pixels.size());
    if (SUCCEEDED(result) && sample->GetSize() < length) result = E_UNEXPECTED;
    if (SUCCEEDED(result)) {
        std::memcpy(to, frame.pixels.data(), frame.pixels.size());
        if (camera_ == TestCamera::shortFrames) length /= 2;
        if (camera_ == TestCamera::longFrames && sample->GetSize() >= length + FrameStep(frame.width)) {
            std::memset(to + length, 0x55, static_cast<std::size_t>(FrameStep(frame.width)));
            length += FrameStep(frame.width);
        }
        sample->SetActualDataLength(length);
        sample->SetSyncPoint(TRUE);
        // A preview is shown as it comes, a recording when its time is there.
        if (use_ == PinUse::capture) {
            const std::lock_guard lock(mutex_);
            REFERENCE_TIME now = 0;
            if (clock_ != nullptr && SUCCEEDED(clock_->GetTime(&now))) {
                REFERENCE_TIME begin = now - start_, end = begin + 333333;
                sample->SetTime(&begin, &end);
            }
        }
        result = input_->Receive(sample);
    }
    sample->Release();
    if (result == S_OK) ++g_live.delivered;
    return result == S_OK;
}

HRESULT CameraPin::SetFormat(AM_MEDIA_TYPE* type) { return QueryAccept(type) == S_OK ? S_OK : VFW_E_INVALIDMEDIATYPE; }

HRESULT CameraPin::GetFormat(AM_MEDIA_TYPE** type) {
    if (type == nullptr) return E_POINTER;
    *type = NewType(forms_.back());
    return *type != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT CameraPin::GetNumberOfCapabilities(int* count, int* size) {
    if (count == nullptr || size == nullptr) return E_POINTER;
    *count = static_cast<int>(forms_.size());
    *size = sizeof(VIDEO_STREAM_CONFIG_CAPS);
    return S_OK;
}

HRESULT CameraPin::GetStreamCaps(int index, AM_MEDIA_TYPE** type, BYTE* caps) {
    if (type == nullptr || caps == nullptr) return E_POINTER;
    if (index < 0 || index >= static_cast<int>(forms_.size())) return S_FALSE;
    const FrameForm& form = forms_[static_cast<std::size_t>(index)];
    *type = NewType(form);
    if (*type == nullptr) return E_OUTOFMEMORY;
    VIDEO_STREAM_CONFIG_CAPS config{};
    config.guid = FORMAT_VideoInfo;
    config.InputSize = config.MinOutputSize = config.MaxOutputSize = {form.width, form.height};
    config.MinFrameInterval = config.MaxFrameInterval = 333333;
    std::memcpy(caps, &config, sizeof config);
    return S_OK;
}

} // namespace orvane::test
