#include "tools/train/evaluate.h"

#include "tools/support/picture_io.h"
#include "tools/train/detection.h"
#include "tools/train/groups.h"
#include "tools/train/table.h"
#include "tools/train/tally.h"

#include <memory>

namespace orvane::train {
namespace {

using FilePtr = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// Both picture sets with what they have in common: where results and failures go.
class Evaluation {
public:
    Evaluation(const EvaluateOptions& options, std::FILE* out) : options_(options), out_(out) {}

    bool Run() {
        std::string error;
        if (!UseClassifier(options_.classifier, error)) return Fail(error);
        if (!Open(options_.misses, misses_) || !Open(options_.table, table_)) return false;
        if (misses_ != nullptr) std::fprintf(misses_.get(), "what,file,x,y,side,true_x,true_y,true_side\n");
        return Portraits() && FaceFree() && WriteTable();
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

    bool Look(const std::string& folder, const std::string& file, Outcome& outcome) {
        std::string error;
        tools::Picture picture;
        if (!tools::ReadPicture(options_.data + folder + file, &picture, &error) ||
            !Detect(picture, options_.quick, outcome, error)) {
            return Fail(file + ": " + error);
        }
        return true;
    }

    void Note(const char* what, const std::string& file, const Outcome& outcome, const FaceSquare& truth) {
        if (misses_ == nullptr) return;
        const FaceSquare found = Map(outcome.square, options_.mapping);
        std::fprintf(misses_.get(), "%s,%s,%.0f,%.0f,%.0f,%.0f,%.0f,%.0f\n", what, file.c_str(), found.x, found.y,
                     found.side, truth.x, truth.y, truth.side);
    }

    bool Portraits() {
        Table table;
        if (!table.Read(options_.data + "/portraits.csv")) return Fail("cannot read portraits.csv");
        const Groups groups(table);
        for (std::size_t i = 0; i < table.Rows(); ++i) {
            const std::string file = table.Text(i, "file");
            const FaceSquare truth{table.Number(i, "x"), table.Number(i, "y"), table.Number(i, "w")};
            if (!(truth.side > 0.0)) return Fail(file + ": no face box");
            Outcome outcome;
            if (!Look("/portraits/", file, outcome)) return false;
            portraits_.AddPortrait(outcome, truth, options_.mapping, groups.Of(i));
            if (!outcome.HasFace()) {
                Note("missed", file, outcome, truth);
            } else if (!IsRight(outcome.square, truth, options_.mapping)) {
                Note("misplaced", file, outcome, truth);
            }
        }
        PrintPortraits(out_, options_.quick ? "portraits, quick" : "portraits", portraits_);
        return true;
    }

    bool FaceFree() {
        Table table;
        if (!table.Read(options_.data + "/nofaces.csv")) return Fail("cannot read nofaces.csv");
        const Groups groups(table);
        for (std::size_t i = 0; i < table.Rows(); ++i) {
            const std::string file = table.Text(i, "file");
            Outcome outcome;
            if (!Look("/nofaces/", file, outcome)) return false;
            faceFree_.AddFaceFree(outcome, groups.Of(i));
            if (outcome.HasFace()) Note("false", file, outcome, {});
        }
        std::fputs("\n", out_);
        PrintFaceFree(out_, options_.quick ? "face-free, quick" : "face-free pictures", faceFree_);
        return true;
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
};

} // namespace

int Evaluate(const EvaluateOptions& options, std::FILE* out) { return Evaluation(options, out).Run() ? 0 : 1; }

} // namespace orvane::train
