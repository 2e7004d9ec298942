#include "dialog/win32/loaded_picture.h"

#include <olectl.h>

#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace orvane {
namespace {

constexpr LONGLONG kLargestFile = 64LL * 1024 * 1024;
constexpr int32 kLongestSide = 32767;
constexpr const wchar_t* kNoMemoryText = L"Can not allocate enough memory\t";
constexpr const wchar_t* kNoInterfaceText = L"interface is not supported\t";

void Complain(const wchar_t* text) {
    constexpr WORD kEnglish = 9;
    MessageBoxExW(GetActiveWindow(), text, L"Error", MB_ICONHAND, kEnglish);
}

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// The system's reader of bitmaps trusts what the headers promise, so this looks whether the pixels are
/// there. Other formats come with a reader that notices their end.
bool HoldsWhatItsHeadersPromise(std::string_view file) {
    if (file.substr(0, 2) != "BM") return true;
    BITMAPFILEHEADER head;
    BITMAPINFOHEADER info;
    if (file.size() < sizeof head + sizeof info) return false;
    std::memcpy(&head, file.data(), sizeof head);
    std::memcpy(&info, file.data() + sizeof head, sizeof info);
    if (info.biSize < sizeof info) return head.bfOffBits < file.size(); // the oldest header has other fields
    const LONGLONG height = info.biHeight < 0 ? -static_cast<LONGLONG>(info.biHeight) : info.biHeight;
    if (info.biWidth < 1 || height < 1 || info.biWidth > kLongestSide || height > kLongestSide) return false;
    if (info.biBitCount > 32 || info.biSize > file.size() - sizeof head) return false;
    if (info.biCompression != BI_RGB && info.biCompression != BI_BITFIELDS) return head.bfOffBits < file.size();
    const LONGLONG row = (static_cast<LONGLONG>(info.biWidth) * info.biBitCount + 31) / 32 * 4;
    return head.bfOffBits + row * height <= static_cast<LONGLONG>(file.size());
}

} // namespace

CLoadedPicture::~CLoadedPicture() { Release(); }

void CLoadedPicture::Release() {
    if (m_picture != nullptr) m_picture->Release();
    m_picture = nullptr;
    m_pixelHeight = m_fileSize = m_pixelWidth = 0;
    complained_ = false;
}

bool CLoadedPicture::Load(const wchar_t* path) {
    Release();
    const HANDLE opened = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (opened == INVALID_HANDLE_VALUE) return false;
    const std::unique_ptr<void, HandleCloser> file(opened);
    LARGE_INTEGER length;
    if (!GetFileSizeEx(opened, &length) || length.QuadPart < 1 || length.QuadPart > kLargestFile) return false;
    const auto size = static_cast<DWORD>(length.QuadPart);
    const std::unique_ptr<char[]> bytes(new (std::nothrow) char[size]);
    DWORD read = 0;
    if (bytes == nullptr || !ReadFile(opened, bytes.get(), size, &read, nullptr) || read != size) return false;
    if (!HoldsWhatItsHeadersPromise({bytes.get(), size}) || !LoadFromMemory(bytes.get(), size)) return false;
    if (m_picture == nullptr) return false;
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    m_picture->get_Height(&height);
    m_picture->get_Width(&width);
    const int32 pixelHeight = MulDiv(height, 96, 2540), pixelWidth = MulDiv(width, 96, 2540);
    if (pixelWidth < 1 || pixelHeight < 1 || pixelWidth > kLongestSide || pixelHeight > kLongestSide) {
        Release();
        return false;
    }
    m_fileSize = static_cast<int32>(size);
    m_pixelHeight = pixelHeight;
    m_pixelWidth = pixelWidth;
    return true;
}

bool CLoadedPicture::LoadFromMemory(const void* bytes, DWORD length) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, length);
    void* const to = block == nullptr ? nullptr : GlobalLock(block);
    if (to == nullptr) {
        GlobalFree(block);
        Complain(kNoMemoryText);
        return false;
    }
    std::memcpy(to, bytes, length);
    GlobalUnlock(block);
    IStream* stream = nullptr;
    if (FAILED(CreateStreamOnHGlobal(block, TRUE, &stream))) {
        GlobalFree(block);
        return false;
    }
    void* picture = nullptr;
    const HRESULT result = OleLoadPicture(stream, static_cast<LONG>(length), FALSE, __uuidof(IPicture), &picture);
    stream->Release(); // and with it the block
    if (result == E_NOINTERFACE) {
        Complain(kNoInterfaceText);
        return false;
    }
    if (m_picture != nullptr) m_picture->Release();
    m_picture = SUCCEEDED(result) ? static_cast<IPicture*>(picture) : nullptr;
    return true;
}

bool CLoadedPicture::Render(HDC dc, const RECT& rectangle) {
    if (dc == nullptr || m_picture == nullptr) return false;
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    m_picture->get_Width(&width);
    m_picture->get_Height(&height);
    const HRESULT result = m_picture->Render(dc, rectangle.left, rectangle.top, rectangle.right - rectangle.left,
                                             rectangle.bottom - rectangle.top, 0, height, width, -height, &rectangle);
    if (SUCCEEDED(result)) return true;
    if (!complained_) {
        complained_ = true; // before the box, which lets the window draw
        Complain(kNoMemoryText);
    }
    return false;
}

} // namespace orvane
