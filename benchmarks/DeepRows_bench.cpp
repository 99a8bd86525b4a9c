/// deep.<samples>: a deep RGBA frame of 96 x 54 px rendered by the node on one thread, from the
/// samples to the picture, against the literal version's rows.
///
/// Time is per output row. `merges` tells how often each deep pixel in reach went through the
/// merge.

#include <benchmark/benchmark.h>

#include <memory>
#include <stdexcept>

#include "DeepBenchScene.h"
#include "EmbeddedHost/DeepInput.h"
#include "EmbeddedHost/DeepOrder.h"
#include "EmbeddedHost/Plugin.h"
#include "EmbeddedHost/Render.h"
#include "node/Drevin.h"
#include "support/LiteralDeepNode.h"

namespace {

using DD::Image::Channel;
using drevin::bench::deepScene;
using drevin::test::LiteralDeepSample;
using drevin::test::LiteralDeepScene;

constexpr int width = 96;
constexpr int height = 54;

/// First argument: blur in px; second: samples a pixel; third: thick or points.
LiteralDeepScene sceneOf(const benchmark::State& state) {
  return deepScene(width, height, static_cast<int>(state.range(0)),
                   static_cast<int>(state.range(1)), state.range(2) != 0);
}

embedded::Image flatImage(const drevin::test::LiteralPicture& picture) {
  embedded::Image image{DD::Image::Format(width, height), DD::Image::Box(0, 0, width, height), {}};
  for (const auto& [channel, plane] : picture.planes)
    image.planes[static_cast<Channel>(channel)] = std::make_shared<const embedded::Plane>(plane);
  return image;
}

std::shared_ptr<embedded::DeepImage> deepImage(const LiteralDeepScene& scene) {
  const DD::Image::ChannelSet channels(DD::Image::Mask_RGBA | DD::Image::Mask_Deep);
  auto image = std::make_shared<embedded::DeepImage>(DD::Image::Format(width, height),
                                                     DD::Image::Box(0, 0, width, height), channels);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      std::vector<float> values;
      for (const LiteralDeepSample& sample : scene.deep.at(x, y)) {
        for (const auto& entry : sample.values)
          values.push_back(entry.second);
      }
      image->setPixel(x, y, std::move(values));
    }
  }
  return image;
}

/// A node that reads the scene.
class DeepNode {
 public:
  explicit DeepNode(const LiteralDeepScene& scene)
      : flat_(flatImage(scene.flat.image)), deep_(deepImage(scene)) {
    const auto* description = embedded::findClass("Drevin");
    if (description == nullptr) throw std::logic_error("the class Drevin is not registered");
    node_ = std::make_unique<Node>(*description);
    node_->connect(drevin::dvInput::image, &flat_);
    node_->connect(drevin::dvInput::deep, &deep_);
    set("focalPlane", scene.flat.settings.focalPlane);
    set("multiplier", scene.flat.settings.multiplier);
    options_.channels = DD::Image::Mask_RGBA;
    options_.threads = 1;
  }

  embedded::RenderResult render() { return embedded::render(*node_, options_); }

  double mergesPerPixel() const {
    const auto& drevin = dynamic_cast<const drevin::Drevin&>(node_->op());
    // The last column of an image takes no part.
    return static_cast<double>(drevin.mergedPixels()) / ((width - 1) * height);
  }

 private:
  void set(const char* name, float value) {
    node_->setByHand(*node_->knob(name), std::vector<double>(1, static_cast<double>(value)));
  }

  embedded::ImageInput flat_;
  embedded::DeepInput deep_;
  std::unique_ptr<Node> node_;
  embedded::RenderOptions options_;
};

void deepRows(benchmark::State& state) {
  embedded::setThreadCount(1);
  embedded::setDeepOrder(embedded::DeepOrder::FarFirst);
  DeepNode node(sceneOf(state));
  for (auto _ : state) {
    auto result = node.render();
    if (result.status != embedded::RenderStatus::Done) state.SkipWithError("not rendered");
    benchmark::DoNotOptimize(result);
  }
  state.counters["rowTime"] = benchmark::Counter(
      height, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.counters["rows/s"] =
      benchmark::Counter(height, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["merges"] = node.mergesPerPixel();
}

void deepRowsLiteral(benchmark::State& state) {
  const LiteralDeepScene scene = sceneOf(state);
  const drevin::test::LiteralDeepNode literal(scene, true);
  for (auto _ : state) {
    auto row = literal.row(height / 2, 0, width, false);
    benchmark::DoNotOptimize(row);
  }
  state.counters["rowTime"] = benchmark::Counter(
      1, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  state.counters["rows/s"] = benchmark::Counter(1, benchmark::Counter::kIsIterationInvariantRate);
  // A row merges all that reaches it; every pixel is reached by that many rows.
  state.counters["merges"] =
      static_cast<double>(std::min(height, 2 * literal.frame().estimate().padding + 1));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"px", "samples", "thick"});
  for (const int blur : {8, 32}) {
    benchmark->Args({blur, 2, 0});
    benchmark->Args({blur, 10, 0});
    benchmark->Args({blur, 4, 1});
  }
  benchmark->Unit(benchmark::kMillisecond);
}

BENCHMARK(deepRows)->Name("deep.production")->Apply(sizes)->MeasureProcessCPUTime();
BENCHMARK(deepRowsLiteral)->Name("deep.literal")->Apply(sizes);

}  // namespace
