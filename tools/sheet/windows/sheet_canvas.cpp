// None on Windows.
#include "tools/sheet/sheet_canvas.h"

namespace orvane::tools {

bool CanDrawSheets() { return false; }

std::unique_ptr<SheetCanvas> MakeSheetCanvas(SheetKind, double, double) { return nullptr; }

} // namespace orvane::tools
