#pragma once

/// The options of every subcommand that makes a node.

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace drevintool {

/// Adds --set, --camera and --plugin, which fill what they are given.
void addNodeOptions(CLI::App& app, std::vector<std::string>& settings, std::string& camera,
                    std::string& plugin);

}  // namespace drevintool
