// How much memory the code under test asks `new` for.
#pragma once

#include <cstddef>

namespace orvane::test {

/// The largest block that this program asked for since a test set it to 0.
std::size_t& LargestRequest();

} // namespace orvane::test
