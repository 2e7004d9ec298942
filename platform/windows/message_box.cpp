#include "platform/message_box.h"

#include <windows.h>

namespace orvane {

void ShowErrorBox(const char* caption, const char* text) {
    MessageBeep(MB_ICONHAND);
    MessageBoxA(nullptr, text, caption, MB_ICONHAND);
}

} // namespace orvane
