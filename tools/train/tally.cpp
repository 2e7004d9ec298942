#include "tools/train/tally.h"

#include "tools/train/interval.h"

#include <algorithm>
#include <cmath>

namespace orvane::train {
namespace {

constexpr int kLeastPictures = 20;

double PerCent(int part, int whole) { return whole == 0 ? 0.0 : 100.0 * part / whole; }

double Quantile(std::vector<double> values, double share) {
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, static_cast<std::size_t>(share * static_cast<double>(values.size())))];
}

std::string WithShare(const Group& group, double perCent) {
    char text[32];
    std::snprintf(text, sizeof text, " (%.1f)", perCent);
    return group.name + text;
}

void PrintList(std::FILE* out, const char* head, const std::vector<std::string>& names) {
    std::fprintf(out, "%s: ", head);
    for (std::size_t i = 0; i < names.size(); ++i) std::fprintf(out, "%s%s", i == 0 ? "" : ", ", names[i].c_str());
    std::fprintf(out, "%s\n", names.empty() ? "none" : "");
}

/// "low-high" in per cent.
std::string IntervalText(int part, int whole) {
    const Interval interval = WilsonInterval(part, whole);
    char text[32];
    std::snprintf(text, sizeof text, "%.1f-%.1f", interval.low, interval.high);
    return text;
}

void PrintPortraitLine(std::FILE* out, const std::string& name, const Tally& t) {
    std::fprintf(out, "%-26s %8d %9.1f %9.1f %11s %10.1f %8.1f %9.1f %8.1f\n", name.c_str(), t.pictures,
                 t.ReportedPerCent(), t.RightPerCent(), IntervalText(t.right, t.pictures).c_str(),
                 Quantile(t.centreErrors, 0.5), Quantile(t.centreErrors, 0.95), Quantile(t.sizeErrors, 0.5),
                 Quantile(t.sizeErrors, 0.95));
}

void PrintFaceFreeLine(std::FILE* out, const std::string& name, const Tally& t) {
    std::fprintf(out, "%-26s %8d %9.1f %11s\n", name.c_str(), t.pictures, t.ReportedPerCent(),
                 IntervalText(t.reported, t.pictures).c_str());
}

void PrintTimes(std::FILE* out, const char* what, const std::vector<double>& times) {
    double sum = 0.0;
    for (const double t : times) sum += t;
    std::fprintf(out, "time per %s: mean %.1f ms, median %.1f, 95th percentile %.1f\n", what,
                 times.empty() ? 0.0 : sum / static_cast<double>(times.size()), Quantile(times, 0.5),
                 Quantile(times, 0.95));
}

void PrintPasses(std::FILE* out, const char* what, const Tally& t) {
    std::fprintf(out, "%s of the first pass: %d, of the finer pass: %d\n", what, t.reported - t.finer, t.finer);
}

void WriteLine(std::FILE* out, const char* set, const std::string& name, const Tally& t, int counted) {
    const Interval interval = WilsonInterval(counted, t.pictures);
    std::fprintf(out, "%s,%s,%d,%d,%d,%.2f,%.2f,%.2f,%.2f,%.2f,%.2f\n", set, name.c_str(), t.pictures, t.reported,
                 t.right, Quantile(t.centreErrors, 0.5), Quantile(t.centreErrors, 0.95), Quantile(t.sizeErrors, 0.5),
                 Quantile(t.sizeErrors, 0.95), interval.low, interval.high);
}

} // namespace

void Tally::AddPortrait(const Outcome& outcome, const FaceSquare& truth, const SquareMapping& mapping) {
    ++pictures;
    if (!outcome.HasFace()) return;
    ++reported;
    if (outcome.finer) ++finer;
    if (IsRight(outcome.square, truth, mapping)) ++right;
    const FaceSquare mapped = Map(outcome.square, mapping);
    const double dx = mapped.x + mapped.side / 2 - truth.x - truth.side / 2;
    const double dy = mapped.y + mapped.side / 2 - truth.y - truth.side / 2;
    centreErrors.push_back(100.0 * std::hypot(dx, dy) / truth.side);
    sizeErrors.push_back(100.0 * std::fabs(mapped.side - truth.side) / truth.side);
}

