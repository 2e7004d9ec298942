// Where the library's file lies: the classifier, language files and skins are looked for beside it.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace orvane {

/// A path in the system's own characters.
using PathString = std::filesystem::path::string_type;

/// Folder of the library's file, without a trailing separator.
extern PathString g_moduleFolder;

enum class ModuleLookup {
    found,
    notLoaded, // the system knows no such module
    noName,    // the module has no file name
};

/// The full file name of the library: on Windows that of the loaded module "Orvane.dll"; elsewhere
/// that of the file this code was loaded from, which may be a program that it is linked into.
ModuleLookup FindModuleFile(PathString& fileName);

/// A path as a host or a user writes it: its bytes; on Windows UTF-8, and what is none in the system's code page.
PathString PathFromBytes(const char* bytes);

/// Sets g_moduleFolder from FindModuleFile. False when that fails; the folder then is "\" for a module
/// that is not loaded and "./" for one without a name.
bool FindModuleFolder();

/// `name` in the library's folder.
PathString InModuleFolder(const PathString& name);

/// Opens a file in the library's folder for binary reading, or null. The caller closes it.
std::FILE* OpenInModuleFolder(const PathString& name);

} // namespace orvane
