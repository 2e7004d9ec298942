// The photographs of a run, out of files, folders and lists: the same ones in the same order on every machine that
// sees the same folders.
#pragma once

#include <string>
#include <vector>

namespace orvane::tools {

struct ListedPhoto {
    std::string path; ///< As it is opened.
    /// By which machines share the photographs out: in a folder that was given, the path below it; else the path as it
    /// was given. Parts are separated by slashes on every system.
    std::string name;
    /// For names of outputs: in a folder that was given, the folders below it; else the name of the folder that the
    /// path tells last. May be empty.
    std::string folder;
};

/// What could not be listed, or was passed over.
struct ListRemark {
    std::string path;
    std::string text;     ///< One line.
    bool isError = false; ///< Photographs may be missing.
};

struct PhotoSources {
    std::vector<std::string> inputs; ///< Files and folders, in the order in which they are listed.
    bool recursive = false;          ///< Folders in folders too.
    std::string output;              ///< A folder that is passed over where it lies in one of the inputs; may be empty.
};

/// Lists the files that are given, whatever they are, and of folders the files whose extension is a photograph's; dot
/// files are left out. A folder is walked in the order of its names' bytes, its files first. Links are followed; a
/// folder that they lead to again is passed over with a remark.
void ListPhotos(const PhotoSources& sources, std::vector<ListedPhoto>* photos, std::vector<ListRemark>* remarks);

/// Takes a list of paths apart: separated by zero bytes where it holds one, else by line ends. Empty ones are left out.
std::vector<std::string> PathsOfList(const std::string& content);

/// Whether a file of this name in a folder is taken for a photograph.
bool HasPhotoExtension(const std::string& name);

} // namespace orvane::tools
