/// rows.coc<N>: one defocused RGBA row of 480 px, 10 slices, production against literal.

#include <benchmark/benchmark.h>

#include "BenchScene.h"

namespace {

using drevin::bench::Frame;
using drevin::bench::uniformScene;

constexpr int width = 480;
constexpr int height = 270;

void rows(benchmark::State& state) {
  const auto scene = uniformScene(width, height, static_cast<int>(state.range(0)));
  const Frame frame(scene);
  for (auto _ : state)
    benchmark::DoNotOptimize(frame.row(height / 2));
}

void rowsLiteral(benchmark::State& state) {
  const auto scene = uniformScene(width, height, static_cast<int>(state.range(0)));
  const drevin::test::LiteralFrame frame(scene);
  const int padding = static_cast<int>(state.range(0)) / 2 + 2;
  for (auto _ : state) {
    auto row = frame.row(height / 2, padding, width - padding);
    benchmark::DoNotOptimize(row);
  }
}

BENCHMARK(rows)->Name("rows.production")->Arg(8)->Arg(32)->Arg(64)->Unit(benchmark::kMillisecond);
BENCHMARK(rowsLiteral)
    ->Name("rows.literal")
    ->Arg(8)
    ->Arg(32)
    ->Arg(64)
    ->Unit(benchmark::kMillisecond);

}  // namespace
