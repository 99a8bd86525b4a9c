#include "render/RenderCommand.h"

#include <OpenEXR/ImfThreading.h>

#include <memory>
#include <new>

#include "EmbeddedHost/DeepOrder.h"
#include "controls/CameraText.h"
#include "controls/ControlText.h"
#include "controls/PluginSearch.h"
#include "deep/DeepCompanion.h"
#include "deep/DeepWarnings.h"
#include "picture/AtomicFile.h"
#include "picture/ExrWriter.h"
#include "picture/OutputPicture.h"
#include "picture/PngWriter.h"
#include "render/ChannelPlan.h"
#include "render/HostPicture.h"
#include "render/InputPictures.h"
#include "render/Report.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/OneLine.h"
#include "terminal/Progress.h"
#include "terminal/Signals.h"
#include "terminal/Stopwatch.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

std::vector<ControlSetting> parseSettings(const std::vector<std::string>& texts) {
  std::vector<ControlSetting> settings;
  settings.reserve(texts.size());
  for (const std::string& text : texts)
    settings.push_back(parseSetting(text));
  return settings;
}

// Controls whose values do not depend on the pictures: faults show before anything is read.
void applyValues(Node& node, const std::vector<ControlSetting>& settings) {
  for (const ControlSetting& setting : settings) {
    Knob& knob = controlNamed(node, setting);
    if (!picksChannels(knob)) setValue(node, knob, setting);
  }
}

// The kernel's stand-in channel is listed with the mattes, but taken from the aperture image.
int sourceInput(const Knob& knob) {
  return knob.name() == "missingKernelChannel" ? kKernelInput : knob.channelInput();
}

const char* optionFor(int input) {
  return input == kKernelInput ? "--kernel" : "--mattes";
}

void checkOutputs(const RenderArguments& arguments) {
  AtomicFile::checkPlace(arguments.output);
  if (!arguments.report.empty()) AtomicFile::checkPlace(arguments.report);
}

// Threads of the picture library. It is not built for the thread sanitizer, which would take its
// hand-overs between threads for races.
int pictureThreads(unsigned threads) {
#ifdef __SANITIZE_THREAD__
  static_cast<void>(threads);
  return 0;
#else
  return threads > 1 ? static_cast<int>(threads) : 0;
#endif
}

void chooseThreads(const RenderArguments& arguments) {
  embedded::setThreadCount(arguments.threads);
  const unsigned threads =
      arguments.threads == 0 ? embedded::usableProcessors() : arguments.threads;
  Imf::setGlobalThreadCount(pictureThreads(threads));
}

bool isPng(const std::string& path) {
  const char last = path.back();
  return last == 'g' || last == 'G';
}

// A PNG has colours and coverage only.
std::vector<std::string> wantedChannels(const RenderArguments& arguments) {
  if (!arguments.channels.empty() || !isPng(arguments.output)) return arguments.channels;
  return {"rgba"};
}

embedded::RenderResult render(Node& node, const RenderArguments& arguments,
                              const std::vector<PlannedChannel>& plan) {
  embedded::RenderOptions options;
  if (arguments.region) options.region = hostBox(*arguments.region);
  options.channels = renderedSet(plan);
  options.threads = arguments.threads;
  options.proxyScale = static_cast<float>(arguments.proxy);
  ProgressDisplay display(arguments.quiet);
  options.progress = [&](const embedded::Progress& progress) { display.show(progress); };
  try {
    embedded::RenderResult result = embedded::render(node, options);
    if (result.status == embedded::RenderStatus::Done) display.finish();
    return result;
  } catch (const std::bad_alloc&) {
    throw ToolError(ExitCode::RenderFailed, "not enough memory to render");
  }
}

void printWarnings(const embedded::RenderResult& result) {
  for (const embedded::Message& message : result.messages) {
    if (message.severity == embedded::Severity::Warning) printWarning(message.text);
  }
}

void printErrors(const embedded::RenderResult& result) {
  for (const embedded::Message& message : result.messages) {
    if (message.severity == embedded::Severity::Error) printError(message.text);
  }
}

// Without a rendered channel of that name the node drew nothing into it.
Samples renderedSamples(const embedded::RenderResult& result, const PlannedChannel& channel) {
  const auto plane = result.image.planes.find(DD::Image::findChannel(channel.hostName.c_str()));
  if (plane != result.image.planes.end()) return FloatSamples(plane->second);
  const PixelBox box = pixelBox(result.image.box);
  return FloatSamples(std::make_shared<std::vector<float>>(box.area()));
}

