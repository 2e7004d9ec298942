// What a run reads back of earlier ones: its journal, and reports that are joined. Damaged lines are left out, whole
// ones are known again, and a joined report joined once more stays.
#include "tools/batch/journal.h"
#include "fuzz/support/choices.h"
#include "fuzz/support/written_file.h"
#include "tests/support/temp_folder.h"
#include "tools/orvane/report_file.h"
#include "tools/orvane/report_join.h"
#include "tools/support/fingerprint.h"
#include "tools/support/whole_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

using namespace orvane;
using namespace orvane::tools;
using fuzz::Expect;

namespace {

JournalEntry EntryOf(fuzz::Choices& choices) {
    JournalEntry entry;
    entry.photo = choices.Bits();
    entry.settings = uint64{choices.Bits()} << 32;
    entry.portrait = choices.Byte();
    entry.note = choices.Text(choices.Byte() % 16);
    entry.output = choices.Text(1 + choices.Byte() % 8);
    return entry;
}

/// A line with a fingerprint that fits, whatever stands behind it.
std::string SignedLine(const std::string& rest) {
    return FingerprintText(ContentFingerprint(rest)) + " " + rest + "\n";
}

std::string WordsOf(fuzz::Choices& choices) {
    std::string line;
    for (int32 words = choices.Int(1, 6); words > 0; --words) {
        if (!line.empty()) line += ' ';
        line += choices.Flag() ? FingerprintText(choices.Bits()) : choices.Text(choices.Byte() % 24);
    }
    return line;
}

bool Knows(const Journal& journal, const JournalEntry& entry) {
    const std::vector<JournalEntry>& known = journal.Find(entry.output);
    return std::find(known.begin(), known.end(), entry) != known.end();
}

void TryJournal(fuzz::Choices& choices) {
    static const test::TempFolder folder;
    std::vector<JournalEntry> whole;
    {
        std::ofstream out(folder.Path() / JournalName(Shard()), std::ios::binary | std::ios::trunc);
        for (int32 lines = choices.Int(0, 8); lines > 0; --lines) {
            const int32 kind = choices.Int(0, 3);
            if (kind == 0) {
                out << choices.Text(choices.Byte()) << '\n';
            } else if (kind == 1) {
                out << SignedLine(WordsOf(choices));
            } else {
                whole.push_back(EntryOf(choices));
                const std::string line = JournalLine(whole.back());
                JournalEntry back;
                Expect(ReadJournalLine(line.substr(0, line.size() - 1), &back) && back == whole.back(),
                       "a line is read as it was written");
                out << line;
            }
        }
        out << choices.Text(choices.Byte() % 32); // a line that was cut off
    }
    const JournalEntry added = EntryOf(choices);
    std::string remark, error;
    {
        Journal journal;
        Expect(journal.Open(folder.Path().string(), Shard(), &remark, &error), "a journal opens whatever stands in it");
        for (const JournalEntry& entry : whole) Expect(Knows(journal, entry), "a whole line is known");
        Expect(journal.Add(added, &error), "an entry is added");
        Expect(Knows(journal, added), "what was added is known");
    }
    Journal journal;
    Expect(journal.Open(folder.Path().string(), Shard(), &remark, &error), "a journal opens again");
    Expect(Knows(journal, added), "what was added is there again");
}

PhotoReport ReportOf(fuzz::Choices& choices) {
    PhotoReport report;
    report.photo = choices.Text(choices.Byte() % 12);
    report.width = choices.Byte();
    if (choices.Flag()) report.status = choices.OneOf({0, 10, -10, -70});
    if (choices.Flag()) report.face = FaceBox{1, 2, 3, 4};
    if (choices.Flag()) report.output = choices.Text(choices.Byte() % 12);
    if (choices.Flag()) report.error = choices.Text(choices.Byte() % 12);
    report.kept = choices.Flag();
    return report;
}

/// Makes a report of a run as the run does, or one that somebody touched.
void MakeReport(fuzz::Choices& choices, const std::string& path, std::string* content) {
    std::string error;
    if (choices.Flag()) {
        ReportFile file;
        Expect(file.Open(path, true, &error), "a report opens");
        for (int32 rows = choices.Int(0, 6); rows > 0; --rows) {
            Expect(file.Add(static_cast<std::size_t>(choices.Int(1, 300)), ReportOf(choices), &error),
                   "a row is added");
        }
    } else if (choices.Int(0, 3) == 0) {
        fuzz::WriteFile(path, choices.Text(choices.Byte() * 4U));
    } else {
        std::string rows = ReportHeader(path);
        for (int32 count = choices.Int(0, 6); count > 0; --count) {
            rows += choices.Flag() ? choices.Text(choices.Byte())
                                   : ReportRow(path, static_cast<std::size_t>(choices.Int(0, 300)), ReportOf(choices));
        }
        if (choices.Flag()) rows.resize(rows.size() / 2);
        fuzz::WriteFile(path, rows);
    }
    Expect(ReadWholeFile(path, content, &error), "a report is read");
}

void TryJoin(fuzz::Choices& choices, bool csv) {
    static const test::TempFolder folder;
    const std::string name = csv ? "report.csv" : "report.jsonl";
    Options options;
    options.output = (folder.Path() / name).string();
    options.force = true;
    std::vector<std::string> contents;
    for (int32 reports = choices.Int(1, 3); reports > 0; --reports) {
        options.photos.push_back((folder.Path() / (std::to_string(reports) + name)).string());
        MakeReport(choices, options.photos.back(), &contents.emplace_back());
    }
    JoinedReports joined;
    std::string error;
    if (!JoinReports(contents, options.photos, csv, &joined, &error)) {
        fuzz::ExpectOneLine(error);
        return;
    }
    Expect(joined.portraits + joined.faces + joined.faceless + joined.failed == joined.photos,
           "each photo counts once");
    JoinedReports again;
    Expect(JoinReports({joined.content}, {"joined"}, csv, &again, &error), "a joined report is a report");
    Expect(again.content == joined.content && again.photos == joined.photos && again.missing == joined.missing,
           "a joined report joined alone stays");
    if (joined.missing > 0) return; // of which the program would tell each time
    Expect(RunJoin(options) == kExitGood, "what can be joined is joined");
    std::string written;
    Expect(ReadWholeFile(options.output, &written, &error) && written == joined.content, "and written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    fuzz::Choices choices(bytes, size);
    switch (choices.Int(0, 2)) {
    case 0:
        TryJournal(choices);
        break;
    case 1:
        TryJoin(choices, true);
        break;
    default:
        TryJoin(choices, false);
        break;
    }
    return 0;
}
