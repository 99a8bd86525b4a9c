#pragma once

/// How one frame ended.

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "terminal/ExitCode.h"

namespace drevintool {

struct FrameOutcome {
  ExitCode code = ExitCode::Done;
  std::vector<std::string> errors;  ///< a line each, where it failed
  bool skipped = false;             ///< its output was there already
  nlohmann::ordered_json report;    ///< null unless it was rendered

  bool failed() const { return code != ExitCode::Done; }
};

}  // namespace drevintool
