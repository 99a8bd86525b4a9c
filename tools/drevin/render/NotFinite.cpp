#include "render/NotFinite.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <variant>

#include "picture/ChannelNames.h"
#include "render/MatteControls.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

bool isFinite(float value) {
  return std::isfinite(value);
}

bool isFinite(std::uint16_t half) {
  constexpr unsigned kExponent = 0x7C00;
  return (half & kExponent) != kExponent;
}

bool isFinite(std::uint32_t /*number*/) {
  return true;
}

void mark(const Samples& samples, std::vector<bool>& bad) {
  const auto markAll = [&bad](const auto& values) {
    for (std::size_t pixel = 0; pixel < values->size(); ++pixel) {
      if (!isFinite((*values)[pixel])) bad[pixel] = true;
    }
  };
  std::visit(markAll, samples);
}

// Pixels in which one of the channels of those host names is not finite.
std::size_t notFinitePixels(const Picture& picture, const std::vector<std::string>& hostNames) {
  std::vector<bool> bad(picture.box.area());
  for (const std::string& name : hostNames) {
    const PictureChannel* seen = findChannel(picture, name);
    if (seen != nullptr) mark(seen->samples, bad);
  }
  return static_cast<std::size_t>(std::count(bad.begin(), bad.end(), true));
}

std::size_t notFiniteValues(const Samples& samples) {
  const auto count = [](const auto& values) {
    return std::count_if(values->begin(), values->end(),
                         [](const auto value) { return !isFinite(value); });
  };
  return static_cast<std::size_t>(std::visit(count, samples));
}

// "3 pixels of file are not finite (NaN or infinite)"
std::string pixelsText(const Picture& picture, std::size_t count) {
  return std::to_string(count) + (count == 1 ? " pixel of " : " pixels of ") +
         oneLine(picture.path) + (count == 1 ? " is" : " are") + " not finite (NaN or infinite)";
}

// The channels of the aperture image that rendered ones are blurred by.
std::vector<std::string> kernelChannels(const Picture& kernel, const Node& node,
                                        const std::vector<PlannedChannel>& plan) {
  const DD::Image::Knob* standIn = node.knob("missingKernelChannel");
  std::vector<std::string> names;
  for (const PlannedChannel& planned : plan) {
    if (!planned.rendered) continue;
    if (findChannel(kernel, planned.hostName) != nullptr) {
      names.push_back(planned.hostName);
    } else if (isChosen(standIn)) {
      names.emplace_back(DD::Image::getName(standIn->channel()));
    }
  }
  return names;
}

std::vector<std::string> chosenMattes(const Node& node) {
  std::vector<std::string> names;
  for (const DD::Image::Knob* control : matteControls(node)) {
    if (isChosen(control)) names.emplace_back(DD::Image::getName(control->channel()));
  }
  return names;
}

}  // namespace

std::size_t notFinitePixels(const Picture& input, const std::vector<PlannedChannel>& plan) {
  std::vector<std::string> names;
  for (const PlannedChannel& channel : plan) {
    if (channel.rendered && channel.source != nullptr) names.push_back(channel.hostName);
  }
  return notFinitePixels(input, names);
}

std::string notFiniteWarning(const Picture& input, std::size_t count) {
  if (count == 0) return {};
  return pixelsText(input, count) + ", and so is what their kernels reach";
}

std::string notFiniteKernelWarning(const Picture& kernel, const Node& node,
                                   const std::vector<PlannedChannel>& plan) {
  const DD::Image::Knob* type = node.knob("kernelType");
  if (type == nullptr || type->get_value() != 0.0) return {};
  const std::size_t count = notFinitePixels(kernel, kernelChannels(kernel, node, plan));
  if (count == 0) return {};
  return pixelsText(kernel, count) +
         ", and so is all that it blurs; give an aperture of finite values with --kernel";
}

std::string notFiniteMattesWarning(const Picture& mattes, const Node& node) {
  const std::size_t count = notFinitePixels(mattes, chosenMattes(node));
  if (count == 0) return {};
  return pixelsText(mattes, count) + ", and so may be what this matte weighs there";
}

std::string notFiniteResultWarning(const OutputPicture& output,
                                   const std::vector<PlannedChannel>& plan) {
  std::size_t count = 0;
  for (const OutputChannel& channel : output.channels) {
    const auto made = [&](const PlannedChannel& planned) {
      return planned.rendered && planned.hostName == channel.hostName;
    };
    if (std::any_of(plan.begin(), plan.end(), made)) count += notFiniteValues(channel.samples);
  }
  if (count == 0) return {};
  return std::to_string(count) + (count == 1 ? " value" : " values") + " of the result" +
         (count == 1 ? " is" : " are") +
         " not finite (NaN or infinite), though those of its pictures are: colours, or the picture "
         "of the aperture, are too large to be summed; scale them down";
}

}  // namespace drevintool