OutputPicture composeOutput(const Picture& input, const std::vector<PlannedChannel>& plan,
                            const embedded::RenderResult& result) {
  OutputPicture output;
  output.display = input.display;
  output.box = pixelBox(result.image.box);
  output.attributes = input.attributes;
  for (const PlannedChannel& channel : plan) {
    Samples samples = channel.rendered ? renderedSamples(result, channel)
                                       : cutSamples(input, *channel.source, output.box);
    output.channels.push_back({channel.fileName, channel.hostName, std::move(samples)});
  }
  return output;
}

void write(const OutputPicture& output, const std::string& path) {
  if (isPng(path)) {
    writePng(output, path);
  } else {
    writeExr(output, path);
  }
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

// All the parts of one render; they are destroyed in the order that their owners need.
class RenderJob {
 public:
  explicit RenderJob(const RenderArguments& arguments)
      : arguments_(arguments), settings_(parseSettings(arguments.settings)) {}

  int run() {
    const DD::Image::Op::Description& description = loadNodeClass(arguments_.plugin);
    chooseThreads(arguments_);
    embedded::setDeepOrder(arguments_.deepOrder);
    // Faults of the command line show on a node of their own, before anything is read.
    checkCommandLine(description);
    checkOutputs(arguments_);
    const Stopwatch reading;
    InputPictures pictures(arguments_);
    times_.read = reading.seconds();
    return renderOver(pictures, description);
  }

 private:
  void checkCommandLine(const DD::Image::Op::Description& description) const {
    Node node(description);
    applyValues(node, settings_);
    if (!arguments_.camera.empty()) parseCamera(arguments_.camera, node);
  }

  int renderOver(InputPictures& pictures, const DD::Image::Op::Description& description) {
    std::unique_ptr<embedded::CameraInput> camera;
    Node node(description);
    pictures.connectTo(node);
    applyValues(node, settings_);
    applyChannels(node, pictures);
    if (pictures.deep() == nullptr) checkDepthChannel(pictures.image(), node);
    if (!arguments_.camera.empty()) {
      camera = std::make_unique<embedded::CameraInput>(parseCamera(arguments_.camera, node));
      connectCamera(node, *camera);
    }
    const std::vector<PlannedChannel> plan =
        planChannels(pictures.image(), node, wantedChannels(arguments_));
    if (const Picture* kernel = pictures.at(kKernelInput)) {
      warn(missingKernelWarning(*kernel, node, plan));
    }
    const DeepExrSource* deep = pictures.deep();
    if (deep != nullptr) warn(opaqueWarning(*deep));
    const embedded::RenderResult result = render(node, arguments_, plan);
    printWarnings(result);
    throwIfInterrupted();
    // Samples are read while rows are made; that they cannot be is a fault of the file.
    if (deep != nullptr && deep->failure()) {
      throw ToolError(ExitCode::InputUnreadable, *deep->failure());
    }
    if (result.status != embedded::RenderStatus::Done) {
      printErrors(result);
      return static_cast<int>(ExitCode::RenderFailed);
    }
    if (deep != nullptr && defocuses(node)) warn(thickWarning(*deep, arguments_.deepOrder));
    checkBox(arguments_, pictures.image(), result);
    finish(pictures, node, plan, result);
    return static_cast<int>(ExitCode::Done);
  }

  // Prints and keeps a warning of the command's own; an empty one is none.
  void warn(const std::string& text) {
    if (text.empty()) return;
    printWarning(text);
    warnings_.push_back(text);
  }

  void applyChannels(Node& node, const InputPictures& pictures) {
    for (const ControlSetting& setting : settings_) {
      Knob& knob = controlNamed(node, setting);
      if (!picksChannels(knob)) continue;
      const int input = sourceInput(knob);
      const Picture* source = pictures.at(input);
      if (knob.name() == "depthChannel" && pictures.deep() != nullptr) {
        const Picture choices = withDeepDepths(*source);
        setChannels(node, knob, setting, &choices);
        continue;
      }
      setChannels(node, knob, setting, source);
      if (source == nullptr && setting.value != "none") {
        warn("--set " + setting.text + ": has no effect without " + optionFor(input));
      }
    }
  }

  void finish(const InputPictures& pictures, const Node& node,
              const std::vector<PlannedChannel>& plan, const embedded::RenderResult& result) {
    const Stopwatch writing;
    write(composeOutput(pictures.image(), plan, result), arguments_.output);
    times_.write = writing.seconds();
    times_.total = total_.seconds();
    if (!arguments_.report.empty()) {
      writeReport(arguments_, node, pictures, result, {times_, warnings_});
    }
  }

  const RenderArguments& arguments_;
  const std::vector<ControlSetting> settings_;
  const Stopwatch total_;
  CommandTimes times_;
  std::vector<std::string> warnings_;
};

}  // namespace

int runRender(const RenderArguments& arguments) {
  return RenderJob(arguments).run();
}

}  // namespace drevintool
