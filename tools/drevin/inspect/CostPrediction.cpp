#include "inspect/CostPrediction.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "EmbeddedHost/Render.h"
#include "deep/DeepCompanion.h"
#include "deep/DeepReading.h"
#include "depth/DepthChoice.h"
#include "inspect/SmallPictures.h"
#include "render/ChannelPlan.h"
#include "render/HostPicture.h"
#include "render/InputPictures.h"
#include "terminal/Signals.h"
#include "terminal/Stopwatch.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

double valueOf(const Node& node, const char* control) {
  const Knob* knob = node.knob(control);
  return knob == nullptr ? 0.0 : knob->get_value();
}

// The channels that a render changes, and the depth.
Picture smallPicture(const Picture& picture, const Node& node, int stride) {
  Picture needed = picture;
  needed.channels.clear();
  const PictureChannel* depth = chosenDepth(picture, node);
  for (const PlannedChannel& planned : planChannels(picture, node, {})) {
    if (planned.source == nullptr || (!planned.rendered && planned.source != depth)) continue;
    needed.channels.push_back(*planned.source);
  }
  return everyNth(needed, stride);
}

Picture smallBlackPicture(const DeepExrSource& deep, int stride) {
  Picture small = everyNth(emptyPicture(deep), stride);
  addBlackColours(small);
  return small;
}

// What makes the picture, without the kernels, whose cost does not grow with it.
double defocusSeconds(const embedded::RenderResult& result) {
  double seconds = 0.0;
  for (const embedded::Stage& stage : result.stages) {
    const bool once =
        stage.name == "Aperture" || stage.name == "Kernels" || stage.name == "Size estimate";
    if (!once) seconds += stage.seconds;
  }
  return seconds;
}

// The pictures beside the first; an aperture's is not made smaller, for its size is that of the
// blur.
void connectBeside(const AskedRender& asked, int stride, AskedNode& asking) {
  if (asked.kernel) {
    asking.connect(kKernelInput, hostImage(*asked.kernel));
  } else {
    useCircularAperture(asking.node());
  }
  if (asked.mattes) asking.connect(kMattesInput, hostImage(everyNth(*asked.mattes, stride)));
}

// Of the quickest of some rounds; nothing if the render fails.
std::optional<double> measured(Node& node, const Picture& small, int stride) {
  constexpr int kRounds = 3;
  constexpr double kEnoughSeconds = 2.0;
  embedded::RenderOptions options;
  options.channels = renderedSet(planChannels(small, node, {}));
  // The blur of a lens follows the width of the format by itself.
  const bool lens = valueOf(node, "realWorldLens") != 0.0;
  options.proxyScale = lens ? 1.0F : 1.0F / static_cast<float>(stride);
  double least = std::numeric_limits<double>::infinity();
  const Stopwatch all;
  for (int round = 0; round < kRounds && (round == 0 || all.seconds() < kEnoughSeconds); ++round) {
    const embedded::RenderResult result = embedded::render(node, options);
    throwIfInterrupted();
    if (result.status != embedded::RenderStatus::Done) return std::nullopt;
    least = std::min(least, defocusSeconds(result));
  }
  return least;
}

// Of the whole, from that of a part of its pixels or samples.
double scaled(double seconds, double share, double blur, int stride) {
  constexpr double kTwiceTheCost = 44.0;
  return seconds / share * (kTwiceTheCost + blur) / (kTwiceTheCost + blur / stride);
}

constexpr double kForBlur = 0.5e6;  // bytes for each pixel of it

// A pixel's channels as they are read, and as floats.
double bytesOfPixel(const Picture& picture) {
  double bytes = 0.0;
  for (const PictureChannel& channel : picture.channels) {
    const bool shared = std::holds_alternative<FloatSamples>(channel.samples);
    bytes += shared ? 4.0 : channel.isUint() ? 8.0 : 6.0;
  }
  return bytes;
}

double memoryOf(const std::shared_ptr<const Picture>& picture) {
  return picture ? bytesOfPixel(*picture) * static_cast<double>(picture->box.area()) : 0.0;
}

