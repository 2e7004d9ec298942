// The kernels of turned rows, as primitives/row_kernels.h has them.
#include "primitives/row_kernels.h"
#include "tests/support/plane.h"
#include "tests/support/random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <utility>

namespace orvane::test {
namespace {

using Bytes = Plane<uint8>;

TEST(TurnedRows, EndAtThePositionToWhichTheirStepsAddUp) {
    // The last bit of a position may decide a sample.
    Random random;
    for (const auto& [turnedRow, channels] :
         {std::pair{CurrentRowKernels().turnedRow1, 1}, std::pair{CurrentRowKernels().turnedRow3, 3}}) {
        if (turnedRow == nullptr) continue;
        const ImageSize size{1400, 700};
        Bytes src(channels * size.width, size.height, 0, 0, 0), dst(channels * 600, 1, 0, 0, 0);
        for (int32 round = 0; round < 2000; ++round) {
            const double angle = random.Real(-0.5, 0.5) * (round % 2 == 0 ? 0.4 : 3.0);
            const double uStep = std::cos(angle), vStep = std::sin(angle);
            const auto nothing = [](const TurnedPath&, double, double, uint8*) {};
            const TurnedPath path{src.Data(), size, src.Step(), uStep, vStep, 0, nothing};
            double u = random.Real(1, 790), v = vStep < 0 ? random.Real(650, 690) : random.Real(1, 30);
            const int64 count = random.Int(1, 600);
            double expectedU = u, expectedV = v;
            const int64 done = count - turnedRow(path, u, v, count, dst.Data());
            for (int64 i = 0; i < done; ++i) {
                expectedU += uStep;
                expectedV += vStep;
            }
            ASSERT_EQ(u, expectedU) << angle << ", " << count;
            ASSERT_EQ(v, expectedV) << angle << ", " << count;
        }
    }
}

TEST(TurnedRows, TwoAtOnceHaveTheBytesAndTheEndsOfEachAlone) {
    const RowKernels& kernels = CurrentRowKernels();
    if (kernels.turnedRows3 == nullptr) GTEST_SKIP() << "this instruction set takes rows one by one";
    Random random;
    const ImageSize size{1400, 700};
    const Bytes grey = Bytes::Source(size.width, size.height, random);
    const Bytes colours = Bytes::Source(3 * size.width, size.height, random);
    int32 together[2] = {};
    for (int32 round = 0; round < 2000; ++round) {
        const int32 channels = round % 4 < 2 ? 3 : 1;
        const double angle = random.Real(-0.5, 0.5) * (round % 2 == 0 ? 0.02 : 1.0);
        const double uStep = std::cos(angle), vStep = std::sin(angle);
        // Tells of itself alone that it was asked, and where.
        const auto exactly3 = [](const TurnedPath&, double u, double v, uint8* to) {
            to[0] = static_cast<uint8>(std::fmod(u, 1.0) * 256);
            to[1] = static_cast<uint8>(std::fmod(v, 1.0) * 256);
            to[2] = 77;
        };
        const auto exactly1 = [](const TurnedPath&, double u, double v, uint8* to) {
            *to = static_cast<uint8>(std::fmod(u + 16 * v, 1.0) * 256);
        };
        const Bytes& src = channels == 3 ? colours : grey;
        const TurnedPath path{src.Data(), size, src.Step(), uStep, vStep, 0, channels == 3 ? +exactly3 : +exactly1};
        const double u = random.Real(1, 700), v = vStep < 0 ? random.Real(400, 690) : random.Real(1, 290);
        const int64 count = random.Int(1, 600);
        const int64 behind[] = {random.Int(0, 4), random.Int(0, 4)};
        Bytes row(channels * 610, 2, 0, 0, 0), alone(channels * 610, 2, 0, 0, 0);
        TurnedStart rows[kTurnedRows] = {{u, v, &row.At(0, 0), behind[0]},
                                         {u - vStep, v + uStep, &row.At(0, 1), behind[1]}};
        const TurnedStart starts[] = {rows[0], rows[1]};
        const bool taken = (channels == 3 ? kernels.turnedRows3 : kernels.turnedRows1)(path, rows, count);
        together[channels / 2] += taken;
        for (int32 i = 0; taken && i < kTurnedRows; ++i) {
            double endU = starts[i].u, endV = starts[i].v;
            const auto turnedRow = channels == 3 ? kernels.turnedRow3 : kernels.turnedRow1;
            ASSERT_EQ(0, turnedRow(path, endU, endV, count, &alone.At(0, i)));
            ASSERT_EQ(0, std::memcmp(&row.At(0, i), &alone.At(0, i), static_cast<std::size_t>(channels * count)))
                << channels << " channels, " << angle << ", " << count;
            if (behind[i] > 0) {
                ASSERT_EQ(endU, rows[i].u) << angle << ", " << count;
                ASSERT_EQ(endV, rows[i].v) << angle << ", " << count;
            }
            for (int64 k = channels * (count + behind[i]); k < channels * 610; ++k) {
                ASSERT_EQ(0, row.At(static_cast<int32>(k), i)) << "beyond the row";
            }
        }
    }
    EXPECT_GT(together[0], 400) << "one channel";
    EXPECT_GT(together[1], 400) << "three channels";
}

} // namespace
} // namespace orvane::test
