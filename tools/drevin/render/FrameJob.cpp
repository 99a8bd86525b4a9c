#include "render/FrameJob.h"

#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "controls/FocusControl.h"
#include "deep/DeepCompanion.h"
#include "deep/DeepWarnings.h"
#include "prepare/PreparedInputs.h"
#include "render/HostPicture.h"
#include "render/MatteControls.h"
#include "render/NotFinite.h"
#include "render/ResultPicture.h"
#include "render/UnusedPictures.h"
#include "sequence/FocusPull.h"
#include "sequence/WholeFile.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/OneLine.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

const char* optionFor(int input) {
  return input == kKernelInput ? "--kernel" : "--mattes";
}

// A PNG has colours and coverage only.
std::vector<std::string> wantedChannels(const RenderArguments& arguments) {
  if (!arguments.channels.empty() || !isPng(arguments.output)) return arguments.channels;
  return {"rgba"};
}

void checkBox(const RenderArguments& arguments, const Picture& input,
              const embedded::RenderResult& result) {
  if (!pixelBox(result.image.box).empty()) return;
  const PixelBox& box = input.box;
  const std::string edges = std::to_string(box.x) + "," + std::to_string(box.y) + "," +
                            std::to_string(box.r) + "," + std::to_string(box.t);
  if (arguments.region) {
    throw ToolError(ExitCode::Usage, "--region: lies outside the picture's box " + edges);
  }
  throw ToolError(ExitCode::RenderFailed, oneLine(input.path + ": nothing to render"));
}

// The views of the depth and of the aperture do not cut samples.
bool defocuses(const Node& node) {
  const Knob* type = node.knob("outputType");
  constexpr double kLensBloom = 1.0;
  return type == nullptr || type->get_value() <= kLensBloom;
}

// The node's own words, with what this command offers against it.
std::string withRemedy(const std::string& error) {
  if (error != "No input kernel connected!") return error;
  return error + " Name a picture of the aperture with --kernel FILE, or --set another kernelType";
}

std::vector<std::string> errorsOf(const embedded::RenderResult& result) {
  std::vector<std::string> errors;
  for (const embedded::Message& message : result.messages) {
    if (message.severity == embedded::Severity::Error) errors.push_back(withRemedy(message.text));
  }
  return errors;
}

}  // namespace

std::string withFrameName(const FrameTask& task, const std::string& message) {
  const std::string name = task.name();
  return name.empty() ? message : name + ": " + message;
}

FrameJob::FrameJob(const FrameShare& share, const FrameTask& task, RenderArguments arguments,
                   FrameProgress progress, std::shared_ptr<const InputPictures> pictures)
    : share_(share),
      task_(task),
      arguments_(std::move(arguments)),
      progress_(std::move(progress)),
      pictures_(std::move(pictures)),
      warnings_(share.changes.warnings()) {}

void FrameJob::read() {
  const Stopwatch reading;
  if (arguments_.skipExisting && isWholePicture(arguments_.output)) return;
  if (!arguments_.camera.empty()) {
    camera_ = share_.files == nullptr ? CameraOption(arguments_.camera)
                                      : share_.files->camera(arguments_.camera);
  }
  if (!pictures_) pictures_ = std::make_shared<const InputPictures>(arguments_, share_.files);
  times_.read = reading.seconds();
}

FrameOutcome FrameJob::finish() {
  FrameOutcome outcome;
  outcome.skipped = pictures_ == nullptr;
  if (outcome.skipped) {
    reportSkipped();
    return outcome;
  }
  total_ = Stopwatch();
  std::unique_ptr<embedded::CameraInput> camera;
  ConnectedInputs inputs;
  Node node(share_.description);
  inputs = pictures_->connectTo(node);
  share_.changes.applyValues(node, task_.frame);
  applyChannels(node);
  const DeepExrSource* deep = pictures_->deep();
  if (deep == nullptr) checkDepthChannel(pictures_->image(), node);
  const std::optional<float> background = applyFixes(node, inputs);
  applyFocus(node, background);
  camera = connectCameraTo(node);
  const std::vector<PlannedChannel> plan = planFor(node);
  const embedded::RenderResult result = render(node, plan);
  tellWarnings(result);
  throwIfInterrupted();
  // Samples are read while rows are made; that they cannot be is a fault of the file.
  if (deep != nullptr && deep->failure()) {
    throw ToolError(ExitCode::InputUnreadable, *deep->failure());
  }
  if (result.status != embedded::RenderStatus::Done) {
    outcome.code = ExitCode::RenderFailed;
    outcome.errors = errorsOf(result);
    return outcome;
  }
  if (deep != nullptr && defocuses(node)) warn(thickWarning(*deep, arguments_.deepOrder));
  if (deep != nullptr) warn(notFiniteWarning(*deep));
  checkBox(arguments_, pictures_->image(), result);
  write(node, plan, result, outcome);
  return outcome;
}

