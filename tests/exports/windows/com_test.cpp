// A host's COM: the library makes its thread an apartment where it is none, and leaves every thread as it was.
#include "tests/exports/exports_fixture.h"

#include <objbase.h>

#include <functional>
#include <future>
#include <optional>
#include <thread>

namespace orvane {
namespace {

using test::HostBlock;

/// The calling thread's kind of apartment; nothing on a thread without one.
std::optional<APTTYPE> Apartment() {
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    if (CoGetApartmentType(&type, &qualifier) != S_OK || qualifier == APTTYPEQUALIFIER_IMPLICIT_MTA) return {};
    return type;
}

/// How many calls of CoUninitialize the calling thread needs until it has no apartment.
int CountDown() {
    int count = 0;
    for (; Apartment(); ++count) CoUninitialize();
    return count;
}

/// Whether the thread can make an object of the system's.
bool MakesObjects() {
    constexpr CLSID kGlobalInterfaceTable = {0x00000323, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    IUnknown* object = nullptr;
    const HRESULT result = CoCreateInstance(kGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                            reinterpret_cast<void**>(&object));
    if (object != nullptr) object->Release();
    return SUCCEEDED(result);
}

void OnNewThread(const std::function<void()>& body) { std::thread(body).join(); }

/// A thread that waits for calls until it goes.
class Worker {
public:
    ~Worker() {
        Call([this] { ended_ = true; });
        thread_.join();
    }
    void Call(const std::function<void()>& body) {
        std::packaged_task<void()> task(body);
        auto done = task.get_future();
        next_.set_value(std::move(task));
        done.get();
    }

private:
    void Serve() {
        while (!ended_) {
            auto task = next_.get_future().get();
            next_ = {};
            task();
        }
    }

    bool ended_ = false;
    std::promise<std::packaged_task<void()>> next_;
    std::thread thread_{[this] { Serve(); }};
};

struct HostKind {
    const char* what;
    DWORD flags;
    APTTYPE type;
};
constexpr HostKind kHosts[] = {{"an apartment of its own", COINIT_APARTMENTTHREADED, APTTYPE_MAINSTA},
                               {"the multi-threaded apartment", COINIT_MULTITHREADED, APTTYPE_MTA}};

class Com : public test::ExportsTest {
protected:
    void RunSession() {
        OpenHidden();
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        EXPECT_EQ(lib.orv_DetectFaceLive(0), ORV_CAPTURE_FAILED) << "no window can be opened here";
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    }
};

TEST_F(Com, ASessionIsAnApartmentOfItsThreadAndItsReleaseUndoesIt) {
    OnNewThread([&] {
        ASSERT_FALSE(Apartment());
        ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
        EXPECT_EQ(Apartment(), APTTYPE_MAINSTA);
        EXPECT_TRUE(MakesObjects());
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
        EXPECT_FALSE(Apartment());
        EXPECT_FALSE(MakesObjects());
    });
}

TEST_F(Com, AHostsApartmentStaysAsItWas) {
    for (const HostKind& host : kHosts) {
        SCOPED_TRACE(host.what);
        OnNewThread([&] {
            ASSERT_EQ(CoInitializeEx(nullptr, host.flags), S_OK);
            RunSession();
            EXPECT_EQ(Apartment(), host.type);
            EXPECT_EQ(CoInitializeEx(nullptr, host.flags), S_FALSE) << "it is the one that the host made";
            CoUninitialize();
            EXPECT_EQ(CountDown(), 1);
        });
    }
}

TEST_F(Com, AHostMayBeginAndEndItWhileTheSessionIsOpen) {
    OnNewThread([&] {
        ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
        EXPECT_EQ(CountDown(), 0);
    });
}

TEST_F(Com, AnInitThatFailsOrComesTwiceAndAReleaseThatIsRefusedChangeNoCount) {
    OnNewThread([&] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_NO_SESSION);
        ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
        ASSERT_EQ(lib.orv_InitDLL(), ORV_OK);
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
        EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_NO_SESSION);
        const test::HostLibrary other("Other.dll"); // does not find itself
        EXPECT_EQ(other.orv_ReleaseDLL(), ORV_NO_SESSION);
        EXPECT_EQ(CountDown(), 1);
    });
}

TEST_F(Com, ADetectCallHasAnApartmentOnEveryThreadAndLeavesNone) {
    OpenHidden();
    OnNewThread([&] {
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
        EXPECT_EQ(lib.orv_DetectFaceLive(0), ORV_CAPTURE_FAILED);
        EXPECT_FALSE(Apartment());
    });
    for (const HostKind& host : kHosts) {
        SCOPED_TRACE(host.what);
        OnNewThread([&] {
            ASSERT_EQ(CoInitializeEx(nullptr, host.flags), S_OK);
            EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
            EXPECT_EQ(CountDown(), 1);
        });
    }
}

TEST_F(Com, AReleaseOnAnotherThreadTakesNothingFromThatThread) {
    for (const HostKind& host : kHosts) {
        SCOPED_TRACE(host.what);
        Worker opener;
        opener.Call([&] { OpenHidden(); });
        OnNewThread([&] { EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK); });
        OnNewThread([&] {
            ASSERT_EQ(CoInitializeEx(nullptr, host.flags), S_OK);
            EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
            EXPECT_EQ(CountDown(), 1) << "what the host made";
        });
        OnNewThread([&] {
            EXPECT_EQ(lib.orv_ReleaseDLL(), ORV_NO_SESSION);
            RunSession();
            EXPECT_FALSE(Apartment()) << "a later session begins and ends it as any other";
        });
        opener.Call([] { EXPECT_EQ(CountDown(), 1) << "its own apartment goes with the thread"; });
    }
    EXPECT_FALSE(MakesObjects()) << "no thread holds COM any more";
}

TEST_F(Com, ALibraryThatIsUnloadedWithItsSessionOpenTakesItsShareAlone) {
    const test::LibraryFolder folder;
    ASSERT_TRUE(test::WriteClassifier(folder.Folder(), test::FaceCascade().Bytes()));
    for (const bool hostHasCom : {false, true}) {
        SCOPED_TRACE(hostHasCom);
        OnNewThread([&] {
            if (hostHasCom) {
                ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
            }
            {
                const test::LoadedLibrary library(folder.File());
                ASSERT_EQ(library.orv_InitDLL(), ORV_OK);
            }
            EXPECT_EQ(CountDown(), hostHasCom ? 1 : 0);
        });
    }
}

} // namespace
} // namespace orvane
