#include "depth/FocusPoint.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "DDImage/ChannelMap.h"
#include "deep/SamplePlace.h"
#include "depth/BackgroundFinding.h"
#include "depth/DepthChoice.h"
#include "depth/DepthCodes.h"
#include "depth/DepthPlane.h"
#include "picture/ChannelNames.h"
#include "render/HostPicture.h"
#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Channel;
using DD::Image::ChannelMap;
using DD::Image::ChannelSet;

constexpr int kReach = 2;  // pixels to each side of the point
// Depths of deep samples are distances in any case.
constexpr DepthCodes kDeepCodes{DepthStyle::Real, false};

[[noreturn]] void fail(const std::string& text, const std::string& reason) {
  throw ToolError(ExitCode::Usage, oneLine("--focus-at " + text + ": " + reason));
}

std::string spanText(int first, int last) {
  return std::to_string(first) + " to " + std::to_string(last);
}

// The pixels around the point that the box has.
PixelBox windowAround(const FocusPoint& point, int height, const PixelBox& box) {
  const int y = point.fromTop ? height - 1 - point.y : point.y;
  if (point.x < box.x || point.x >= box.r || y < box.y || y >= box.t) {
    const std::string rows =
        point.fromTop ? spanText(height - box.t, height - 1 - box.y) : spanText(box.y, box.t - 1);
    fail(point.text, "lies outside the picture, which has columns " + spanText(box.x, box.r - 1) +
                         " and rows " + rows + " from the " + (point.fromTop ? "top" : "bottom"));
  }
  return {std::max(point.x - kReach, box.x), std::max(y - kReach, box.y),
          std::min(point.x + kReach + 1, box.r), std::min(y + kReach + 1, box.t)};
}

std::optional<float> medianOf(std::vector<float> distances) {
  if (distances.empty()) return std::nullopt;
  const auto middle = distances.begin() + static_cast<std::ptrdiff_t>((distances.size() - 1) / 2);
  std::nth_element(distances.begin(), middle, distances.end());
  return *middle;
}

// Of a pixel whose samples lie nearest first.
std::optional<float> frontSurface(const float* sample, std::uint32_t count, const ChannelMap& map,
                                  Channel depth) {
  const std::size_t alpha = placeOf(map, Chan_Alpha);
  float coverage = 0.0F;
  for (std::uint32_t i = 0; i < count; ++i, sample += map.size()) {
    coverage += (1.0F - coverage) * sample[alpha];
    if (coverage >= 0.5F) return sample[placeOf(map, depth)];
  }
  return std::nullopt;
}

Channel deepDepthOf(const Node& node) {
  const DD::Image::Knob* knob = node.knob("depthChannel");
  return knob != nullptr && knob->channel() == Chan_DeepBack ? Chan_DeepBack : Chan_DeepFront;
}

}  // namespace

FocusPoint parseFocusPoint(const std::string& text) {
  const std::vector<std::string> pieces = splitList(text);
  const bool fromTop = pieces.size() == 3 && pieces[2] == "top";
  const bool right = pieces.size() == 2 || fromTop;
  const std::optional<int> x = right ? parseInteger(pieces[0]) : std::nullopt;
  const std::optional<int> y = right ? parseInteger(pieces[1]) : std::nullopt;
  constexpr int kFarthest = 1 << 28;
  if (!x || !y || std::abs(*x) > kFarthest || std::abs(*y) > kFarthest) {
    fail(text, "give the column and the row of a pixel, x,y, or x,y,top for rows from the top");
  }
  return {*x, *y, fromTop, text};
}

std::optional<float> focusDistance(const Picture& picture, const Node& node,
                                   const FocusPoint& point) {
  const PictureChannel* channel = chosenDepth(picture, node);
  if (channel == nullptr) {
    throw ToolError(ExitCode::InputUnreadable,
                    oneLine(picture.path +
                            ": has no depth to focus by; choose a channel with "
                            "--set depthChannel=NAME, it has " +
                            channelList(picture)));
  }
  const PixelBox window = windowAround(point, picture.height, picture.box);
  const DepthPlane plane = depthPlane(picture, *channel, window);
  const BackgroundFinding background = findBackground(picture, *channel, depthStyleOf(node));
  std::vector<float> distances;
  for (const float raw : *plane.values) {
    if (!background.contains(raw)) distances.push_back(background.codes.distance(raw));
  }
  return medianOf(std::move(distances));
}

std::optional<float> focusDistance(DeepExrSource& deep, const Node& node, const FocusPoint& point) {
  const PixelBox window = windowAround(point, deep.format().height(), pixelBox(deep.box()));
  ChannelSet channels(DD::Image::Mask_Deep);
  channels += Chan_Alpha;
  const ChannelMap map(channels);
  std::vector<float> distances;
  embedded::DeepRow row;
  for (int y = window.y; y < window.t; ++y) {
    deep.readRow(y, window.x, window.r, channels, row);
    const float* samples = row.values.data();
    for (const std::uint32_t count : row.counts) {
      const std::optional<float> depth = frontSurface(samples, count, map, deepDepthOf(node));
      if (depth && !kDeepCodes.isBackground(*depth)) distances.push_back(*depth);
      samples += count * map.size();
    }
  }
  return medianOf(std::move(distances));
}

float checkedFocus(std::optional<float> distance, const FocusPoint& point) {
  if (!distance) {
    fail(point.text,
         "there is nothing but background; name another point, or give the background a depth by "
         "--fix-background of drevin render");
  }
  if (!std::isfinite(*distance) || *distance <= 0.0F) {
    fail(point.text, "the distance there is " + numberText(static_cast<double>(*distance)) +
                         ", but focus must be finite and above 0; name another point, or give "
                         "--set focalPlane instead");
  }
  return *distance;
}

std::string focusLine(float distance, const FocusPoint& point) {
  return "focalPlane " + numberText(static_cast<double>(distance)) + " at " +
         std::to_string(point.x) + "," + std::to_string(point.y) +
         (point.fromTop ? " (origin top left)"
                        : " (origin bottom left, as viewers of the host show)");
}

}  // namespace drevintool
