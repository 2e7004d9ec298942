// How the session takes the window's events.
#pragma once

#include "session/quick_view_dlg.h"

namespace orvane {

template <typename Body>
void COrvQuickViewDlg::Serve(Body body) {
    if (!m_windowOpen) return;
    try {
        body();
    } catch (...) {
        EndOutOfMemory();
    }
}

} // namespace orvane
