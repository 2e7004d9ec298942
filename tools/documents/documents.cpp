#include "tools/documents/documents.h"

#include "platform/module_folder.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <filesystem>

namespace orvane::tools {
namespace {

constexpr std::string_view kTableEnd = ".toml";

std::string NamesOf(const std::vector<Document>& documents) {
    std::string names;
    for (const Document& document : documents) names += (names.empty() ? "" : ", ") + document.name;
    return names;
}

/// The file's path and the name in it; false for a plain name.
bool SplitFileName(const std::string& text, std::string* path, std::string* name) {
    const std::size_t mark = text.ends_with(kTableEnd) ? text.size() : text.rfind('#');
    *path = text.substr(0, mark);
    *name = mark < text.size() ? text.substr(mark + 1) : "";
    return path->ends_with(kTableEnd);
}

bool FindInFile(const std::string& path, const std::string& name, Document* document, std::string* error) {
    std::vector<Document> documents;
    if (!LoadDocuments(path, &documents, error)) return false;
    if (name.empty() && documents.size() == 1) {
        *document = documents.front();
        return true;
    }
    if (name.empty()) {
        *error = "'" + path + "' holds several documents; add # and one of " + NamesOf(documents);
        return false;
    }
    const auto found =
        std::find_if(documents.begin(), documents.end(), [&](const Document& d) { return d.name == name; });
    if (found != documents.end()) {
        *document = *found;
        return true;
    }
    *error = "'" + path + "' has no document '" + name + "'";
    return false;
}

} // namespace

bool LoadDocuments(const std::string& path, std::vector<Document>* documents, std::string* error) {
    std::string text;
    if (ReadWholeFile(path, &text, error)) return ReadDocuments(text, path, documents, error);
    *error = "the table '" + path + "': " + *error;
    return false;
}

std::string OwnTablePath() {
    PathString file;
    if (FindModuleFile(file) != ModuleLookup::found) return "";
    const auto path = std::filesystem::path(file).replace_filename("documents.toml").u8string();
    return {path.begin(), path.end()};
}

bool FindDocument(const std::string& nameOrFile, Document* document, std::string* error) {
    std::string path;
    std::string name;
    if (SplitFileName(nameOrFile, &path, &name)) return FindInFile(path, name, document, error);
    std::vector<Document> documents;
    if (!LoadDocuments(OwnTablePath(), &documents, error)) return false;
    for (Document& known : documents) {
        if (known.name != nameOrFile) continue;
        *document = std::move(known);
        return true;
    }
    *error = "no document '" + nameOrFile + "'; 'orvane documents' lists them, and a table of one's own ends in .toml";
    return false;
}

} // namespace orvane::tools
