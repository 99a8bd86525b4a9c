#pragma once

/// Which pictures a command line asks for, and the files of each.

#include <cstddef>
#include <vector>

#include "arguments/RenderArguments.h"
#include "sequence/FramePattern.h"
#include "sequence/FrameTask.h"

namespace drevintool {

class SequencePlan {
 public:
  /// Throws ToolError (Usage) if a path has a place for a frame or a view and none is asked for, or
  /// if two pictures would be written to one file.
  explicit SequencePlan(const RenderArguments& arguments);

  /// Whether frames or views were asked for.
  bool isSequence() const { return sequence_; }
  /// Whether each picture has a report of its own.
  bool reportsEach() const { return reportsEach_; }
  /// All views of the first frame, then those of the next.
  const std::vector<FrameTask>& tasks() const { return tasks_; }
  /// The arguments of one picture: paths with its frame and view in their places.
  RenderArguments argumentsOf(const FrameTask& task) const;

  /// Throws ToolError (InputUnreadable) if one of the inputs that has a place for the frame or the
  /// view is not there for any picture.
  void checkInputs() const;
  /// Throws ToolError (OutputNotWritten) if a folder of the outputs cannot be written to.
  void checkOutputs() const;

 private:
  struct Path {
    const char* option;
    std::string RenderArguments::*text;
    FramePattern pattern;
  };

  void addPath(const char* option, std::string RenderArguments::*text);
  void checkPlaces() const;
  void checkOutputsDiffer() const;
  const Path& pathOf(const char* option) const;
  static std::string filled(const Path& path, const FrameTask& task);

  RenderArguments arguments_;
  bool sequence_;
  bool reportsEach_ = false;
  std::vector<Path> paths_;
  std::vector<FrameTask> tasks_;
};

}  // namespace drevintool
