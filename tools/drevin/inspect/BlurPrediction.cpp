#include "inspect/BlurPrediction.h"

#include <algorithm>
#include <cmath>

#include "EmbeddedHost/Render.h"
#include "controls/ControlText.h"
#include "deep/DeepCompanion.h"
#include "depth/DepthCodes.h"
#include "picture/ChannelNames.h"
#include "render/HostPicture.h"
#include "terminal/ExitCode.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

using DD::Image::Chan_Blue;
using DD::Image::Chan_Green;
using DD::Image::Knob;

void setNumber(Node& node, const char* control, double value) {
  if (Knob* knob = node.knob(control)) node.setByHand(*knob, std::vector<double>{value});
}

// The depths are on that channel.
const char* const kDepth = "depth.Z";

embedded::Image imageOf(const Picture& picture, const DepthPlane& depth) {
  embedded::Image image;
  image.format = DD::Image::Format(picture.width, picture.height, picture.pixelAspect);
  image.box = hostBox(depth.box);
  image.planes[DD::Image::getChannel(kDepth)] = depth.values;
  addMissingColours(image);
  return image;
}

// The view shows the blur of each pixel on the channel of its side.
void showBlur(Node& node, bool deep) {
  constexpr double kFocalDistanceView = 2.0;
  setNumber(node, "outputType", kFocalDistanceView);
  setNumber(node, "normalizeVisualization", 0.0);
  useCircularAperture(node);
  if (deep) setNumber(node, "depthStyle", 0.0);
  if (Knob* knob = node.knob("depthChannel")) {
    setChannels(node, *knob, {"depthChannel", kDepth, "depthChannel"}, nullptr);
  }
}

bool isInfinitelyFar(float raw, DepthStyle style) {
  return style == DepthStyle::Real ? !std::isfinite(raw) : raw <= 0.0F;
}

float largestOf(const embedded::RenderResult& result, DD::Image::Channel side,
                const DepthPlane& depth, DepthStyle style) {
  const embedded::Plane& blurs = *result.image.planes.at(side);
  float largest = 0.0F;
  for (std::size_t i = 0; i < blurs.size(); ++i) {
    if (!isInfinitelyFar((*depth.values)[i], style)) largest = std::max(largest, blurs[i]);
  }
  return largest;
}

std::string firstError(const embedded::RenderResult& result) {
  for (const embedded::Message& message : result.messages) {
    if (message.severity == embedded::Severity::Error) return message.text;
  }
  return "the node shows no blur";
}

}  // namespace

float PredictedBlur::largest() const {
  return std::max(front, back);
}

int PredictedBlur::largestKernel() const {
  const double limited = std::min(static_cast<double>(largest()), most);
  return static_cast<int>(std::ceil(limited));
}

PredictedBlur predictBlur(const AskedRender& asked, const Picture& picture, const DepthPlane& depth,
                          bool deep) {
  AskedNode asking(asked, deep ? withDeepDepths(picture) : picture, imageOf(picture, depth));
  Node& node = asking.node();
  showBlur(node, deep);
  embedded::RenderOptions options;
  options.channels += Chan_Green;
  options.channels += Chan_Blue;
  const embedded::RenderResult result = embedded::render(node, options);
  throwIfInterrupted();
  if (result.status != embedded::RenderStatus::Done) {
    throw ToolError(ExitCode::RenderFailed, firstError(result));
  }
  const DepthStyle style = depthStyleOf(node);
  PredictedBlur blur;
  const Knob* most = node.knob("max_kernelsize");
  blur.most = most == nullptr ? 0.0 : most->get_value();
  blur.front = largestOf(result, Chan_Green, depth, style);
  blur.back = largestOf(result, Chan_Blue, depth, style);
  return blur;
}

}  // namespace drevintool
