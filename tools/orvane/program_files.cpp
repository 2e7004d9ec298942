#include "tools/orvane/program_files.h"

#include "platform/module_folder.h"

#include <filesystem>

namespace orvane::tools {
namespace {

std::string Bytes(const std::filesystem::path& path) {
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

std::filesystem::path OwnFile() {
    PathString file;
    return FindModuleFile(file) == ModuleLookup::found ? std::filesystem::path(file) : std::filesystem::path();
}

} // namespace

std::string ProgramPath() { return Bytes(OwnFile()); }

std::string ClassifierPath() { return Bytes(OwnFile().replace_filename("Orvane.dat")); }

} // namespace orvane::tools
