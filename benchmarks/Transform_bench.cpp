/// tile.add<side, length>, tile.finish<side, length>: five planes of a tile convolved by Fourier
/// transform, one radius and the way back; one thread. GFlop/s count 5 N log2 N for each complex
/// line of the plain transform of the tile, padding columns left out, five planes as two and a
/// half.

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "engine/TileSum.h"

namespace {

using namespace drevin;

constexpr int planes = 5;

/// Radii from 0 to the largest of which kernels of random values are there.
dvKernelTable randomTable(int radius) {
  std::mt19937 generator(1);
  std::uniform_real_distribution<float> value(0.0F, 1.0F);
  dvKernelBank bank(static_cast<std::size_t>(2 * radius + 2));
  for (std::size_t i = 1; i < bank.size(); i += 2) {
    bank[i].resize(static_cast<int>(i), {1});
    for (float& v : bank[i].channels[1])
      v = value(generator);
  }
  return {bank, 1};
}

std::vector<float> randomPlanes(int side) {
  std::mt19937 generator(2);
  std::uniform_real_distribution<float> value(0.0F, 1.0F);
  std::vector<float> values(static_cast<std::size_t>(planes * side * side));
  for (float& v : values)
    v = value(generator);
  return values;
}

double lineFlops(int length) {
  return 5.0 * length * std::log2(length);
}

void setRate(benchmark::State& state, double flops) {
  state.counters["GFlop/s"] =
      benchmark::Counter(flops * 1e-9, benchmark::Counter::kIsIterationInvariantRate);
}

void addRadius(benchmark::State& state) {
  const int side = static_cast<int>(state.range(0));
  const int length = static_cast<int>(state.range(1));
  const dvKernelTable table = randomTable(8);
  const dvKernelSpectrum spectrum(table, length, {8});
  const std::vector<float> values = randomPlanes(side);
  dvTileSum sum(side, planes);
  sum.begin(length);
  sum.add(values.data(), spectrum);
  for (auto _ : state)
    sum.add(values.data(), spectrum);
  setRate(state, lineFlops(length) * (side + length) * planes / 2);
}

void finishTile(benchmark::State& state) {
  const int side = static_cast<int>(state.range(0));
  const int length = static_cast<int>(state.range(1));
  const dvKernelTable table = randomTable(8);
  const dvKernelSpectrum spectrum(table, length, {8});
  const std::vector<float> values = randomPlanes(side);
  dvTileSum sum(side, planes);
  for (auto _ : state) {
    state.PauseTiming();
    sum.begin(length);
    sum.add(values.data(), spectrum);
    state.ResumeTiming();
    sum.finish();
  }
  setRate(state, lineFlops(length) * 2 * length * planes / 2);
}

void addPicture(benchmark::State& state) {
  const int side = static_cast<int>(state.range(0));
  const int length = static_cast<int>(state.range(1));
  const int reach = (length - side) / 2;
  const dvKernelTable table = randomTable(8);
  const dvKernelSpectrum spectrum(table, length, {8});
  dvTileSum sum(side, planes);
  sum.begin(length);
  sum.add(randomPlanes(side).data(), spectrum);
  sum.finish();
  const std::ptrdiff_t stride = length + 1500;
  std::vector<float> target(static_cast<std::size_t>(stride * length) * planes);
  const dvTileBox box{-reach, -reach, side + reach, side + reach};
  for (auto _ : state) {
    for (int p = 0; p < planes; ++p)
      sum.addInto(p, box, reach, 1.0F, target.data(), (p * length + reach) * stride + reach,
                  stride);
  }
}

void makeSpectrum(benchmark::State& state) {
  const int length = static_cast<int>(state.range(0));
  const int radius = length / 3;
  const dvKernelTable table = randomTable(radius);
  for (auto _ : state) {
    const dvKernelSpectrum spectrum(table, length, {radius});
    benchmark::DoNotOptimize(&spectrum);
    state.counters["bytes"] = static_cast<double>(spectrum.bytes());
  }
}

void tiles(benchmark::internal::Benchmark* benchmark) {
  for (const int length : {160, 192, 256, 384, 512})
    benchmark->Args({128, length});
  benchmark->Args({256, 320})->Args({256, 512});
  benchmark->Args({384, 480})->Args({384, 640})->Unit(benchmark::kMicrosecond);
}

BENCHMARK(addRadius)->Name("tile.add")->Apply(tiles);
BENCHMARK(finishTile)->Name("tile.finish")->Apply(tiles);
BENCHMARK(addPicture)->Name("tile.picture")->Apply(tiles);
BENCHMARK(makeSpectrum)
    ->Name("spectrum")
    ->Arg(192)
    ->Arg(384)
    ->Arg(640)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
