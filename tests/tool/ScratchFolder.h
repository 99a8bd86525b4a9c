#pragma once

/// A folder of a test's own, removed with all that is in it.

#include <string>
#include <vector>

namespace drevintool::testing {

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// The path of a file in it.
  std::string file(const std::string& name) const;
  const std::string& path() const { return path_; }
  /// Names of what is in it, hidden files included, in alphabetical order.
  std::vector<std::string> entries() const;

 private:
  std::string path_;
};

/// The bytes of a file; empty if there is none.
std::string bytesOfFile(const std::string& path);
void writeBytes(const std::string& path, const std::string& bytes);

}  // namespace drevintool::testing
