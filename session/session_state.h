// The session: at most one a process, without a handle. g_dialog and g_detectorParams live from
// orv_InitDLL to orv_ReleaseDLL; everything else stays as long as the library is loaded.
#pragma once

#include "actions/action_settings.h"
#include "session/quick_view_dlg.h"

#include <memory>

namespace orvane {

extern std::unique_ptr<COrvQuickViewDlg> g_dialog; // null: no session is open
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
