// What an operator does from the first picture to the portrait.
#pragma once

#include "tests/support/fake_window.h"

namespace orvane::test {

/// Marks a face between two places of the preview, and adjusts all that can be adjusted. Places are the preview's.
inline void WorkThroughSession(FakeWindow& window, ImagePoint from, ImagePoint to) {
    window.Pump();
    window.Click(kPlainClear);
    window.Press(from.x, from.y);
    window.Move((from.x + to.x) / 2, (from.y + to.y) / 2);
    window.Release(to.x, to.y);
    window.Click(kPlainOk);
    window.Pump();
    window.DragSlider(60);
    window.Click(kPlainColor);
    window.Type(kRotationEdit, L"10");
    window.Pump();
    window.Click(kPlainOk);
}

} // namespace orvane::test
