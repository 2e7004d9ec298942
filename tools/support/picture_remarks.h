// What is odd about a picture file that can be decoded all the same.
#pragma once

#include <string>

namespace orvane::tools {

/// One line on a file of which only the first picture is taken, or whose decoder fills in what is damaged without a
/// word; empty for all others.
std::string PictureRemark(const std::string& content);

} // namespace orvane::tools
