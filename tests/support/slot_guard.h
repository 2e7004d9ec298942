// Another function behind a primitive's name, for the length of a test.
#pragma once

#include "primitives/primitives.h"

namespace orvane::test {

/// Puts `replacement` into a primitive's slot and the old function back at the end.
template <typename Function>
class SlotGuard {
public:
    SlotGuard(Function*& slot, Function* replacement) : slot_(slot), before_(slot) { slot_ = replacement; }
    ~SlotGuard() { slot_ = before_; }
    SlotGuard(const SlotGuard&) = delete;
    SlotGuard& operator=(const SlotGuard&) = delete;

private:
    Function*& slot_;
    Function* before_;
};

} // namespace orvane::test
