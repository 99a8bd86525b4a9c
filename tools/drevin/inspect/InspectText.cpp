#include "inspect/InspectText.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "terminal/NameList.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"
#include "terminal/SizeText.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

std::string text(const Json& json) {
  if (json.is_string()) return oneLine(json.get<std::string>());
  if (json.is_number_float()) return numberText(json.get<double>());
  return json.is_null() ? "none" : json.dump();
}

// A name where nothing stands behind it in columns.
std::string shortText(const Json& name) {
  constexpr std::size_t kMost = 60;
  return columnName(text(name), kMost);
}

std::string line(const std::string& name, const std::string& rest) {
  return fmt::format("  {:<14}{}\n", name, rest);
}

std::string windowText(const Json& window) {
  return fmt::format("{},{} to {},{}", text(window[0]), text(window[1]), text(window[2]),
                     text(window[3]));
}

std::string formatLine(const Json& format) {
  return line("format", fmt::format("{} x {}, pixel aspect {}", text(format["width"]),
                                    text(format["height"]), text(format["pixelAspect"])));
}

std::string partLine(const Json& part) {
  std::string named;
  if (!part["name"].is_null()) named += shortText(part["name"]) + ": ";
  if (!part["view"].is_null()) named += "view " + shortText(part["view"]) + ", ";
  return line("part",
              fmt::format("{}{}, {}, data window {}, display window {}", named, text(part["type"]),
                          text(part["compression"]), windowText(part["dataWindow"]),
                          windowText(part["displayWindow"])));
}

std::string finiteText(const Json& range) {
  if (range["min"].is_null()) return "nothing finite";
  const bool constant = range["min"] == range["max"];
  return text(range["min"]) + (constant ? "" : " to " + text(range["max"]));
}

std::string rangeText(const Json& range) {
  std::string shown = finiteText(range);
  if (range["nan"] != 0) shown += ", " + text(range["nan"]) + " NaN";
  if (range["infinite"] != 0) shown += ", " + text(range["infinite"]) + " infinite";
  return shown;
}

std::string columnText(const Json& name) {
  constexpr std::size_t kWidest = 40;
  return columnName(text(name), kWidest);
}

// By the file's own name where it has one.
std::string channelName(const Json& channel) {
  return columnText(channel[channel["name"].is_null() ? "hostName" : "name"]);
}

// Characters of the widest name, so that what is behind it stands in one column.
std::size_t columnWidth(const Json& channels) {
  std::size_t width = 20;
  for (const Json& channel : channels)
    width = std::max(width, characters(channelName(channel)));
  return width;
}

std::string channelLines(const Json& channels, std::size_t width) {
  std::string lines;
  for (const Json& channel : channels) {
    lines += fmt::format("    {:<{}} {:<6} {}{}\n", channelName(channel), width,
                         text(channel["type"]), rangeText(channel),
                         channel["name"].is_null() ? " (made: the file has none)" : "");
  }
  return lines;
}

std::string layerLines(const Json& layer, std::size_t width) {
  return line("layer", shortText(layer["layer"])) + channelLines(layer["channels"], width);
}

std::string layersLines(const Json& layers) {
  std::size_t width = 0;
  for (const Json& layer : layers)
    width = std::max(width, columnWidth(layer["channels"]));
  std::string lines;
  for (const Json& layer : layers)
    lines += layerLines(layer, width);
  return lines;
}

std::string othersText(const Json& depth) {
  std::vector<std::string> names;
  for (const Json& name : depth["others"])
    names.push_back(text(name));
  return nameList(names);
}

std::string guessText(const Json& guess) {
  return guess.is_null() ? "unknown"
                         : text(guess["guess"]) + " (a guess: " + text(guess["why"]) + ")";
}

std::string backgroundText(const Json& background) {
  if (background.is_null()) return "no value stands for nothing";
  const std::string others = background["others"] == 0 ? ""
                                                       : ", and " + text(background["others"]) +
                                                             " pixels with other codes";
  return fmt::format("{} in {} pixels ({}){}", text(background["value"]),
                     text(background["pixels"]), text(background["why"]), others);
}

