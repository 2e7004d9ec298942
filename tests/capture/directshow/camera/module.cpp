// The library of the played cameras as the system loads it.
#include "tests/capture/directshow/camera/camera_filter.h"

namespace orvane::test {
namespace {

class CameraFactory final : public Counted<IClassFactory> {
public:
    explicit CameraFactory(TestCamera camera) : camera_(camera) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (id != __uuidof(IUnknown) && id != __uuidof(IClassFactory)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IClassFactory*>(this);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        if (camera_ == TestCamera::noFilter) return E_FAIL;
        auto* const filter = new CameraFilter(camera_);
        const HRESULT result = filter->QueryInterface(id, object);
        filter->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    const TestCamera camera_;
};

} // namespace
} // namespace orvane::test

extern "C" {

HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    using namespace orvane::test;
    for (int i = 0; i < kCameraCount; ++i) {
        const auto camera = static_cast<TestCamera>(i);
        if (classId != ClassOf(camera)) continue;
        auto* const factory = new CameraFactory(camera);
        const HRESULT result = factory->QueryInterface(id, object);
        factory->Release();
        return result;
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT WINAPI DllCanUnloadNow() { return orvane::test::g_live.objects == 0 ? S_OK : S_FALSE; }

void TestCameraCounters(orvane::test::CameraCounters* counters) {
    const auto& live = orvane::test::g_live;
    *counters = {live.objects, live.threads, live.delivered, live.controls};
}
}
