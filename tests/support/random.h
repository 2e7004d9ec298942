// Random numbers for tests, the same on every system and in every run.
#pragma once

#include <cstdint>
#include <random>

namespace orvane::test {

class Random {
public:
    explicit Random(std::uint32_t seed = 1) : engine_(seed) {}

    std::uint32_t Bits() { return static_cast<std::uint32_t>(engine_()); }

    /// A number from `low` to `high`, both included.
    int Int(int low, int high) {
        const auto count = static_cast<std::uint32_t>(high) - static_cast<std::uint32_t>(low) + 1u;
        return static_cast<int>(static_cast<std::uint32_t>(low) + (count == 0 ? Bits() : Bits() % count));
    }

    /// A number from `low` up to but excluding `high`.
    double Real(double low, double high) { return low + (high - low) * (Bits() / 4294967296.0); }

private:
    std::mt19937 engine_; // its sequence is fixed by the language's standard, the distributions' are not
};

} // namespace orvane::test
