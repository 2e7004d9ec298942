// Sine and cosine that are the same to the last bit on every system.
#pragma once

namespace orvane {

struct SineCosine {
    double sine;
    double cosine;
};

/// Sine and cosine of an angle in radians, from 0 to 7, each the nearest double to the true value. The
/// standard libraries' functions may differ from one another in the last bit, and that bit decides where
/// the edge of a turned picture falls.
SineCosine SineCosineOf(double radians);

} // namespace orvane
