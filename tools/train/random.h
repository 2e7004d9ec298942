// A small seeded generator. Every stream is named by its numbers (seed, stage, sample), so that a piece of
// work gives the same values whichever thread does it and whether or not training was stopped before it.
#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>

namespace orvane::train {

class Random {
public:
    /// A stream of its own for each list of numbers.
    explicit Random(std::initializer_list<std::uint64_t> name) {
        for (const std::uint64_t part : name) state_ = Mix(state_ ^ Mix(part + 0x9e3779b97f4a7c15ull));
    }

    std::uint64_t Next() {
        state_ += 0x9e3779b97f4a7c15ull;
        return Mix(state_);
    }

    /// 0 .. n - 1; n at least 1.
    std::uint32_t Below(std::uint32_t n) { return static_cast<std::uint32_t>(((Next() >> 32) * n) >> 32); }

    /// At least 0, below 1.
    double Unit() { return static_cast<double>(Next() >> 11) * 0x1.0p-53; }

    double Between(double low, double high) { return low + (high - low) * Unit(); }

    /// Roughly normal, mean 0 and deviation 1: a sum of four, cheap and the same on every system.
    double Normal() { return (Unit() + Unit() + Unit() + Unit() - 2.0) * 1.7320508075688772; }

private:
    static std::uint64_t Mix(std::uint64_t z) {
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
        return z ^ (z >> 31);
    }

    std::uint64_t state_ = 0;
};

} // namespace orvane::train
