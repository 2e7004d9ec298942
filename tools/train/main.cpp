// orvane-train: makes the detector's classifier file out of face crops and face-free pictures, and judges it.
#include "primitives/dispatch.h"
#include "tools/train/evaluate.h"
#include "tools/train/trainer.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <thread>

namespace orvane::train {
namespace {

constexpr const char* kUsage =
    "usage: orvane-train train --data FOLDER --out FILE [--work FOLDER] [option...]\n"
    "       orvane-train evaluate --data FOLDER --classifier FILE [option...]\n"
    "\n"
    "train: learns a cascade from positives.csv, positives.bin, negatives.csv and negatives/ of FOLDER\n"
    "  --work FOLDER        keep a checkpoint a stage, and go on behind the last one\n"
    "  --classes A,B,C      licence classes that may be used (all)\n"
    "  --without NAME,...   sources of face-free pictures that are left out\n"
    "  --drawn N            face-free pictures drawn out of nothing beside them, 1000\n"
    "  --seed N             same seed and data, same file (1)\n"
    "  --threads N          changes the time, never the result (the processor's)\n"
    "  --stages N           at most, 36          --hit-rate R         of each stage, 0.997\n"
    "  --first-stumps N     of the first stage, twice as many of the second and so on, 6\n"
    "  --max-stumps N       a stage, 220  --false-alarms R   of each stage, 0.4\n"
    "  --faces N            windows a stage, 12000           --negatives N  windows a stage, 12000\n"
    "  --least-negatives N  end when a harvest brings fewer out of pictures, 200\n"
    "  --passes N           over all pictures for one harvest, four to a whole scan, 50\n"
    "  --late-hit-rate R    the same from the pool stage on, 0.992\n"
    "  --last-hit-rate R    of the last stage alone; 1: as the others, 0.975\n"
    "  --pair-stages N      first stages whose features have two rectangles alone, 2\n"
    "  --prune-stages N     early stages that are made stricter in the end, 20\n"
    "  --prune-keep N       of the twenty windows of a held face that pass all stages, so many still do, 6\n"
    "  --prune-lose R       of the held faces keep fewer, 0.02\n"
    "  --source-slack R     by so much less of any one source of faces, 0.04\n"
    "  --pool-stage N       from this stage on, choose among all windows of all passes, 18\n"
    "  --refused N          of these that are refused already, for boosting against, 20000\n"
    "  --per-picture N      windows of one picture and pass, 24\n"
    "  --crop-share R       share of the negatives out of face crops, 0.2\n"
    "  --features N         pool of a stage, 8000            --candidates N  looked at for a stump, 1000\n"
    "  --balance R          1: sources in their proportions, 0: all alike, 0.2\n"
    "  --favour NAME=R,...  faces of this source R times as often\n"
    "  --most NAME=N,...    at most N crops of this source\n"
    "  --window N           side of the window, 24           --framing R  window over face box, 0.85\n"
    "  --shift R --scale R --roll DEG  how far faces stray in training, 0.06 0.08 9 (roll: the deviation)\n"
    "  --yaw R --relit R --covered R   how far they are turned, how many are in hard light and wear something,\n"
    "                       0.036 0.105 0.075\n"
    "\n"
    "evaluate: runs the detector over portraits.csv, portraits/, nofaces.csv and nofaces/ of FOLDER\n"
    "  --quick              the detector's quick mode\n"
    "  --misses TABLE       write every miss, misplaced and false face there\n"
    "  --most-behind N      fail when a group of 20 portraits or more lies more points below the whole\n"
    "  --losses             tell at which step of the detector faces are lost, and the rectangles for a window;\n"
    "                       takes more time a picture\n"
    "  --sheets FOLDER      write contact sheets there: misses-N.png, false-N.png\n"
    "  --table TABLE        write the figures of all groups there, comma-separated\n"
    "  --box-scale R        annotated side over the detector's, 1.1765\n"
    "  --box-down R         annotated centre below the detector's, in the detector's side, 0\n";

/// Options as `--name value`; each is taken by the setting of its name.
class Arguments {
public:
    using Setting = std::function<void(const char* value)>;

