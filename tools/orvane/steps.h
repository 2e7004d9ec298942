// The picture after each action of a portrait, as files that show what each one did.
#pragma once

#include "session/pipeline.h"
#include "tools/orvane/options.h"
#include "tools/support/picture.h"

#include <string>
#include <vector>

namespace orvane::tools {

struct Step {
    std::string name; ///< Such as "0-crop": the position in the chain and what was done.
    Picture picture;
};

using Steps = std::vector<Step>;

/// Names of all steps that a portrait with these actions may have, in their order.
std::vector<std::string> StepNames(const Actions& actions);

/// Adds to `*steps` what each slot made: its picture, and after the background removal the mask in grey.
/// A picture without pixels is left out.
SlotObserver AddTo(Steps* steps);

/// The file of a step of `photo` in `folder`.
std::string StepFile(const std::string& folder, const std::string& photo, const std::string& step);

} // namespace orvane::tools
