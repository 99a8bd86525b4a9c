#pragma once

/// What the subcommand `inspect` was asked to do.

#include <string>
#include <vector>

#include "arguments/NodeArguments.h"
#include "picture/MemoryBudget.h"

namespace drevintool {

struct InspectArguments : NodeArguments {
  std::vector<std::string> files;  ///< with places for the frame, where there are frames
  std::vector<int> frames;         ///< empty: no sequence
  std::string kernel;              ///< of the render that is asked about; empty: none
  std::string mattes;              ///< likewise
  MemoryLimit maxMemory;
  bool json = false;
};

}  // namespace drevintool
