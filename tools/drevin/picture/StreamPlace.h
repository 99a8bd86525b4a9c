#pragma once

/// Places that are written to as they are.

#include <optional>
#include <string>
#include <utility>

namespace drevintool {

/// A character device, a pipe that has a name, or what this process has open (/dev/stdout,
/// /dev/fd/3): a file that took such a place would be lost to whoever reads there.
class StreamPlace {
 public:
  /// Nothing if `place` is one for a file. Links must be followed, but those of open files.
  static std::optional<StreamPlace> at(const std::string& place);

  /// Why nothing can be written there, as a number of the system, or 0.
  int fault() const;
  /// Writes all bytes of an open file, behind what was written there before; waits for the reader
  /// of a pipe. Returns 0 or the system's number of what failed. Throws ToolError (Interrupted or
  /// Terminated) after a signal.
  int take(int file) const;

 private:
  StreamPlace(std::string place, int descriptor)
      : place_(std::move(place)), descriptor_(descriptor) {}
  int open() const;

  std::string place_;
  int descriptor_;  // -1: it is opened by its name
};

}  // namespace drevintool
