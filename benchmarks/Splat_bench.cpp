/// splat.coc<N>: one RGBA pixel through its kernels onto one row, production against literal.

#include <benchmark/benchmark.h>

#include "BenchScene.h"
#include "defocus/RowSplatter.h"
#include "support/LiteralSplat.h"

namespace {

using drevin::bench::Frame;
using drevin::bench::uniformScene;

constexpr int width = 512;

void splat(benchmark::State& state) {
  const auto scene = uniformScene(64, 64, static_cast<int>(state.range(0)) + 1);
  const Frame frame(scene);
  drevin::dvRowSplatter splatter(frame.settings().frame, {0, 0, width}, frame.channels());
  for (const int channel : frame.channels())
    splatter.pixel(channel) = 0.5F;
  drevin::dvSplatSource source;
  source.x = width / 2;
  source.coc = static_cast<float>(state.range(0)) + 0.5F;
  for (auto _ : state)
    splatter.splat(source);
}

void splatLiteral(benchmark::State& state) {
  const auto scene = uniformScene(64, 64, static_cast<int>(state.range(0)) + 1);
  const drevin::test::LiteralFrame frame(scene);
  drevin::test::LiteralSource source;
  source.right = width;
  source.x = width / 2;
  source.coc = static_cast<float>(state.range(0)) + 0.5F;
  drevin::test::LiteralSums sums(1);
  for (const int channel : scene.channels) {
    source.pixel[channel] = 0.5F;
    sums[0][channel].resize(width);
  }
  for (auto _ : state)
    literalSplat(scene.settings, 64, 64, frame.bank(), source, sums);
}

BENCHMARK(splat)->Name("splat.production")->Arg(8)->Arg(32)->Arg(128);
BENCHMARK(splatLiteral)->Name("splat.literal")->Arg(8)->Arg(32)->Arg(128);

}  // namespace
