// From surviving windows to the one face: candidates are gathered into groups in two rounds, and the
// group opened last is the face. No score is kept.
#pragma once

#include "image/image_buffer.h"

#include <map>
#include <utility>
#include <vector>

namespace orvane {

/// The chosen face, in pixels of the picture in g_sourceImage; rows count from the bottom, as in memory.
struct FaceRecord {
    int32 centreX = 0;
    int32 centreY = 0;
    int32 faceWidth = 0; // 0: no face
    int32 faceHeight = 0;
};

extern FaceRecord g_faceRecord;

extern int32 g_minGroupMembers; // members that a first-level group needs
extern float g_groupRadius;     // distance limit of grouping in pixels; every scan sets it by picture width
extern float g_groupSizeRatio;  // size limit of grouping

struct Candidate {
    int32 x; // centre column
    int32 y; // centre row, from the bottom
    int32 size;
};

/// The smallest box around some candidates and the largest size among them, by which most of them are
/// passed over at a glance.
struct CandidateBounds {
    int32 minX, maxX, minY, maxY, maxSize;
};

/// The members of a group in one square of the picture.
struct CandidateCell {
    CandidateBounds bounds;
    std::vector<Candidate> members;
};

/// Candidates that belong together, in the order of their coming, and once more by (row, column) of their
/// cell: however many there are, a new candidate is compared with the near ones alone.
struct CandidateGroup {
    std::vector<Candidate> members;
    CandidateBounds bounds;
    std::map<std::pair<int32, int32>, CandidateCell> cells;
};

/// Groups in the order in which they were opened. They grow as needed: no mask, however dense, can
/// overrun them.
struct CandidateList {
    std::vector<CandidateGroup> groups;

    /// Appends to the first group with a member that matches, or opens a new group. A candidate matches
    /// a member within g_groupRadius that is not more than g_groupSizeRatio times smaller.
    void Place(const Candidate& candidate);
};

/// The candidate of the window at (x, y) of a scaled plane, in pixels of the picture at full size. The window's
/// width serves for its height as well.
Candidate CandidateOfWindow(int32 x, int32 y, int32 windowW, float scale);

/// Component-wise mean of candidates, of which there must be one, each sum divided with truncation.
Candidate MeanOf(const std::vector<Candidate>& members);

/// Places every window whose mask byte is not 0, row by row from row 0.
void HarvestMask(const ImageBuffer& mask, int32 windowW, int32 windowH, float scale, CandidateList& list);

/// The second round: the means of all groups with enough members, placed anew.
CandidateList MergeGroups(const CandidateList& list);

/// Merges the groups and writes the last second-level group to `record`. `*found` receives their number; without any
/// the record stays.
void GroupCandidates(const CandidateList& list, FaceRecord* record, int32* found);

/// g_faceRecord as a rectangle whose y counts down from the top of the picture; (0, 0, 0, 0) without a
/// face. Always 0.
int32 GetFaceRect(int32* x, int32* y, int32* w, int32* h);

/// Sets g_faceRecord from such a rectangle. 0, or -10 when no classifier is loaded; the record is
/// written in any case.
int32 SetFaceRect(int32 x, int32 y, int32 w, int32 h);

} // namespace orvane
