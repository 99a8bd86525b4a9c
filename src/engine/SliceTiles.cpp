#include "engine/SliceTiles.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <utility>

#include "engine/InOrder.h"

namespace drevin {

namespace {

constexpr std::size_t planeSize = static_cast<std::size_t>(dvTileSide) * dvTileSide;

int tilesAlong(int pixels) {
  return (pixels + dvTileSide - 1) / dvTileSide;
}

/// Whether two splats have shares of the same kernels.
bool isAlike(const dvSplatRecord& a, const dvSplatRecord& b) {
  return a.radius == b.radius && (a.near > 0.0F) == (b.near > 0.0F) &&
         (a.far > 0.0F) == (b.far > 0.0F);
}

/// Adds to a value; returns the difference of the squares after and before.
double squareAdded(float added, float& value) {
  const float before = value;
  value = before + added;
  return static_cast<double>(added) * static_cast<double>(2.0F * before + added);
}

}  // namespace

dvSliceTiles::dvSliceTiles(const dvKernelTable& kernels, std::size_t channels,
                           const dvGroupRows& rows, std::size_t slice, const dvFrameBox& sources)
    : channels_(channels),
      rows_(rows),
      slice_(slice),
      sources_(sources),
      kernels_(kernels.largestRadius(), rows.padding(), rows.greatestShift()),
      across_(tilesAlong(sources.width())),
      units_(channels + 1, 1.0F),
      perUnit_(channels, 1.0F) {
  // In a transform a value that is not finite would spread over the whole tile.
  for (int radius = 0; radius <= kernels.largestRadius(); ++radius) {
    if (!kernels.isFinite(radius)) kernels_.bar(radius);
  }
  for (int y = sources.bottom; y < sources.top; y += dvTileSide) {
    for (int x = sources.left; x < sources.right; x += dvTileSide) {
      Tile tile;
      tile.left = x;
      tile.bottom = y;
      tiles_.push_back(std::move(tile));
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

template <typename Visit>
void dvSliceTiles::forEachRecord(const Tile& tile, const Visit& visit) const {
  for (const Part& part : tile.parts) {
    const dvSplatRow& row = part.row->splats->row;
    const std::size_t stride = row.stride();
    const float* values = row.values.data() + part.records.begin * stride;
    for (std::size_t r = part.records.begin; r < part.records.end; ++r, values += stride)
      visit(*part.row, row.records[r], values);
  }
}

void dvSliceTiles::findLights(Tile& tile) const {
  std::vector<double> sums(channels_ + 1, 0.0);
  std::size_t count = 0;
  forEachRecord(tile, [&](const dvGroupRows::Row& /*from*/, const dvSplatRecord& record,
                          const float* values) {
    const auto share = static_cast<double>(record.near + record.far);
    for (std::size_t c = 0; c < channels_; ++c)
      sums[c] += share * static_cast<double>(std::fabs(values[c]));
    sums[channels_] += share;
    ++count;
  });
  tile.light.assign(channels_ + 1, 0.0F);
  for (std::size_t c = 0; c <= channels_ && count > 0; ++c) {
    const float mean = static_cast<float>(sums[c] / static_cast<double>(count));
    const float greatest = c == channels_ ? dvGreatestShare : dvGreatestTransformed;
    tile.light[c] = std::fmin(dvLightRatio * mean, greatest);
  }
}

bool dvSliceTiles::isLight(const Tile& tile, const dvSplatRecord& record, const float* values) {
  const std::size_t channels = tile.light.size() - 1;
  const float* limits = tile.light.data();
  const float share = record.near + record.far;
  bool light = share > limits[channels];
  for (std::size_t c = 0; c < channels; ++c)
    light |= share * std::fabs(values[c]) > limits[c];
  return light;
}

template <typename Visit>
bool dvSliceTiles::forEachRun(const Tile& tile, const Visit& visit) const {
  bool lights = false;
  for (const Part& part : tile.parts) {
    const dvSplatRow& row = part.row->splats->row;
    const std::size_t stride = row.stride();
    Run run{part.row, part.records.begin, part.records.begin};
    const auto end = [&](std::size_t next) {
      if (run.begin < run.end) visit(run);
      run.begin = run.end = next;
    };
    for (std::size_t r = part.records.begin; r < part.records.end; ++r) {
      const dvSplatRecord& record = row.records[r];
      if (isLight(tile, record, row.values.data() + r * stride)) {
        lights = true;
        end(r + 1);
        continue;
      }
      if (run.begin < run.end && !isAlike(row.records[run.begin], record)) end(r);
      run.end = r + 1;
    }
    end(part.records.end);
  }
  return lights;
}

void dvSliceTiles::plan(Tile& tile, const dvRowCost& cost, const dvFrameBox& wanted,
                        dvTileChoice choice) const {
  dvTileCensus census(kernels_);
  const bool lights = forEachRun(tile, [&](const Run& run) {
    census.add(kernels_, run.row->splats->row.records[run.begin], run.row->shift(),
               static_cast<int>(run.end - run.begin));
  });
  tile.plan = planTile(census, kernels_, dvTileSide, static_cast<int>(units_.size()), cost, choice,
                       {tile.left, tile.bottom, dvTileSide, wanted});
  tile.isWhole = tile.plan.largest >= 0 && !lights && census.isWholeBy(tile.plan);
}

void dvSliceTiles::choose(dvTileChoice choice, const dvRowCost& cost, const dvFrameBox& wanted,
                          dvParallel& parallel) {
  if (choice == dvTileChoice::Nothing) return;
  if (choice == dvTileChoice::ByCost && rows_.largestRadius(slice_) < dvLeastTransformed) return;
  parallel.forEach(static_cast<int>(tiles_.size()), [&](int /*worker*/, int item) {
    Tile& tile = tiles_[static_cast<std::size_t>(item)];
    findParts(tile);
    if (tile.parts.empty()) return;
    findLights(tile);
    plan(tile, cost, wanted, choice);
  });
  findUnits();
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

void dvSliceTiles::findUnits() {
  for (std::size_t c = 0; c < channels_; ++c) {
    float mean = 0.0F;
    for (const Tile& tile : tiles_) {
      if (tile.plan.largest >= 0) mean = std::max(mean, tile.light[c] / dvLightRatio);
    }
    // Smaller ones would overflow the values.
    if (mean > 1e-30F) units_[c] = std::ldexp(1.0F, std::ilogb(mean));
    perUnit_[c] = 1.0F / units_[c];
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

void dvSliceTiles::collectImpulses(const Tile& tile, Impulses& impulses) const {
  for (auto& kernel : impulses.byKernel)
    kernel.clear();
  impulses.byKernel.resize(static_cast<std::size_t>(kernels_.count()));
  forEachRun(tile, [&](const Run& run) {
    const dvSplatRow& splats = run.row->splats->row;
    const dvSplatRecord& first = splats.records[run.begin];
    const std::ptrdiff_t row = run.row->splats->centreY - tile.bottom;
    const std::ptrdiff_t rowPlace = row * dvTileSide - tile.left;
    const auto add = [&](int radius, float dvSplatRecord::*share) {
      const int kernel = first.*share > 0.0F ? kernels_.place(radius, run.row->shift()) : -1;
      if (!tile.plan.takes(kernel)) return;
      impulses.byKernel[static_cast<std::size_t>(kernel)].push_back(
          {&splats, run.begin, run.end, rowPlace, share});
    };
    add(first.radius, &dvSplatRecord::near);
    add(first.radius + 1, &dvSplatRecord::far);
  });
}

void dvSliceTiles::addToPlanes(const Impulse& impulse, float* planes, double* squares) const {
  const std::size_t stride = impulse.splats->stride();
  const float* values = impulse.splats->values.data() + impulse.begin * stride;
  for (std::size_t r = impulse.begin; r < impulse.end; ++r, values += stride) {
    const dvSplatRecord& record = impulse.splats->records[r];
    const float share = record.*impulse.share;
    float* target = planes + (impulse.rowPlace + record.x);
    for (std::size_t c = 0; c < channels_; ++c, target += planeSize)
      squares[c] += squareAdded(share * (values[c] * perUnit_[c]), *target);
    squares[channels_] += squareAdded(share, *target);
  }
}

void dvSliceTiles::addToPlanes(const ImpulseList& kernel, double kernelSquare,
                               Impulses& impulses) const {
  std::vector<double>& squares = impulses.kernelSquares;
  squares.assign(units_.size(), 0.0);
  for (const Impulse& impulse : kernel)
    addToPlanes(impulse, impulses.planes.data(), squares.data());
  for (std::size_t plane = 0; plane < units_.size(); ++plane)
    impulses.squares[plane] += kernelSquare * squares[plane];
}

void dvSliceTiles::clearPlanes(const ImpulseList& kernel, Impulses& impulses) const {
  std::size_t count = 0;
  for (const Impulse& impulse : kernel)
    count += impulse.end - impulse.begin;
  if (count > planeSize / 8) {
    std::fill(impulses.planes.begin(), impulses.planes.end(), 0.0F);
    return;
  }
  for (std::size_t plane = 0; plane < units_.size(); ++plane) {
    float* first = impulses.planes.data() + plane * planeSize;
    for (const Impulse& impulse : kernel) {
      for (std::size_t r = impulse.begin; r < impulse.end; ++r)
        first[impulse.rowPlace + impulse.splats->records[r].x] = 0.0F;
    }
  }
}

void dvSliceTiles::sumTile(const Tile& tile, const dvParallel& parallel, Impulses& impulses,
                           dvSpectrumCache& spectra, const dvTransformRounding& rounding) const {
  collectImpulses(tile, impulses);
  impulses.squares.assign(units_.size(), 0.0);
  impulses.sum->begin(tile.plan.length);
  for (int place = 0; place < kernels_.count() && !parallel.aborted(); ++place) {
    const auto& splats = impulses.byKernel[static_cast<std::size_t>(place)];
    if (splats.empty()) continue;
    const dvCutKernel kernel = kernels_[place];
    addToPlanes(splats, rounding.kernelSquare(kernel.radius), impulses);
    impulses.sum->add(impulses.planes.data(), spectra.spectrum(tile.plan.length, kernel));
    clearPlanes(splats, impulses);
  }
  impulses.sum->finish();
}

void dvSliceTiles::addRounding(const Tile& tile, const Impulses& impulses,
                               dvTransformRounding& rounding) const {
  const dvFrameBox reached = reachOf(tile);
  constexpr auto pixels = static_cast<double>(planeSize);
  for (std::size_t plane = 0; plane < units_.size(); ++plane) {
    const std::size_t partner = plane % 2 == 0 ? plane + 1 : plane - 1;
    double squares = impulses.squares[plane];
    if (partner < units_.size()) squares += impulses.squares[partner];
    const auto unit = static_cast<double>(units_[plane]);
    rounding.add(static_cast<int>(plane), reached, unit * unit * squares / pixels);
  }
}

void dvSliceTiles::addTile(const Tile& tile, const Impulses& impulses,
                           std::vector<dvFramePlane<float>>& planes,
                           dvTransformRounding& rounding) const {
  addRounding(tile, impulses, rounding);
  const dvFrameBox& box = planes.front().box();
  const dvTileBox inside{box.left - tile.left, box.bottom - tile.bottom, box.right - tile.left,
                         box.top - tile.bottom};
  const std::ptrdiff_t origin =
      static_cast<std::ptrdiff_t>(tile.bottom - box.bottom) * box.width() + (tile.left - box.left);
  for (std::size_t plane = 0; plane < planes.size(); ++plane) {
    impulses.sum->addInto(static_cast<int>(plane), inside, tile.plan.largest,
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
  dvInOrder<Impulses> finished(
      static_cast<std::size_t>(parallel.workers()), [&](int item, const Impulses& impulses) {
        addTile(*order_[static_cast<std::size_t>(item)], impulses, planes, rounding);
      });
  parallel.forEach(static_cast<int>(order_.size()), [&](int /*worker*/, int item) {
    dvInOrder<Impulses>::Turn turn(finished, item);
    std::unique_ptr<Impulses> impulses = finished.blank();
    if (impulses->sum == nullptr) {
      impulses->sum = std::make_unique<dvTileSum>(dvTileSide, static_cast<int>(planes.size()));
      impulses->planes.resize(planes.size() * planeSize);
    }
    sumTile(*order_[static_cast<std::size_t>(item)], parallel, *impulses, spectra, rounding);
    turn.end(std::move(impulses));
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
      append(row, r, end, direct);
    } else if (!tile->isWhole) {
      appendLeft(*tile, from, {r, end}, direct);
    }
    r = end;
  }
  direct.sliceBegin = {0, static_cast<std::uint32_t>(direct.records.size())};
  return direct;
}

void dvSliceTiles::append(const dvSplatRow& row, std::size_t begin, std::size_t end,
                          dvSplatRow& direct) const {
  const std::size_t stride = row.stride();
  const dvSplatRecord* records = row.records.data();
  direct.records.insert(direct.records.end(), records + begin, records + end);
  for (std::size_t r = begin; r < end; ++r) {
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
    if (!isLight(tile, record, values)) {
      if (takesNear) record.near = 0.0F;
      if (takesFar) record.far = 0.0F;
    }
    if (record.near == 0.0F && record.far == 0.0F) continue;
    direct.records.push_back(record);
    direct.values.insert(direct.values.end(), values, values + channels_);
  }
}

}  // namespace drevin
