/// estimate.width<N>: largest blur of 64 rows of N depths, production against literal.

#include <benchmark/benchmark.h>

#include "BenchScene.h"
#include "defocus/FlatEstimate.h"
#include "support/LiteralEstimate.h"

namespace {

using drevin::bench::Frame;
using drevin::bench::uniformScene;

constexpr int rows = 64;

void estimate(benchmark::State& state) {
  const int width = static_cast<int>(state.range(0));
  const auto scene = uniformScene(width, rows, 32);
  const Frame frame(scene);
  const drevin::dvLens& lens = frame.settings().blur.lens;
  const float* depth = scene.image.planes.at(5).data();
  for (auto _ : state) {
    drevin::withFixedModes(lens, [&](const auto& fixed) {
      auto padding = drevin::flatEstimate(fixed);
      padding.addRow(depth, width * rows);
      benchmark::DoNotOptimize(padding.largest());
    });
  }
}

void estimateLiteral(benchmark::State& state) {
  const auto scene = uniformScene(static_cast<int>(state.range(0)), rows, 32);
  const drevin::test::LiteralFrame frame(scene);
  for (auto _ : state) {
    auto result = literalEstimate(scene.settings, frame.lens(), scene.image);
    benchmark::DoNotOptimize(result);
  }
}

BENCHMARK(estimate)->Name("estimate.production")->Arg(1920)->Unit(benchmark::kMillisecond);
BENCHMARK(estimateLiteral)->Name("estimate.literal")->Arg(1920)->Unit(benchmark::kMillisecond);

}  // namespace