std::uint64_t memoryFor(const AskedRender& asked, const Picture& picture, double blur) {
  constexpr double kProgram = 20e6;
  constexpr double kWork = 45.0;
  constexpr double kManyPixels = 8.3e6;
  constexpr double kWorkBeyond = 19.0;
  constexpr double kResult = 16.0;
  const auto pixels = static_cast<double>(picture.box.area());
  const double work =
      kWork * std::min(pixels, kManyPixels) + kWorkBeyond * std::max(0.0, pixels - kManyPixels);
  return static_cast<std::uint64_t>(kProgram + (bytesOfPixel(picture) + kResult) * pixels + work +
                                    kForBlur * blur + memoryOf(asked.kernel) +
                                    memoryOf(asked.mattes));
}

// Pieces are held while the rows that they reach are made.
double memoryForPieces(const DeepAmounts& amounts, double blur) {
  constexpr double kPiece = 0.39;
  constexpr double kWithoutBlur = 32.0;
  const std::uint64_t more = amounts.pieces - std::min(amounts.pieces, amounts.samples);
  return kPiece * static_cast<double>(more) * (kWithoutBlur + blur);
}

std::uint64_t memoryFor(const AskedRender& asked, const DeepExrSource& deep,
                        const DeepAmounts& amounts, double blur) {
  constexpr double kProgram = 9e6;
  constexpr double kPixel = 83.0;
  constexpr double kSample = 36.0;
  constexpr double kMostCached = 64.0 * 1048576.0;
  constexpr double kForBlurOfSmall = 0.24e6;
  constexpr double kLargePicture = 310000.0;
  const auto samples = static_cast<double>(amounts.samples);
  const auto pixels = static_cast<double>(pixelBox(deep.box()).area());
  const double cached =
      std::min(kMostCached, samples * 4.0 * static_cast<double>(deep.channels().size()));
  const double forBlur =
      kForBlurOfSmall + (kForBlur - kForBlurOfSmall) * std::min(1.0, pixels / kLargePicture);
  return static_cast<std::uint64_t>(kProgram + kPixel * pixels + kSample * samples + cached +
                                    forBlur * blur + memoryForPieces(amounts, blur) +
                                    memoryOf(asked.kernel) + memoryOf(asked.mattes));
}

bool makesPicture(const Node& node) {
  constexpr double kLensBloom = 1.0;
  return valueOf(node, "outputType") <= kLensBloom;
}

}  // namespace

std::optional<PredictedCost> predictCost(const AskedRender& asked, const Picture& picture,
                                         const PredictedBlur& blur) {
  AskedNode planning(asked, picture, {});
  if (!makesPicture(planning.node())) return std::nullopt;
  const int stride = strideFor(picture.box.area());
  const Picture small = smallPicture(picture, planning.node(), stride);
  embedded::Image image = hostImage(small);
  addMissingColours(image);
  AskedNode asking(asked, picture, std::move(image));
  connectBeside(asked, stride, asking);
  const std::optional<double> seconds = measured(asking.node(), small, stride);
  if (!seconds) return std::nullopt;
  const double largest = blur.largestKernel();
  const double share =
      static_cast<double>(small.box.area()) / static_cast<double>(picture.box.area());
  return PredictedCost{scaled(*seconds, share, largest, stride),
                       memoryFor(asked, picture, largest)};
}

std::optional<PredictedCost> predictCost(const AskedRender& asked, DeepExrSource& deep,
                                         const DeepAmounts& amounts, const PredictedBlur& blur) {
  const Picture depths = withDeepDepths(emptyPicture(deep));
  const int stride = strideFor(depths.box.area(), amounts.samples);
  const Picture small = smallBlackPicture(deep, stride);
  AskedNode asking(asked, depths, hostImage(small));
  if (!makesPicture(asking.node())) return std::nullopt;
  const std::shared_ptr<embedded::DeepSource> few =
      readingDeep([&] { return everyNth(deep, stride); });
  asking.connect(few);
  connectBeside(asked, stride, asking);
  const std::optional<double> seconds = measured(asking.node(), small, stride);
  if (!seconds) return std::nullopt;
  const double largest = blur.largestKernel();
  const double share =
      static_cast<double>(small.box.area()) / static_cast<double>(depths.box.area());
  return PredictedCost{scaled(*seconds, share, largest, stride),
                       memoryFor(asked, deep, amounts, largest)};
}

}  // namespace drevintool
