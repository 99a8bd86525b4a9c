#include "Arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "picture/ChannelNames.h"
#include "terminal/ExitCode.h"
#include "terminal/NearestName.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

[[noreturn]] void fail(const std::string& line) {
  throw ToolError(ExitCode::Usage, oneLine(line));
}

// What CLI11 fills in before it is checked.
struct RawRender {
  RenderArguments arguments;
  std::string deepOrder;
  std::string region;
  std::string channels;
  std::string threads;
  std::string proxy;
};

void addSettings(CLI::App& app, std::vector<std::string>& settings, std::string& camera,
                 std::string& plugin) {
  app.add_option("--set", settings,
                 "Set a control as by hand, in the order given: a number, 0/1/true/false, several "
                 "values by commas, a choice's label or index, channel names")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--camera", camera,
                 "A camera on the Camera input: focalLength (mm), fStop, focalPlane (scene units), "
                 "horizontalAperture, verticalAperture (mm), those that matter; it wins over --set")
      ->type_name("KEY=VALUE,...");
  app.add_option(
         "--plugin", plugin,
         "The plug-in (default: DREVIN_PLUGIN, else Drevin.so beside the command or in ../lib)")
      ->type_name("FILE");
}

void addPictures(CLI::App& app, RenderArguments& arguments) {
  app.add_option("--input", arguments.input, "The picture with its depth channel (EXR)")
      ->type_name("FILE");
  app.add_option("--kernel", arguments.kernel, "A picture of the aperture (EXR)")
      ->type_name("FILE");
  app.add_option("--mattes", arguments.mattes, "Mattes for defocus, bloom and aberration (EXR)")
      ->type_name("FILE");
}

void addDeep(CLI::App& app, RawRender& raw) {
  app.add_option("--deep", raw.arguments.deep,
                 "A deep picture (EXR), defocused sample by sample; with it --input may be left "
                 "out, or gives the channels that the samples lack")
      ->type_name("FILE");
  app.add_option("--deep-part", raw.arguments.deepPart,
                 "The part of the deep file (default: its first deep part)")
      ->type_name("NAME");
  app.add_option("--view", raw.arguments.view,
                 "The view of the deep file: its first deep part of that view")
      ->type_name("NAME");
  app.add_option("--deep-order", raw.deepOrder,
                 "How deep samples are served: near-first (default), or far-first as "
                 "general-purpose tools do, which cuts thick samples in depth order")
      ->type_name("ORDER");
}

CLI::App* addRender(CLI::App& app, RawRender& raw) {
  CLI::App* render = app.add_subcommand("render", "Defocus a picture");
  RenderArguments& arguments = raw.arguments;
  addPictures(*render, arguments);
  addDeep(*render, raw);
  addSettings(*render, arguments.settings, arguments.camera, arguments.plugin);
  render
      ->add_option("--region", raw.region,
                   "Render only columns x to r-1 and rows y to t-1; row 0 is the bottom row")
      ->type_name("x,y,r,t");
  render
      ->add_option("--channels", raw.channels,
                   "Write only these (R,G,B,Z,layer.name; rgb; rgba; all)")
      ->type_name("LIST");
  render->add_option("--threads", raw.threads, "Threads (default: all that may be used)")
      ->type_name("N");
  render->add_option("--proxy", raw.proxy, "Proxy scale of the interface's context (default 1)")
      ->type_name("SCALE");
  render
      ->add_option("--report", arguments.report, "Write what was done and how long it took (JSON)")
      ->type_name("FILE");
  render->add_flag("--quiet", arguments.quiet, "No progress");
  render->add_option("--output", arguments.output, "The result, .exr or .png")->type_name("FILE");
  return render;
}

std::string lowerExtension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  return extension;
}

