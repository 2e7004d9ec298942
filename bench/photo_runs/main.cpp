// orvane_photo_runs_bench [photograph [count]]: how many photographs a second the command line tool makes into
// portraits, with one worker and with two, and what they spend their time on.
#include "bench/photo.h"
#include "bench/photo_runs/linux/children_time.h"
#include "primitives/dispatch.h"
#include "tests/support/temp_folder.h"
#include "tools/support/child_process.h"
#include "tools/support/json_members.h"
#include "tools/support/picture_io.h"
#include "tools/support/whole_file.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace {

using namespace orvane;

/// What cameras, phones and scanners give.
constexpr ImageSize kSizes[] = {{3264, 2448}, {640, 480},  {1600, 1200}, {480, 640},
                                {2448, 3264}, {1024, 768}, {1200, 1600}};

bool Encode(ImageSize size, std::string* jpeg) {
    ImageBuffer photo;
    bench::MakePhoto(size, photo);
    tools::Picture picture;
    picture.width = photo.width;
    picture.height = photo.height;
    picture.step = photo.Step();
    const std::size_t bytes = static_cast<std::size_t>(picture.step) * static_cast<std::size_t>(picture.height);
    picture.pixels = decltype(picture.pixels)(bytes);
    std::memcpy(picture.pixels.data(), photo.data, bytes);
    std::string error;
    return tools::EncodePicture("photo.jpg", picture, jpeg, &error);
}

bool PutPhotos(const std::string& folder, int count) {
    std::string jpegs[std::size(kSizes)];
    for (std::size_t i = 0; i < std::size(kSizes); ++i) {
        if (!Encode(kSizes[i], &jpegs[i])) return false;
    }
    for (int i = 0; i < count; ++i) {
        char name[32];
        std::string error;
        std::snprintf(name, sizeof name, "/p%06d.jpg", i);
        if (!tools::WriteWholeFile(folder + name, jpegs[static_cast<std::size_t>(i) % std::size(kSizes)], false,
                                   &error)) {
            return false;
        }
    }
    return true;
}

struct Run {
    double seconds = 0;
    double processor = 0; ///< Seconds of it, in all processes.
    int photos = 0;
    double decode = 0; ///< Milliseconds of all workers, as the report has them.
    double session = 0;
    double encode = 0;
};

double Milliseconds(const std::map<std::string, std::string>& times, const char* stage) {
    const auto found = times.find(stage);
    return found == times.end() ? 0 : std::strtod(found->second.c_str(), nullptr);
}

bool Add(const std::string& row, Run* run) {
    const auto members = tools::JsonMembers(row);
    if (!members || members->count("milliseconds") == 0) return false;
    const auto times = tools::JsonMembers(members->at("milliseconds"));
    if (!times) return false;
    ++run->photos;
    run->decode += Milliseconds(*times, "decode");
    for (const char* stage : {"scale", "detect", "crop", "output"}) run->session += Milliseconds(*times, stage);
    run->encode += Milliseconds(*times, "encode");
    return true;
}

bool RunTool(const std::string& folder, int jobs, Run* run) {
    const std::string report = folder + "/report.jsonl";
    const std::string out = folder + "/out" + std::to_string(jobs);
    std::filesystem::create_directory(out);
    const auto start = std::chrono::steady_clock::now();
    const double processor = bench::ChildrenSeconds();
    tools::ChildProcess tool;
    std::string error;
    if (!tool.Start({ORVANE_TOOL, "portrait", folder + "/in", "-o", out, "--size", "480x860", "--jobs",
                     std::to_string(jobs), "--report", report, "--force", "--quiet"},
                    &error)) {
        return false;
    }
    const std::string end = tool.Wait();
    run->seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run->processor = bench::ChildrenSeconds() - processor;
    if (!end.empty() && end != "exit code 10") return false; // a pattern has no face
    std::string rows;
    if (!tools::ReadWholeFile(report, &rows, &error)) return false;
    std::istringstream lines(rows);
    for (std::string row; std::getline(lines, row);) {
        if (!Add(row, run)) return false;
    }
    return run->photos > 0;
}

} // namespace

int main(int argc, char** argv) {
    const int count = argc > 2 ? std::atoi(argv[2]) : 200;
    if (!bench::LoadPhoto(argc > 1 ? argv[1] : "") || SelectPrimitiveColumn() != 0) return 1;
    const test::TempFolder place;
    const std::string folder = place.Path().string();
    std::filesystem::create_directory(folder + "/in");
    if (!PutPhotos(folder + "/in", count)) {
        std::fprintf(stderr, "the photographs could not be made\n");
        return 1;
    }
    std::printf("%d photographs of %zu sizes, %dx%d the largest\n", count, std::size(kSizes), kSizes[0].width,
                kSizes[0].height);
    double alone = 0;
    for (const int jobs : {1, 2}) {
        Run run;
        if (!RunTool(folder, jobs, &run)) {
            std::fprintf(stderr, "the run did not end well\n");
            return 1;
        }
        const double rate = run.photos / run.seconds;
        const double work = run.decode + run.session + run.encode;
        const double spent = run.seconds * 1000 * jobs;
        std::printf(
            "%d job%s  %6.2f photographs a second, %.1f ms of a processor each; decoding %.0f %%, session %.0f %%, "
            "encoding %.0f %%, other %.0f %%",
            jobs, jobs == 1 ? " " : "s", rate, 1000 * run.processor / run.photos, 100 * run.decode / spent,
            100 * run.session / spent, 100 * run.encode / spent, 100 * (spent - work) / spent);
        if (jobs == 1) {
            alone = rate;
            std::printf("\n");
        } else {
            std::printf("; %.2f times one job\n", rate / alone);
        }
    }
    return 0;
}
