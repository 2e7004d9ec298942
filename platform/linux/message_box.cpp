#include "platform/message_box.h"

#include <cstdio>

namespace orvane {

void ShowErrorBox(const char* caption, const char* text) { std::fprintf(stderr, "%s:%s\n", caption, text); }

} // namespace orvane
