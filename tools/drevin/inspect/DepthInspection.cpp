#include "inspect/DepthInspection.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "depth/BackgroundFinding.h"
#include "depth/DepthCodes.h"
#include "depth/MixedEdges.h"
#include "depth/StyleGuess.h"
#include "depth/UnitGuess.h"
#include "inspect/ValueRange.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

Json backgroundJson(const std::optional<BackgroundFinding>& background) {
  if (!background) return nullptr;
  return {{"value", depthJson(background->value)},
          {"pixels", background->pixels},
          {"why", background->why}};
}

bool isBackground(float raw, const DepthCodes& codes,
                  const std::optional<BackgroundFinding>& background) {
  if (codes.isBackground(raw) || !std::isfinite(codes.distance(raw))) return true;
  return background && raw == background->value;
}

std::vector<float> distancesOf(const DepthPlane& depth, DepthStyle style,
                               const std::optional<BackgroundFinding>& background) {
  const DepthCodes codes{style, depth.half};
  std::vector<float> distances;
  for (const float raw : *depth.values) {
    if (!isBackground(raw, codes, background)) distances.push_back(codes.distance(raw));
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
  const std::string unit = guessUnit(*middle);
  if (!unit.empty()) {
    json["unit"] = {{"guess", unit},
                    {"why", "most things that one photographs are 0.3 to 30 m away"}};
  }
}

}  // namespace

Json inspectDepth(const DepthPlane& depth, const DepthPlane* alpha) {
  const StyleGuess style = guessStyle(depth);
  const std::optional<BackgroundFinding> background = findBackground(depth, alpha);
  Json json;
  json["style"] = {{"guess", style.style == DepthStyle::Real ? "Real" : "1/z"}, {"why", style.why}};
  json["background"] = backgroundJson(background);
  addDistances(distancesOf(depth, style.style, background), json);
  json["mixedPixels"] = findMixedPixels(depth).size();
  return json;
}

}  // namespace drevintool
