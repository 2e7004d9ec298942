// Files of faces that were marked by hand: whatever stands in one, a row gives a face or a line that says why it does
// not, and the photos of a run get their own faces and no others.
#include "tools/orvane/corrections.h"
#include "fuzz/support/choices.h"
#include "fuzz/support/expect.h"
#include "tests/support/temp_folder.h"
#include "tools/support/csv.h"
#include "tools/support/file_identity.h"
#include "tools/support/picture.h"
#include "tools/support/utf8.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

using namespace orvane;
using namespace orvane::tools;
using fuzz::Expect;

namespace {

/// Two files, and a second name of one.
class Photos {
public:
    Photos() {
        for (const char* name : {"a", "b"}) std::ofstream(folder_.Path() / name) << name;
        std::filesystem::create_symlink("a", folder_.Path() / "link");
    }

    /// A path of a file among them, of one that is not there, or of another folder.
    std::string AnyPath(fuzz::Choices& choices) const {
        const char* name = choices.OneOf({"/a", "/b", "/link", "/./a", "/none"});
        return choices.Int(0, 3) == 0 ? choices.Text(choices.Byte() % 16) : folder_.Path().string() + name;
    }

    /// Each "~" of a text becomes their folder, so that a file of a stranger's bytes can name them.
    std::string InFolder(const std::string& text) const {
        std::string whole;
        for (const char c : text) whole += c == '~' ? folder_.Path().string() : std::string(1, c);
        return whole;
    }

private:
    test::TempFolder folder_;
};

std::string AnyNumber(fuzz::Choices& choices) {
    if (choices.Int(0, 15) == 0) return choices.Text(choices.Byte() % 8);
    return std::to_string(choices.Flag() ? choices.Int(-3, 40) : choices.AnyInt());
}

std::string AnyRows(fuzz::Choices& choices, const Photos& photos) {
    std::string rows = choices.Flag() ? "photograph,x,y,width,height\n" : "note,height,width,y,x,photograph\r\n";
    const bool noted = rows[0] == 'n';
    for (int32 count = choices.Int(0, 6); count > 0; --count) {
        CsvRecord record;
        if (noted) record.Text("");
        if (!noted) record.Text(photos.AnyPath(choices));
        for (int32 number = 0; number < 4; ++number) record.Text(AnyNumber(choices));
        if (noted) record.Text(photos.AnyPath(choices));
        if (choices.Int(0, 15) == 0) record.Text("more");
        rows += record.Line();
    }
    return rows;
}

void ExpectWhole(const std::vector<Correction>& corrections) {
    std::set<std::string> photos;
    std::size_t last = 1;
    for (const Correction& correction : corrections) {
        const FaceBox& face = correction.face;
        Expect(!correction.photo.empty() && photos.insert(correction.photo).second, "each has a photo of its own");
        Expect(face.width > 0 && face.height > 0, "a face has pixels");
        for (const int64 number : {face.x, face.y, face.width, face.height}) {
            Expect(number >= -kMaxPictureSide && number <= kMaxPictureSide, "a face lies in reach of a picture");
        }
        Expect(correction.row > last, "rows are counted");
        last = correction.row;
    }
}

/// What was read, written as rows, is read as it was.
void ReadAgain(const std::vector<Correction>& corrections) {
    std::string rows = "photograph,x,y,width,height\r\n";
    for (const Correction& correction : corrections) {
        if (WholeUtf8(correction.photo) != correction.photo) return; // rows are written in UTF-8
        CsvRecord record;
        record.Text(correction.photo);
        const FaceBox& face = correction.face;
        for (const int32 number : {face.x, face.y, face.width, face.height}) record.Text(std::to_string(number));
        rows += record.Line();
    }
    std::vector<Correction> again;
    std::vector<std::string> errors;
    ReadCorrections(rows, &again, &errors);
    Expect(errors.empty(), "what is written is taken");
    const auto isSame = [](const Correction& a, const Correction& b) { return a.photo == b.photo && a.face == b.face; };
    Expect(std::equal(again.begin(), again.end(), corrections.begin(), corrections.end(), isSame),
           "what is written is read as it was");
}

/// The photos that a correction means: those of its path, or else those of its file.
std::vector<bool> Meant(const std::vector<std::string>& selected, const std::string& photo) {
    const auto file = IdentifyFile(photo);
    const bool byPath = std::find(selected.begin(), selected.end(), photo) != selected.end();
    std::vector<bool> meant;
    for (const std::string& path : selected) {
        meant.push_back(byPath ? path == photo : file && file == IdentifyFile(path));
    }
    return meant;
}

void ExpectOwnFaces(const std::vector<std::string>& selected, const std::vector<Correction>& corrections) {
    std::vector<std::string> strangers, errors;
    const auto faces = Correct(selected, corrections, &strangers, &errors);
    Expect(faces.size() == selected.size(), "each photo has a face or none");
    std::size_t unused = 0;
    std::vector<std::size_t> given(selected.size());
    std::vector<bool> has(selected.size());
    for (const Correction& correction : corrections) {
        const std::vector<bool> meant = Meant(selected, correction.photo);
        unused += std::count(meant.begin(), meant.end(), true) == 0 ? 1 : 0;
        for (std::size_t i = 0; i < meant.size(); ++i) {
            given[i] += meant[i] ? 1 : 0;
            has[i] = has[i] || (meant[i] && faces[i] == correction.face);
        }
    }
    Expect(strangers.size() == unused, "a correction of no photo is told");
    for (std::size_t i = 0; i < selected.size(); ++i) {
        Expect(has[i] == faces[i].has_value(), "a photo has its own face");
        Expect(given[i] < 2 || !errors.empty(), "two faces of one photo are told");
        Expect(given[i] != 1 || faces[i].has_value() || !errors.empty(), "a photo has the face that is its own");
    }
    const bool twice = std::any_of(given.begin(), given.end(), [](std::size_t count) { return count > 1; });
    Expect(errors.empty() || twice, "what is meant once is no error");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    static const Photos photos;
    fuzz::Choices choices(bytes, size);
    std::vector<std::string> selected;
    for (int32 count = choices.Int(0, 4); count > 0; --count) selected.push_back(photos.AnyPath(choices));
    const std::string file = choices.Flag() ? AnyRows(choices, photos) : photos.InFolder(choices.Rest());

    std::vector<Correction> corrections;
    std::vector<std::string> errors;
    ReadCorrections(file, &corrections, &errors);
    for (const std::string& error : errors) Expect(!error.empty(), "what is left out is told");
    ExpectWhole(corrections);
    ReadAgain(corrections);
    ExpectOwnFaces(selected, corrections);
    return 0;
}