    void Add(const char* name, std::string& into) {
        settings_.push_back({name, [&into](const char* v) { into = v; }});
    }
    void Add(const char* name, double& into) {
        settings_.push_back({name, [this, &into](const char* v) { into = Number(v); }});
    }
    template <typename Integer>
    void AddCount(const char* name, Integer& into) {
        settings_.push_back({name, [this, &into](const char* v) {
                                 const double n = Number(v);
                                 good_ = good_ && n >= 0.0 && n < 1e9;
                                 into = good_ ? static_cast<Integer>(n) : Integer{};
                             }});
    }
    void AddFlag(const char* name, bool& into) { flags_.push_back({name, &into}); }

    bool Parse(int count, char** values) {
        for (int i = 0; i < count; ++i) {
            if (!Take(values[i], i + 1 < count ? values[i + 1] : nullptr, i)) {
                std::fprintf(stderr, "orvane-train: cannot make use of %s\n", values[i]);
                return false;
            }
        }
        return true;
    }

private:
    bool Take(const char* name, const char* value, int& i) {
        for (const auto& [flag, into] : flags_) {
            if (std::strcmp(flag, name) == 0) return *into = true;
        }
        for (const auto& [setting, take] : settings_) {
            if (std::strcmp(setting, name) != 0) continue;
            if (value == nullptr) return false;
            take(value);
            ++i;
            return good_;
        }
        return false;
    }
    double Number(const char* text) {
        char* end = nullptr;
        const double n = std::strtod(text, &end);
        good_ = good_ && end != text && *end == '\0';
        return n;
    }

