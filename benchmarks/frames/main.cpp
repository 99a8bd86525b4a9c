/// drevin_frames: whole frames of the node, measured.
///
///   drevin_frames KIND BLUR [WIDTH HEIGHT]              one picture, for tuning
///   drevin_frames KIND BLUR [WIDTH HEIGHT] --write FILE its input as EXR, nothing measured
///   drevin_frames --table [--rounds N] [--only NAME]    every figure, as Markdown
///   drevin_frames --quick                               every figure on small pictures, checked

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

#include "EmbeddedHost/DeepOrder.h"
#include "EmbeddedHost/Render.h"
#include "frames/ExrFile.h"
#include "frames/FrameScenes.h"
#include "frames/FrameTable.h"
#include "frames/PeakMemory.h"
#include "frames/SideBySide.h"
#include "frames/SinglePicture.h"

namespace {

using namespace drevin::bench;

struct Arguments {
  std::string scene = "scene";
  double blur = 0.0;
  FrameSize size{1920, 1080};
  std::string write;
  std::string only;
  unsigned threads = 2;
  TablePlan plan;
  bool table = false;
  bool quick = false;
  bool memory = false;
  bool onRequest = false;
  bool coloured = false;
  bool effects = false;
  int deepSamples = 0;
};

void declare(CLI::App& app, Arguments& arguments) {
  app.add_option("KIND", arguments.scene, "uniform, scene, ramp or random")
      ->check(CLI::IsMember({"uniform", "scene", "ramp", "random"}));
  app.add_option("BLUR", arguments.blur, "Largest blur, px")->check(CLI::Range(1.0, 1024.0));
  app.add_option("WIDTH", arguments.size.width, "px")->check(CLI::Range(1, 16384));
  app.add_option("HEIGHT", arguments.size.height, "px")->check(CLI::Range(1, 16384));
  app.add_option("--write", arguments.write, "Write the input picture as EXR instead");
  app.add_option("--threads", arguments.threads, "Threads that render")
      ->check(CLI::Range(1U, 256U))
      ->capture_default_str();
  app.add_flag("--table", arguments.table, "Measure every figure");
  app.add_option("--rounds", arguments.plan.rounds, "Medians of so many rounds")
      ->check(CLI::Range(1, 100))
      ->capture_default_str();
  app.add_option("--only", arguments.only, "Only figures with this in their names");
  app.add_flag("--quick", arguments.quick, "Check every figure on small pictures");
  app.add_flag("--coloured", arguments.coloured, "One picture through an aperture in colour");
  app.add_flag("--effects", arguments.effects, "One picture with aberration, bloom and mattes");
  app.add_option("--deep", arguments.deepSamples, "One picture with so many points a pixel")
      ->check(CLI::Range(1, 64));
  app.add_flag("--memory", arguments.memory, "Print the bytes before and at the peak")->group("");
  app.add_flag("--on-request", arguments.onRequest, "Render for every line of standard input")
      ->group("");
}

FrameCase pictureOf(const Arguments& arguments) {
  FrameCase picture = frameCase(arguments.scene, arguments.blur, arguments.size);
  if (arguments.deepSamples > 0) {
    picture =
        deepCase(arguments.scene, arguments.blur, arguments.size, arguments.deepSamples, false);
  }
  if (arguments.coloured) picture = withColouredAperture(picture);
  if (arguments.effects) picture = withEffects(picture);
  return picture;
}

/// The exit code.
int run(const Arguments& arguments) {
  embedded::setThreadCount(arguments.threads);
  embedded::setDeepOrder(embedded::DeepOrder::FarFirst);
  if (arguments.quick) return checkFrameTable() ? 0 : 1;
  if (arguments.table) return printFrameTable(arguments.plan, arguments.only) ? 0 : 1;
  if (arguments.blur <= 0.0) {
    fmt::print(stderr, "drevin_frames: name a KIND and a BLUR, or --table, or --quick\n");
    return 2;
  }
  const FrameCase picture = pictureOf(arguments);
  if (!arguments.write.empty()) {
    writeExr(frameScene(picture.scene, picture.size.width, picture.size.height), arguments.write);
  } else if (arguments.memory) {
    const PeakMemory memory = measurePeakMemory(picture.size, arguments.blur, arguments.threads);
    fmt::print("{:.0f} {:.0f}\n", memory.before, memory.peak);
  } else if (arguments.onRequest) {
    renderOnRequest(picture);
  } else {
    printSinglePicture(picture);
  }
  return 0;
}

}  // namespace

int main(int count, char** words) {
  try {
    CLI::App app("Measures whole frames of the node.", "drevin_frames");
    Arguments arguments;
    declare(app, arguments);
    CLI11_PARSE(app, count, words);
    return run(arguments);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "drevin_frames: %s\n", failure.what());
    return 1;
  }
}
