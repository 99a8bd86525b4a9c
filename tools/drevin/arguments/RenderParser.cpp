#include "arguments/RenderParser.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

#include "arguments/NodeOptions.h"
#include "arguments/OptionChecks.h"
#include "picture/ChannelNames.h"
#include "sequence/FrameChunk.h"
#include "sequence/FrameList.h"
#include "terminal/NearestName.h"
#include "terminal/NumberText.h"

namespace drevintool {
namespace {

constexpr int kMostThreads = 1024;
constexpr int kMostFramesInFlight = 64;

std::string lowerExtension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  return extension;
}

[[noreturn]] void failRegion(const std::string& text, const std::string& reason) {
  failUsage("--region " + text + ": " + reason);
}

int parseEdge(const std::string& piece, const std::string& region) {
  constexpr int kFarthest = 1 << 28;
  const std::optional<int> edge = parseInteger(piece);
  if (!edge || *edge < -kFarthest || *edge > kFarthest) {
    failRegion(region, "'" + piece + "' is not a whole number, or too large");
  }
  return *edge;
}

PixelBox parseRegion(const std::string& text) {
  std::vector<int> edges;
  for (const std::string& piece : splitList(text))
    edges.push_back(parseEdge(piece, text));
  if (edges.size() != 4) failRegion(text, "give four whole numbers, x,y,r,t");
  const PixelBox box{edges[0], edges[1], edges[2], edges[3]};
  if (box.empty()) failRegion(text, "is empty; r must be above x and t above y");
  return box;
}

double parseProxy(const std::string& text) {
  const std::optional<double> scale = parseNumber(text);
  if (!scale || *scale <= 0.0) failUsage("--proxy " + text + ": give a number above 0");
  return *scale;
}

std::vector<std::string> parseChannels(const std::string& text) {
  std::vector<std::string> names = splitList(text);
  const bool blank = std::find(names.begin(), names.end(), "") != names.end();
  if (names.empty() || blank) failUsage("--channels " + text + ": give names separated by commas");
  return names;
}

embedded::DeepOrder parseDeepOrder(const std::string& text) {
  if (text == "near-first") return embedded::DeepOrder::NearFirst;
  if (text == "far-first") return embedded::DeepOrder::FarFirst;
  failUsage("--deep-order " + text + ": give near-first or far-first" +
            nearestHint(text, {"near-first", "far-first"}));
}

void checkOutput(const std::string& output) {
  if (output.empty()) failUsage("--output is missing: name the result, .exr or .png");
  const std::string extension = lowerExtension(output);
  if (extension != ".exr" && extension != ".png") {
    failUsage("--output " + output + ": the name must end in .exr or .png");
  }
}

// A PNG has a type and a compression of its own.
void checkFormatFits(const CLI::App& app, const std::string& output) {
  if (lowerExtension(output) != ".png") return;
  for (const char* option : {"--compression", "--type"}) {
    if (!given(app, option)) continue;
    failUsage(std::string(option) + ": is for EXR; leave it out, or name an .exr instead of " +
              "--output " + output);
  }
}

std::vector<std::string> parseViews(const std::string& text) {
  std::vector<std::string> views = splitList(text);
  const bool blank = std::find(views.begin(), views.end(), "") != views.end();
  if (views.empty() || blank) failUsage("--views " + text + ": give names separated by commas");
  const std::set<std::string> different(views.begin(), views.end());
  if (different.size() != views.size()) failUsage("--views " + text + ": names a view twice");
  return views;
}

void checkDeepGiven(const CLI::App& app) {
  for (const char* option : {"--deep-part", "--view", "--deep-order"}) {
    if (given(app, option) && !given(app, "--deep")) {
      failUsage(std::string(option) + ": is for deep pictures; name one with --deep");
    }
  }
}

}  // namespace

RenderParser::RenderParser(CLI::App& app)
    : RenderParser(*app.add_subcommand("render", "Defocus a picture"), RenderScope::Pictures) {}

RenderParser::RenderParser(CLI::App& subcommand, RenderScope scope)
    : app_(subcommand), scope_(scope) {
  addPictures();
  addDeep();
  addNodeOptions(app_, arguments_);
  focus_.addTo(app_);
  fixes_.addTo(app_);
  addOutput();
  addSequence();
}

void RenderParser::addPictures() {
  app_.add_option("--input", arguments_.input, "The picture with its depth channel (EXR)")
      ->type_name("FILE");
  app_.add_option("--kernel", arguments_.kernel, "A picture of the aperture (EXR)")
      ->type_name("FILE");
  app_.add_option("--mattes", arguments_.mattes, "Mattes for defocus, bloom and aberration (EXR)")
      ->type_name("FILE");
}

void RenderParser::addDeep() {
  app_.add_option("--deep", arguments_.deep,
                  "A deep picture (EXR), defocused sample by sample; with it --input may be left "
                  "out, or gives the channels that the samples lack")
      ->type_name("FILE");
  app_.add_option("--deep-part", arguments_.deepPart,
                  "The part of the deep file (default: its first deep part)")
      ->type_name("NAME");
  app_.add_option("--view", arguments_.view,
                  "The view of the deep file: its first deep part of that view")
      ->type_name("NAME");
  app_.add_option("--deep-order", deepOrder_,
                  "How deep samples are served: near-first (default), or far-first as "
                  "general-purpose tools do, which cuts thick samples in depth order")
      ->type_name("ORDER");
}

