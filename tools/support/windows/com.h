// What calls of COM objects need: the apartment, and references that are given back.
#pragma once

#include <objbase.h>

#include <utility>

namespace orvane::tools {

/// COM is usable on this thread as long as this lives, also where the thread has it in another form already.
class ComApartment {
public:
    ComApartment() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~ComApartment() {
        if (entered_) CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool entered_;
};

/// Owns one reference.
template <typename Interface>
class ComPtr {
public:
    ComPtr() = default;
    ~ComPtr() { Reset(); }
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;

    Interface* Get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }

    /// Where a call stores a reference that is the caller's then.
    Interface** Receive() {
        Reset();
        return &pointer_;
    }
    void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }

private:
    void Reset() {
        if (Interface* old = std::exchange(pointer_, nullptr)) old->Release();
    }

    Interface* pointer_ = nullptr;
};

} // namespace orvane::tools
