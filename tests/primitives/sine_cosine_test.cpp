#include "primitives/sine_cosine.h"

#include "tests/support/checksum.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvane::test {
namespace {

double Radians(double degrees) { return degrees / 180.0 * 3.141592653589793; }

TEST(SineCosine, AreTheNearestDoubles) {
    // Computed with 130 decimal digits from the double that `Radians` gives, and rounded once.
    const struct {
        double degrees, sine, cosine;
    } table[] = {
        {0.001, 0x1.24d15211536dbp-16, 0x1.fffffffeb111dp-1},
        {1, 0x1.1df0b2b89dd1ep-6, 0x1.ffec097f5af8ap-1},
        {5, 0x1.64fd6b8c28102p-4, 0x1.fe0d3b41815a2p-1},
        {17.25, 0x1.2fa89839b2986p-2, 0x1.e8f85fc8f1553p-1},
        {30, 0x1.fffffffffffffp-2, 0x1.bb67ae8584cabp-1},
        {44.999, 0x1.6a08484bb5f49p-1, 0x1.6a0b848257db4p-1},
        {45, 0x1.6a09e667f3bccp-1, 0x1.6a09e667f3bcdp-1},
        {60, 0x1.bb67ae8584caap-1, 0x1.0000000000001p-1},
        {72, 0x1.e6f0e134454ffp-1, 0x1.3c6ef372fe950p-2},
        {89.99999999999999, 0x1.0000000000000p+0, 0x1.469898cc51702p-52},
        {90.00000000000001, 0x1.0000000000000p+0, -0x1.b9676733ae8fep-52},
        {120, 0x1.bb67ae8584cabp-1, -0x1.ffffffffffffcp-2},
        {135, 0x1.6a09e667f3bcdp-1, -0x1.6a09e667f3bccp-1},
        {150, 0x1.fffffffffffffp-2, -0x1.bb67ae8584cabp-1},
        {179.5, 0x1.1df37c4954c2fp-7, -0x1.fffb02599c9cdp-1},
        {200, -0x1.5e3a8748a0bf4p-2, -0x1.e11f642522d1cp-1},
        {225, -0x1.6a09e667f3bccp-1, -0x1.6a09e667f3bcep-1},
        {269.99999999999994, -0x1.0000000000000p+0, -0x1.34f272993d141p-50},
        {300, -0x1.bb67ae8584caap-1, 0x1.0000000000001p-1},
        {315, -0x1.6a09e667f3bcep-1, 0x1.6a09e667f3bcbp-1},
        {359, -0x1.1df0b2b89dd2cp-6, 0x1.ffec097f5af8ap-1},
        {360, -0x1.1a62633145c07p-52, 0x1.0000000000000p+0},
    };
    for (const auto& row : table) {
        const SineCosine result = SineCosineOf(Radians(row.degrees));
        EXPECT_EQ(row.sine, result.sine) << row.degrees << " degrees";
        EXPECT_EQ(row.cosine, result.cosine) << row.degrees << " degrees";
    }
}

TEST(SineCosine, OfZeroAreExact) {
    const SineCosine result = SineCosineOf(0.0);
    EXPECT_EQ(0.0, result.sine);
    EXPECT_EQ(1.0, result.cosine);
}

TEST(SineCosine, StayCloseToTheStandardLibrary) {
    // In absolute terms: some libraries are a few bits off where a value is close to 0.
    for (int step = 0; step <= 70000; ++step) {
        const double x = step * 0.0001;
        const SineCosine result = SineCosineOf(x);
        ASSERT_NEAR(std::sin(x), result.sine, 1.2e-16) << x;
        ASSERT_NEAR(std::cos(x), result.cosine, 1.2e-16) << x;
    }
}

TEST(SineCosine, AreTheSameOnEveryBuild) {
    std::uint64_t sum = Checksum(nullptr, 0);
    for (int step = 0; step <= 70000; ++step) {
        const SineCosine result = SineCosineOf(step * 0.0001);
        sum = Checksum(&result.sine, sizeof result.sine, sum);
        sum = Checksum(&result.cosine, sizeof result.cosine, sum);
    }
    EXPECT_EQ(7256949308363193648u, sum);
}

} // namespace
} // namespace orvane::test
