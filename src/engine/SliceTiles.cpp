#include "engine/SliceTiles.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <utility>

#include "engine/InOrder.h"
#include "engine/TileRuns.h"

namespace drevin {

namespace {

int tilesAlong(int pixels) {
  return (pixels + dvTileSide - 1) / dvTileSide;
}

}  // namespace

dvSliceTiles::dvSliceTiles(const dvKernelTable& kernels, std::size_t channels,
                           const dvGroupRows& rows, std::size_t slice, const dvFrameBox& sources)
    : channels_(channels),
      rows_(rows),
      slice_(slice),
      sources_(sources),
      kernels_(kernels.largestRadius(), rows.padding(), rows.greatestShift()),
      across_(tilesAlong(sources.width())) {
  // In a transform a value that is not finite would spread over the whole tile.
  for (int radius = 0; radius <= kernels.largestRadius(); ++radius) {
    if (!kernels.isFinite(radius)) kernels_.bar(radius);
  }
  for (int y = sources.bottom; y < sources.top; y += dvTileSide) {
    for (int x = sources.left; x < sources.right; x += dvTileSide) {
      Tile& tile = tiles_.emplace_back();
      tile.left = x;
      tile.bottom = y;
    }
  }
}

void dvSliceTiles::findParts(Tile& tile) const {
  for (const std::size_t place : rows_.centred(tile.bottom, tile.bottom + dvTileSide)) {
    const dvRecordRange range =
        rows_[place].splats->row.within(slice_, tile.left, tile.left + dvTileSide);
    if (range.begin < range.end) tile.parts.push_back({&rows_[place], range});
  }
}

void dvSliceTiles::plan(Tile& tile, const dvRowCost& cost, const dvFrameBox& wanted,
                        dvTileChoice choice) const {
  dvTileCensus census(kernels_);
  const bool anyLight = forEachRun(tile.parts, tile.lights, [&](const dvTileRun& run) {
    census.add(kernels_, run.first(), run.row->shift(), static_cast<int>(run.end - run.begin));
  });
  tile.plan = planTile(census, kernels_, dvTileSide, static_cast<int>(channels_) + 1, cost, choice,
                       {tile.left, tile.bottom, dvTileSide, wanted});
  tile.isWhole = tile.plan.largest >= 0 && !anyLight && census.isWholeBy(tile.plan);
}

void dvSliceTiles::choose(dvTileChoice choice, const dvRowCost& cost, const dvFrameBox& wanted,
                          dvParallel& parallel) {
  if (choice == dvTileChoice::Nothing) return;
  if (choice == dvTileChoice::ByCost && rows_.largestRadius(slice_) < dvLeastTransformed) return;
  parallel.forEach(static_cast<int>(tiles_.size()), [&](int /*worker*/, int item) {
    Tile& tile = tiles_[static_cast<std::size_t>(item)];
    findParts(tile);
    if (tile.parts.empty()) return;
    tile.lights = dvTileLights(tile.parts, channels_);
    plan(tile, cost, wanted, choice);
    findUnits(tile);
  });
  findOrder();
}

// The longest first: at the end all threads have something to do.
void dvSliceTiles::findOrder() {
  for (const Tile& tile : tiles_) {
    if (tile.plan.largest >= 0) order_.push_back(&tile);
  }
  std::stable_sort(order_.begin(), order_.end(),
                   [](const Tile* a, const Tile* b) { return a->plan.time > b->plan.time; });
}

// Of each tile its own: else one that is bright would leave its rounding in all others.
void dvSliceTiles::findUnits(Tile& tile) const {
  tile.units.assign(channels_ + 1, 1.0F);
  for (std::size_t c = 0; c < channels_; ++c) {
    const float mean = tile.lights.mean(c);
    // Smaller ones would overflow the values.
    if (mean > 1e-30F) tile.units[c] = std::ldexp(1.0F, std::ilogb(mean));
  }
}

bool dvSliceTiles::hasTransforms() const {
  return !order_.empty();
}

dvFrameBox dvSliceTiles::reachOf(const Tile& tile) {
  const int reach = tile.plan.largest;
  return {tile.left - reach, tile.bottom - reach, tile.left + dvTileSide + reach,
          tile.bottom + dvTileSide + reach};
}

std::vector<dvColumnSpan> dvSliceTiles::reached(const dvFrameBox& box) const {
  std::vector<dvColumnSpan> rows(static_cast<std::size_t>(box.height()));
  for (const Tile* tile : order_) {
    const dvFrameBox reach = reachOf(*tile);
    const dvColumnSpan columns{std::max(reach.left, box.left) - box.left,
                               std::min(reach.right, box.right) - box.left};
    for (int y = std::max(reach.bottom, box.bottom); y < std::min(reach.top, box.top); ++y) {
      dvColumnSpan& row = rows[static_cast<std::size_t>(y - box.bottom)];
      row = together(row, columns);
    }
  }
  return rows;
}

void dvSliceTiles::sumTile(const Tile& tile, const dvParallel& parallel, Work& work,
                           dvSpectrumCache& spectra, const dvTransformRounding& rounding) const {
  std::vector<float> perUnit;
  for (std::size_t c = 0; c < channels_; ++c)
    perUnit.push_back(1.0F / tile.units[c]);
  work.impulses.begin(tile.left, tile.bottom, tile.parts, tile.lights, tile.plan, kernels_);
  work.squares.assign(tile.units.size(), 0.0);
  work.sum.begin(tile.plan.length);
  for (int place = 0; place < kernels_.count() && !parallel.aborted(); ++place) {
    if (!work.impulses.has(place)) continue;
    const dvCutKernel kernel = kernels_[place];
    const float* planes = work.impulses.fill(place, perUnit);
    work.sum.add(planes, spectra.spectrum(tile.plan.length, kernel));
    for (std::size_t plane = 0; plane < work.squares.size(); ++plane)
      work.squares[plane] += rounding.kernelSquare(kernel.radius) * work.impulses.squares()[plane];
    work.impulses.clear(place);
  }
  work.sum.finish();
}

void dvSliceTiles::addRounding(const Tile& tile, const Work& work, dvTransformRounding& rounding) {
  const dvFrameBox reached = reachOf(tile);
  constexpr auto pixels = static_cast<double>(dvTilePixels);
  for (std::size_t plane = 0; plane < tile.units.size(); ++plane) {
    const std::size_t partner = plane % 2 == 0 ? plane + 1 : plane - 1;
    double squares = work.squares[plane];
    if (partner < tile.units.size()) squares += work.squares[partner];
    const auto unit = static_cast<double>(tile.units[plane]);
    rounding.add(static_cast<int>(plane), reached, unit * unit * squares / pixels);
  }
}

void dvSliceTiles::addTile(const Tile& tile, const Work& work,
                           std::vector<dvFramePlane<float>>& planes,
                           dvTransformRounding& rounding) const {
  addRounding(tile, work, rounding);
  const dvFrameBox& box = planes.front().box();
  const dvTileBox inside{box.left - tile.left, box.bottom - tile.bottom, box.right - tile.left,
                         box.top - tile.bottom};
  const std::ptrdiff_t origin =
      static_cast<std::ptrdiff_t>(tile.bottom - box.bottom) * box.width() + (tile.left - box.left);
  for (std::size_t plane = 0; plane < planes.size(); ++plane) {
    work.sum.addInto(static_cast<int>(plane), inside, tile.plan.largest, tile.units[plane],
                     planes[plane].row(box.bottom), origin, box.width());
  }
}

// Made side by side: tiles that are summed at once take the same kernels in the same order, and
// would wait for one another's.
void dvSliceTiles::makeSpectra(dvSpectrumCache& spectra, dvParallel& parallel) const {
  std::set<std::pair<int, int>> wanted;
  for (const Tile* tile : order_) {
    for (int place = 0; place < kernels_.count(); ++place) {
      if (tile->plan.takes(place)) wanted.emplace(tile->plan.length, place);
    }
  }
  const std::vector<std::pair<int, int>> list(wanted.begin(), wanted.end());
  parallel.forEach(static_cast<int>(list.size()), [&](int /*worker*/, int item) {
    const auto& [length, place] = list[static_cast<std::size_t>(item)];
    spectra.spectrum(length, kernels_[place]);
  });
}

void dvSliceTiles::sum(dvSpectrumCache& spectra, dvParallel& parallel,
                       std::vector<dvFramePlane<float>>& planes,
                       dvTransformRounding& rounding) const {
  makeSpectra(spectra, parallel);
  dvInOrder<Work> finished(
      static_cast<std::size_t>(parallel.workers()), [&](int item, const Work& work) {
        addTile(*order_[static_cast<std::size_t>(item)], work, planes, rounding);
      });
  parallel.forEach(static_cast<int>(order_.size()), [&](int /*worker*/, int item) {
    dvInOrder<Work>::Turn turn(finished, item);
    std::unique_ptr<Work> work = finished.blank(channels_);
    sumTile(*order_[static_cast<std::size_t>(item)], parallel, *work, spectra, rounding);
    turn.end(std::move(work));
  });
}

const dvSliceTiles::Tile* dvSliceTiles::tileOf(int x, int y) const {
  // A chromatic shift may put a centre anywhere.
  const std::int64_t fromLeft = static_cast<std::int64_t>(x) - sources_.left;
  const std::int64_t fromBottom = static_cast<std::int64_t>(y) - sources_.bottom;
  if (fromLeft < 0 || fromBottom < 0) return nullptr;
  const std::int64_t across = fromLeft / dvTileSide;
  const std::int64_t up = fromBottom / dvTileSide;
  if (across >= across_ || up >= tilesAlong(sources_.height())) return nullptr;
  return &tiles_[static_cast<std::size_t>(up * across_ + across)];
}

dvSplatRow dvSliceTiles::directRow(std::size_t place) const {
  dvSplatRow direct;
  const dvGroupRows::Row& from = rows_[place];
  const dvSplatRow& row = from.splats->row;
  direct.hasGreat = row.hasGreat;
  for (std::size_t r = row.begin(slice_); r < row.end(slice_);) {
    const Tile* tile = tileOf(row.records[r].x, from.splats->centreY);
    std::size_t end = r + 1;
    if (tile != nullptr) {
      const auto left = static_cast<std::int64_t>(tile->left);
      end = row.within(slice_, left, left + dvTileSide).end;
    }
    if (tile == nullptr || tile->plan.largest < 0) {
      append(row, {r, end}, direct);
    } else if (!tile->isWhole) {
      appendLeft(*tile, from, {r, end}, direct);
    }
    r = end;
  }
  direct.sliceBegin = {0, static_cast<std::uint32_t>(direct.records.size())};
  return direct;
}

void dvSliceTiles::append(const dvSplatRow& row, const dvRecordRange& range,
                          dvSplatRow& direct) const {
  const std::size_t stride = row.stride();
  const dvSplatRecord* records = row.records.data();
  direct.records.insert(direct.records.end(), records + range.begin, records + range.end);
  for (std::size_t r = range.begin; r < range.end; ++r) {
    const float* values = row.values.data() + r * stride;
    direct.values.insert(direct.values.end(), values, values + channels_);
  }
}

void dvSliceTiles::appendLeft(const Tile& tile, const dvGroupRows::Row& from,
                              const dvRecordRange& range, dvSplatRow& direct) const {
  const dvSplatRow& row = from.splats->row;
  const std::size_t stride = row.stride();
  int radius = -1;
  bool takesNear = false;
  bool takesFar = false;
  for (std::size_t r = range.begin; r < range.end; ++r) {
    dvSplatRecord record = row.records[r];
    const float* values = row.values.data() + r * stride;
    if (record.radius != radius) {
      radius = record.radius;
      takesNear = tile.plan.takes(kernels_.place(radius, from.shift()));
      takesFar = tile.plan.takes(kernels_.place(radius + 1, from.shift()));
    }
    if (!tile.lights.isLight(record, values)) {
      if (takesNear) record.near = 0.0F;
      if (takesFar) record.far = 0.0F;
    }
    if (record.near == 0.0F && record.far == 0.0F) continue;
    direct.records.push_back(record);
    direct.values.insert(direct.values.end(), values, values + channels_);
  }
}

}  // namespace drevin
