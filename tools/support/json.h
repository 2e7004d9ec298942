// JSON objects for the --json lines, written member by member.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvane::tools {

/// `bytes` as a JSON string with its quotes. Bytes that are no UTF-8, as file names may hold, become
/// U+FFFD each, so that every reader takes the line.
std::string JsonText(const std::string& bytes);

class JsonObject {
public:
    JsonObject& Text(const char* key, const std::string& bytes);
    JsonObject& Integer(const char* key, std::int64_t value);
    /// Three decimals; null for what is not finite.
    JsonObject& Decimal(const char* key, double value);
    JsonObject& Null(const char* key);
    JsonObject& Flag(const char* key, bool value);
    JsonObject& Object(const char* key, const JsonObject& value);
    /// An array of them.
    JsonObject& Objects(const char* key, const std::vector<JsonObject>& values);

    /// The object on one line.
    std::string Line() const { return "{" + members_ + "}"; }

private:
    JsonObject& Add(const char* key, const std::string& value);
    std::string members_;
};

} // namespace orvane::tools
