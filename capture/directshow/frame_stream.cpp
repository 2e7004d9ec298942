#include "capture/directshow/frame_stream.h"
#include "capture/directshow/com_holders.h"

#include <olectl.h>

#include <cstring>

namespace orvane {
namespace {

/// A stream over a copy of a file, which goes with it; null when memory is exhausted.
ComPtr<IStream> StreamOf(const std::vector<uint8>& file) {
    ComPtr<IStream> stream;
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, file.size());
    void* const to = block != nullptr ? GlobalLock(block) : nullptr;
    if (to != nullptr) {
        std::memcpy(to, file.data(), file.size());
        GlobalUnlock(block);
        if (SUCCEEDED(CreateStreamOnHGlobal(block, TRUE, stream.Put()))) return stream;
    }
    GlobalFree(block);
    return {};
}

} // namespace

IUnknown* GrabFrameObject(CVideoCapture& capture, FrameObject object, int32* size) {
    if (size != nullptr) *size = 0;
    if (object < FrameObject::stream || object > FrameObject::picture) return nullptr;
    std::vector<uint8> file;
    try {
        if (!capture.GrabFrameFile(file)) return nullptr;
    } catch (...) { // memory is exhausted
        return nullptr;
    }
    ComPtr<IStream> stream = StreamOf(file);
    if (!stream) return nullptr;
    if (size != nullptr) *size = static_cast<int32>(file.size());
    if (object == FrameObject::stream) return stream.Detach();
    if (object == FrameObject::sequentialStream) {
        ComPtr<ISequentialStream> sequential;
        return SUCCEEDED(sequential.QueryFrom(stream)) ? sequential.Detach() : nullptr;
    }
    ComPtr<IPicture> picture;
    const HRESULT result =
        OleLoadPicture(stream.Get(), static_cast<LONG>(file.size()), FALSE, __uuidof(IPicture), picture.PutVoid());
    return SUCCEEDED(result) ? picture.Detach() : nullptr;
}

} // namespace orvane
