#include "platform/load_module.h"

#include <windows.h>

namespace orvane {
namespace {

std::string LastProblem(const char* what) { return what + (" (error " + std::to_string(GetLastError()) + ")"); }

} // namespace

void* FindInModule(const PathString& file, const char* function, std::string& problem) {
    const HMODULE module = LoadLibraryExW(InModuleFolder(file).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module == nullptr) {
        problem = LastProblem("the module can't be loaded");
        return nullptr;
    }
    const auto address = GetProcAddress(module, function);
    if (address == nullptr) problem = LastProblem("the module lacks its function");
    return reinterpret_cast<void*>(address);
}

} // namespace orvane
