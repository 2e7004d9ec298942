// What every object of this library shares: a count of its references, and the count of all that live.
#pragma once

#include "tests/capture/directshow/camera/camera_kinds.h"

#include <atomic>

namespace orvane::test {

struct LiveCounters {
    std::atomic<LONG> objects{0};
    std::atomic<LONG> threads{0};
    std::atomic<LONG> delivered{0};
    std::atomic<LONG> controls{0};
};
inline LiveCounters g_live;

/// The references of an object that deletes itself with its last one.
template <typename Interface>
class Counted : public Interface {
public:
    Counted() { ++g_live.objects; }
    virtual ~Counted() { --g_live.objects; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = --references_;
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }

private:
    std::atomic<LONG> references_{1};
};

} // namespace orvane::test
