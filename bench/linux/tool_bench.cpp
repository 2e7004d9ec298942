// The command line tool's road from a JPEG file to a portrait's file, beside what the picture library alone takes to
// decode the same photograph, scale it to the portrait's size and encode it: step by step in this process, and as whole
// programs. Each figure is the least of all rounds.
#include "bench/linux/picture_library.h"
#include "bench/photo.h"
#include "bench/processor_time.h"
#include "image/image_buffer.h"
#include "tests/support/temp_folder.h"
#include "tools/orvane/host.h"
#include "tools/support/picture_io.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvane::bench {
namespace {

constexpr ImageSize kPortrait{480, 860};

/// The least of what it is told.
class Least {
public:
    void Take(double seconds) { least_ = std::min(least_, seconds); }
    double Milliseconds() const { return least_ * 1e3; }

private:
    double least_ = std::numeric_limits<double>::max();
};

/// Processor seconds of a program from its start to its end; below 0 when it fails.
double ProgramSeconds(std::vector<std::string> words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int failed = posix_spawn(&child, arguments[0], &quiet, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&quiet);
    int status = 0;
    rusage usage{};
    if (failed != 0 || wait4(child, &status, 0, &usage) != child || status != 0) return -1;
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

bool WritePhoto(const std::string& file, ImageSize size) {
    ImageBuffer photo;
    MakePhoto(size, photo);
    tools::Picture picture{size.width, size.height, tools::PictureStep(size.width), {}};
    picture.pixels = tools::PixelBlock(tools::PictureBytes(size.width, size.height));
    std::memcpy(picture.pixels.data(), photo.data, picture.pixels.size());
    std::string error;
    return tools::WritePicture(file, std::move(picture), true, &error);
}

/// The tool's road in this process. False without a portrait.
bool MakePortrait(tools::Host& host, const std::string& from, const std::string& to, Least& decode, Least& session,
                  Least& encode) {
    tools::Picture photo, portrait;
    tools::PhotoReport report;
    bool good = true;
    decode.Take(SecondsOf([&] { good = tools::ReadPicture(from, &photo, &report.error); }));
    if (!good) return false;
    session.Take(SecondsOf([&] {
        host.MakePortrait(photo, tools::Options(), &portrait, &report);
        photo = {};
    }));
    if (portrait.pixels.empty()) return false;
    encode.Take(SecondsOf([&] {
        good = tools::WritePicture(to, std::move(portrait), true, &report.error);
        portrait = {};
    }));
    return good;
}

void RunTool(benchmark::State& state, const char* extension) {
    const test::TempFolder folder;
    const std::string photo = folder.Path() / "photo.jpg";
    const std::string output = folder.Path() / (std::string("portrait") + extension);
    if (!WritePhoto(photo, {static_cast<int32>(state.range(0)), static_cast<int32>(state.range(1))})) {
        return state.SkipWithError("no photograph");
    }
    const std::string again = folder.Path() / (std::string("again") + extension);
    const std::vector<std::string> plainProgram{ORVANE_BENCH_PLAIN, photo, output, std::to_string(kPortrait.width),
                                                std::to_string(kPortrait.height)};
    const std::vector<std::string> toolProgram{ORVANE_TOOL, "portrait", photo,     "-o",
                                               output,      "--size",   "480x860", "--force"};
    Least plainDecode, plainScale, plainEncode, portraitEncode, decode, session, encode, plainWhole, toolWhole, start,
        opened;
    tools::Host host;
    bool good = host.Status() == 0;
    for (auto _ : state) {
        PlainTimes plain;
        good = good && ScalePlainly(photo, output, kPortrait, &plain);
        plainDecode.Take(plain.decode);
        plainScale.Take(plain.scale);
        plainEncode.Take(plain.encode);
        good = good && MakePortrait(host, photo, output, decode, session, encode);
        good = good && ScalePlainly(output, again, kPortrait, &plain);
        portraitEncode.Take(plain.encode);
        const auto time = [&](Least& least, const std::vector<std::string>& words) {
            const double seconds = ProgramSeconds(words);
            good = good && seconds >= 0;
            least.Take(seconds);
        };
        time(plainWhole, plainProgram);
        time(toolWhole, toolProgram);
        time(start, {ORVANE_TOOL, "version"});
        time(opened, {ORVANE_TOOL, "info"});
    }
    if (!good) return state.SkipWithError("no portrait: is there a face in the photograph?");
    state.counters["a_plain_decode_ms"] = plainDecode.Milliseconds();
    state.counters["b_plain_scale_ms"] = plainScale.Milliseconds();
    state.counters["c_plain_encode_ms"] = plainEncode.Milliseconds();
    state.counters["d_decode_ms"] = decode.Milliseconds();
    state.counters["e_session_ms"] = session.Milliseconds();
    state.counters["f_encode_ms"] = encode.Milliseconds();
    state.counters["g_start_ms"] = start.Milliseconds();
    state.counters["h_open_ms"] = opened.Milliseconds() - start.Milliseconds();
    state.counters["i_plain_program_ms"] = plainWhole.Milliseconds();
    state.counters["j_program_ms"] = toolWhole.Milliseconds();
    // Of the program's time, what the picture library would not take to decode the photograph and encode the portrait.
    const double codec = plainDecode.Milliseconds() + portraitEncode.Milliseconds();
    state.counters["k_outside_percent"] = 100 * (1 - codec / toolWhole.Milliseconds());
}

void ToolToPng(benchmark::State& state) { RunTool(state, ".png"); }
void ToolToJpeg(benchmark::State& state) { RunTool(state, ".jpg"); }

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Args({640, 480})->Args({1600, 1200})->Args({4000, 3000})->Iterations(15)->Unit(benchmark::kMillisecond);
}
BENCHMARK(ToolToPng)->Apply(Sizes);
BENCHMARK(ToolToJpeg)->Apply(Sizes);

} // namespace
} // namespace orvane::bench
