#pragma once

/// Which pictures a command line asks for, and the files of each.

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "arguments/RenderArguments.h"
#include "sequence/FileSet.h"
#include "sequence/FramePattern.h"
#include "sequence/FrameTask.h"

namespace drevintool {

class SequencePlan {
 public:
  /// Throws ToolError (Usage) if a path has a place for a frame or a view and none is asked for, if
  /// two pictures would be written to one file, if one would take the place of a file that another
  /// picture is made of, or if a report would take the place of a picture or of another file that
  /// is read.
  explicit SequencePlan(const RenderArguments& arguments);

  /// Whether frames or views were asked for.
  bool isSequence() const { return sequence_; }
  /// Whether each picture has a report of its own.
  bool reportsEach() const { return reportsEach_; }
  /// All views of the first frame, then those of the next.
  const std::vector<FrameTask>& tasks() const { return tasks_; }
  /// Files that all pictures read, none if there is but one.
  std::set<std::string> sharedFiles() const;
  /// The arguments of one picture: paths with its frame and view in their places, and no frames or
  /// views themselves.
  RenderArguments argumentsOf(const FrameTask& task) const;

  /// Throws ToolError (Usage) if an input that has a place for the frame or the view is missing for
  /// some pictures, before hours are spent on the others; where bad frames are skipped, only if it
  /// is there for none. Throws ToolError (InputUnreadable) if an input of all pictures is missing.
  /// A picture whose output is there, and may stay, needs no input. This and all below, and the
  /// constructor, throw ToolError (Interrupted or Terminated) soon after a signal.
  void checkInputs() const;
  /// Throws ToolError (Usage) if a result would take the place of a picture that it is made of.
  void checkInputsStay() const;
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
  void checkForeignPlace(const Path& path) const;
  void checkOutputsDiffer() const;
  void checkTakenPlaces() const;
  void checkReports() const;
  FileSet outputFiles() const;
  void refuseOutput(const char* option, FileSet& outputs, const char* reason) const;
  void refuseOutputOfOthers(FileSet& outputs) const;
  template <typename Visit>
  void forEachFile(const char* option, const Visit& visit) const;
  const Path& pathOf(const char* option) const;
  std::vector<FrameTask> missing(const Path& path) const;
  void checkOfAll(const Path& path) const;
  [[noreturn]] void failMissing(const Path& path, const std::vector<FrameTask>& tasks) const;
  static std::string filled(const Path& path, const FrameTask& task);

  RenderArguments arguments_;
  RenderArguments picture_;  // the same without the lists of frames and views, which may be long
  bool sequence_;
  bool reportsEach_ = false;
  std::vector<Path> paths_;
  std::vector<FrameTask> tasks_;
};

}  // namespace drevintool