    std::vector<std::pair<const char*, Setting>> settings_;
    std::vector<std::pair<const char*, bool*>> flags_;
    bool good_ = true;
};

bool IsSensible(const TrainOptions& o) {
    return o.stages >= 1 && o.maxStumps >= 1 && o.firstStumps >= 1 && o.hitRate > 0.0 && o.hitRate <= 1.0 &&
           o.lateHitRate > 0.0 && o.lateHitRate <= 1.0 && o.lastHitRate > 0.0 && o.falseAlarms > 0.0 &&
           o.falseAlarms < 1.0 && o.features >= 1 && o.candidates >= 1 && o.faces >= 100 && o.harvest.wanted >= 100 &&
           o.harvest.perPicture >= 1 && o.harvest.threads >= 1 && o.windowSize.width >= 12 &&
           o.windowSize.width <= 48 && o.framing.windowToBox >= 0.5 && o.framing.windowToBox <= 1.5 &&
           o.prune.stages >= 0 && o.prune.keep >= 1 && o.prune.lose >= 0.0 && o.prune.lose < 0.5 &&
           o.leastNegatives >= 1 && o.harvest.poolStage >= 1;
}

int RunTrain(int count, char** values) {
    TrainOptions o;
    o.harvest.threads = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    Arguments arguments;
    arguments.Add("--data", o.data);
    arguments.Add("--out", o.out);
    arguments.Add("--work", o.work);
    arguments.Add("--classes", o.classes);
    arguments.Add("--without", o.without);
    arguments.AddCount("--drawn", o.drawn);
    arguments.AddCount("--seed", o.seed);
    arguments.AddCount("--threads", o.harvest.threads);
    arguments.AddCount("--stages", o.stages);
    arguments.AddCount("--max-stumps", o.maxStumps);
    arguments.AddCount("--first-stumps", o.firstStumps);
    arguments.Add("--hit-rate", o.hitRate);
    arguments.Add("--late-hit-rate", o.lateHitRate);
    arguments.Add("--last-hit-rate", o.lastHitRate);
    arguments.AddCount("--pair-stages", o.pairStages);
    arguments.AddCount("--prune-stages", o.prune.stages);
    arguments.AddCount("--prune-keep", o.prune.keep);
    arguments.Add("--prune-lose", o.prune.lose);
    arguments.Add("--source-slack", o.sourceSlack);
    arguments.Add("--false-alarms", o.falseAlarms);
    arguments.AddCount("--faces", o.faces);
    arguments.AddCount("--negatives", o.harvest.wanted);
    arguments.AddCount("--least-negatives", o.leastNegatives);
    arguments.AddCount("--passes", o.harvest.passes);
    arguments.AddCount("--pool-stage", o.harvest.poolStage);
    arguments.AddCount("--refused", o.harvest.refused);
    arguments.AddCount("--per-picture", o.harvest.perPicture);
    arguments.Add("--crop-share", o.harvest.cropShare);
    arguments.AddCount("--features", o.features);
    arguments.AddCount("--candidates", o.candidates);
    arguments.Add("--balance", o.balance);
    arguments.Add("--favour", o.favour);
    arguments.Add("--most", o.most);
    arguments.AddCount("--window", o.windowSize.width);
    arguments.Add("--framing", o.framing.windowToBox);
    arguments.Add("--shift", o.framing.shift);
    arguments.Add("--scale", o.framing.scale);
    arguments.Add("--roll", o.framing.roll);
    arguments.Add("--yaw", o.framing.yaw);
    arguments.Add("--relit", o.framing.relit);
    arguments.Add("--covered", o.framing.covered);
    if (!arguments.Parse(count, values)) return 1;
    o.windowSize.height = o.windowSize.width;
    CropChoice choice{o.classes, o.balance, {}, {}};
    const bool areNumbers = ReadSourceNumbers(o.favour, choice.favour) && ReadSourceNumbers(o.most, choice.most);
    if (o.data.empty() || o.out.empty() || !areNumbers || !IsSensible(o)) {
        std::fputs(kUsage, stderr);
        return 1;
    }

    TrainData data;
    CropSet crops = ReadCrops(o.data, choice);
    data.pictures = ReadPictures(o.data, o.classes, o.without, o.harvest.threads);
    for (const std::string& error : {crops.error, data.pictures.error}) {
        if (error.empty()) continue;
        std::fprintf(stderr, "orvane-train: %s\n", error.c_str());
        return 1;
    }
    data.crops = std::move(crops.crops);
    AddDrawnPictures(data.pictures, o.drawn, o.seed, o.harvest.threads);
    return Train(o, data, stdout);
}

int RunEvaluate(int count, char** values) {
    EvaluateOptions o;
    Arguments arguments;
    arguments.Add("--data", o.data);
    arguments.Add("--classifier", o.classifier);
    arguments.Add("--misses", o.misses);
    arguments.Add("--table", o.table);
    arguments.Add("--sheets", o.sheets);
    arguments.AddFlag("--losses", o.losses);
    arguments.AddFlag("--quick", o.quick);
    arguments.Add("--most-behind", o.mostBehind);
    arguments.Add("--box-scale", o.mapping.boxToWindow);
    arguments.Add("--box-down", o.mapping.down);
    if (!arguments.Parse(count, values)) return 1;
    if (o.data.empty() || o.classifier.empty()) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    return Evaluate(o, stdout);
}

} // namespace
} // namespace orvane::train

int main(int argc, char** argv) {
    if (orvane::SelectPrimitiveColumn() != 0) return 1;
    if (argc >= 2 && std::strcmp(argv[1], "train") == 0) return orvane::train::RunTrain(argc - 2, argv + 2);
    if (argc >= 2 && std::strcmp(argv[1], "evaluate") == 0) return orvane::train::RunEvaluate(argc - 2, argv + 2);
    std::fputs(orvane::train::kUsage, argc >= 2 && std::strcmp(argv[1], "--help") == 0 ? stdout : stderr);
    return argc >= 2 && std::strcmp(argv[1], "--help") == 0 ? 0 : 1;
}
