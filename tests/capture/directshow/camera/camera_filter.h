// The filter of a played camera: its pins, and the state that a graph gives it.
#pragma once

#include "tests/capture/directshow/camera/camera_kinds.h"
#include "tests/capture/directshow/camera/camera_pin.h"
#include "tests/capture/directshow/camera/counted.h"

#include <memory>
#include <string>
#include <vector>

namespace orvane::test {

class CameraFilter final : public Counted<IBaseFilter> {
public:
    explicit CameraFilter(TestCamera camera);
    ~CameraFilter() override;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) override;

    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE GetState(DWORD milliseconds, FILTER_STATE* state) override;
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override;
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** clock) override;

    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** list) override;
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** pin) override;
    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR* info) override;

    const std::vector<std::unique_ptr<CameraPin>>& Pins() const { return pins_; }

private:
    const TestCamera camera_;
    std::vector<std::unique_ptr<CameraPin>> pins_;
    FILTER_STATE state_ = State_Stopped;
    IReferenceClock* clock_ = nullptr;
    IFilterGraph* graph_ = nullptr; // holds the filter, so it is not held
    std::wstring name_;
};

} // namespace orvane::test
