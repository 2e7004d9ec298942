// Sine and cosine by their Taylor series, in pairs of doubles: about 106 bits, so that rounding the sum
// to a double gives the nearest one. Only additions, multiplications and divisions of doubles occur, which
// every IEEE 754 system rounds alike.
//
// The exact sum and product of two doubles as a pair are those of Knuth (The Art of Computer Programming,
// volume 2, 4.2.2) and Dekker (A floating-point technique for extending the available precision, 1971).
#include "primitives/sine_cosine.h"

namespace orvane {
namespace {

/// The unevaluated sum of two doubles, the second at most half a unit in the last place of the first.
struct Pair {
    double high;
    double low;
};

Pair ExactSum(double a, double b) {
    const double sum = a + b;
    const double partOfB = sum - a;
    return {sum, (a - (sum - partOfB)) + (b - partOfB)};
}

/// The same where `a` is not the smaller one.
Pair OrderedSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

/// Two halves of 26 bits.
Pair Split(double a) {
    const double scaled = 134217729.0 * a; // 2^27 + 1
    const double high = scaled - (scaled - a);
    return {high, a - high};
}

Pair ExactProduct(double a, double b) {
    const double product = a * b;
    const Pair p = Split(a), q = Split(b);
    return {product, ((p.high * q.high - product) + p.high * q.low + p.low * q.high) + p.low * q.low};
}

Pair operator-(Pair a) { return {-a.high, -a.low}; }

Pair operator+(Pair a, Pair b) {
    const Pair high = ExactSum(a.high, b.high);
    const Pair low = ExactSum(a.low, b.low);
    const Pair sum = OrderedSum(high.high, high.low + low.high);
    return OrderedSum(sum.high, sum.low + low.low);
}

Pair operator*(Pair a, Pair b) {
    const Pair product = ExactProduct(a.high, b.high);
    return OrderedSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

Pair operator/(Pair a, double b) {
    const double quotient = a.high / b;
    const Pair back = ExactProduct(quotient, b);
    return OrderedSum(quotient, ((a.high - back.high) - back.low + a.low) / b);
}

/// `radians` less `quarters` times pi/2, which is given by three doubles.
Pair LessQuarterTurns(double radians, int quarters) {
    constexpr double kHalfPi[3] = {0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54, -0x1.f1976b7ed8fbcp-110};
    Pair rest{radians, 0.0};
    for (const double part : kHalfPi) rest = rest + -ExactProduct(quarters, part);
    return rest;
}

} // namespace

SineCosine SineCosineOf(double radians) {
    const auto quarters = static_cast<int>(radians / 1.5707963267948966 + 0.5);
    const Pair x = LessQuarterTurns(radians, quarters); // at most pi/4
    Pair sine{0.0, 0.0}, cosine{1.0, 0.0}, term{1.0, 0.0};
    // (pi/4)^30 / 30! lies below 2^-117.
    for (int n = 1; n < 30; ++n) {
        term = term * x / n;
        Pair& sum = n % 2 == 0 ? cosine : sine;
        sum = sum + (n % 4 < 2 ? term : -term);
    }
    switch (quarters % 4) {
    case 0:
        return {sine.high, cosine.high};
    case 1:
        return {cosine.high, -sine.high};
    case 2:
        return {-sine.high, -cosine.high};
    default:
        return {-cosine.high, sine.high};
    }
}

} // namespace orvane
