#pragma once

/// One of several equal shares of a list of frames, as each task of a farm's job array renders one.

#include <string>
#include <vector>

namespace drevintool {

struct FrameChunk {
  int number = 1;  ///< from 1
  int count = 1;   ///< of all chunks

  /// Of "3/10", the third of ten. Throws ToolError (Usage) that names --chunk for anything else.
  static FrameChunk parse(const std::string& text);

  /// The frames of this chunk, which follow one another in the list. Every frame is in one chunk,
  /// and no chunk has more than one frame more than another. Throws ToolError (Usage) if there are
  /// more chunks than frames: a task that renders nothing is a mistake in the job.
  std::vector<int> of(const std::vector<int>& frames) const;
};

}  // namespace drevintool
