#include "tools/batch/photo_list.h"

#include "tools/support/file_identity.h"
#include "tools/support/folder_entries.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace orvane::tools {
namespace {

constexpr const char* kExtensions[] = {"jpg",  "jpeg", "jpe",  "jfif", "png", "bmp", "tif", "tiff", "gif",
                                       "webp", "heic", "heif", "avif", "pnm", "ppm", "pgm", "pbm"};

/// "b" of "a/b/c.jpg"; empty where the path tells no folder with a name.
std::string LastFolder(const std::string& path) {
    const std::string slashed = WithSlashes(path);
    const std::size_t end = slashed.rfind('/');
    if (end == std::string::npos) return "";
    const std::size_t start = slashed.rfind('/', end - (end > 0 ? 1 : 0));
    const std::size_t first = start == std::string::npos || start == end ? 0 : start + 1;
    const std::string name = slashed.substr(first, end - first);
    return name == "." || name == ".." || name.find(':') != std::string::npos ? "" : name;
}

std::string Joined(const std::string& folder, const std::string& name) {
    return folder.empty() || NameStart(folder) == folder.size() ? folder + name : folder + "/" + name;
}

class Lister {
public:
    Lister(const PhotoSources& sources, std::vector<ListedPhoto>* photos, std::vector<ListRemark>* remarks)
        : sources_(sources), photos_(photos), remarks_(remarks) {
        if (!sources.output.empty()) output_ = IdentifyFile(sources.output);
    }

    void Run() {
        for (const std::string& input : sources_.inputs) {
            if (!IsFolder(input)) {
                photos_->push_back({input, WithSlashes(input), LastFolder(input)});
            } else if (IsNew(input)) {
                Walk(input, "");
            }
        }
    }

private:
    /// Each folder is walked once, so that links in circles end and no photograph is made twice.
    bool IsNew(const std::string& path) {
        const std::optional<FileIdentity> folder = IdentifyFile(path);
        if (!folder || walked_.insert(*folder).second) return true;
        remarks_->push_back({path, "leads to a folder that is listed already, and is passed over"});
        return false;
    }

    /// `below` is the path of the folder below the one that was given.
    void Walk(const std::string& path, const std::string& below) {
        std::vector<FolderEntry> entries;
        std::string error;
        if (!ListFolder(path, &entries, &error)) remarks_->push_back({path, error, true});
        for (const FolderEntry& entry : entries) {
            if (entry.isFolder || entry.name[0] == '.' || !HasPhotoExtension(entry.name)) continue;
            photos_->push_back({Joined(path, entry.name), Joined(below, entry.name), below});
        }
        if (!sources_.recursive) return;
        for (const FolderEntry& entry : entries) {
            if (!entry.isFolder || entry.name[0] == '.') continue;
            const std::string folder = Joined(path, entry.name);
            const bool isOutput = output_.has_value() && IdentifyFile(folder) == output_;
            if (!isOutput && IsNew(folder)) Walk(folder, Joined(below, entry.name));
        }
    }

    const PhotoSources& sources_;
    std::vector<ListedPhoto>* photos_;
    std::vector<ListRemark>* remarks_;
    std::optional<FileIdentity> output_;
    std::set<FileIdentity> walked_;
};

} // namespace

void ListPhotos(const PhotoSources& sources, std::vector<ListedPhoto>* photos, std::vector<ListRemark>* remarks) {
    Lister(sources, photos, remarks).Run();
}

std::vector<std::string> PathsOfList(const std::string& content) {
    std::vector<std::string> paths;
    const bool byZero = content.find('\0') != std::string::npos;
    const char separator = byZero ? '\0' : '\n';
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t end = std::min(content.find(separator, at), content.size());
        std::string path = content.substr(at, end - at);
        // A list of lines may come from a system that ends them with two characters.
        if (!byZero && !path.empty() && path.back() == '\r') path.pop_back();
        if (!path.empty()) paths.push_back(path);
        at = end + 1;
    }
    return paths;
}

bool HasPhotoExtension(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos) return false;
    std::string extension = name.substr(dot + 1);
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return std::find(std::begin(kExtensions), std::end(kExtensions), extension) != std::end(kExtensions);
}

} // namespace orvane::tools
