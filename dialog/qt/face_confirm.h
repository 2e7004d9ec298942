// The half second in which the cropped face is shown.
#pragma once

#include <QImage>

namespace orvane {

/// Shows a thumbnail in a small window above all others and keeps it painted; input to other windows of this
/// process is dropped meanwhile.
void ShowConfirmWindow(const QImage& thumbnail);

} // namespace orvane
