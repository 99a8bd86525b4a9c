#pragma once

/// What the subcommand `controls` was asked to do.

#include "arguments/NodeArguments.h"

namespace drevintool {

struct ControlsArguments : NodeArguments {
  bool json = false;
};

}  // namespace drevintool
