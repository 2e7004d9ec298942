#include "tools/orvane/group_listener.h"

#include "image/session_images.h"
#include "primitives/trunc.h"

#include <algorithm>

namespace orvane::tools {
namespace {

/// As the detector makes a rectangle, whose rows count from the top, of a square around a centre.
FaceBox SquareOf(const Candidate& mean) {
    const double half = mean.size * 0.5;
    const int32 left = TruncToInt32(mean.x - half);
    const int32 bottom = TruncToInt32(mean.y - half);
    return {left, g_sourceImage.height - bottom - mean.size, mean.size, mean.size};
}

/// The place, from 1, of the group that took a candidate.
int32 PlaceIn(CandidateList& faces, const Candidate& candidate) {
    std::vector<std::size_t> before;
    for (const CandidateGroup& face : faces.groups) before.push_back(face.members.size());
    faces.Place(candidate);
    std::size_t at = 0;
    while (at < before.size() && faces.groups[at].members.size() == before[at]) ++at;
    return static_cast<int32>(at) + 1;
}

} // namespace

void GroupListener::OnHits(const CandidateList& hits) {
    CandidateList faces;
    for (const CandidateGroup& group : hits.groups) {
        const Candidate mean = MeanOf(group.members);
        const auto count = static_cast<int32>(group.members.size());
        groups_.push_back({SquareOf(mean), count, count >= g_minGroupMembers ? PlaceIn(faces, mean) : 0, false});
    }
    const auto last = static_cast<int32>(faces.groups.size());
    for (FaceGroup& group : groups_) group.chosen = last > 0 && group.face == last;
}

int32 GroupListener::Faces() const {
    int32 faces = 0;
    for (const FaceGroup& group : groups_) faces = std::max(faces, group.face);
    return faces;
}

} // namespace orvane::tools
