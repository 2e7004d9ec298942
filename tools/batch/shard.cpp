#include "tools/batch/shard.h"

#include "tools/support/fingerprint.h"
#include "tools/support/portrait_options.h"

namespace orvane::tools {

bool Shard::Has(const std::string& name) const {
    return NameFingerprint(name) % static_cast<unsigned>(count) + 1 == static_cast<unsigned>(index);
}

std::optional<Shard> ShardOf(const std::string& text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string::npos) return std::nullopt;
    const auto count = NumberWithin(text.substr(slash + 1), 1, kMostShards);
    const auto index = count ? NumberWithin(text.substr(0, slash), 1, *count) : std::nullopt;
    if (!index) return std::nullopt;
    return Shard{*index, *count};
}

} // namespace orvane::tools
