#include "platform/module_folder.h"

namespace orvane {

PathString g_moduleFolder;

namespace {

constexpr auto kSeparator = std::filesystem::path::preferred_separator;

PathString Widened(const char* ascii) {
    PathString text;
    for (; *ascii != 0; ++ascii) text.push_back(static_cast<PathString::value_type>(*ascii));
    return text;
}

} // namespace

bool FindModuleFolder() {
    PathString name;
    switch (FindModuleFile(name)) {
    case ModuleLookup::notLoaded:
        g_moduleFolder = Widened("\\");
        return false;
    case ModuleLookup::noName:
        g_moduleFolder = Widened("./");
        return false;
    case ModuleLookup::found:
        break;
    }
    const std::size_t last = name.rfind(kSeparator);
    g_moduleFolder = last == PathString::npos ? PathString() : name.substr(0, last);
    return true;
}

PathString InModuleFolder(const PathString& name) { return g_moduleFolder + PathString(1, kSeparator) + name; }

} // namespace orvane
