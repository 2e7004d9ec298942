#include "platform/module_folder.h"

namespace orvane {

std::FILE* OpenInModuleFolder(const PathString& name) { return _wfopen(InModuleFolder(name).c_str(), L"rb"); }

} // namespace orvane