embedded::RenderResult FrameJob::render(Node& node, const std::vector<PlannedChannel>& plan) const {
  embedded::RenderOptions options;
  if (arguments_.region) options.region = hostBox(*arguments_.region);
  options.channels = renderedSet(plan);
  options.threads = arguments_.threads;
  options.proxyScale = static_cast<float>(arguments_.proxy);
  options.progress = progress_;
  try {
    return embedded::render(node, options);
  } catch (const std::bad_alloc&) {
    throw ToolError(ExitCode::RenderFailed, "not enough memory to render");
  }
}

// Prints and keeps a warning of the command's own; an empty one is none.
void FrameJob::warn(const std::string& text) {
  if (text.empty()) return;
  tellWarning(text);
  warnings_.push_back(text);
}

// The same, of what is so for all frames: told with the first of them, and not of it.
void FrameJob::warnOnce(const std::string& text) {
  if (share_.files == nullptr) {
    warn(text);
    return;
  }
  if (text.empty()) return;
  if (share_.files->isNews(text)) printWarning(text);
  warnings_.push_back(text);
}

bool FrameJob::isOfAll(int input) const {
  return share_.files != nullptr && share_.files->has(pictures_->fileOf(input));
}

// The same, of the file on that input.
void FrameJob::warnOf(int input, const std::string& text) {
  isOfAll(input) ? warnOnce(text) : warn(text);
}

// The same, of a file that is not used.
void FrameJob::warnUnused(int input, const std::string& text) {
  if (isOfAll(input)) {
    warnOnce(text);
  } else if (!text.empty()) {
    tellUnused(text);
    warnings_.push_back(text);
  }
}

void FrameJob::applyChannels(Node& node) {
  std::unique_ptr<Picture> withDepths;
  const auto source = [&](const Knob& knob, const ControlSetting& setting) -> const Picture* {
    const int input = sourceInput(knob);
    const Picture* picture = pictures_->at(input);
    if (knob.name() == "depthChannel" && pictures_->deep() != nullptr) {
      withDepths = std::make_unique<Picture>(withDeepDepths(*picture));
      return withDepths.get();
    }
    if (picture == nullptr && setting.value != "none") {
      warnOnce(setting.text + ": has no effect without " + optionFor(input));
    }
    return picture;
  };
  share_.changes.applyChannels(node, source);
}

float FrameJob::focusDistance(const FocusPoint& point) {
  read();
  Node node(share_.description);
  const ConnectedInputs inputs = pictures_->connectTo(node);
  share_.changes.applyValues(node, task_.frame);
  applyChannels(node);
  const std::optional<float> found = pictures_->focusDistance(node, point);
  if (found || !arguments_.fixes.background) return checkedFocus(found, point);
  return checkedFocus(prepareInputs(*pictures_, node, arguments_.fixes).background, point);
}

void FrameJob::applyFocus(Node& node, std::optional<float> background) {
  if (share_.focus != nullptr) {
    const double distance = share_.focus->at(task_);
    setFocus(node, static_cast<float>(distance));
    if (camera_) camera_->setFocus(distance, "--focus-at");
  }
  if (!arguments_.focus) return;
  const FocusPoint& point = *arguments_.focus;
  const std::optional<float> found = pictures_->focusDistance(node, point);
  const float distance = checkedFocus(found ? found : background, point);
  setFocus(node, distance);
  if (camera_) camera_->setFocus(static_cast<double>(distance), "--focus-at");
  tellNote(focusLine(distance, point));
}

// Returns the distance that background got, if it got one.
std::optional<float> FrameJob::applyFixes(Node& node, ConnectedInputs& inputs) {
  if (!arguments_.fixes.any()) return std::nullopt;
  PreparedInputs prepared = prepareInputs(*pictures_, node, arguments_.fixes);
  pictures_->reconnect(node, prepared.image, prepared.deep, inputs);
  mended_ = std::move(prepared.image);
  notes_ = std::move(prepared.notes);
  for (const std::string& note : notes_)
    tellNote(note);
  return prepared.background;
}

std::unique_ptr<embedded::CameraInput> FrameJob::connectCameraTo(Node& node) {
  if (!camera_) return nullptr;
  const FoundCamera found = camera_->at(task_.frame, node, &pictures_->image());
  findings_ = found.findings;
  if (camera_->isHeader()) tellNote("camera: " + cameraLine(found.findings));
  auto camera = std::make_unique<embedded::CameraInput>(found.values);
  connectCamera(node, *camera);
  return camera;
}

