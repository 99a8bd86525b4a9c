#pragma once

/// Failures for want of memory, told by their lines.

#include <string>

namespace drevintool {

/// Whether the line of a failure says that there was not enough memory: the command's own words, or
/// the host's. A line is all that comes through an operator, from whatever thread it failed on.
bool saysNoMemory(const std::string& line);

}  // namespace drevintool
