#include "capture/directshow/device_list.h"

namespace orvane {
namespace {

std::optional<std::wstring> TextOf(IPropertyBag& bag, const wchar_t* name) {
    Variant value;
    value.Put()->vt = VT_BSTR; // the kind that is wanted
    if (FAILED(bag.Read(name, value.Put(), nullptr)) || value.Text() == nullptr) return {};
    return std::wstring(value.Text(), SysStringLen(value.Text()));
}

} // namespace

std::vector<DirectShowDevice> ReadDevices(IEnumMoniker& monikers) {
    std::vector<DirectShowDevice> devices;
    for (;;) {
        ComPtr<IMoniker> moniker;
        ULONG fetched = 0;
        if (monikers.Next(1, moniker.Put(), &fetched) != S_OK || !moniker) return devices;
        ComPtr<IPropertyBag> bag;
        if (FAILED(moniker->BindToStorage(nullptr, nullptr, __uuidof(IPropertyBag), bag.PutVoid())) || !bag) continue;
        DirectShowDevice device;
        device.friendlyName = TextOf(*bag.Get(), L"FriendlyName");
        device.description = TextOf(*bag.Get(), L"Description");
        device.devicePath = TextOf(*bag.Get(), L"DevicePath");
        device.moniker = std::move(moniker);
        devices.push_back(std::move(device));
    }
}

std::vector<DirectShowDevice> ListDevices() {
    ComPtr<ICreateDevEnum> system;
    if (FAILED(system.Create(CLSID_SystemDeviceEnum, CLSCTX_ALL))) return {};
    ComPtr<IEnumMoniker> monikers;
    // Without a device the result is S_FALSE and there is no enumerator.
    if (FAILED(system->CreateClassEnumerator(CLSID_VideoInputDeviceCategory, monikers.Put(), 0)) || !monikers)
        return {};
    return ReadDevices(*monikers.Get());
}

} // namespace orvane
