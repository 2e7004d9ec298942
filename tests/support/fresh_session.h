// The state of a library in which nothing has happened yet.
#pragma once

#include "image/session_images.h"
#include "session/session_state.h"
#include "session/stage_clock.h"
#include "tests/support/settings_guard.h"

namespace orvane::test {

/// Empties the session's pictures and clears settings when it comes and when it goes.
class FreshSession {
public:
    FreshSession() { Reset(); }
    ~FreshSession() { Reset(); }
    FreshSession(const FreshSession&) = delete;
    FreshSession& operator=(const FreshSession&) = delete;

private:
    static void Reset() {
        for (ImageBuffer* image :
             {&g_sourceImage, &g_workImage, &g_maskImage, &g_colourStageImage, &g_colourStageMask}) {
            image->Reset();
        }
    }

    FreshSettings settings_;
};

} // namespace orvane::test
