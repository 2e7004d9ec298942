#include "api/session_state.h"

namespace orvane {

std::unique_ptr<COrvQuickViewDlg> g_dialog;
ActionFlags g_actionEnabled{};
void* g_ownerWindow = nullptr;

} // namespace orvane
