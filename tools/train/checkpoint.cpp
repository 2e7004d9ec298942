// The table is written last: a stop in between leaves an older table, and the stages behind it are dropped.
#include "tools/train/checkpoint.h"

#include "tools/train/table.h"

#include <filesystem>

namespace orvane::train {
namespace {

std::vector<uint8> BytesOf(const std::string& text) { return {text.begin(), text.end()}; }

} // namespace

bool SaveCheckpoint(const std::string& folder, const std::string& fingerprint, const Cascade& cascade,
                    const std::vector<StageReport>& reports) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::string table =
        "stage,stumps,hit_rate,false_alarms,faces,faces_reached,negatives,from_crops,pictures,seconds\n";
    for (const StageReport& r : reports) {
        char line[256];
        std::snprintf(line, sizeof line, "%d,%d,%.4f,%.4f,%zu,%.4f,%zu,%zu,%zu,%.0f\n", r.stage, r.stumps, r.hitRate,
                      r.falseAlarms, r.faces, r.facesReached, r.negatives, r.fromCrops, r.pictures, r.seconds);
        table += line;
    }
    return WriteFile(folder + "/settings.txt", BytesOf(fingerprint)) &&
           WriteFile(folder + "/stages.dat", ToFile(cascade)) && WriteFile(folder + "/stages.csv", BytesOf(table));
}

std::string LoadCheckpoint(const std::string& folder, const std::string& fingerprint, Cascade& cascade,
                           std::vector<StageReport>& reports) {
    std::vector<uint8> settings;
    if (!ReadFile(folder + "/settings.txt", settings)) return {};
    if (std::string(settings.begin(), settings.end()) != fingerprint) {
        return folder + " belongs to a training with other settings or data";
    }
    std::vector<uint8> bytes;
    Cascade read;
    Table table;
    if (!ReadFile(folder + "/stages.dat", bytes) || !table.Read(folder + "/stages.csv")) return {};
    if (!FromFile(bytes, read) || read.stages.size() < table.Rows()) return folder + " holds a damaged checkpoint";
    read.stages.resize(table.Rows());
    reports.clear();
    for (std::size_t i = 0; i < table.Rows(); ++i) {
        StageReport r;
        r.stage = static_cast<int>(table.Number(i, "stage"));
        r.stumps = static_cast<int>(table.Number(i, "stumps"));
        r.hitRate = table.Number(i, "hit_rate");
        r.falseAlarms = table.Number(i, "false_alarms");
        r.faces = static_cast<std::size_t>(table.Number(i, "faces"));
        r.facesReached = table.Number(i, "faces_reached");
        r.negatives = static_cast<std::size_t>(table.Number(i, "negatives"));
        r.fromCrops = static_cast<std::size_t>(table.Number(i, "from_crops"));
        r.pictures = static_cast<std::size_t>(table.Number(i, "pictures"));
        r.seconds = table.Number(i, "seconds");
        reports.push_back(r);
    }
    cascade = std::move(read);
    return {};
}

} // namespace orvane::train
