#include "inspect/DepthInspection.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "depth/BackgroundFinding.h"
#include "depth/DepthPlane.h"
#include "depth/MixedEdges.h"
#include "depth/StyleGuess.h"
#include "depth/UnitGuess.h"
#include "inspect/ValueRange.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

const char* nameOf(DepthStyle style) {
  return style == DepthStyle::Real ? "Real" : "1/z";
}

Json backgroundJson(const BackgroundFinding& background) {
  if (!background.value) return nullptr;
  return {{"value", depthJson(*background.value)},
          {"pixels", background.pixels},
          {"others", background.others},
          {"why", background.why}};
}

std::vector<float> distancesOf(const DepthPlane& depth, DepthStyle style,
                               const BackgroundFinding& background) {
  const DepthCodes codes{style, depth.half};
  std::vector<float> distances;
  for (const float raw : *depth.values) {
    if (!codes.isBackground(raw) && !background.contains(raw))
      distances.push_back(codes.distance(raw));
  }
  return distances;
}

void addDistances(std::vector<float> distances, Json& json) {
  json["pixels"] = distances.size();
  for (const char* name : {"near", "far", "median", "unit"})
    json[name] = nullptr;
  if (distances.empty()) return;
  const auto [near, far] = std::minmax_element(distances.begin(), distances.end());
  json["near"] = depthJson(*near);
  json["far"] = depthJson(*far);
  const auto middle = distances.begin() + static_cast<std::ptrdiff_t>((distances.size() - 1) / 2);
  std::nth_element(distances.begin(), middle, distances.end());
  json["median"] = depthJson(*middle);
  json["unit"] = unitJson(*middle);
}

}  // namespace

Json unitJson(float median) {
  const std::string unit = guessUnit(median);
  if (unit.empty()) return nullptr;
  return {{"guess", unit}, {"why", "most things that one photographs are 0.3 to 30 m away"}};
}

Json inspectDepth(const Picture& picture, const PictureChannel& channel, DepthStyle control) {
  const DepthPlane depth = depthPlane(picture, channel, windowOf(picture, channel));
  const StyleGuess style = guessStyle(depth);
  const BackgroundFinding background = findBackground(picture, channel, control);
  Json json;
  json["style"] = {
      {"guess", nameOf(style.style)}, {"why", style.why}, {"control", nameOf(control)}};
  json["background"] = backgroundJson(background);
  addDistances(distancesOf(depth, style.style, background), json);
  json["mixedPixels"] = findMixedPixels(depth).size();
  return json;
}

}  // namespace drevintool
