// How sharp a face is: the variance of the Laplacian, of a face that was brought to one size first.
#pragma once

#include "tools/check/luminance.h"
#include "tools/documents/head_geometry.h"

namespace orvane::tools {

/// Side of the square to which a face is brought: its eyes lie 60 pixels apart then.
inline constexpr auto kSharpnessSide = static_cast<int32>(60 / kMedianHead.eyeDistance + 0.5);

/// The plane in this size: means of areas where it shrinks, linear between pixel centres where it grows. Values as the
/// levels are, not rounded.
std::vector<double> Resampled(const Luminance& plane, int32 width, int32 height);

/// Variance of the responses of the kernel (0 1 0, 1 -4 1, 0 1 0) at all pixels that have four neighbours; 0 where
/// there is none.
double LaplacianVariance(const std::vector<double>& levels, int32 width, int32 height);

/// Of a face's square. 0 for one without pixels.
double SharpnessOf(const Luminance& face);

} // namespace orvane::tools
