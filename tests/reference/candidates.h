// The grouping of candidates once more: plain lists, every member asked in order.
#pragma once

#include "primitives/types.h"

#include <cmath>
#include <vector>

namespace orvane::test::reference {

struct Hit {
    int32 x, y, size;
};
using Group = std::vector<Hit>;

struct Limits {
    float radius, sizeRatio;
    int32 minMembers;
};

struct Face {
    int32 centreX, centreY, width, height;
};

inline bool Match(const Hit& hit, const Hit& member, const Limits& limits) {
    const int64 dx = int64{hit.x} - member.x;
    const int64 dy = int64{hit.y} - member.y;
    const double radius = limits.radius;
    return static_cast<double>(dx * dx + dy * dy) <= radius * radius &&
           hit.size <= static_cast<double>(member.size) * limits.sizeRatio;
}

inline void Place(std::vector<Group>& groups, const Hit& hit, const Limits& limits) {
    for (Group& group : groups) {
        for (const Hit& member : group) {
            if (Match(hit, member, limits)) {
                group.push_back(hit);
                return;
            }
        }
    }
    groups.push_back({hit});
}

/// `mask` is a plane of `width` by `height` bytes without padding.
inline void Harvest(const std::vector<uint8>& mask, int32 width, int32 height, int32 windowWidth, float scale,
                    std::vector<Group>& groups, const Limits& limits) {
    const double half = windowWidth * 0.5;
    for (int32 y = 0; y < height; ++y) {
        for (int32 x = 0; x < width; ++x) {
            if (mask[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)] ==
                0) {
                continue;
            }
            Place(groups,
                  {static_cast<int32>((x + half) * scale), static_cast<int32>((y + half) * scale),
                   static_cast<int32>(static_cast<double>(scale) * windowWidth)},
                  limits);
        }
    }
}

inline Hit Mean(const Group& group) {
    int64 x = 0, y = 0, size = 0;
    for (const Hit& hit : group) {
        x += hit.x;
        y += hit.y;
        size += hit.size;
    }
    const auto n = static_cast<int64>(group.size());
    return {static_cast<int32>(x / n), static_cast<int32>(y / n), static_cast<int32>(size / n)};
}

/// The number of second-level groups; the record changes with each of them.
inline int32 Merge(const std::vector<Group>& groups, Face& face, const Limits& limits) {
    std::vector<Group> merged;
    for (const Group& group : groups) {
        if (static_cast<int32>(group.size()) >= limits.minMembers) Place(merged, Mean(group), limits);
    }
    int32 found = 0;
    for (const Group& group : merged) {
        const Hit mean = Mean(group);
        const double half = mean.size * 0.5;
        const auto left = static_cast<int32>(mean.x - half);
        const auto bottom = static_cast<int32>(mean.y - half);
        face = {static_cast<int32>(left + half + 0.5), static_cast<int32>(bottom + half + 0.5), mean.size, mean.size};
        ++found;
    }
    return found;
}

} // namespace orvane::test::reference
