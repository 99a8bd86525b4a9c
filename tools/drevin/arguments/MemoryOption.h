#pragma once

/// The option that limits the memory.

#include <string>

#include "picture/MemoryBudget.h"

namespace CLI {
class App;
}

namespace drevintool {

class MemoryOption {
 public:
  /// Adds --max-memory, which fills this.
  void addTo(CLI::App& app);
  /// 0 if it is not given. Throws ToolError (Usage) with one line for what is no size.
  MemoryLimit checked(const CLI::App& app) const;

 private:
  std::string text_;
};

}  // namespace drevintool
