#include "detect/candidates.h"

#include "detect/classifier_file.h"
#include "image/session_images.h"
#include "primitives/trunc.h"

#include <algorithm>
#include <cmath>

namespace orvane {

FaceRecord g_faceRecord;
int32 g_minGroupMembers = 3;
float g_groupRadius = 40.0F;
float g_groupSizeRatio = 2.5F;

namespace {

/// Exact for all places in a picture, and no overflow for any others.
double SquaredDistance(const Candidate& candidate, int32 x, int32 y) {
    const double dx = static_cast<double>(candidate.x) - x;
    const double dy = static_cast<double>(candidate.y) - y;
    return dx * dx + dy * dy;
}

bool Matches(const Candidate& candidate, const Candidate& member, double squaredRadius) {
    return SquaredDistance(candidate, member.x, member.y) <= squaredRadius &&
           candidate.size <= static_cast<double>(member.size) * g_groupSizeRatio;
}

/// Column or row of the cell that a coordinate lies in.
int32 CellOf(double coordinate) {
    constexpr double kCellSide = 64.0; // more than a radius, so that few cells are near a candidate
    return static_cast<int32>(std::floor(coordinate / kCellSide));
}

/// Whether any candidate within the bounds could match.
bool MayMatch(const Candidate& candidate, const CandidateBounds& bounds, double squaredRadius) {
    const int32 nearestX = std::clamp(candidate.x, bounds.minX, bounds.maxX);
    const int32 nearestY = std::clamp(candidate.y, bounds.minY, bounds.maxY);
    return SquaredDistance(candidate, nearestX, nearestY) <= squaredRadius &&
           candidate.size <= static_cast<double>(bounds.maxSize) * g_groupSizeRatio;
}

bool AnyMemberMatches(const Candidate& candidate, const CandidateGroup& group, double radius) {
    const double squaredRadius = radius * radius;
    const auto matches = [&](const Candidate& member) { return Matches(candidate, member, squaredRadius); };
    if (!MayMatch(candidate, group.bounds, squaredRadius)) return false;
    if (matches(group.members.back())) return true; // hits come in runs
    const int32 firstColumn = CellOf(std::max<double>(group.bounds.minX, candidate.x - radius));
    const int32 lastColumn = CellOf(std::min<double>(group.bounds.maxX, candidate.x + radius));
    const int32 firstRow = CellOf(std::max<double>(group.bounds.minY, candidate.y - radius));
    const int32 lastRow = CellOf(std::min<double>(group.bounds.maxY, candidate.y + radius));
    for (int32 row = firstRow; row <= lastRow; ++row) {
        const auto end = group.cells.upper_bound({row, lastColumn});
        for (auto at = group.cells.lower_bound({row, firstColumn}); at != end; ++at) {
            const CandidateCell& cell = at->second;
            if (MayMatch(candidate, cell.bounds, squaredRadius) &&
                std::any_of(cell.members.rbegin(), cell.members.rend(), matches)) {
                return true;
            }
        }
    }
    return false;
}

void Append(const Candidate& candidate, std::vector<Candidate>& members, CandidateBounds& bounds) {
    const auto [x, y, size] = candidate;
    if (members.empty()) bounds = {x, x, y, y, size};
    members.push_back(candidate);
    bounds = {std::min(bounds.minX, x), std::max(bounds.maxX, x), std::min(bounds.minY, y), std::max(bounds.maxY, y),
              std::max(bounds.maxSize, size)};
}

void Append(const Candidate& candidate, CandidateGroup& group) {
    Append(candidate, group.members, group.bounds);
    CandidateCell& cell = group.cells[{CellOf(candidate.y), CellOf(candidate.x)}];
    Append(candidate, cell.members, cell.bounds);
}

FaceRecord RecordOf(const Candidate& face) {
    const double half = face.size * 0.5;
    const int32 left = TruncToInt32(face.x - half);
    const int32 bottom = TruncToInt32(face.y - half);
    return {TruncToInt32(left + half + 0.5), TruncToInt32(bottom + half + 0.5), face.size, face.size};
}

} // namespace

void CandidateList::Place(const Candidate& candidate) {
    const double radius = std::fabs(static_cast<double>(g_groupRadius));
    for (CandidateGroup& group : groups) {
        if (AnyMemberMatches(candidate, group, radius)) {
            Append(candidate, group);
            return;
        }
    }
    Append(candidate, groups.emplace_back());
}

Candidate CandidateOfWindow(int32 x, int32 y, int32 windowW, float scale) {
    const double half = windowW * 0.5;
    return {TruncToInt32((x + half) * scale), TruncToInt32((y + half) * scale),
            TruncToInt32(static_cast<double>(scale) * windowW)};
}

Candidate MeanOf(const std::vector<Candidate>& members) {
    int64 x = 0, y = 0, size = 0;
    for (const Candidate& m : members) {
        x += m.x;
        y += m.y;
        size += m.size;
    }
    const auto n = static_cast<int64>(members.size());
    return {static_cast<int32>(x / n), static_cast<int32>(y / n), static_cast<int32>(size / n)};
}

void HarvestMask(const ImageBuffer& mask, int32 windowW, int32 /*windowH*/, float scale, CandidateList& list) {
    if (mask.data == nullptr) return;
    for (int32 y = 0; y < mask.height; ++y) {
        const uint8* row = RowAt(mask.data, mask.Step(), y);
        for (int32 x = 0; x < mask.width; ++x) {
            if (row[x] != 0) list.Place(CandidateOfWindow(x, y, windowW, scale));
        }
    }
}

CandidateList MergeGroups(const CandidateList& list) {
    CandidateList merged;
    for (const auto& group : list.groups) {
        if (static_cast<int64>(group.members.size()) >= g_minGroupMembers) merged.Place(MeanOf(group.members));
    }
    return merged;
}

void GroupCandidates(const CandidateList& list, FaceRecord* record, int32* found) {
    const CandidateList merged = MergeGroups(list);
    // The last group is the face: later scales and higher rows of memory win, by design.
    *found = static_cast<int32>(merged.groups.size());
    if (*found > 0) *record = RecordOf(MeanOf(merged.groups.back().members));
}

int32 GetFaceRect(int32* x, int32* y, int32* w, int32* h) {
    const FaceRecord& face = g_faceRecord;
    *x = TruncToInt32(face.centreX - face.faceWidth * 0.5);
    const int32 bottom = TruncToInt32(face.centreY - face.faceHeight * 0.5);
    const bool hasSize = face.faceWidth != 0 && face.faceHeight != 0;
    *y = hasSize ? TruncToInt32(static_cast<double>(g_sourceImage.height) - bottom - face.faceHeight) : bottom;
    *w = face.faceWidth;
    *h = face.faceHeight;
    return kSuccess;
}

int32 SetFaceRect(int32 x, int32 y, int32 w, int32 h) {
    g_faceRecord.faceWidth = w;
    g_faceRecord.faceHeight = h;
    g_faceRecord.centreX = TruncToInt32(w * 0.5 + x);
    g_faceRecord.centreY = TruncToInt32(static_cast<double>(g_sourceImage.height) - TruncToInt32(h * 0.5 + y));
    return g_classifier.windowWidth > 0 && g_classifier.windowHeight > 0 ? kSuccess : kBadCall;
}

} // namespace orvane
