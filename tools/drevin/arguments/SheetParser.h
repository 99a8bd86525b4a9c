#pragma once

/// The options of the subcommand `sheet`.

#include <string>

#include "arguments/RenderParser.h"
#include "arguments/SheetArguments.h"

namespace CLI {
class App;
}

namespace drevintool {

class SheetParser {
 public:
  /// Adds the subcommand to `app`, which must outlive this.
  explicit SheetParser(CLI::App& app);
  SheetParser(const SheetParser&) = delete;
  SheetParser& operator=(const SheetParser&) = delete;

  /// Whether it was called for.
  bool parsed() const;
  /// What it was asked to do. Throws ToolError (Usage) with one line that names the option and the
  /// remedy.
  SheetArguments checked() const;

 private:
  CLI::App& app_;
  RenderParser render_;
  SheetArguments arguments_;
  std::string width_;
  std::string columns_;
};

}  // namespace drevintool
