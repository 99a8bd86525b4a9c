#pragma once

/// The options of the subcommand `script`.

#include "arguments/FocusOption.h"
#include "arguments/ScriptArguments.h"

namespace CLI {
class App;
}

namespace drevintool {

class ScriptParser {
 public:
  /// Adds the subcommand to `app`, which must outlive this.
  explicit ScriptParser(CLI::App& app);
  ScriptParser(const ScriptParser&) = delete;
  ScriptParser& operator=(const ScriptParser&) = delete;

  /// Whether it was called for.
  bool parsed() const;
  /// What it was asked to do. Throws ToolError (Usage) with one line that names the option and the
  /// remedy.
  ScriptArguments checked() const;

 private:
  void checkFocus() const;

  CLI::App& app_;
  ScriptArguments arguments_;
  FocusOption focus_;
};

}  // namespace drevintool
