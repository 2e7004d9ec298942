// The members of one JSON object on a line, as far as they are needed to sort and count such lines.
#pragma once

#include <map>
#include <optional>
#include <string>

namespace orvane::tools {

/// The members of the first level by their names, each with its value as it stands in the line. None where the line is
/// no object.
std::optional<std::map<std::string, std::string>> JsonMembers(const std::string& line);

/// The text that a value in quotes stands for, but for escapes of four digits, which stay; other values as they are.
std::string JsonValueText(const std::string& value);

} // namespace orvane::tools
