// A host in C++ that is linked with the library and makes a portrait:
//     host-cpp [--review] PHOTO.bmp PORTRAIT.bmp
// With --review the operator's window shows what was found and lets the operator mark a face and adjust the portrait.
#include "bitmap_file.h"
#include "session.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace host;
using std::filesystem::path;

/// The exit codes. 1 is left to the system's own failures; 3 stands for a library that a host loads by itself.
enum ExitCode {
    kPortrait = 0,
    kUsage = 2,
    kNoPhoto = 4,
    kFailed = 5,
    kNotWritten = 6,
    kNoFace = 10,
    kCancelled = 20,
};

#ifdef _WIN32
using Argument = wchar_t;
const path kReview = L"--review";
#else
using Argument = char;
const path kReview = "--review";
#endif

/// A name as UTF-8, which every system's terminal is told to show.
std::string Text(const path& name) {
    const auto text = name.u8string();
    return std::string(text.begin(), text.end());
}

int Fail(int code, const std::string& line) {
    std::fprintf(stderr, "%s\n", line.c_str());
    return code;
}

void Prepare(Session& session, bool review) {
    // A file in the library's folder; without it the operator's texts are English.
    if (review) session.SetLanguage("german.txt");
    session.ShowWindow(review);
    session.SetSize(480, 640);
    session.SetCropRatio(1.0F); // leaves room above the hair
    session.DisableAll();
    session.Enable(Action::crop);
    session.Enable(Action::correctColour);
}

int Run(const path& photoName, const path& portraitName, bool review) {
    Block photo, portrait;
    try {
        photo = ReadBitmap(photoName);
    } catch (const FileProblem& problem) {
        return Fail(kNoPhoto, Text(photoName) + " " + problem.what());
    }

    ExitCode code = kPortrait;
    try {
        Session session;
        Prepare(session, review);
        const Result result = session.Detect(photo);
        if (result == Result::cancelled) return Fail(kCancelled, Text(photoName) + ": " + Words(result));
        if (result == Result::noFace) code = kNoFace;
        // Without a face there is an output all the same: what the operator marked, or the whole photo.
        if (code == kNoFace && !review) return Fail(kNoFace, Text(photoName) + ": " + Words(result));
        portrait = session.Output();
    } catch (const Failure& failure) {
        return Fail(kFailed, Text(photoName) + ": " + failure.what());
    }

    try {
        WriteBitmap(portraitName, portrait);
    } catch (const FileProblem& problem) {
        return Fail(kNotWritten, Text(portraitName) + " " + problem.what());
    }
    const PixelSize size = SizeOf(portrait);
    std::printf("%s: %dx%d pixels%s\n", Text(portraitName).c_str(), static_cast<int>(size.width),
                static_cast<int>(size.height), code == kNoFace ? ", no face was found: as the operator left it" : "");
    return code;
}

int RunArguments(int count, Argument** arguments) try {
    std::vector<path> names(arguments + (count > 0 ? 1 : 0), arguments + count);
    const bool review = !names.empty() && names[0] == kReview;
    if (review) names.erase(names.begin());
    if (names.size() != 2) return Fail(kUsage, "usage: host-cpp [--review] PHOTO.bmp PORTRAIT.bmp");
    return Run(names[0], names[1], review);
} catch (const std::exception& problem) {
    return Fail(kFailed, problem.what()); // memory ran out
}

} // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** arguments) {
    const UINT codePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    const int code = RunArguments(count, arguments);
    std::fflush(stdout);
    SetConsoleOutputCP(codePage); // the console is not this program's alone
    return code;
}
#else
int main(int count, char** arguments) { return RunArguments(count, arguments); }
#endif
