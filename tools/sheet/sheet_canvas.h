// The pages of a sheet and what is drawn on them: the seam to what draws text on each system. Lengths are points, from
// a page's upper left corner.
#pragma once

#include "tools/support/picture.h"

#include <memory>
#include <string>

namespace orvane::tools {

struct Shade {
    double red = 0;
    double green = 0;
    double blue = 0;
};

struct SheetBox {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// Pixels a point of pages that are pictures, and of what is drawn small.
inline constexpr double kSheetScale = 2;

class SheetCanvas {
public:
    virtual ~SheetCanvas() = default;
    virtual void Fill(const SheetBox& box, const Shade& shade) = 0;
    /// Stretched to the box.
    virtual void Draw(const Picture& picture, const SheetBox& box) = 0;
    /// UTF-8 in lines that break between words and, where a word is too long, within; what does not fit the lines ends
    /// in an ellipsis, of a single line in its middle.
    virtual void Write(const std::string& text, const SheetBox& box, double size, int lines, const Shade& shade) = 0;
    /// The page is done. One that is a picture is handed over and gives way to an empty one; a document goes on with
    /// its next.
    virtual void EndPage(Picture* page) = 0;
    /// The document; empty where pages are pictures. False when memory or disk did not do.
    virtual bool Finish(std::string* document) = 0;
};

enum class SheetKind { pdf, pictures };

/// Whether there is a canvas on this system.
bool CanDrawSheets();

/// Null where it can't be made.
std::unique_ptr<SheetCanvas> MakeSheetCanvas(SheetKind kind, double width, double height);

} // namespace orvane::tools
