#include "tools/batch/journal.h"

#include "tools/support/file_identity.h"
#include "tools/support/fingerprint.h"
#include "tools/support/folder_entries.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <optional>

namespace orvane::tools {
namespace {

constexpr std::size_t kFingerprintLength = 16;

/// A text as one word: what would end it or the line stands as a percent sign and two digits.
std::string Word(const std::string& text) {
    std::string word;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte != 0x7F && c != '%') {
            word += c;
        } else {
            word += {'%', "0123456789abcdef"[byte >> 4], "0123456789abcdef"[byte & 15]};
        }
    }
    return word;
}

int Digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

std::optional<std::string> TextOf(const std::string& word) {
    std::string text;
    for (std::size_t at = 0; at < word.size(); ++at) {
        if (word[at] != '%') {
            text += word[at];
            continue;
        }
        const int high = at + 2 < word.size() ? Digit(word[at + 1]) : -1;
        const int low = at + 2 < word.size() ? Digit(word[at + 2]) : -1;
        if (high < 0 || low < 0) return std::nullopt;
        text += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return text;
}

/// The words of a line, which one space each separates; a word may be empty.
std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words(1);
    for (const char c : line) {
        if (c == ' ') {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    return words;
}

} // namespace

std::string JournalLine(const JournalEntry& entry) {
    const std::string rest = FingerprintText(entry.photo) + " " + FingerprintText(entry.settings) + " " +
                             FingerprintText(entry.portrait) + " " + Word(entry.note) + " " + Word(entry.output);
    return FingerprintText(ContentFingerprint(rest)) + " " + rest + "\n";
}

bool ReadJournalLine(const std::string& line, JournalEntry* entry) {
    if (line.size() <= kFingerprintLength || line[kFingerprintLength] != ' ') return false;
    const std::string rest = line.substr(kFingerprintLength + 1);
    if (FingerprintOf(line.substr(0, kFingerprintLength)) != ContentFingerprint(rest)) return false;
    const std::vector<std::string> words = Words(rest);
    if (words.size() != 5) return false;
    const auto photo = FingerprintOf(words[0]);
    const auto settings = FingerprintOf(words[1]);
    const auto portrait = FingerprintOf(words[2]);
    const auto note = TextOf(words[3]);
    const auto output = TextOf(words[4]);
    if (!photo || !settings || !portrait || !note || !output) return false;
    *entry = {*photo, *settings, *portrait, *note, *output};
    return true;
}

std::string JournalName(const Shard& shard) {
    if (shard.IsWhole()) return kJournalName;
    return std::string(kJournalName) + "-" + std::to_string(shard.index) + "-of-" + std::to_string(shard.count);
}

void Journal::Read(const std::string& content, int* broken) {
    std::size_t at = 0;
    for (std::size_t end = content.find('\n'); end != std::string::npos; end = content.find('\n', at)) {
        JournalEntry entry;
        const std::string line = content.substr(at, end - at);
        if (ReadJournalLine(line, &entry)) {
            std::vector<JournalEntry>& known = entries_[entry.output];
            known.push_back(std::move(entry));
        } else if (!line.empty()) {
            ++*broken;
        }
        at = end + 1;
    }
}

bool Journal::Open(const std::string& folder, const Shard& shard, std::string* remark, std::string* error) {
    entries_.clear();
    const std::string own = JournalName(shard);
    // Opened first: nobody writes to it while it is read.
    if (!file_.Open(folder + "/" + own, AppendFile::Start::atEnd, error)) {
        *error = "the journal '" + folder + "/" + own + "' " + *error;
        return false;
    }
    std::vector<FolderEntry> names;
    if (!ListFolder(folder, &names, error)) {
        *error = "the folder '" + folder + "' " + *error;
        return false;
    }
    int broken = 0;
    for (const FolderEntry& name : names) {
        if (name.isFolder || name.name.rfind(kJournalName, 0) != 0) continue;
        const std::string path = folder + "/" + name.name;
        std::string content;
        if (!ReadWholeFile(path, &content, error)) {
            *error = "the journal '" + path + "' " + *error;
            return false;
        }
        Read(content, &broken);
        if (name.name == own) torn_ = !content.empty() && content.back() != '\n';
    }
    if (broken > 0) {
        *remark = "the journal in '" + folder + "' has " + std::to_string(broken) +
                  (broken == 1 ? " damaged line; its portrait counts" : " damaged lines; their portraits count") +
                  " as unknown";
    }
    return true;
}

const std::vector<JournalEntry>& Journal::Find(const std::string& output) const {
    static const std::vector<JournalEntry> none;
    const auto known = entries_.find(output);
    return known == entries_.end() ? none : known->second;
}

bool Journal::Add(const JournalEntry& entry, std::string* error) {
    const std::vector<JournalEntry>& known = Find(entry.output);
    // What is tried again and again, on a full disk, is written down once.
    if (std::find(known.begin(), known.end(), entry) != known.end()) return true;
    // The rest of a line that was cut off, by an earlier run or a full disk, must not take this one with it.
    std::string line = torn_ ? "\n" : "";
    line += JournalLine(entry);
    if (!file_.Append(line, error)) {
        torn_ = true;
        return false;
    }
    torn_ = false;
    if (!file_.Flush(error)) return false;
    entries_[entry.output].push_back(entry);
    return true;
}

} // namespace orvane::tools
