#pragma once

/// One picture of a sequence.

#include <optional>
#include <string>
#include <vector>

namespace drevintool {

struct FrameTask {
  std::optional<int> frame;  ///< nothing where no frames were asked for
  std::string view;          ///< empty where no views were asked for

  /// "frame 12", "frame 12 left" or "view left"; empty for a picture that is no part of a sequence.
  std::string name() const {
    if (!frame) return view.empty() ? "" : "view " + view;
    return "frame " + std::to_string(*frame) + (view.empty() ? "" : " " + view);
  }
};

/// All of them as lists of frames: "1-3,5" or, with views, "1-3,5 left; 4 right"; views alone are
/// "left; right".
std::string frameNames(const std::vector<FrameTask>& tasks);

}  // namespace drevintool
