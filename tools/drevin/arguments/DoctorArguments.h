#pragma once

/// What the subcommand `doctor` was asked to do.

#include <string>

namespace drevintool {

struct DoctorArguments {
  std::string plugin;
  bool json = false;
};

}  // namespace drevintool
