// What a field of a device's caps amounts to, be it one value, a range or a list.
#pragma once

#include "primitives/types.h"

#include <gst/gst.h>

#include <vector>

namespace orvane {

/// The greatest whole number of a field; 0 where there is none.
int32 GreatestNumber(const GstStructure* form, const char* field);

/// The greatest frame rate of a form in frames a thousand seconds; 0 where it is missing or left open.
int32 GreatestRate(const GstStructure* form);

/// All texts of a field; they are good as long as `form`.
std::vector<const char*> Texts(const GstStructure* form, const char* field);

} // namespace orvane
