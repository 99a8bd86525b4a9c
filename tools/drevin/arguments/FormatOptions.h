#pragma once

/// The options that say how a result is stored.

#include <string>

#include "picture/OutputFormat.h"

namespace CLI {
class App;
}

namespace drevintool {

class FormatOptions {
 public:
  /// Adds --compression and --type, which fill this.
  void addTo(CLI::App& app);
  /// Throws ToolError (Usage) with one line that names the option and its choices.
  OutputFormat checked(const CLI::App& app) const;

 private:
  std::string compression_;
  std::string type_;
};

}  // namespace drevintool
