#pragma once

/// The options of the subcommand `inspect`.

#include <string>

#include "arguments/InspectArguments.h"
#include "arguments/MemoryOption.h"

namespace CLI {
class App;
}

namespace drevintool {

class InspectParser {
 public:
  /// Adds the subcommand to `app`, which must outlive this.
  explicit InspectParser(CLI::App& app);
  InspectParser(const InspectParser&) = delete;
  InspectParser& operator=(const InspectParser&) = delete;

  /// Whether it was called for.
  bool parsed() const;
  /// What it was asked to do. Throws ToolError (Usage) with one line that names the option and the
  /// remedy.
  InspectArguments checked() const;

 private:
  CLI::App& app_;
  InspectArguments arguments_;
  MemoryOption memory_;
  std::string frames_;
};

}  // namespace drevintool
