#pragma once

/// What the subcommand `demo` was asked to do.

#include <string>

namespace drevintool {

struct DemoArguments {
  std::string directory;
  bool json = false;
};

}  // namespace drevintool
