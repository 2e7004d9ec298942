// What lies in a folder, folders made on the way to a file, and how paths are taken apart.
#pragma once

#include <string>
#include <vector>

namespace orvane::tools {

struct FolderEntry {
    std::string name;      ///< Bytes, on Windows UTF-8.
    bool isFolder = false; ///< Of a link, what it leads to.
};

/// Everything in the folder but itself and the one above, in the order of the names' bytes. False gives `*error` one
/// line without the path; `*entries` has then what could be read.
bool ListFolder(const std::string& path, std::vector<FolderEntry>* entries, std::string* error);

/// Makes the folders that lie between `base`, which must exist, and the file `base`/`name`. False gives `*error` one
/// line without the path.
bool MakeFoldersBelow(const std::string& base, const std::string& name, std::string* error);

/// `path` with a slash between its parts, whatever the system's own separators are.
std::string WithSlashes(std::string path);

} // namespace orvane::tools
