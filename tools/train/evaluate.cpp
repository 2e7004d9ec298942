// The detector's state is module-wide, so pictures are judged one after the other.
#include "tools/train/evaluate.h"

#include "detect/candidates.h"
#include "detect/cascade_detector.h"
#include "detect/classifier_file.h"
#include "image/session_images.h"
#include "tools/support/picture_io.h"
#include "tools/train/table.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <map>

namespace orvane::train {
namespace {

constexpr double kRightOverlap = 0.5;

struct Outcome {
    int status = 0;
    double milliseconds = 0.0;
    FaceSquare square;
};

struct Group {
    int pictures = 0;
    int reported = 0;
    int right = 0;
    std::vector<double> centreErrors; // per cent of the face's side, reported faces
    std::vector<double> sizeErrors;
};

bool UseClassifier(const std::string& file, std::string& error) {
    const std::filesystem::path path = std::filesystem::absolute(file);
    g_moduleFolder = path.parent_path().native();
    g_detectorParams = std::make_unique<DetectorParams>();
    if (ReadClassifierFile(path.filename().native(), g_classifier) != 0) {
        error = "cannot read the classifier " + file;
        return false;
    }
    if (PrepareClassifier(1, 0.0001f, g_classifier) != 0) {
        error = "the classifier is damaged: " + file;
        return false;
    }
    return true;
}

bool Detect(const std::string& file, bool quick, Outcome& outcome, std::string& error) {
    tools::Picture picture;
    if (!tools::ReadPicture(file, &picture, &error)) return false;
    if (!g_sourceImage.Create(picture.width, picture.height, 3, kDepth8u, 0)) {
        error = "no memory";
        return false;
    }
    for (int32 y = 0; y < picture.height; ++y) {
        std::copy_n(picture.pixels.data() + static_cast<std::ptrdiff_t>(y) * picture.step, 3 * picture.width,
                    RowAt(g_sourceImage.data, g_sourceImage.Step(), y));
    }
    const auto start = std::chrono::steady_clock::now();
    outcome.status = RunDetection(quick);
    outcome.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    if (outcome.status < 0) {
        error = "the detector answers " + std::to_string(outcome.status);
        return false;
    }
    if (outcome.status == 0) {
        int32 x = 0;
        int32 y = 0;
        int32 w = 0;
        int32 h = 0;
        GetFaceRect(&x, &y, &w, &h);
        outcome.square = {static_cast<double>(x), static_cast<double>(y), static_cast<double>(w)};
    }
    return true;
}

double Quantile(std::vector<double> values, double share) {
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, static_cast<std::size_t>(share * static_cast<double>(values.size())))];
}

double PerCent(int part, int whole) { return whole == 0 ? 0.0 : 100.0 * part / whole; }

void Judge(const Outcome& outcome, const FaceSquare& truth, const SquareMapping& mapping, Group& group) {
    ++group.pictures;
    if (outcome.status != 0) return;
    ++group.reported;
    const FaceSquare mapped = Map(outcome.square, mapping);
    if (OverlapOf(mapped, truth) >= kRightOverlap) ++group.right;
    const double dx = mapped.x + mapped.side / 2 - truth.x - truth.side / 2;
    const double dy = mapped.y + mapped.side / 2 - truth.y - truth.side / 2;
    group.centreErrors.push_back(100.0 * std::hypot(dx, dy) / truth.side);
    group.sizeErrors.push_back(100.0 * std::fabs(mapped.side - truth.side) / truth.side);
}

void PrintGroup(std::FILE* out, const std::string& name, const Group& g) {
    std::fprintf(out, "%-22s %8d %9.1f %9.1f %10.1f %8.1f %9.1f %8.1f\n", name.c_str(), g.pictures,
                 PerCent(g.reported, g.pictures), PerCent(g.right, g.pictures), Quantile(g.centreErrors, 0.5),
                 Quantile(g.centreErrors, 0.95), Quantile(g.sizeErrors, 0.5), Quantile(g.sizeErrors, 0.95));
}

void PrintTimes(std::FILE* out, const char* what, const std::vector<double>& times) {
    double sum = 0.0;
    for (const double t : times) sum += t;
    std::fprintf(out, "time per %s: mean %.1f ms, median %.1f, 95th percentile %.1f\n", what,
                 times.empty() ? 0.0 : sum / static_cast<double>(times.size()), Quantile(times, 0.5),
                 Quantile(times, 0.95));
}

/// Both picture sets with what they have in common: where failures go.
class Evaluation {
public:
    Evaluation(const EvaluateOptions& options, std::FILE* out) : options_(options), out_(out) {}

