#pragma once

/// How one frame ended.

#include <algorithm>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "terminal/ExitCode.h"
#include "terminal/NoMemory.h"

namespace drevintool {

struct FrameOutcome {
  ExitCode code = ExitCode::Done;
  std::vector<std::string> errors;  ///< a line each, where it failed
  bool skipped = false;             ///< its output was there already
  /// Null unless it was rendered and a report is wanted.
  std::shared_ptr<const nlohmann::ordered_json> report;

  bool failed() const { return code != ExitCode::Done; }
  /// Whether it failed for want of memory, so that it may be done when there is more.
  bool wantsMemory() const {
    return failed() && std::any_of(errors.begin(), errors.end(), saysNoMemory);
  }
};

}  // namespace drevintool
