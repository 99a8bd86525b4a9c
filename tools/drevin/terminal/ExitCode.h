#pragma once

/// How the command ends: its exit codes and the failure that carries one.

#include <stdexcept>
#include <string>

namespace drevintool {

enum class ExitCode {
  Done = 0,
  RenderFailed = 1,      ///< the node reported an error, or the render failed
  Usage = 2,             ///< the command line makes no sense
  InputUnreadable = 3,   ///< a picture is missing, damaged, too large for the memory that it
                         ///< may take, or lacks what was asked of it
  OutputNotWritten = 4,  ///< the result could not be put in its place
  PluginNotLoaded = 5,   ///< no plug-in, or not one of this host
  Interrupted = 130,     ///< SIGINT
  Terminated = 143,      ///< SIGTERM
};

/// A failure that ends the command: what() is one line that names the file or option and the
/// reason, without the command's own prefix.
class ToolError : public std::runtime_error {
 public:
  ToolError(ExitCode code, const std::string& line) : std::runtime_error(line), code_(code) {}
  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

}  // namespace drevintool