    bool Run() {
        std::string error;
        if (!UseClassifier(options_.classifier, error)) return Fail(error);
        if (!options_.misses.empty()) {
            misses_ = std::fopen(options_.misses.c_str(), "w");
            if (misses_ == nullptr) return Fail("cannot write " + options_.misses);
            std::fprintf(misses_, "what,file,x,y,side,true_x,true_y,true_side\n");
        }
        const bool done = Portraits() && FaceFree();
        if (misses_ != nullptr) std::fclose(misses_);
        return done;
    }

private:
    bool Fail(const std::string& why) {
        std::fprintf(out_, "%s\n", why.c_str());
        return false;
    }

    void Note(const char* what, const std::string& file, const FaceSquare& found, const FaceSquare& truth) {
        if (misses_ == nullptr) return;
        std::fprintf(misses_, "%s,%s,%.0f,%.0f,%.0f,%.0f,%.0f,%.0f\n", what, file.c_str(), found.x, found.y, found.side,
                     truth.x, truth.y, truth.side);
    }

    bool Portraits() {
        Table table;
        if (!table.Read(options_.data + "/portraits.csv")) return Fail("cannot read portraits.csv");
        Group all;
        std::map<std::string, Group> groups;
        std::vector<double> times;
        for (std::size_t i = 0; i < table.Rows(); ++i) {
            Outcome outcome;
            std::string error;
            const std::string file = table.Text(i, "file");
            if (!Detect(options_.data + "/portraits/" + file, options_.quick, outcome, error))
                return Fail(file + ": " + error);
            times.push_back(outcome.milliseconds);
            const FaceSquare truth{table.Number(i, "x"), table.Number(i, "y"), table.Number(i, "w")};
            const int rightBefore = all.right;
            Judge(outcome, truth, options_.mapping, all);
            for (const char* column : {"source", "background", "class"}) {
                Judge(outcome, truth, options_.mapping, groups[column + (": " + table.Text(i, column))]);
            }
            if (outcome.status != 0) {
                Note("missed", file, outcome.square, truth);
            } else if (all.right == rightBefore) {
                Note("misplaced", file, Map(outcome.square, options_.mapping), truth);
            }
        }
        std::fprintf(out_, "%-22s %8s %9s %9s %19s %18s\n", options_.quick ? "portraits, quick" : "portraits",
                     "pictures", "reported", "right", "centre error %", "size error %");
        std::fprintf(out_, "%-22s %8s %9s %9s %10s %8s %9s %8s\n", "", "", "%", "place %", "median", "95th", "median",
                     "95th");
        PrintGroup(out_, "all", all);
        for (const auto& [name, group] : groups) PrintGroup(out_, name, group);
        PrintTimes(out_, "portrait", times);
        return true;
    }

    bool FaceFree() {
        Table table;
        if (!table.Read(options_.data + "/nofaces.csv")) return Fail("cannot read nofaces.csv");
        Group all;
        std::map<std::string, Group> groups;
        std::vector<double> times;
        for (std::size_t i = 0; i < table.Rows(); ++i) {
            Outcome outcome;
            std::string error;
            const std::string file = table.Text(i, "file");
            if (!Detect(options_.data + "/nofaces/" + file, options_.quick, outcome, error))
                return Fail(file + ": " + error);
            times.push_back(outcome.milliseconds);
            for (Group* group : {&all, &groups["source: " + table.Text(i, "source")]}) {
                ++group->pictures;
                if (outcome.status == 0) ++group->reported;
            }
            if (outcome.status == 0) Note("false", file, Map(outcome.square, options_.mapping), {});
        }
        std::fprintf(out_, "\n%-22s %8s %9s\n", "face-free pictures", "pictures", "false %");
        std::fprintf(out_, "%-22s %8d %9.1f\n", "all", all.pictures, PerCent(all.reported, all.pictures));
        for (const auto& [name, group] : groups) {
            std::fprintf(out_, "%-22s %8d %9.1f\n", name.c_str(), group.pictures,
                         PerCent(group.reported, group.pictures));
        }
        PrintTimes(out_, "face-free picture", times);
        return true;
    }

    const EvaluateOptions& options_;
    std::FILE* out_;
    std::FILE* misses_ = nullptr;
};

} // namespace

FaceSquare Map(const FaceSquare& detected, const SquareMapping& mapping) {
    const double side = detected.side * mapping.boxToWindow;
    const double centreX = detected.x + detected.side / 2;
    const double centreY = detected.y + detected.side / 2 + mapping.down * detected.side;
    return {centreX - side / 2, centreY - side / 2, side};
}

double OverlapOf(const FaceSquare& a, const FaceSquare& b) {
    const double w = std::min(a.x + a.side, b.x + b.side) - std::max(a.x, b.x);
    const double h = std::min(a.y + a.side, b.y + b.side) - std::max(a.y, b.y);
    if (w <= 0.0 || h <= 0.0) return 0.0;
    return w * h / (a.side * a.side + b.side * b.side - w * h);
}

int Evaluate(const EvaluateOptions& options, std::FILE* out) { return Evaluation(options, out).Run() ? 0 : 1; }

} // namespace orvane::train
