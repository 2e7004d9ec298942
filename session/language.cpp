#include "session/language.h"

#include "image/result_codes.h"
#include "session/controls.h"

#include <cctype>
#include <cstdlib>
#include <memory>

namespace orvane {
namespace {

constexpr std::size_t kLongestText = 1023;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// The whole file, its line ends as '\n' alone. False for what opens but can't be read, as a folder does
/// on some systems.
bool ReadText(std::FILE* file, std::string& text) {
    char piece[4096];
    while (const std::size_t n = std::fread(piece, 1, sizeof piece, file)) text.append(piece, n);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool lineEnd = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (!lineEnd) text[kept++] = text[i];
    }
    text.resize(kept);
    return std::ferror(file) == 0;
}

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

/// Walks the rows of a language file.
class RowReader {
public:
    explicit RowReader(const std::string& text) : at_(text.c_str()) {}

    /// The next row, its index -1 outside the table; false at the end and where no number stands.
    bool Next(int32& index, std::wstring& row) {
        SkipSpace();
        const bool sign = *at_ == '-' || *at_ == '+';
        if (std::isdigit(static_cast<unsigned char>(at_[sign ? 1 : 0])) == 0) return false;
        char* end;
        const long long number = std::strtoll(at_, &end, 10);
        index = number >= 0 && number < LanguageTable::kRows ? static_cast<int32>(number) : -1;
        at_ = end;
        SkipSpace(); // runs over line ends: an index alone takes the next line's text
        row.clear();
        for (; *at_ != 0 && *at_ != '\n'; ++at_) {
            if (row.size() < kLongestText) row.push_back(static_cast<unsigned char>(*at_));
        }
        return !row.empty();
    }

private:
    void SkipSpace() {
        while (IsSpace(*at_)) ++at_;
    }

    const char* at_;
};

} // namespace

LanguageTable::LanguageTable() {
    rows_.fill(L"???");
#define ORV_ROW(index, text) rows_[index] = text;
    ORV_LANGUAGE_TEXTS(ORV_ROW)
#undef ORV_ROW
}

int32 LanguageTable::SetLanguageFile(const char* name) {
    if (name == nullptr) return kBadCall;
    const std::unique_ptr<std::FILE, FileCloser> file(OpenInModuleFolder(PathFromBytes(name)));
    std::string text;
    if (file == nullptr || !ReadText(file.get(), text)) return kBadCall;
    RowReader reader(text);
    int32 index;
    std::wstring row;
    while (reader.Next(index, row)) {
        if (index >= 0) rows_[static_cast<std::size_t>(index)] = row;
    }
    return kSuccess;
}

std::wstring LanguageTable::GetLanguageText(int32 index) const {
    return index >= 0 && index < kRows ? rows_[static_cast<std::size_t>(index)] : L"??";
}

} // namespace orvane
