// How machines share the photographs of a run out among them without a word to each other: by the photographs' names
// alone, so that one that is added moves no other.
#pragma once

#include <optional>
#include <string>

namespace orvane::tools {

struct Shard {
    int index = 1; ///< From 1 to `count`.
    int count = 1;

    /// Of all shards of the same count exactly one has a name: that which the name's fingerprint, modulo the count, is
    /// one below the index of.
    bool Has(const std::string& name) const;

    bool IsWhole() const { return count == 1; }
};

inline constexpr int kMostShards = 100000;

/// Reads "I/N"; none where it is anything else.
std::optional<Shard> ShardOf(const std::string& text);

} // namespace orvane::tools
