#include "tools/support/folder_entries.h"

#include "tools/support/file_identity.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

namespace orvane::tools {
namespace {

bool Fail(std::string* error, const char* what, int code) {
    *error = std::string(what) + ": " + std::strerror(code);
    return false;
}

} // namespace

bool ListFolder(const std::string& path, std::vector<FolderEntry>* entries, std::string* error) {
    entries->clear();
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(path.c_str()), ::closedir);
    if (folder == nullptr) return Fail(error, "cannot open the folder", errno);
    errno = 0;
    while (const dirent* found = ::readdir(folder.get())) {
        const std::string name = found->d_name;
        if (name == "." || name == "..") continue;
        // Most file systems tell the kind with the name; a link's is that of its end.
        const bool unsure = found->d_type == DT_UNKNOWN || found->d_type == DT_LNK;
        entries->push_back({name, unsure ? IsFolder(path + "/" + name) : found->d_type == DT_DIR});
        errno = 0;
    }
    const int code = errno;
    std::sort(entries->begin(), entries->end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return code == 0 || Fail(error, "cannot read the folder", code);
}

bool MakeFoldersBelow(const std::string& base, const std::string& name, std::string* error) {
    for (std::size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1)) {
        const std::string folder = base + "/" + name.substr(0, slash);
        if (::mkdir(folder.c_str(), 0777) != 0 && errno != EEXIST) {
            return Fail(error, "cannot make its folder", errno);
        }
    }
    return true;
}

std::string WithSlashes(std::string path) { return path; }

} // namespace orvane::tools
