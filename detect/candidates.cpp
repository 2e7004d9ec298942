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

bool Matches(const Candidate& candidate, const Candidate& member, double squaredRadius) {
    const int64 dx = int64{candidate.x} - member.x;
    const int64 dy = int64{candidate.y} - member.y;
    return static_cast<double>(dx * dx + dy * dy) <= squaredRadius &&
           candidate.size <= static_cast<double>(member.size) * g_groupSizeRatio;
}

/// Whether any member could match, by the group's bounds alone.
bool MayMatch(const Candidate& candidate, const CandidateGroup& group, double radius) {
    return candidate.x >= group.minX - radius && candidate.x <= group.maxX + radius &&
           candidate.y >= group.minY - radius && candidate.y <= group.maxY + radius &&
           candidate.size <= static_cast<double>(group.maxSize) * g_groupSizeRatio;
}

bool AnyMemberMatches(const Candidate& candidate, const CandidateGroup& group, double squaredRadius) {
    // Which member matches plays no part, and the newest ones are the nearest.
    return std::any_of(group.members.rbegin(), group.members.rend(),
                       [&](const Candidate& member) { return Matches(candidate, member, squaredRadius); });
}

void Append(const Candidate& candidate, CandidateGroup& group) {
    group.members.push_back(candidate);
    group.minX = std::min(group.minX, candidate.x);
    group.maxX = std::max(group.maxX, candidate.x);
    group.minY = std::min(group.minY, candidate.y);
    group.maxY = std::max(group.maxY, candidate.y);
    group.maxSize = std::max(group.maxSize, candidate.size);
}

/// Component-wise mean, each sum divided with truncation.
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
        if (MayMatch(candidate, group, radius) && AnyMemberMatches(candidate, group, radius * radius)) {
            Append(candidate, group);
            return;
        }
    }
    groups.push_back({{candidate}, candidate.x, candidate.x, candidate.y, candidate.y, candidate.size});
}

void HarvestMask(const ImageBuffer& mask, int32 windowW, int32 /*windowH*/, float scale, CandidateList& list) {
    if (mask.data == nullptr) return;
    const double half = windowW * 0.5;
    const int32 size = TruncToInt32(static_cast<double>(scale) * windowW);
    for (int32 y = 0; y < mask.height; ++y) {
        const uint8* row = RowAt(mask.data, mask.Step(), y);
        for (int32 x = 0; x < mask.width; ++x) {
            if (row[x] == 0) continue;
            list.Place({TruncToInt32((x + half) * scale), TruncToInt32((y + half) * scale), size});
        }
    }
}

void GroupCandidates(const CandidateList& list, FaceRecord* record, int32* found) {
    CandidateList merged;
    for (const auto& group : list.groups) {
        if (static_cast<int64>(group.members.size()) >= g_minGroupMembers) merged.Place(MeanOf(group.members));
    }
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
