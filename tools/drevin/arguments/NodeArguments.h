#pragma once

/// What every subcommand that makes a node is told of it.

#include <string>
#include <vector>

namespace drevintool {

struct NodeArguments {
  std::vector<std::string> settings;  ///< NAME=VALUE, in order
  std::string script;                 ///< empty: none; likewise below
  std::string scriptNode;             ///< the node of the script; empty: its only one
  std::string camera;
  std::string plugin;
};

}  // namespace drevintool
