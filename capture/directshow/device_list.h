// The video devices that the system lists.
#pragma once

#include "capture/directshow/com_holders.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// A device and what it tells of itself. A text that it does not give is absent.
struct DirectShowDevice {
    std::optional<std::wstring> friendlyName;
    std::optional<std::wstring> description;
    std::optional<std::wstring> devicePath;
    ComPtr<IMoniker> moniker; // what its filter is made from
};

/// The devices of the system, in its own order; none where it can't list them.
std::vector<DirectShowDevice> ListDevices();

/// The devices of an enumerator. One whose properties can't be bound is left out, so that whoever counts in the
/// list counts usable devices.
std::vector<DirectShowDevice> ReadDevices(IEnumMoniker& monikers);

} // namespace orvane
