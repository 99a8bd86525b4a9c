#pragma once

/// The options of the subcommand `render`, and of others that render.

#include <string>

#include "arguments/FixOptions.h"
#include "arguments/FocusOption.h"
#include "arguments/FormatOptions.h"
#include "arguments/MemoryOption.h"
#include "arguments/RenderArguments.h"

namespace CLI {
class App;
}

namespace drevintool {

/// What is made: pictures as they are, or one sheet of small ones.
enum class RenderScope { Pictures, Sheet };

class RenderParser {
 public:
  /// Adds the subcommand to `app`, which must outlive this.
  explicit RenderParser(CLI::App& app);
  /// Adds to `subcommand` the options that render has; to that of a sheet without those that speak
  /// of many files or of channels.
  RenderParser(CLI::App& subcommand, RenderScope scope);
  RenderParser(const RenderParser&) = delete;
  RenderParser& operator=(const RenderParser&) = delete;

  /// Whether it was called for.
  bool parsed() const;
  /// What it was asked to do. Throws ToolError (Usage) with one line that names the option and the
  /// remedy.
  RenderArguments checked() const;

 private:
  void addPictures();
  void addDeep();
  void addOutput();
  void addSequence();
  void addSkipping();
  void checkSequence(RenderArguments& arguments) const;
  void checkFocusKeys(const RenderArguments& arguments) const;

  CLI::App& app_;
  const RenderScope scope_;
  RenderArguments arguments_;
  // As they stand on the command line, until they are checked.
  FocusOption focus_;
  FixOptions fixes_;
  FormatOptions format_;
  MemoryOption memory_;
  std::string deepOrder_;
  std::string region_;
  std::string channels_;
  std::string threads_;
  std::string proxy_;
  std::string frames_;
  std::string chunk_;
  std::string views_;
  std::string framesInFlight_;
};

}  // namespace drevintool
