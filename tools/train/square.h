// Squares around faces: the detector's, the annotated one, and how well they meet.
#pragma once

namespace orvane::train {

/// A square in pixels of a picture, rows counted from the top.
struct FaceSquare {
    double x = 0.0;
    double y = 0.0;
    double side = 0.0;
};

/// The fixed mapping from the detector's square to the annotated one: a side `boxToWindow` times as long, the
/// centre lower by `down` of the detector's side.
struct SquareMapping {
    double boxToWindow = 1.0 / 0.85;
    double down = 0.0;
};

FaceSquare Map(const FaceSquare& detected, const SquareMapping& mapping);

/// Intersection over union of two squares; 0 when one is empty.
double OverlapOf(const FaceSquare& a, const FaceSquare& b);

/// The least overlap of a mapped square with the annotated one at which a face counts as found in its place.
inline constexpr double kRightOverlap = 0.5;

/// Whether the detector's square, mapped, lies at the annotated face.
bool IsRight(const FaceSquare& detected, const FaceSquare& truth, const SquareMapping& mapping);

} // namespace orvane::train
