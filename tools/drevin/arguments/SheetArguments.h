#pragma once

/// What the subcommand `sheet` was asked to do.

#include <optional>
#include <string>
#include <vector>

#include "arguments/RenderArguments.h"

namespace drevintool {

struct SheetArguments : RenderArguments {
  std::vector<std::string> vary;  ///< NAME=VALUE,VALUE,... in order; at least one
  std::optional<int> width;       ///< of each picture; none: so that the sheet fits a screen
  std::optional<int> columns;     ///< none: as many as make the sheet nearly square
};

}  // namespace drevintool
