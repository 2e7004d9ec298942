#include "platform/module_folder.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdlib>
#include <memory>

namespace orvane {

ModuleLookup FindModuleFile(PathString& fileName) {
    Dl_info info{};
    link_map* module = nullptr;
    if (dladdr1(reinterpret_cast<void*>(&FindModuleFile), &info, reinterpret_cast<void**>(&module), RTLD_DL_LINKMAP) ==
        0) {
        return ModuleLookup::notLoaded;
    }
    // The program itself stands in the module list without a name.
    const bool isProgram = module == nullptr || module->l_name == nullptr || module->l_name[0] == 0;
    const std::unique_ptr<char, void (*)(void*)> path(realpath(isProgram ? "/proc/self/exe" : module->l_name, nullptr),
                                                      std::free);
    if (path == nullptr) return ModuleLookup::noName;
    fileName = path.get();
    return ModuleLookup::found;
}

PathString PathFromBytes(const char* bytes) { return bytes; }

std::FILE* OpenInModuleFolder(const PathString& name) { return std::fopen(InModuleFolder(name).c_str(), "rb"); }

} // namespace orvane
