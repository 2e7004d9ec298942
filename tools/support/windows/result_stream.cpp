#include "tools/support/result_stream.h"

#include "tools/support/windows/wide_text.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace orvane::tools {
namespace {

// Numbers of the C runtime, which this program and the library share.
constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;

int g_results = kStandardOutput;

/// A console takes text, whatever its code page; files and pipes take the bytes.
bool WriteAll(int file, const std::string& text) {
    const auto handle = file < 0 ? INVALID_HANDLE_VALUE : reinterpret_cast<HANDLE>(_get_osfhandle(file));
    if (handle == INVALID_HANDLE_VALUE) return false;
    DWORD mode = 0;
    if (GetConsoleMode(handle, &mode) != 0) {
        const std::wstring wide = Wide(text);
        DWORD written = 0;
        return WriteConsoleW(handle, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr) != 0;
    }
    std::size_t done = 0;
    while (done < text.size()) {
        DWORD written = 0;
        if (WriteFile(handle, text.data() + done, static_cast<DWORD>(text.size() - done), &written, nullptr) == 0) {
            return false;
        }
        done += written;
    }
    return true;
}

} // namespace

void ReserveResultStream() {
    // Of a process without a console or a pipe the numbers are free, and a file that the library opens must
    // not take one.
    for (const int stream : {0, kStandardOutput, kStandardError}) {
        if (_get_osfhandle(stream) >= 0) continue;
        const int file = _open("NUL", _O_RDWR);
        if (file >= 0 && file != stream) {
            _dup2(file, stream);
            _close(file);
        }
    }
    g_results = _dup(kStandardOutput);
    _dup2(kStandardError, kStandardOutput);
}

bool WriteResult(const std::string& text) { return WriteAll(g_results, text); }

void WriteMessage(const std::string& text) { WriteAll(kStandardError, text); }

} // namespace orvane::tools
