#pragma once

/// What the subcommand `inspect` was asked to do.

#include <string>
#include <vector>

#include "arguments/NodeArguments.h"

namespace drevintool {

struct InspectArguments : NodeArguments {
  std::vector<std::string> files;  ///< with places for the frame, where there are frames
  std::vector<int> frames;         ///< empty: no sequence
  bool json = false;
};

}  // namespace drevintool
