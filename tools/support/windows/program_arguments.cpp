#include "tools/support/program_arguments.h"

#include "tools/support/utf8.h"

// windows.h first: the other needs its types.
#include <windows.h>

#include <shellapi.h>

namespace orvane::tools {

std::vector<std::string> ProgramArguments(int, char**) {
    std::vector<std::string> texts;
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (arguments == nullptr) return texts;
    for (int i = 1; i < count; ++i) texts.push_back(Utf8(arguments[i]));
    LocalFree(arguments);
    return texts;
}

} // namespace orvane::tools
