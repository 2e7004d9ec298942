// What earlier runs put into an output folder, so that a run can go on where another one ended. One line a portrait,
// written before the portrait takes its name: the line counts when the file under that name has the bytes that it
// tells. So a run may end at any moment: no finished portrait is unknown, and none that is known is missing.
#pragma once

#include "tools/batch/shard.h"
#include "tools/support/append_file.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace orvane::tools {

struct JournalEntry {
    std::uint64_t photo = 0;    ///< Fingerprint of the photograph's bytes.
    std::uint64_t settings = 0; ///< Fingerprint of all that the portrait depends on besides.
    std::uint64_t portrait = 0; ///< Fingerprint of the portrait's bytes.
    std::string note;           ///< What the run wants to know again of a portrait that it keeps; no newline.
    std::string output;         ///< Path of the portrait below the output folder.

    bool operator==(const JournalEntry&) const = default;
};

/// The entry on one line, with its newline and a fingerprint of its own in front; and back, false where anything in the
/// line is not as it was written.
std::string JournalLine(const JournalEntry& entry);
bool ReadJournalLine(const std::string& line, JournalEntry* entry);

class Journal {
public:
    /// Reads the journals of all shards in `folder` and opens this shard's own one, or makes it. Of lines that can't be
    /// read, `*remark` gets one line; the last line of a run that was cut off is none of them. False gives `*error` one
    /// line: another run writes this journal, or it can't be read or written.
    bool Open(const std::string& folder, const Shard& shard, std::string* remark, std::string* error);

    /// What is known of an output, the latest last.
    const std::vector<JournalEntry>& Find(const std::string& output) const;

    /// Writes an entry down, so that it outlives a loss of power, unless it is known. False gives `*error` one line.
    bool Add(const JournalEntry& entry, std::string* error);

private:
    void Read(const std::string& content, int* broken);

    AppendFile file_;
    bool torn_ = false;                                                  ///< The file does not end with a line's end.
    std::unordered_map<std::string, std::vector<JournalEntry>> entries_; ///< By output.
};

/// Name of a shard's journal in the output folder; all journals' names begin with the first.
inline constexpr const char* kJournalName = ".orvane-journal";
std::string JournalName(const Shard& shard);

} // namespace orvane::tools