[[noreturn]] void failRegion(const std::string& text, const std::string& reason) {
  fail("--region " + text + ": " + reason);
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

unsigned parseThreads(const std::string& text) {
  constexpr int kMost = 1024;
  const std::optional<int> threads = parseInteger(text);
  if (!threads || *threads < 1 || *threads > kMost) {
    fail("--threads " + text + ": give a whole number from 1 to 1024");
  }
  return static_cast<unsigned>(*threads);
}

double parseProxy(const std::string& text) {
  const std::optional<double> scale = parseNumber(text);
  if (!scale || *scale <= 0.0) fail("--proxy " + text + ": give a number above 0");
  return *scale;
}

std::vector<std::string> parseChannels(const std::string& text) {
  std::vector<std::string> names = splitList(text);
  const bool blank = std::find(names.begin(), names.end(), "") != names.end();
  if (names.empty() || blank) fail("--channels " + text + ": give names separated by commas");
  return names;
}

bool given(const CLI::App& app, const char* option) {
  return app.get_option(option)->count() > 0;
}

embedded::DeepOrder parseDeepOrder(const std::string& text) {
  if (text == "near-first") return embedded::DeepOrder::NearFirst;
  if (text == "far-first") return embedded::DeepOrder::FarFirst;
  fail("--deep-order " + text + ": give near-first or far-first");
}

void checkNotEmpty(const CLI::App& app) {
  for (const char* option : {"--deep", "--deep-part", "--view", "--kernel", "--mattes", "--camera",
                             "--plugin", "--report"}) {
    if (given(app, option) && app.get_option(option)->as<std::string>().empty()) {
      fail(std::string(option) + ": is empty");
    }
  }
}

void checkDeep(const CLI::App& app, RawRender& raw) {
  for (const char* option : {"--deep-part", "--view", "--deep-order"}) {
    if (given(app, option) && !given(app, "--deep")) {
      fail(std::string(option) + ": is for deep pictures; name one with --deep");
    }
  }
  if (given(app, "--deep-order")) raw.arguments.deepOrder = parseDeepOrder(raw.deepOrder);
}

void checkOutput(const std::string& output) {
  if (output.empty()) fail("--output is missing: name the result, .exr or .png");
  const std::string extension = lowerExtension(output);
  if (extension != ".exr" && extension != ".png") {
    fail("--output " + output + ": the name must end in .exr or .png");
  }
}

RenderArguments checkedRender(const CLI::App& app, RawRender raw) {
  RenderArguments& arguments = raw.arguments;
  checkNotEmpty(app);
  checkDeep(app, raw);
  if (arguments.input.empty() && (given(app, "--input") || !given(app, "--deep"))) {
    fail("--input is missing: name the picture to defocus, or a deep one with --deep");
  }
  checkOutput(arguments.output);
  if (given(app, "--region")) arguments.region = parseRegion(raw.region);
  if (given(app, "--channels")) arguments.channels = parseChannels(raw.channels);
  if (given(app, "--threads")) arguments.threads = parseThreads(raw.threads);
  if (given(app, "--proxy")) arguments.proxy = parseProxy(raw.proxy);
  return std::move(arguments);
}

// The options of the subcommand that was begun, for a hint at the one that was meant.
std::string hintFor(const CLI::App& app, int count, const char* const* texts) {
  const std::vector<CLI::App*> begun = app.get_subcommands();
  const CLI::App& active = begun.empty() ? app : *begun.front();
  std::vector<std::string> names;
  for (const CLI::Option* option : active.get_options())
    names.push_back(option->get_name());
  if (begun.empty()) names.insert(names.end(), {"render", "controls", "demo"});
  for (int i = 1; i < count; ++i) {
    const std::string text = std::string(texts[i]).substr(0, std::string(texts[i]).find('='));
    const bool known = std::find(names.begin(), names.end(), text) != names.end();
    const bool candidate = begun.empty() ? i == 1 : text.rfind("--", 0) == 0;
    const std::string nearest = candidate && !known ? nearestName(text, names) : "";
    if (!nearest.empty()) return "; did you mean " + nearest + "?";
  }
  return "; see drevin " + (begun.empty() ? "" : active.get_name() + " ") + "--help";
}

}  // namespace

Arguments parseArguments(int count, const char* const* texts) {
  CLI::App app("Lens defocus of pictures with depth", "drevin");
  app.set_version_flag("--version", "drevin " DREVIN_VERSION);
  app.require_subcommand(1);
  RawRender raw;
  ControlsArguments controls;
  DemoArguments demo;
  const CLI::App* render = addRender(app, raw);
  CLI::App* list =
      app.add_subcommand("controls", "Print the node's controls, after the changes given");
  list->add_flag("--json", controls.json, "As a JSON array");
  addSettings(*list, controls.settings, controls.camera, controls.plugin);
  CLI::App* scene = app.add_subcommand("demo", "Write a scene that shows what defocus does");
  scene->add_option("DIR", demo.directory, "Folder for the scene; made if missing")->required();
  try {
    app.parse(count, texts);
  } catch (const CLI::CallForHelp&) {
    return TextRequest{app.help()};
  } catch (const CLI::CallForVersion& version) {
    return TextRequest{std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    fail(error.what() + hintFor(app, count, texts));
  }
  if (render->parsed()) return checkedRender(*render, std::move(raw));
  if (list->parsed()) return controls;
  return demo;
}

}  // namespace drevintool
