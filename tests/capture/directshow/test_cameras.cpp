#include "tests/capture/directshow/test_cameras.h"

#include <objbase.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace orvane::test {
namespace {

// Where the system looks for classes, and for the devices among them.
const std::wstring kClasses = L"Software\\Classes\\CLSID\\";
const std::wstring kVideoDevices = kClasses + L"{860BB310-5D01-11d0-BD3B-00A0C911CE86}\\Instance\\";

std::wstring TextOf(const GUID& id) {
    wchar_t text[39];
    StringFromGUID2(id, text, 39);
    return text;
}

void SetText(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    HKEY opened = nullptr;
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &opened, nullptr) != 0)
        return;
    RegSetValueExW(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                   static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(opened);
}

/// Keys of the list are read in the order of their names.
std::wstring DeviceKey(int place) {
    std::wstring number = std::to_wstring(place);
    return kVideoDevices + L"orvane test camera " + std::wstring(2 - std::min<std::size_t>(2, number.size()), L'0') +
           number;
}

std::wstring LibraryPath() {
    wchar_t program[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, program, MAX_PATH);
    return (std::filesystem::path(program, program + length).parent_path() / kCameraLibrary).native();
}

void Unregister() {
    for (int i = 0; i < kCameraCount; ++i) {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, DeviceKey(i).c_str());
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, (kClasses + TextOf(ClassOf(static_cast<TestCamera>(i)))).c_str());
    }
}

bool WriteBitmap(const std::filesystem::path& path, const Scene& scene) {
    BITMAPFILEHEADER head{};
    BITMAPINFOHEADER info{};
    head.bfType = 0x4D42;
    head.bfOffBits = sizeof head + sizeof info;
    head.bfSize = head.bfOffBits + static_cast<DWORD>(scene.rows.size());
    info.biSize = sizeof info;
    info.biWidth = scene.width;
    info.biHeight = scene.height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(&head), sizeof head);
    file.write(reinterpret_cast<const char*>(&info), sizeof info);
    file.write(reinterpret_cast<const char*>(scene.rows.data()), static_cast<std::streamsize>(scene.rows.size()));
    return file.good();
}

} // namespace

TestCameras::TestCameras(std::vector<TestCamera> cameras) {
    Unregister();
    const std::wstring library = LibraryPath();
    for (std::size_t place = 0; place < cameras.size(); ++place) {
        const std::wstring classId = TextOf(ClassOf(cameras[place]));
        SetText(kClasses + classId + L"\\InprocServer32", nullptr, library);
        SetText(kClasses + classId + L"\\InprocServer32", L"ThreadingModel", L"Both");
        const std::wstring device = DeviceKey(static_cast<int>(place));
        const CameraKind& kind = KindOf(cameras[place]);
        SetText(device, L"CLSID", classId);
        SetText(device, L"FriendlyName", kind.name);
        if (kind.description != nullptr) SetText(device, L"Description", kind.description);
        if (kind.path != nullptr) SetText(device, L"DevicePath", kind.path);
    }
}

TestCameras::~TestCameras() {
    Unregister();
    SetEnvironmentVariableW(kFramesVariable, nullptr);
}

void TestCameras::Show(const std::vector<Scene>& frames) {
    frames_.emplace();
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const std::string name = std::to_string(1000 + i) + ".bmp";
        if (!WriteBitmap(frames_->Path() / name, frames[i])) std::abort(); // without frames no test can say anything
    }
    SetEnvironmentVariableW(kFramesVariable, frames_->Path().c_str());
}

std::vector<Scene> TestCameras::MovingFace(int32 width, int32 height, int32 left, int32 bottom, int32 side) {
    std::vector<Scene> frames;
    for (const int32 aside : {0, 1, 2, 1}) frames.push_back(FaceScene(width, height, left + aside, bottom, side));
    return frames;
}

CameraCounters TestCameras::Counters() {
    CameraCounters counters{};
    const HMODULE library = GetModuleHandleW(kCameraLibrary);
    if (library == nullptr) return counters;
    const auto function = reinterpret_cast<TestCameraCountersFunction>(
        reinterpret_cast<void*>(GetProcAddress(library, "TestCameraCounters")));
    if (function != nullptr) function(&counters);
    return counters;
}

} // namespace orvane::test
