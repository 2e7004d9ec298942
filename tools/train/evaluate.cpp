#include "tools/train/evaluate.h"

#include "detect/classifier_file.h"
#include "tools/support/picture_io.h"
#include "tools/train/detection.h"
#include "tools/train/groups.h"
#include "tools/train/losses.h"
#include "tools/train/sheets.h"
#include "tools/train/table.h"
#include "tools/train/tally.h"
#include "tools/train/work.h"

#include <cmath>
#include <filesystem>
#include <memory>

namespace orvane::train {
namespace {

using FilePtr = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// Both picture sets with what they have in common: where results and failures go.
class Evaluation {
public:
    Evaluation(const EvaluateOptions& options, std::FILE* out)
        : options_(options), out_(out), missSheets_(options.sheets + "/misses"),
          falseSheets_(options.sheets + "/false") {}

    bool Run() {
        std::string error;
        if (!UseClassifier(options_.classifier, error)) return Fail(error);
        if (!g_classifier.plan.usable)
            std::fputs("numbers of the classifier leave the bounds of the scan in one go: step by step takes longer\n",
                       out_);
        if (!Open(options_.misses, misses_) || !Open(options_.table, table_)) return false;
        if (misses_ != nullptr) std::fprintf(misses_.get(), "what,file,x,y,side,true_x,true_y,true_side,lost_at\n");
        return Portraits() && FaceFree() && WriteTable() && WriteSheets() && KeepUp();
    }

private:
    bool Fail(const std::string& why) {
        std::fprintf(out_, "%s\n", why.c_str());
        return false;
    }

    bool Open(const std::string& path, FilePtr& file) {
        if (path.empty()) return true;
        file.reset(std::fopen(path.c_str(), "w"));
        return file != nullptr || Fail("cannot write " + path);
    }

    bool Look(const std::string& folder, const std::string& file, tools::Picture& picture) {
        std::string error;
        return tools::ReadPicture(options_.data + folder + file, &picture, &error) || Fail(file + ": " + error);
    }

    bool Detect(const tools::Picture& picture, const std::string& file, Outcome& outcome) {
        std::string error;
        return train::Detect(picture, options_.quick, outcome, error) || Fail(file + ": " + error);
    }

    /// The detector with an observer set, where losses are asked for.
    bool DetectTraced(const tools::Picture& picture, const std::string& file, ScanObserver& observer,
                      Outcome& outcome) {
        g_scanObserver = options_.losses ? &observer : nullptr;
        const bool done = Detect(picture, file, outcome);
        g_scanObserver = nullptr;
        return done;
    }

    /// @param truth null for a picture without a face
    void Note(const std::string& what, const std::string& lostAt, const std::string& file,
              const tools::Picture& picture, const Outcome& outcome, const FaceSquare* truth) {
        const FaceSquare found = Map(outcome.square, options_.mapping);
        const FaceSquare annotated = truth != nullptr ? *truth : FaceSquare{};
        if (misses_ != nullptr) {
            std::fprintf(misses_.get(), "%s,%s,%.0f,%.0f,%.0f,%.0f,%.0f,%.0f,%s\n", what.c_str(), file.c_str(), found.x,
                         found.y, found.side, annotated.x, annotated.y, annotated.side, lostAt.c_str());
        }
        if (options_.sheets.empty()) return;
        ContactSheets& sheets = truth != nullptr ? missSheets_ : falseSheets_;
        std::string remark = what;
        if (!lostAt.empty()) remark += ": " + lostAt;
        if (outcome.HasFace()) remark += ", " + std::to_string(std::lround(found.side)) + " px";
        if (outcome.HasFace() && outcome.finer) remark += ", finer pass";
        sheets.Add(picture, {{annotated, kAnnotatedColour}, {found, kReportedColour}}, file, remark);
    }

    bool Portraits() {
        Table table;
        if (!table.Read(options_.data + "/portraits.csv")) return Fail("cannot read portraits.csv");
        const Groups groups(table);
        for (std::size_t i = 0; i < table.Rows(); ++i) {
            const std::string file = table.Text(i, "file");
            const FaceSquare truth{table.Number(i, "x"), table.Number(i, "y"), table.Number(i, "w")};
            if (!(truth.side > 0.0)) return Fail(file + ": no face box");
            tools::Picture picture;
            if (!Look("/portraits/", file, picture)) return false;
            Outcome outcome;
            FaceTracer tracer(truth, options_.mapping, picture.height);
            if (!DetectTraced(picture, file, tracer, outcome)) return false;
            const bool right = outcome.HasFace() && IsRight(outcome.square, truth, options_.mapping);
            portraits_.AddPortrait(outcome, truth, options_.mapping, groups.Of(i));
            losses_.Add(tracer.Passes(), right);
            if (right) continue;
            const std::string lostAt = tracer.Passes().empty() ? "" : tracer.Passes().back().LossName();
            Note(outcome.HasFace() ? "misplaced" : "missed", lostAt, file, picture, outcome, &truth);
        }
        PrintPortraits(out_, options_.quick ? "portraits, quick" : "portraits", portraits_);
        if (options_.losses) {
            std::fputs("\n", out_);
            losses_.Print(out_, options_.quick ? "losses by step, quick" : "losses by step");
        }
        return true;
    }

    bool FaceFree() {
        Table table;
        if (!table.Read(options_.data + "/nofaces.csv")) return Fail("cannot read nofaces.csv");
        const Groups groups(table);
        WorkCounter work;
        for (std::size_t i = 0; i < table.Rows(); ++i) {
            const std::string file = table.Text(i, "file");
            tools::Picture picture;
            Outcome outcome;
            if (!Look("/nofaces/", file, picture) || !DetectTraced(picture, file, work, outcome)) return false;
            faceFree_.AddFaceFree(outcome, groups.Of(i));
            if (outcome.HasFace()) Note("false", "", file, picture, outcome, nullptr);
        }
        std::fputs("\n", out_);
        PrintFaceFree(out_, options_.quick ? "face-free, quick" : "face-free pictures", faceFree_);
        if (options_.losses) work.Print(out_);
        return true;
    }

    bool WriteSheets() {
        if (options_.sheets.empty()) return true;
        std::error_code failed;
        std::filesystem::create_directories(options_.sheets, failed);
        std::string error;
        return (missSheets_.Write(error) && falseSheets_.Write(error)) || Fail(error);
    }

    bool KeepUp() {
        if (options_.mostBehind < 0.0) return true;
        std::string names;
        for (const std::string& name : GroupsBelow(portraits_, options_.mostBehind)) {
            names += (names.empty() ? "" : ", ") + name;
        }
        char points[32];
        std::snprintf(points, sizeof points, "%g", options_.mostBehind);
        return names.empty() || Fail(std::string("behind by more than ") + points + " points: " + names);
    }

    bool WriteTable() {
        if (table_ == nullptr) return true;
        WriteTallyHead(table_.get());
        WriteTally(table_.get(), "portraits", portraits_);
        WriteTally(table_.get(), "nofaces", faceFree_);
        return std::fclose(table_.release()) == 0 || Fail("cannot write " + options_.table);
    }

    const EvaluateOptions& options_;
    std::FILE* out_;
    FilePtr misses_{nullptr, std::fclose};
    FilePtr table_{nullptr, std::fclose};
    TallyTable portraits_;
    TallyTable faceFree_;
    LossTable losses_;
    ContactSheets missSheets_;
    ContactSheets falseSheets_;
};

} // namespace

int Evaluate(const EvaluateOptions& options, std::FILE* out) { return Evaluation(options, out).Run() ? 0 : 1; }

} // namespace orvane::train
