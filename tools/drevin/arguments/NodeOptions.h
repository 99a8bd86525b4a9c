#pragma once

/// The options of every subcommand that makes a node.

#include "arguments/NodeArguments.h"

namespace CLI {
class App;
}

namespace drevintool {

/// Adds --set, --script, --node, --camera and --plugin, which fill `arguments`.
void addNodeOptions(CLI::App& app, NodeArguments& arguments);

/// Throws ToolError (Usage) for those of them that are empty, and for --node without --script.
void checkNodeOptions(const CLI::App& app);

}  // namespace drevintool
