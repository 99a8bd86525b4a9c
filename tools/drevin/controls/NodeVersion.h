#pragma once

/// The version that the node's panel shows.

#include <string>

#include "EmbeddedHost/Node.h"

namespace drevintool {

/// The text of the panel's Version line, such as "1.4.6"; empty without such a line.
std::string nodeVersion(const Node& node);

}  // namespace drevintool
