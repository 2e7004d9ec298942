#include "session/session_state.h"

#include "session/deferred_picture.h"

namespace orvane {

DeferredPicture g_deferredPicture; // before the session, which drops its promise as it goes
std::unique_ptr<COrvQuickViewDlg> g_dialog;
void* g_ownerWindow = nullptr;

} // namespace orvane
