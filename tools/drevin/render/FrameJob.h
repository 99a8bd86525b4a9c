#pragma once

/// One picture, from its files to the result.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "EmbeddedHost/CameraInput.h"
#include "EmbeddedHost/Render.h"
#include "arguments/RenderArguments.h"
#include "controls/CameraOption.h"
#include "controls/ControlChanges.h"
#include "picture/OutputPicture.h"
#include "render/ChannelPlan.h"
#include "render/FrameStats.h"
#include "render/InputPictures.h"
#include "render/Report.h"
#include "render/SharedFiles.h"
#include "sequence/FrameOutcome.h"
#include "sequence/FrameRunner.h"
#include "sequence/FrameTask.h"
#include "terminal/Stopwatch.h"

namespace drevintool {

class FocusPull;

/// What all frames of a command share.
struct FrameShare {
  const DD::Image::Op::Description& description;
  const ControlChanges& changes;
  bool wantsReport = false;          ///< also where a frame has no report file of its own
  SharedFiles* files = nullptr;      ///< that all frames read; null: none
  const FocusPull* focus = nullptr;  ///< null: the arguments say what to focus on
};

/// Told how far a frame is, on the thread that renders it.
using FrameProgress = std::function<void(const embedded::Progress&)>;

class FrameJob : public FrameWork {
 public:
  /// `arguments` are those of this frame alone: its paths are files. `pictures` are theirs, where
  /// they were read already.
  FrameJob(const FrameShare& share, const FrameTask& task, RenderArguments arguments,
           FrameProgress progress, std::shared_ptr<const InputPictures> pictures = nullptr);

  /// Reads the pictures, unless the output is there and may stay. Throws ToolError.
  void read() override;
  /// Renders and delivers. The node's errors are the outcome's. Throws ToolError for all else.
  FrameOutcome finish() override;

  /// In the place of both: reads the pictures and returns the distance at a point of them, with the
  /// controls of this frame. Throws ToolError.
  float focusDistance(const FocusPoint& point);

 protected:
  /// Writes the result to the output that the arguments name. Returns the bytes of the file;
  /// nothing if it becomes none of its own.
  virtual std::optional<std::uint64_t> deliver(const OutputPicture& result);
  /// Warnings and notes, as they come, to standard error, with the frame's name before them.
  virtual void tellWarning(const std::string& text);
  virtual void tellNote(const std::string& text);
  /// The same for a warning that a picture was given and is not used.
  virtual void tellUnused(const std::string& text);

 private:
  embedded::RenderResult render(Node& node, const std::vector<PlannedChannel>& plan) const;
  void warn(const std::string& text);
  void warnOnce(const std::string& text);
  void warnOf(int input, const std::string& text);
  void warnUnused(int input, const std::string& text);
  bool isOfAll(int input) const;
  void applyChannels(Node& node);
  std::optional<float> applyFixes(Node& node, ConnectedInputs& inputs);
  void applyFocus(Node& node, std::optional<float> background);
  std::unique_ptr<embedded::CameraInput> connectCameraTo(Node& node);
  std::vector<PlannedChannel> planFor(const Node& node);
  void warnOfInputs(const Node& node, const std::vector<PlannedChannel>& plan);
  bool sourcesAreFinite() const;
  void tellWarnings(const embedded::RenderResult& result);
  void reportSkipped() const;
  void write(const Node& node, const std::vector<PlannedChannel>& plan,
             const embedded::RenderResult& result, FrameOutcome& outcome);
  FrameStats statsOfResult(const OutputPicture& output, const std::vector<PlannedChannel>& plan,
                           std::optional<std::uint64_t> bytes) const;

  FrameShare share_;
  FrameTask task_;
  RenderArguments arguments_;
  FrameProgress progress_;
  std::shared_ptr<const InputPictures> pictures_;
  Stopwatch total_;  // without the reading, which may be long before
  CommandTimes times_;
  std::vector<std::string> warnings_;
  std::vector<std::string> notes_;  // of what was mended
  std::optional<Picture> mended_;   // what the node sees on input 0, if not the picture itself
  std::optional<CameraOption> camera_;
  std::size_t notFinite_ = 0;                      // pixels of the input
  bool finiteBeside_ = true;                       // the aperture's picture and the mattes
  std::map<std::string, CameraFinding> findings_;  // of the camera
};

/// The name of a frame before a message about it: "frame 12: message".
std::string withFrameName(const FrameTask& task, const std::string& message);

}  // namespace drevintool
