#pragma once

/// The options that mend a picture before the node sees it.

#include <string>

#include "prepare/PictureFixes.h"

namespace CLI {
class App;
}

namespace drevintool {

class FixOptions {
 public:
  /// Adds --fix-background, --fix-edges and --clamp-fireflies, which fill this.
  void addTo(CLI::App& app);
  /// Throws ToolError (Usage) with one line that names the option and what it takes, and for
  /// --fix-edges beside --deep.
  PictureFixes checked(const CLI::App& app) const;

 private:
  std::string background_;
  bool edges_ = false;
  std::string mostColour_;
};

}  // namespace drevintool
