// How far a share that was counted may lie from the true one.
#pragma once

namespace orvane::train {

/// Both ends in per cent.
struct Interval {
    double low = 0.0;
    double high = 100.0;
};

/// Wilson's interval of 95 % for `part` of `whole` trials; everything from 0 to 100 when there were none.
Interval WilsonInterval(int part, int whole);

} // namespace orvane::train
