#include "session/session_state.h"

namespace orvane {

std::unique_ptr<COrvQuickViewDlg> g_dialog;
void* g_ownerWindow = nullptr;

} // namespace orvane
