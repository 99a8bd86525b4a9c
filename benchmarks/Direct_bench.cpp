/// direct.<splats>.<shape>.<order>/<radius>/<level>: splats added row by row, four channels and a
/// weight; the counter `ns` is the time of one splat on one of the rows it reaches. direct.splat is
/// the row code doing the same.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <string>

#include "defocus/Splat.h"
#include "engine/RowSums.h"
#include "engine/Simd.h"
#include "kernel/ApertureShape.h"
#include "kernel/HeroKernel.h"
#include "support/Draw.h"

namespace {

using drevin::dvKernelBank;
using drevin::dvKernelTable;
using drevin::dvReadyRow;
using drevin::dvRowOrder;
using drevin::dvRowReach;
using drevin::dvRowShape;
using drevin::dvRowSums;
using drevin::dvSimdLevel;
using drevin::dvSplatRecord;
using drevin::dvSplatRow;

constexpr int channels = 4;
constexpr int width = 1920;  ///< columns that the splats are centred on
const std::vector<int> rgba{1, 2, 3, 4};

const dvKernelBank& bankTo(int radius) {
  static std::map<int, dvKernelBank> banks;
  dvKernelBank& bank = banks[radius];
  if (!bank.empty()) return bank;
  drevin::dvApertureShape shape;
  shape.softness = 0.1F;
  drevin::dvHeroSizing sizing;
  sizing.side = 2 * radius + 1;
  drevin::dvChannelFloatBuffer hero;
  drevin::makeHeroKernel(hero, shape, sizing, rgba, {});
  bank.resize(static_cast<std::size_t>(2 * radius) + 2);
  for (std::size_t i = 0; i < bank.size(); ++i)
    drevin::initializeBankEntry(bank[i], static_cast<int>(i), hero, rgba);
  return bank;
}

/// Who is splatted: the radii from `least` to `most`, every `step` columns.
struct Population {
  int least;
  int most;
  int step;
};

dvSplatRow drawnRow(const Population& population, drevin::test::Draw& draw) {
  dvSplatRow row;
  for (int x = 0; x < width; x += population.step) {
    const float near = draw.real(0.1F, 0.9F);
    row.records.push_back({x, draw.whole(population.least, population.most), near, 1.0F - near});
    for (int c = 0; c < channels; ++c)
      row.values.push_back(draw.real(0.0F, 1.0F));
  }
  return row;
}

/// Splats times the rows each reaches.
double pairs(const std::vector<dvSplatRow>& rows) {
  double count = 0.0;
  for (const dvSplatRow& row : rows) {
    for (const dvSplatRecord& record : row.records)
      count += static_cast<double>(2 * record.radius + 3);
  }
  return count / static_cast<double>(rows.size());
}

/// Nanoseconds of each of `count` things done in all iterations.
void setTime(benchmark::State& state, double count) {
  state.counters["ns"] =
      benchmark::Counter(count * 1e-9 * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void addRows(benchmark::State& state, dvRowShape shape, dvRowOrder order,
             const Population& population) {
  drevin::setSimdLevel(static_cast<dvSimdLevel>(state.range(1)));
  const dvKernelTable kernels(bankTo(population.most + 1), 1);
  drevin::test::Draw draw(1);
  const int reach = population.most + 1;
  std::vector<dvSplatRow> rows;
  std::vector<dvReadyRow> ready;
  for (int i = 0; i < 8; ++i) {
    rows.push_back(drawnRow(population, draw));
    ready.emplace_back(rows.back(), -reach);
  }
  dvRowSums sums(channels, -reach, width + reach, shape, order);
  for (auto _ : state) {
    sums.clear();
    for (int dy = -reach; dy <= reach; ++dy) {
      const auto i = static_cast<std::size_t>((dy + reach) % 8);
      sums.add(ready[i], dy, kernels);
      sums.endSourceRow();
    }
    sums.finish();
  }
  state.SetLabel(simdLevelName(drevin::simdLevel()));
  setTime(state, pairs(rows));
}

/// Splats that all end a row short of the output row, with their reach known or not.
void reject(benchmark::State& state) {
  const int radius = static_cast<int>(state.range(0));
  const dvKernelTable kernels(bankTo(radius + 2), 1);
  drevin::test::Draw draw(1);
  const dvSplatRow row = drawnRow({radius, radius, 1}, draw);
  dvRowSums sums(channels, 0, width);
  const dvRowReach reach(row);
  for (auto _ : state) {
    sums.add(row, 0, row.records.size(), radius + 2, kernels,
             state.range(1) == 1 ? &reach : nullptr);
    benchmark::ClobberMemory();
  }
  setTime(state, static_cast<double>(row.records.size()));
}

/// The row code: the same kernels and values, a pixel at a time.
void rowCode(benchmark::State& state) {
  const int radius = static_cast<int>(state.range(0));
  const int reach = radius + 1;
  const dvKernelBank& bank = bankTo(radius + 1);
  std::vector<float> planes(8 * static_cast<std::size_t>(width + 2 * reach));
  drevin::dvAccumulatorRows colour(1, std::vector<float*>(5));
  drevin::dvAccumulatorRows weight(1, std::vector<float*>(5));
  for (std::size_t c = 0; c < 4; ++c) {
    colour[0][c + 1] = planes.data() + 2 * c * planes.size() / 8 + reach;
    weight[0][c + 1] = planes.data() + (2 * c + 1) * planes.size() / 8 + reach;
  }
  const std::vector<float> pixel(5, 0.5F);
  drevin::dvSplatSource source;
  source.coc = static_cast<float>(2 * radius + 1) + 0.7F;
  source.pixel = pixel.data();
  for (auto _ : state) {
    for (source.y = -reach; source.y <= reach; ++source.y) {
      for (source.x = 0; source.x < width; ++source.x)
        convole({}, bank, {-reach, 0, width + reach}, source, rgba, colour, weight);
    }
  }
  setTime(state, static_cast<double>(width) * static_cast<double>(2 * reach + 1));
}

const int radii[] = {1, 4, 8, 16, 32, 64, 127};

void addBenchmarks(const std::string& name, int leastOf(int), int step) {
  const std::pair<const char*, dvRowShape> shapes[] = {{"columns", dvRowShape::Dense},
                                                       {"rims", dvRowShape::Rims},
                                                       {"quickest", dvRowShape::Quickest}};
  const std::pair<const char*, dvRowOrder> orders[] = {{"scatter", dvRowOrder::Scatter},
                                                       {"gather", dvRowOrder::Gather},
                                                       {"quickest", dvRowOrder::Quickest}};
  for (const auto& [shapeName, shape] : shapes) {
    for (const auto& [orderName, order] : orders) {
      auto* added = benchmark::RegisterBenchmark(
          ("direct." + name + '.' + shapeName + '.' + orderName).c_str(),
          [=, shape = shape, order = order](benchmark::State& state) {
            const int radius = static_cast<int>(state.range(0));
            addRows(state, shape, order, {leastOf(radius), radius, step});
          });
      for (int level = 0; level <= static_cast<int>(drevin::supportedSimdLevel()); ++level) {
        for (const int radius : radii)
          added->Args({radius, level});
      }
    }
  }
}

/// Every pixel of a row at one radius; at a radius of its own; a pixel in 16 at a radius of its
/// own.
const bool registered = [] {
  addBenchmarks(
      "dense", [](int radius) { return radius; }, 1);
  addBenchmarks(
      "mixed", [](int /*radius*/) { return 1; }, 1);
  addBenchmarks(
      "sparse", [](int /*radius*/) { return 1; }, 16);
  auto* rowCodeBenchmark = benchmark::RegisterBenchmark("direct.splat", rowCode);
  for (const int radius : radii)
    rowCodeBenchmark->Arg(radius);
  return true;
}();

BENCHMARK(reject)->Name("direct.reject")->Args({8, 0})->Args({8, 1})->Args({64, 0})->Args({64, 1});

}  // namespace
