#include "platform/load_module.h"

#include <dlfcn.h>
#include <unistd.h>

namespace orvane {
namespace {

std::string LastProblem() {
    const char* text = dlerror();
    return text != nullptr ? text : "can't be loaded";
}

} // namespace

void* FindInModule(const PathString& file, const char* function, std::string& problem) {
    const PathString path = InModuleFolder(file);
    if (access(path.c_str(), F_OK) != 0) {
        problem = path + " is not there";
        return nullptr;
    }
    void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr) {
        problem = LastProblem();
        return nullptr;
    }
    void* address = dlsym(module, function);
    if (address == nullptr) problem = LastProblem();
    return address;
}

} // namespace orvane