void Tally::AddFaceFree(const Outcome& outcome) {
    ++pictures;
    if (!outcome.HasFace()) return;
    ++reported;
    if (outcome.finer) ++finer;
}

double Tally::ReportedPerCent() const { return PerCent(reported, pictures); }
double Tally::RightPerCent() const { return PerCent(right, pictures); }

double Tally::PointsBehind(const Tally& whole) const {
    return std::max(whole.ReportedPerCent() - ReportedPerCent(), whole.RightPerCent() - RightPerCent());
}

void TallyTable::AddPortrait(const Outcome& outcome, const FaceSquare& truth, const SquareMapping& mapping,
                             const std::vector<Group>& of) {
    all.AddPortrait(outcome, truth, mapping);
    for (const Group& group : of) groups[group].AddPortrait(outcome, truth, mapping);
    milliseconds.push_back(outcome.milliseconds);
}

void TallyTable::AddFaceFree(const Outcome& outcome, const std::vector<Group>& of) {
    ofFaces = false;
    all.AddFaceFree(outcome);
    for (const Group& group : of) groups[group].AddFaceFree(outcome);
    milliseconds.push_back(outcome.milliseconds);
}

std::vector<std::string> GroupsBelow(const TallyTable& portraits, double points) {
    std::vector<std::string> names;
    for (const auto& [group, tally] : portraits.groups) {
        if (tally.pictures < kLeastPictures) continue;
        if (tally.PointsBehind(portraits.all) > points) names.push_back(WithShare(group, tally.RightPerCent()));
    }
    return names;
}

std::vector<std::string> GroupsAbove(const TallyTable& faceFree) {
    std::vector<std::string> names;
    for (const auto& [group, tally] : faceFree.groups) {
        if (tally.pictures < kLeastPictures) continue;
        if (tally.ReportedPerCent() > faceFree.all.ReportedPerCent() + kPointsApart) {
            names.push_back(WithShare(group, tally.ReportedPerCent()));
        }
    }
    return names;
}

void PrintPortraits(std::FILE* out, const char* title, const TallyTable& portraits) {
    std::fprintf(out, "%-26s %8s %9s %9s %11s %19s %18s\n", title, "pictures", "reported", "right", "within",
                 "centre error %", "size error %");
    std::fprintf(out, "%-26s %8s %9s %9s %11s %10s %8s %9s %8s\n", "", "", "%", "place %", "%", "median", "95th",
                 "median", "95th");
    PrintPortraitLine(out, "all", portraits.all);
    for (const auto& [group, tally] : portraits.groups) PrintPortraitLine(out, group.name, tally);
    PrintList(out, "more than 2 points below the whole, of 20 pictures or more (right place %)",
              GroupsBelow(portraits));
    PrintPasses(out, "faces", portraits.all);
    PrintTimes(out, "portrait", portraits.milliseconds);
}

void PrintFaceFree(std::FILE* out, const char* title, const TallyTable& faceFree) {
    std::fprintf(out, "%-26s %8s %9s %11s\n", title, "pictures", "false %", "within %");
    PrintFaceFreeLine(out, "all", faceFree.all);
    for (const auto& [group, tally] : faceFree.groups) PrintFaceFreeLine(out, group.name, tally);
    PrintList(out, "more than 2 points above the whole, of 20 pictures or more (false %)", GroupsAbove(faceFree));
    PrintPasses(out, "false faces", faceFree.all);
    PrintTimes(out, "face-free picture", faceFree.milliseconds);
}

void WriteTallyHead(std::FILE* out) {
    std::fputs("set,group,pictures,reported,right,centre_median,centre_95th,size_median,size_95th,low,high\n", out);
}

void WriteTally(std::FILE* out, const char* set, const TallyTable& table) {
    const auto line = [&](const std::string& name, const Tally& t) {
        WriteLine(out, set, name, t, table.ofFaces ? t.right : t.reported);
    };
    line("all", table.all);
    for (const auto& [group, tally] : table.groups) line(group.name, tally);
}

} // namespace orvane::train