std::vector<PlannedChannel> FrameJob::planFor(const Node& node) {
  std::vector<PlannedChannel> plan =
      planChannels(pictures_->image(), node, wantedChannels(arguments_));
  if (const Picture* kernel = pictures_->at(kKernelInput)) {
    warnOf(kKernelInput, missingKernelWarning(*kernel, node, plan));
  }
  warnUnused(kKernelInput, unusedKernelWarning(*pictures_, node));
  warnUnused(kMattesInput, unusedMattesWarning(*pictures_, node));
  if (const DeepExrSource* deep = pictures_->deep()) warn(opaqueWarning(*deep));
  const Picture& seen = mended_ ? *mended_ : pictures_->image();
  notFinite_ = notFinitePixels(seen, plan);
  warnOf(kImageInput, notFiniteWarning(seen, notFinite_));
  warnOfInputs(node, plan);
  return plan;
}

// Of values that are not finite on the inputs beside the image.
void FrameJob::warnOfInputs(const Node& node, const std::vector<PlannedChannel>& plan) {
  const Picture* kernel = pictures_->at(kKernelInput);
  const Picture* mattes = pictures_->at(kMattesInput);
  const std::string ofKernel =
      kernel == nullptr ? std::string() : notFiniteKernelWarning(*kernel, node, plan);
  const std::string ofMattes =
      mattes == nullptr ? std::string() : notFiniteMattesWarning(*mattes, node);
  finiteBeside_ = ofKernel.empty() && ofMattes.empty();
  warnOf(kKernelInput, ofKernel);
  warnOf(kMattesInput, ofMattes);
}

bool FrameJob::sourcesAreFinite() const {
  const DeepExrSource* deep = pictures_->deep();
  return notFinite_ == 0 && finiteBeside_ && (deep == nullptr || deep->counts().notFinite == 0);
}

void FrameJob::tellWarnings(const embedded::RenderResult& result) {
  for (const embedded::Message& message : result.messages) {
    if (message.severity != embedded::Severity::Warning) continue;
    tellWarning(message.text);
  }
}

void FrameJob::tellWarning(const std::string& text) {
  printWarning(withFrameName(task_, text));
}

void FrameJob::tellNote(const std::string& text) {
  printNote(withFrameName(task_, text));
}

void FrameJob::tellUnused(const std::string& text) {
  tellWarning(text);
}

std::optional<std::uint64_t> FrameJob::deliver(const OutputPicture& result) {
  writePicture(result, arguments_.output);
  std::error_code error;
  const std::uintmax_t bytes = std::filesystem::file_size(arguments_.output, error);
  return error ? std::nullopt : std::optional<std::uint64_t>(bytes);
}

FrameStats FrameJob::statsOfResult(const OutputPicture& output,
                                   const std::vector<PlannedChannel>& plan,
                                   std::optional<std::uint64_t> bytes) const {
  FrameStats stats = statsOf(output, plan);
  stats.bytesWritten = bytes;
  stats.notFinite = notFinite_;
  if (const DeepExrSource* deep = pictures_->deep()) {
    const DeepSampleCounts counts = deep->counts();
    stats.samples = counts.samples;
    stats.notFinite += counts.notFinite;
  }
  return stats;
}

// The report that was written when the picture was made says more.
void FrameJob::reportSkipped() const {
  std::error_code error;
  if (arguments_.report.empty() || std::filesystem::exists(arguments_.report, error)) return;
  writeReport(skippedReport(arguments_), arguments_.report);
}

void FrameJob::write(const Node& node, const std::vector<PlannedChannel>& plan,
                     const embedded::RenderResult& result, FrameOutcome& outcome) {
  const Stopwatch writing;
  const OutputPicture output = composeOutput(pictures_->image(), plan, result, arguments_.format);
  if (sourcesAreFinite()) warn(notFiniteResultWarning(output, plan));
  const std::optional<std::uint64_t> bytes = deliver(output);
  times_.write = writing.seconds();
  times_.total = times_.read + total_.seconds();
  if (!share_.wantsReport && !arguments_.stats) return;
  const FrameStats stats = statsOfResult(output, plan, bytes);
  if (arguments_.stats) printNote("stats: " + statsLine(task_, stats, times_));
  if (!share_.wantsReport) return;
  nlohmann::ordered_json report =
      renderReport(arguments_, node, *pictures_, result, {times_, warnings_, notes_, findings_});
  report["stats"] = statsJson(stats);
  if (!arguments_.report.empty()) writeReport(report, arguments_.report);
  outcome.report = std::make_shared<const nlohmann::ordered_json>(std::move(report));
}

}  // namespace drevintool
