#pragma once

/// The command run with a terminal for its standard error.

#include <map>
#include <string>
#include <vector>

namespace drevintool::testing {

/// What it writes there, with "\r\n" for the ends of lines; empty if there is no terminal to be had
/// here. `environment` is added to the test's own; an empty TERM is none.
std::string onTerminal(const std::vector<std::string>& arguments,
                       const std::map<std::string, std::string>& environment);

}  // namespace drevintool::testing
