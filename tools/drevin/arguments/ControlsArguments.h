#pragma once

/// What the subcommand `controls` was asked to do.

#include <string>
#include <vector>

namespace drevintool {

struct ControlsArguments {
  std::string camera;
  std::string plugin;
  std::vector<std::string> settings;
  bool json = false;
};

}  // namespace drevintool
