// The table of documents: `documents.toml` beside the program, or a file of the user's own. Reading is strict: what is
// not understood wholly is refused with its line.
#pragma once

#include "tools/documents/document.h"

#include <string>
#include <vector>

namespace orvane::tools {

/// Bounds of what a document may ask for, and who gives a size by hand.
inline constexpr double kLeastMillimetres = 5;
inline constexpr double kMostMillimetres = 1000;
inline constexpr double kLeastHead = 1; ///< Millimetres; in a smaller one no frame ends.
inline constexpr double kLeastResolution = 50;
inline constexpr double kMostResolution = 2400;

/// The table in `text`, in its own order; `file` names it in messages. False gives `*error` one line with the
/// number of the line that is wrong.
bool ReadDocuments(const std::string& text, const std::string& file, std::vector<Document>* documents,
                   std::string* error);

/// The table in the file `path`.
bool LoadDocuments(const std::string& path, std::vector<Document>* documents, std::string* error);

/// The table that comes with the program. Empty where the system does not tell where the program lies.
std::string OwnTablePath();

/// A document by its name in the program's own table; or of a file: "own.toml" that holds one document,
/// "own.toml#name" where it holds several. False gives `*error` one line.
bool FindDocument(const std::string& nameOrFile, Document* document, std::string* error);

} // namespace orvane::tools
