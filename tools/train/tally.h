// What the detector made of many pictures, whole and by group, and the tables of it.
#pragma once

#include "tools/train/detection.h"
#include "tools/train/groups.h"

#include <cstdio>
#include <map>
#include <vector>

namespace orvane::train {

/// Counts of one set of pictures. Errors are in per cent of the annotated side and of reported faces alone.
struct Tally {
    int pictures = 0;
    int reported = 0;
    int finer = 0; // of the reported ones, by the finer pass
    int right = 0;
    std::vector<double> centreErrors;
    std::vector<double> sizeErrors;

    void AddPortrait(const Outcome& outcome, const FaceSquare& truth, const SquareMapping& mapping);
    void AddFaceFree(const Outcome& outcome);
    double ReportedPerCent() const;
    double RightPerCent() const;
    /// How many points the share of faces reported, or at the right place, lies below that of the whole; the larger.
    double PointsBehind(const Tally& whole) const;
};

/// All pictures of a kind and their groups.
struct TallyTable {
    Tally all;
    std::map<Group, Tally> groups;
    std::vector<double> milliseconds;
    bool ofFaces = true; // not of face-free pictures

    void AddPortrait(const Outcome& outcome, const FaceSquare& truth, const SquareMapping& mapping,
                     const std::vector<Group>& of);
    void AddFaceFree(const Outcome& outcome, const std::vector<Group>& of);
};

inline constexpr double kPointsApart = 2.0; // groups further from the whole are named

/// The groups of at least 20 pictures in which the share of faces reported, or at the right place, lies more
/// than so many points below the whole, as "group (share)".
std::vector<std::string> GroupsBelow(const TallyTable& portraits, double points = kPointsApart);

/// The groups of at least 20 pictures in which the share of false faces lies more than 2 points above the whole.
std::vector<std::string> GroupsAbove(const TallyTable& faceFree);

void PrintPortraits(std::FILE* out, const char* title, const TallyTable& portraits);
void PrintFaceFree(std::FILE* out, const char* title, const TallyTable& faceFree);

/// The same figures as comma-separated lines; `set` names the pictures in the first column. `low` and `high` are the
/// ends of the interval of faces at the right place, of false faces where there is none.
void WriteTallyHead(std::FILE* out);
void WriteTally(std::FILE* out, const char* set, const TallyTable& table);

} // namespace orvane::train
