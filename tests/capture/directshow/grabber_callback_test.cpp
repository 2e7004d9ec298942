#include "capture/directshow/grabber_callback.h"

#include "tests/capture/directshow/capture_fixture.h"

#include <atomic>
#include <thread>

namespace orvane::test {
namespace {

TEST(GrabberCallback, AnswersForItselfWithoutAReference) {
    GrabberCallback callback;
    const GUID callbackId{0x0579154A, 0x2B53, 0x4994, {0xB0, 0xD0, 0xE7, 0x73, 0x14, 0x8E, 0xFF, 0x85}};
    for (const GUID& id : {callbackId, IID_IUnknown}) {
        void* object = nullptr;
        EXPECT_EQ(callback.QueryInterface(id, &object), S_OK);
        EXPECT_EQ(object, static_cast<ISampleGrabberCB*>(&callback));
    }
    EXPECT_EQ(callback.AddRef(), 1U);
    EXPECT_EQ(callback.AddRef(), 1U);
    EXPECT_EQ(callback.Release(), 1U);
    EXPECT_EQ(callback.Release(), 1U);
    EXPECT_EQ(callback.Release(), 1U);
    EXPECT_EQ(callback.SampleCB(0, nullptr), E_NOTIMPL);
    EXPECT_EQ(callback.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(GrabberCallback, DoesNotKnowInterfacesThatAreNotThere) {
    GrabberCallback callback;
    GraphInterfaces none;
    int anything = 0;
    for (const GraphInterfaces* graph : {static_cast<const GraphInterfaces*>(nullptr), &std::as_const(none)}) {
        callback.Serve(graph, nullptr);
        for (const GUID& id : {IID_IVideoWindow, IID_IMediaControl, kDeviceControlId, IID_IStream}) {
            void* object = &anything;
            EXPECT_EQ(callback.QueryInterface(id, &object), E_NOINTERFACE);
            EXPECT_EQ(object, nullptr);
        }
    }
}

TEST(GrabberCallback, AnswersWithTheGraphsInterfacesAndTakesNoReference) {
    const ThreadApartment apartment;
    ComPtr<IGraphBuilder> graph;
    ASSERT_TRUE(SUCCEEDED(graph.Create(CLSID_FilterGraph, CLSCTX_INPROC_SERVER)));
    GraphInterfaces interfaces;
    ASSERT_TRUE(SUCCEEDED(interfaces.videoWindow.QueryFrom(graph, IID_IVideoWindow)));
    ASSERT_TRUE(SUCCEEDED(interfaces.mediaControl.QueryFrom(graph)));
    ASSERT_TRUE(SUCCEEDED(interfaces.deviceControl.QueryFrom(graph)));
    GrabberCallback callback;
    callback.Serve(&interfaces, nullptr);
    const auto references = [&] {
        graph->AddRef();
        return graph->Release();
    };
    const ULONG before = references();
    void* object = nullptr;
    EXPECT_EQ(callback.QueryInterface(IID_IVideoWindow, &object), S_OK);
    EXPECT_EQ(object, interfaces.videoWindow.Get());
    EXPECT_EQ(callback.QueryInterface(IID_IMediaControl, &object), S_OK);
    EXPECT_EQ(object, interfaces.mediaControl.Get());
    EXPECT_EQ(callback.QueryInterface(kDeviceControlId, &object), S_OK);
    EXPECT_EQ(object, interfaces.deviceControl.Get());
    EXPECT_EQ(references(), before);
}

TEST(GrabberCallback, HandsFramesOnWhileThereIsASink) {
    GrabberCallback callback;
    CountingSink sink;
    uint8 frame[] = {1, 2, 3};
    ISampleGrabberCB& slots = callback;
    EXPECT_EQ(slots.BufferCB(0.5, frame, 3), S_OK);
    callback.Serve(nullptr, &sink);
    EXPECT_EQ(slots.BufferCB(0.5, frame, 3), S_OK);
    EXPECT_EQ(sink.Frame(), std::vector<uint8>({1, 2, 3}));
    EXPECT_EQ(sink.Time(), 0.5);
    callback.Serve(nullptr, nullptr);
    EXPECT_EQ(slots.BufferCB(0.5, frame, 3), S_OK);
    EXPECT_EQ(sink.Count(), 1);
}

/// Stays in its frame until it is let go.
class HeldSink final : public FrameSink {
public:
    int32 BufferCB(double, const uint8*, int32) override {
        inside = true;
        for (int i = 0; i < 5000 && !letGo; ++i) Sleep(1);
        inside = false;
        return 0;
    }
    std::atomic<bool> inside{false}, letGo{false};
};

TEST(GrabberCallback, TakesTheSinkAwayBehindTheFrameThatItHas) {
    GrabberCallback callback;
    HeldSink held;
    callback.Serve(nullptr, &held);
    std::thread stream([&] {
        BYTE frame[] = {1};
        callback.BufferCB(0, frame, 1);
    });
    while (!held.inside) Sleep(1);
    std::thread other([&] {
        Sleep(50);
        held.letGo = true;
    });
    callback.Serve(nullptr, nullptr);
    EXPECT_FALSE(held.inside);
    EXPECT_TRUE(held.letGo);
    stream.join();
    other.join();
}

/// Foreign code reaches the operations by their place alone.
TEST(GrabberCallback, HasItsSlotsInTheInterfacesOrder) {
    GrabberCallback callback;
    CountingSink sink;
    callback.Serve(nullptr, &sink);
    ISampleGrabberCB* const object = &callback;
    void** const slots = *reinterpret_cast<void***>(object);
    using Query = HRESULT(STDMETHODCALLTYPE*)(void*, REFIID, void**);
    using Count = ULONG(STDMETHODCALLTYPE*)(void*);
    using Sample = HRESULT(STDMETHODCALLTYPE*)(void*, double, IMediaSample*);
    using Buffer = HRESULT(STDMETHODCALLTYPE*)(void*, double, BYTE*, LONG);
    void* found = nullptr;
    EXPECT_EQ(reinterpret_cast<Query>(slots[0])(object, IID_IUnknown, &found), S_OK);
    EXPECT_EQ(found, object);
    EXPECT_EQ(reinterpret_cast<Count>(slots[1])(object), 1U);
    EXPECT_EQ(reinterpret_cast<Count>(slots[2])(object), 1U);
    EXPECT_EQ(reinterpret_cast<Sample>(slots[3])(object, 0, nullptr), E_NOTIMPL);
    BYTE frame[] = {7};
    EXPECT_EQ(reinterpret_cast<Buffer>(slots[4])(object, 0, frame, 1), S_OK);
    EXPECT_EQ(sink.Count(), 1);
}

} // namespace
} // namespace orvane::test
