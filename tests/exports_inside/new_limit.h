// A general heap that fails when a test says so.
#pragma once

namespace orvane::test {

/// While it lives the first `grants` requests of operator new succeed and all later ones throw.
class NewLimit {
public:
    explicit NewLimit(int grants);
    ~NewLimit();
    NewLimit(const NewLimit&) = delete;
    NewLimit& operator=(const NewLimit&) = delete;

    /// Whether a request was refused.
    static bool Refused();
};

} // namespace orvane::test
