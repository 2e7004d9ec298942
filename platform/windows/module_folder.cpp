#include "platform/module_folder.h"

#include <windows.h>

namespace orvane {

PathString PathFromBytes(const char* bytes) {
    for (const auto& [page, flags] : {std::pair{CP_UTF8, MB_ERR_INVALID_CHARS}, std::pair{CP_ACP, 0}}) {
        const int length = MultiByteToWideChar(page, flags, bytes, -1, nullptr, 0);
        if (length == 0) continue;
        PathString path(static_cast<std::size_t>(length), L'\0');
        MultiByteToWideChar(page, flags, bytes, -1, path.data(), length);
        path.pop_back(); // the end's zero
        return path;
    }
    return {};
}

std::FILE* OpenInModuleFolder(const PathString& name) { return _wfopen(InModuleFolder(name).c_str(), L"rb"); }

} // namespace orvane
