// Language files: whatever stands in one, rows keep their bounds, and only whole rows change.
#include "session/language.h"
#include "fuzz/support/choices.h"
#include "fuzz/support/library_folder.h"
#include "image/result_codes.h"

using namespace orvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    static const fuzz::LibraryFolder folder;
    fuzz::Choices choices(bytes, size);
    folder.Write("texts.txt", choices.Rest());
    LanguageTable table;
    fuzz::Expect(table.SetLanguageFile("texts.txt") == kSuccess, "a file that can be read is taken");
    for (int32 index = 0; index < LanguageTable::kRows; ++index) {
        const std::wstring text = table.GetLanguageText(index);
        fuzz::Expect(!text.empty() && text.size() <= 1023, "a row has 1 to 1023 characters");
        fuzz::Expect(text.find(L'\n') == std::wstring::npos, "a row is one line");
    }
    // The same file once more changes nothing: the last row of an index wins.
    LanguageTable again = table;
    fuzz::Expect(again.SetLanguageFile("texts.txt") == kSuccess, "a file is taken twice");
    for (int32 index = 0; index < LanguageTable::kRows; ++index) {
        fuzz::Expect(again.GetLanguageText(index) == table.GetLanguageText(index), "a file means the same twice");
    }
    fuzz::Expect(table.SetLanguageFile("none.txt") == kBadCall, "a file that is not there is refused");
    return 0;
}
