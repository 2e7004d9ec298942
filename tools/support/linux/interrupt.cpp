#include "tools/support/interrupt.h"

#include <csignal>

namespace orvane::tools {
namespace {

volatile std::sig_atomic_t g_interrupted = 0;

constexpr int kRequests[] = {SIGINT, SIGTERM, SIGHUP};

void Remember(int) { g_interrupted = 1; }

bool IsIgnored(int request) {
    struct sigaction now {};
    return ::sigaction(request, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

} // namespace

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = Remember;
    ::sigemptyset(&action.sa_mask);
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (const int request : kRequests) {
        // What the program was started to ignore, as nohup does it, stays ignored.
        if (!IsIgnored(request)) ::sigaction(request, &action, nullptr);
    }
}

bool IsInterrupted() { return g_interrupted != 0; }

void IgnoreInterrupts() {
    for (const int request : kRequests) std::signal(request, SIG_IGN);
}

} // namespace orvane::tools
