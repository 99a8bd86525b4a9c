#pragma once

/// What all pictures of a run have in common.

#include <map>
#include <mutex>
#include <set>
#include <string>

#include "controls/CameraOption.h"
#include "picture/Picture.h"

namespace drevintool {

/// Files that every picture of a run reads, such as that of the aperture. Each is read when it is
/// first asked for and then kept. May be asked from any thread.
class SharedFiles {
 public:
  explicit SharedFiles(std::set<std::string> files) : files_(std::move(files)) {}

  bool has(const std::string& file) const { return files_.count(file) != 0; }
  /// As readExr; copies share their samples. A file that is not shared is read each time.
  Picture picture(const std::string& file);
  /// The same for the argument of --camera.
  CameraOption camera(const std::string& text);
  /// Whether that is said for the first time: what is wrong with a shared file is so for every
  /// picture.
  bool isNews(const std::string& text);

 private:
  const std::set<std::string> files_;
  std::mutex mutex_;
  std::map<std::string, Picture> pictures_;
  std::map<std::string, CameraOption> cameras_;
  std::set<std::string> said_;
};

}  // namespace drevintool
