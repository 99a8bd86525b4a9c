#pragma once

/// The options of the subcommand `demo`.

#include "arguments/DemoArguments.h"

namespace CLI {
class App;
}

namespace drevintool {

class DemoParser {
 public:
  /// Adds the subcommand to `app`, which must outlive this.
  explicit DemoParser(CLI::App& app);
  DemoParser(const DemoParser&) = delete;
  DemoParser& operator=(const DemoParser&) = delete;

  /// Whether it was called for.
  bool parsed() const;
  /// What it was asked to do. Throws ToolError (Usage) with one line that names the option and the
  /// remedy.
  DemoArguments checked() const;

 private:
  CLI::App& app_;
  DemoArguments arguments_;
};

}  // namespace drevintool