void RenderParser::addOutput() {
  app_.add_option("--region", region_,
                  "Render only columns x to r-1 and rows y to t-1; row 0 is the bottom row")
      ->type_name("x,y,r,t");
  if (scope_ == RenderScope::Pictures) {
    app_.add_option("--channels", channels_,
                    "Write only these (R,G,B,Z,layer.name; rgb; rgba; all)")
        ->type_name("LIST");
  }
  app_.add_option("--threads", threads_, "Threads (default: all that may be used)")->type_name("N");
  app_.add_option("--proxy", proxy_, "Proxy scale of the interface's context (default 1)")
      ->type_name("SCALE");
  memory_.addTo(app_);
  format_.addTo(app_);
  app_.add_option("--report", arguments_.report,
                  "Write what was done and how long it took (JSON; -: to standard output)")
      ->type_name("FILE");
  if (scope_ == RenderScope::Pictures) {
    app_.add_flag("--stats", arguments_.stats,
                  "A line for each picture on standard error: seconds, bytes, pixels, what is not "
                  "finite, the range of each channel");
  }
  app_.add_flag("--quiet", arguments_.quiet,
                "No progress, and no notes of pictures that were there already or are done once "
                "more for want of memory; what was found for "
                "--focus-at, --camera header and fixes is told all the same, as are warnings");
  app_.add_option("--output", arguments_.output, "The result, .exr or .png")->type_name("FILE");
}

void RenderParser::addSequence() {
  app_.add_option(
          "--frames", frames_,
          "Frames to render, such as 1-100x2,120,130-125; they stand where paths have ####, "
          "@ or %04d")
      ->type_name("LIST");
  app_.add_option("--chunk", chunk_,
                  "Render only one of several equal shares of --frames, such as 3/10: for the "
                  "tasks of a job array")
      ->type_name("I/N");
  app_.add_option("--views", views_,
                  "Views to render; their names stand where paths have %V, their first letters "
                  "where they have %v")
      ->type_name("NAME,...");
  if (scope_ == RenderScope::Pictures) addSkipping();
  app_.add_option("--frames-in-flight", framesInFlight_,
                  "Frames rendered at a time (default: several if they are small)")
      ->type_name("N");
}

void RenderParser::addSkipping() {
  app_.add_flag("--skip-existing", arguments_.skipExisting,
                "Leave frames alone whose output is there and whole");
  app_.add_flag("--skip-bad-frames", arguments_.skipBadFrames,
                "Go on after a frame that fails; they are named at the end, with exit code 1");
}

void RenderParser::checkSequence(RenderArguments& arguments) const {
  if (given(app_, "--frames")) arguments.frames = parseFrameList(frames_);
  if (given(app_, "--chunk")) {
    if (arguments.frames.empty()) failUsage("--chunk: is a share of a sequence; give --frames");
    arguments.frames = FrameChunk::parse(chunk_).of(arguments.frames);
  }
  if (given(app_, "--views")) arguments.views = parseViews(views_);
  if (given(app_, "--frames-in-flight")) {
    arguments.framesInFlight =
        parseCount("--frames-in-flight", framesInFlight_, kMostFramesInFlight);
  }
  const bool many = !arguments.frames.empty() || !arguments.views.empty();
  if (many || scope_ == RenderScope::Sheet) return;
  for (const char* option : {"--skip-bad-frames", "--frames-in-flight"}) {
    if (given(app_, option)) failUsage(std::string(option) + ": is for sequences; give --frames");
  }
}

void RenderParser::checkFocusKeys(const RenderArguments& arguments) const {
  if (arguments.focusKeys.empty()) return;
  const std::string start = "--focus-at " + arguments.focusKeys.front().point.text + ": is a key; ";
  if (scope_ == RenderScope::Sheet) failUsage(start + "a sheet shows one frame, so give x,y alone");
  if (arguments.frames.empty()) {
    failUsage(start + "name the frames to render with --frames, such as --frames 12");
  }
}

bool RenderParser::parsed() const {
  return app_.parsed();
}

RenderArguments RenderParser::checked() const {
  checkNotEmpty(app_, {"--deep", "--deep-part", "--view", "--kernel", "--mattes", "--report"});
  checkNodeOptions(app_);
  checkDeepGiven(app_);
  RenderArguments arguments = arguments_;
  if (arguments.input.empty() && (given(app_, "--input") || !given(app_, "--deep"))) {
    failUsage("--input is missing: name the picture to defocus, or a deep one with --deep");
  }
  checkOutput(arguments.output);
  arguments.fixes = fixes_.checked(app_);
  arguments.focus = focus_.checked(app_, arguments);
  arguments.focusKeys = focus_.keys();
  if (given(app_, "--deep-order")) arguments.deepOrder = parseDeepOrder(deepOrder_);
  if (given(app_, "--region")) arguments.region = parseRegion(region_);
  const bool sheet = scope_ == RenderScope::Sheet;
  if (!sheet && given(app_, "--channels")) arguments.channels = parseChannels(channels_);
  if (given(app_, "--threads")) arguments.threads = parseCount("--threads", threads_, kMostThreads);
  arguments.maxMemory = memory_.checked(app_);
  arguments.format = format_.checked(app_);
  checkFormatFits(app_, arguments.output);
  if (given(app_, "--proxy")) arguments.proxy = parseProxy(proxy_);
  checkSequence(arguments);
  checkFocusKeys(arguments);
  return arguments;
}

}  // namespace drevintool
