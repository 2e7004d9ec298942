// The fixed chain of corrections between the loaded picture and the output: six optional slots, always
// in the same order.
#pragma once

#include "image/image_buffer.h"

#include <functional>

namespace orvane {

/// The copies of picture and mask after slot 2 serve the operator's turning of a finished picture. A run
/// that only makes the work picture leaves them out: nobody can turn that one, and it is large.
enum class Snapshots { taken, leftOut };

/// Told after each slot that ran and did not fail: the slot's number and the picture in hand, which is good
/// for the call alone; g_maskImage then is the mask after that slot.
using SlotObserver = std::function<void(int32 slot, const ImageBuffer& picture)>;

/// Runs the enabled slots from g_sourceImage, which stays untouched, into g_workImage; after slot 2 the
/// snapshots g_colourStageImage and g_colourStageMask are taken. The chain stops at the first slot that
/// fails, whose result is the answer; g_workImage then holds what the slots before it made.
/// @param tolerance percent for the background removal; -1 asks for 50
/// @param rotation  degrees, kept in g_rotationAngle; -1 leaves that as it is
/// @param snapshots left out, those of an earlier run are dropped as well
/// @param observer  looks at what each slot made; usually nobody does
int32 RunActionPipeline(int32 tolerance, int32 rotation, Snapshots snapshots = Snapshots::taken,
                        const SlotObserver& observer = {});

} // namespace orvane
