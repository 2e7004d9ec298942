#include "tests/capture/directshow/camera/camera_filter.h"

#include <cwchar>

namespace orvane::test {
namespace {

class PinList final : public Counted<IEnumPins> {
public:
    PinList(CameraFilter& filter, std::size_t next) : filter_(filter), next_(next) { filter_.AddRef(); }
    ~PinList() override { filter_.Release(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (id != __uuidof(IUnknown) && id != __uuidof(IEnumPins)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IEnumPins*>(this);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Next(ULONG count, IPin** pins, ULONG* fetched) override {
        ULONG given = 0;
        for (; given < count && next_ < filter_.Pins().size(); ++given, ++next_) {
            pins[given] = filter_.Pins()[next_].get();
            pins[given]->AddRef();
        }
        if (fetched != nullptr) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = filter_.Pins().size() - next_;
        next_ += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumPins** copy) override {
        *copy = new PinList(filter_, next_);
        return S_OK;
    }

private:
    CameraFilter& filter_;
    std::size_t next_;
};

} // namespace

CameraFilter::CameraFilter(TestCamera camera) : camera_(camera) {
    for (const PinUse use : kCameraKinds[static_cast<int>(camera)].pins) {
        if (use != PinUse::none) pins_.push_back(std::make_unique<CameraPin>(*this, camera, use));
    }
}

CameraFilter::~CameraFilter() {
    pins_.clear();
    if (clock_ != nullptr) clock_->Release();
}

HRESULT CameraFilter::QueryInterface(REFIID id, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    const bool known = id == __uuidof(IUnknown) || id == __uuidof(IPersist) || id == __uuidof(IMediaFilter) ||
                       id == __uuidof(IBaseFilter);
    if (!known) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IBaseFilter*>(this);
    return S_OK;
}

HRESULT CameraFilter::GetClassID(CLSID* id) {
    *id = ClassOf(camera_);
    return S_OK;
}

HRESULT CameraFilter::Stop() {
    for (const auto& pin : pins_) pin->Stop();
    state_ = State_Stopped;
    return S_OK;
}

HRESULT CameraFilter::Pause() {
    for (const auto& pin : pins_) {
        const HRESULT result = pin->Start();
        if (FAILED(result)) return result;
        pin->Deliver(false, nullptr, 0);
    }
    state_ = State_Paused;
    return S_OK;
}

HRESULT CameraFilter::Run(REFERENCE_TIME start) {
    if (state_ == State_Stopped) {
        const HRESULT result = Pause();
        if (FAILED(result)) return result;
    }
    for (const auto& pin : pins_) pin->Deliver(true, clock_, start);
    state_ = State_Running;
    return S_OK;
}

HRESULT CameraFilter::GetState(DWORD, FILTER_STATE* state) {
    *state = state_;
    return state_ == State_Paused ? VFW_S_CANT_CUE : S_OK; // no camera has a frame ready while it rests
}

HRESULT CameraFilter::SetSyncSource(IReferenceClock* clock) {
    if (clock != nullptr) clock->AddRef();
    if (clock_ != nullptr) clock_->Release();
    clock_ = clock;
    return S_OK;
}

HRESULT CameraFilter::GetSyncSource(IReferenceClock** clock) {
    *clock = clock_;
    if (clock_ != nullptr) clock_->AddRef();
    return S_OK;
}

HRESULT CameraFilter::EnumPins(IEnumPins** list) {
    *list = new PinList(*this, 0);
    return S_OK;
}

HRESULT CameraFilter::FindPin(LPCWSTR id, IPin** pin) {
    for (const auto& own : pins_) {
        if (std::wcscmp(own->Name(), id) != 0) continue;
        *pin = own.get();
        (*pin)->AddRef();
        return S_OK;
    }
    *pin = nullptr;
    return VFW_E_NOT_FOUND;
}

HRESULT CameraFilter::QueryFilterInfo(FILTER_INFO* info) {
    *info = {};
    name_.copy(info->achName, MAX_FILTER_NAME - 1);
    info->pGraph = graph_;
    if (graph_ != nullptr) graph_->AddRef();
    return S_OK;
}

HRESULT CameraFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) {
    graph_ = graph;
    name_ = name != nullptr ? name : L"";
    return S_OK;
}

HRESULT CameraFilter::QueryVendorInfo(LPWSTR*) { return E_NOTIMPL; }

} // namespace orvane::test
