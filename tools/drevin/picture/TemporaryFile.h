#pragma once

/// Files beside a wanted place, which take that place when they are whole.

#include <sys/types.h>

#include <string>

namespace drevintool {

/// A file that is open for writing and locked. The lock holds until the last copy of the descriptor
/// is closed, so that it ends with its process however that ends.
struct TemporaryFile {
  std::string path;
  int descriptor = -1;  ///< -1: it could not be made, and errno says why
};

/// Makes an empty file ".<name>.<process>.tmp" in the folder of `place`, or with a number behind
/// the process where that name is taken.
TemporaryFile makeTemporaryFile(const std::string& place, mode_t permissions);

/// Removes the temporary files of `place` that their processes did not live to remove: those that
/// nobody has locked. Where files cannot be locked, and where the folder cannot be read, nothing is
/// removed.
void removeAbandonedFiles(const std::string& place) noexcept;

}  // namespace drevintool
