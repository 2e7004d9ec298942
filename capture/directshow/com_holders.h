// Owners of what the system's component interfaces give out, so that each goes where its owner goes.
#pragma once

#include <windows.h>

#include <dshow.h>
#include <oaidl.h>

#include <utility>

namespace orvane {

/// One reference.
template <typename Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPtr& operator=(ComPtr&& other) noexcept {
        if (this != &other) {
            Release();
            object_ = std::exchange(other.object_, nullptr);
        }
        return *this;
    }
    ~ComPtr() { Release(); }

    Interface* Get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

    /// Where a function puts the reference that it gives out.
    Interface** Put() {
        Release();
        return &object_;
    }
    /// The same for functions that know the interface by its number alone.
    void** PutVoid() { return reinterpret_cast<void**>(Put()); }

    /// Gives the reference to the caller.
    Interface* Detach() { return std::exchange(object_, nullptr); }

    /// How many references others hold still, as far as the object tells.
    ULONG Release() {
        Interface* const object = std::exchange(object_, nullptr);
        return object != nullptr ? object->Release() : 0;
    }

    HRESULT Create(const CLSID& classId, DWORD context) {
        return CoCreateInstance(classId, nullptr, context, __uuidof(Interface), PutVoid());
    }
    template <typename Other>
    HRESULT QueryFrom(const ComPtr<Other>& other, const IID& id = __uuidof(Interface)) {
        return other->QueryInterface(id, PutVoid());
    }

private:
    Interface* object_ = nullptr;
};

/// A media type that a function has filled.
class MediaType {
public:
    MediaType() = default;
    ~MediaType() {
        if (type_.cbFormat != 0) CoTaskMemFree(type_.pbFormat);
        if (type_.pUnk != nullptr) type_.pUnk->Release();
    }
    MediaType(const MediaType&) = delete;
    MediaType& operator=(const MediaType&) = delete;

    AM_MEDIA_TYPE* Put() { return &type_; }
    const AM_MEDIA_TYPE& Get() const { return type_; }

    /// Takes over a type that a function has allocated; null is passed over.
    void Adopt(AM_MEDIA_TYPE* block) {
        if (block == nullptr) return;
        std::swap(type_, *block);
        CoTaskMemFree(block);
    }

private:
    AM_MEDIA_TYPE type_{};
};

/// The header of a type's frames; null where the type holds none.
inline const VIDEOINFOHEADER* VideoInfoOf(const AM_MEDIA_TYPE& type) {
    const bool whole = type.formattype == FORMAT_VideoInfo && type.cbFormat >= sizeof(VIDEOINFOHEADER);
    return whole ? reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat) : nullptr;
}

/// A value of any kind.
class Variant {
public:
    Variant() { VariantInit(&value_); }
    ~Variant() { VariantClear(&value_); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;

    VARIANT* Put() { return &value_; }
    /// The text that it is; null where it is none.
    BSTR Text() const { return value_.vt == VT_BSTR ? value_.bstrVal : nullptr; }

private:
    VARIANT value_;
};

} // namespace orvane
