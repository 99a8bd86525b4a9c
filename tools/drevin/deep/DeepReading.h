#pragma once

/// Reading rows of a deep picture outside a render.

#include <stdexcept>

#include "terminal/ExitCode.h"

namespace drevintool {

/// Does `step`; a row that it cannot read becomes a ToolError (InputUnreadable).
template <typename Step>
auto readingDeep(const Step& step) {
  try {
    return step();
  } catch (const ToolError&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw ToolError(ExitCode::InputUnreadable, error.what());
  }
}

}  // namespace drevintool
