// The session: at most one a process, without a handle. g_dialog and g_detectorParams live from
// orv_InitDLL to orv_ReleaseDLL; everything else stays as long as the library is loaded.
#pragma once

#include "api/quick_view_dlg.h"

#include <array>
#include <memory>

namespace orvane {

inline constexpr int32 kActionCount = 6;

/// The pipeline's slots, by the position of their flag. The numbers are part of the interface.
enum ActionSlot : int32 {
    kSlotCrop = 0,
    kSlotBackground = 1,
    kSlotColour = 2,
    kSlotRotation = 3,
    kSlotNone = 4, // no action: ends the pipeline
    kSlotOutputScaling = 5,
};

using ActionFlags = std::array<uint8, kActionCount>;

extern std::unique_ptr<COrvQuickViewDlg> g_dialog; // null: no session is open
extern ActionFlags g_actionEnabled;                // 0 or not 0
extern void* g_ownerWindow;                        // last valid owner given by the host

/// Saves the action flags and brings them back when it goes.
class ActionFlagsGuard {
public:
    ActionFlagsGuard() : saved_(g_actionEnabled) {}
    ~ActionFlagsGuard() { g_actionEnabled = saved_; }
    ActionFlagsGuard(const ActionFlagsGuard&) = delete;
    ActionFlagsGuard& operator=(const ActionFlagsGuard&) = delete;

private:
    ActionFlags saved_;
};

} // namespace orvane
