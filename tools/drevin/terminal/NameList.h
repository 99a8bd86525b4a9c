#pragma once

/// Names from files in messages: as many and as much of each as one line can bear.

#include <string>
#include <vector>

namespace drevintool {

/// The name, or its first 60 bytes and "..." where it is longer.
std::string shortName(const std::string& name);

/// The names by commas, each as shortName gives it; of more than 20 the first 20 "and N more".
std::string nameList(const std::vector<std::string>& names);

}  // namespace drevintool
