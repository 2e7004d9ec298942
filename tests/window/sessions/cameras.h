// The cameras of the tests, as this system's video offers them to the library in the same process.
#pragma once

#include "primitives/types.h"

#include <memory>

namespace orvane::test {

/// Those that both systems have.
enum class Camera {
    portrait, // moves a little
    pattern,  // has no face
    broken,   // can't be opened
    silent,   // opens and never delivers
    mortal    // ends after some frames
};

/// Sets the cameras up, and takes them away again.
class Cameras {
public:
    Cameras();
    ~Cameras();
    Cameras(const Cameras&) = delete;
    Cameras& operator=(const Cameras&) = delete;

    /// The number by which the library knows it.
    int32 IndexOf(Camera camera) const;

private:
    struct Played;
    std::unique_ptr<Played> played_;
};

} // namespace orvane::test