std::string depthLines(const Json& depth) {
  const std::string others = othersText(depth);
  if (depth["channel"].is_null()) {
    return line("depth", others.empty() ? "none that a render would take"
                                        : "none that a render would take by itself; one of " +
                                              others + " would do, by --set depthChannel=NAME");
  }
  std::string lines = line(
      "depth", shortText(depth["channel"]) + (others.empty() ? "" : "; also possible: " + others));
  if (depth["view"] != depth["viewOfColours"]) {
    lines += line("  view", shortText(depth["view"]) + ", but the colours are of view " +
                                shortText(depth["viewOfColours"]));
  }
  lines += line("  style", guessText(depth["style"]));
  const Json& style = depth["style"];
  if (style["guess"] != style["control"]) {
    lines += line("", "but a render takes it as " + text(style["control"]) +
                          "; --set depthStyle=" + text(style["guess"]) + " follows the guess");
  }
  lines += line("  unit", guessText(depth["unit"]));
  if (!depth["near"].is_null()) {
    lines += line("  distances",
                  fmt::format("{} to {}, median {}, of {} pixels", text(depth["near"]),
                              text(depth["far"]), text(depth["median"]), text(depth["pixels"])));
  }
  lines += line("  background", backgroundText(depth["background"]));
  return lines + line("  edges", text(depth["mixedPixels"]) +
                                     " pixels with a depth between two sides, as if averaged");
}

std::string deepLines(const Json& deep) {
  const Json& samples = deep["samples"];
  std::string lines =
      line("deep", fmt::format("{}{} samples, median {} and most {} a pixel, {} of {} pixels empty",
                               deep["part"].is_null() ? "" : shortText(deep["part"]) + ": ",
                               text(samples["all"]), text(samples["medianPerPixel"]),
                               text(samples["mostPerPixel"]), text(deep["emptyPixels"]),
                               text(deep["pixels"])));
  lines += line("  style", text(deep["style"]["guess"]) + " (" + text(deep["style"]["why"]) + ")");
  lines += line("  unit", guessText(deep["unit"]));
  lines += line("  distances",
                fmt::format("{} to {}, median {} of the nearest samples", text(deep["near"]),
                            text(deep["far"]), text(deep["medianNearest"])));
  lines += line("  samples",
                fmt::format("{} points, {} thick, {} with ZBack before Z", text(deep["points"]),
                            text(deep["thick"]), text(deep["inverted"])));
  lines +=
      line("  pixels", fmt::format("{} with samples that overlap, {} not stored nearest first",
                                   text(deep["overlappingPixels"]), text(deep["unsortedPixels"])));
  lines += line("  values", fmt::format("{} samples with alpha above 1, {} not finite",
                                        text(deep["alphaAboveOne"]), text(deep["notFinite"])));
  return lines + channelLines(deep["channels"], columnWidth(deep["channels"]));
}

std::string predictionLines(const Json& prediction) {
  std::string lines =
      line("render", fmt::format("largest blur {} px in front of the focal plane, {} px behind it",
                                 text(prediction["front"]), text(prediction["back"])));
  const double limit = prediction["limit"].get<double>();
  const bool cut =
      std::max(prediction["front"].get<double>(), prediction["back"].get<double>()) > limit;
  if (cut) lines += line("", "limited to " + numberText(limit) + " px by max_kernelsize");
  const Json& estimate = prediction["estimate"];
  if (!estimate.is_null()) {
    lines +=
        line("  estimate", fmt::format("{:.2g} s for the blur, {} of memory in all",
                                       estimate["seconds"].get<double>(),
                                       sizeText(estimate["memoryBytes"].get<std::uint64_t>())));
  }
  return lines + line("  kernels", fmt::format("{}, up to {} px", text(prediction["kernels"]),
                                               text(prediction["largestKernel"])));
}

std::string lacksText(const Json& keys) {
  std::string names;
  for (const Json& key : keys)
    names += (names.empty() ? "" : ", ") + text(key);
  return names.empty() ? "" : "; --camera header also needs " + names;
}

std::string cameraLine(const Json& camera, const Json& lacks) {
  std::string found;
  for (const auto& [name, value] : camera.items()) {
    const std::string unit = text(value["unit"]);
    found += fmt::format("{}{} {}{}{} ({})", found.empty() ? "" : ", ", name, text(value["value"]),
                         unit.empty() ? "" : " ", unit, text(value["from"]));
  }
  return line("camera", found.empty() ? "nothing in the header" : found + lacksText(lacks));
}

}  // namespace

std::string inspectText(const Json& file) {
  std::string lines = text(file["file"]) + "\n" + formatLine(file["format"]);
  for (const Json& part : file["parts"])
    lines += partLine(part);
  lines += layersLines(file["layers"]);
  if (!file["depth"].is_null()) lines += depthLines(file["depth"]);
  if (!file["deep"].is_null()) lines += deepLines(file["deep"]);
  lines += cameraLine(file["camera"], file["cameraLacks"]);
  if (!file["prediction"].is_null()) lines += predictionLines(file["prediction"]);
  return lines;
}

}  // namespace drevintool
