#pragma once

/// The options of the subcommand `controls`.

#include "arguments/ControlsArguments.h"

namespace CLI {
class App;
}

namespace drevintool {

class ControlsParser {
 public:
  /// Adds the subcommand to `app`, which must outlive this.
  explicit ControlsParser(CLI::App& app);
  ControlsParser(const ControlsParser&) = delete;
  ControlsParser& operator=(const ControlsParser&) = delete;

  /// Whether it was called for.
  bool parsed() const;
  /// What it was asked to do. Throws ToolError (Usage) with one line that names the option and the
  /// remedy.
  ControlsArguments checked() const;

 private:
  CLI::App& app_;
  ControlsArguments arguments_;
};

}  // namespace drevintool
