#include "engine/SplatLine.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "defocus/KernelPair.h"
#include "kernel/KernelImage.h"

namespace drevin {

namespace {

/// Room that a row of records begins with where nothing is expected.
constexpr std::size_t leastRecords = 16;

/// The two kernels as neighbouring radii: a pair that the end of the bank has made one size counts
/// as the nearer.
dvSplatRecord recordOf(const std::int32_t (&radius)[2], const float (&share)[2], int x) {
  dvSplatRecord record;
  record.x = x;
  record.radius = radius[0];
  const float near = share[0] > 0.0F ? share[0] : 0.0F;
  const float far = share[1] > 0.0F ? share[1] : 0.0F;
  const bool oneSize = radius[1] == radius[0];
  record.near = oneSize ? near + far : near;
  record.far = oneSize ? 0.0F : far;
  return record;
}

/// The same list in memory of its size, where much more was reserved.
template <typename Value>
std::vector<Value> fitted(std::vector<Value>&& list) {
  const std::size_t spare = list.capacity() - list.size();
  if (spare <= list.size() / 8) return std::move(list);
  return {std::make_move_iterator(list.begin()), std::make_move_iterator(list.end())};
}

template <typename Value>
std::size_t reserved(const std::vector<Value>& list) {
  return list.capacity() * sizeof(Value);
}

/// Memory of lists that have values of their own.
template <typename Splat>
std::size_t reservedWithValues(const std::vector<Splat>& splats) {
  std::size_t bytes = reserved(splats);
  for (const Splat& splat : splats)
    bytes += reserved(splat.values);
  return bytes;
}

/// Whether only values can be the reason that something is not finite.
bool isOrdinary(const std::int32_t (&radius)[2], const float (&share)[2],
                const dvKernelTable& kernels) {
  for (int i = 0; i < 2; ++i)
    if (!std::isfinite(share[i]) || !kernels.isFinite(radius[i])) return false;
  return true;
}

}  // namespace

std::size_t dvSplatLine::bytes() const {
  std::size_t bytes = reserved(groups);
  for (const std::vector<dvCentredSplats>& group : groups) {
    bytes += reserved(group);
    for (const dvCentredSplats& splats : group) {
      bytes += reserved(splats.row.sliceBegin) + reserved(splats.row.records) +
               reserved(splats.row.values) + reservedWithValues(splats.specials) +
               reservedWithValues(splats.notFinite);
    }
  }
  return bytes;
}

dvSplatLineMaker::dvSplatLineMaker(const dvLineSettings& settings, int sourceY,
                                   std::size_t expected)
    : settings_(settings),
      sourceY_(sourceY),
      expected_(expected),
      pixel_(static_cast<std::size_t>(dvChannelCount), 0.0F),
      values_(settings.channels.size()),
      groups_(settings.groups.size()) {}

inline dvSplatLineMaker::Kernels dvSplatLineMaker::kernelsOf(const dvSplatSource& source) const {
  const dvKernelBank& bank = *settings_.bank;
  const dvKernelPair pair = kernelPair(source.coc, bank);
  Kernels kernels{};
  for (int i = 0; i < 2; ++i) {
    kernels.radius[i] = bank[pair.index[i < pair.count ? i : 0]].centre;
    kernels.share[i] = i < pair.count ? pair.share[i] * source.weight : 0.0F;
  }
  return kernels;
}

inline void dvSplatLineMaker::fillValues(const dvSplatSource& source) {
  const dvBloom& bloom = settings_.splat.bloom;
  const float amount = bloomAmount(bloom, source.clampedX, source.clampedY);
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const int channel = settings_.channels[i];
    const float value = pixel(channel);
    values_[i] = value;
    if (channel < 1 || channel > 3) continue;
    const float light = bloomedLight(bloom, value, amount, source.bloomMatte);
    values_[i] = settings_.splat.bloomOnly ? light : value + light;
  }
}

dvSplatLineMaker::Centred& dvSplatLineMaker::otherRowAt(int y, std::size_t channels,
                                                        Group& group) const {
  std::vector<Centred>& rows = group.rows;
  auto place = std::lower_bound(rows.begin(), rows.end(), y,
                                [](const Centred& row, int wanted) { return row.y < wanted; });
  if (place == rows.end() || place->y != y) {
    place = rows.emplace(place, y);
    // Only what is not shifted stays on one row.
    if (rows.size() == 1) makeRoom(expected_, channels, *place);
  }
  group.last = static_cast<std::size_t>(place - rows.begin());
  return *place;
}

inline dvSplatLineMaker::Centred& dvSplatLineMaker::rowAt(int y, std::size_t channels,
                                                          Group& group) const {
  const bool again = group.last < group.rows.size() && group.rows[group.last].y == y;
  return again ? group.rows[group.last] : otherRowAt(y, channels, group);
}

bool dvSplatLineMaker::addNotFinite(const dvSplatGroup& group, std::uint32_t slice, int x,
                                    const Kernels& kernels, Centred& centred) const {
  std::vector<float> values;
  values.reserve(group.places.size());
  for (const std::size_t place : group.places)
    values.push_back(values_[place]);
  if (!isOrdinary(kernels.radius, kernels.share, *group.kernels)) {
    centred.specials.push_back({slice,
                                x,
                                {kernels.radius[0], kernels.radius[1]},
                                {kernels.share[0], kernels.share[1]},
                                std::move(values)});
    return false;
  }
  dvNotFiniteRun run{slice, x, 1, {-1, -1}, std::move(values)};
  for (int i = 0; i < 2; ++i)
    if (kernels.share[i] > 0.0F) run.radius[i] = kernels.radius[i];
  for (float& value : run.values)
    if (std::isfinite(value)) value = 0.0F;
  if (!centred.notFinite.empty() && continues(centred.notFinite.back(), run)) {
    ++centred.notFinite.back().count;
  } else {
    centred.notFinite.push_back(std::move(run));
  }
  return true;
}

void dvSplatLineMaker::makeRoom(std::size_t records, std::size_t channels, Centred& centred) {
  centred.slices.resize(records);
  centred.records.resize(records);
  centred.values.resize(records * channels);
}

inline bool dvSplatLineMaker::takeValues(const dvSplatGroup& group, Centred& centred,
                                         float& greatest) const {
  const std::size_t channels = group.places.size();
  if (centred.count == centred.records.size())
    makeRoom(std::max(2 * centred.count, leastRecords), channels, centred);
  float* values = centred.values.data() + centred.count * channels;
  bool finite = true;
  for (const std::size_t place : group.places) {
    const float size = std::fabs(values_[place]);
    const bool usable = size <= std::numeric_limits<float>::max();
    finite = finite && usable;
    greatest = usable && size > greatest ? size : greatest;
    *values++ = usable ? values_[place] : 0.0F;
  }
  return finite;
}

inline void dvSplatLineMaker::addToGroup(const dvSplatGroup& group, const dvSplatSource& source,
                                         const Kernels& kernels, Group& made) const {
  const bool moves = group.shift != 0.0F;
  const float distance =
      moves ? shiftDistance(group.shift, source.coc, source.chromaticMatte) : 0.0F;
  const int x = moves ? shiftedPlace(source.x, distance) : source.x;
  const int y = moves ? shiftedPlace(source.y, distance) : source.y;
  Centred& centred = rowAt(y, group.places.size(), made);
  float greatest = 0.0F;
  const bool valuesFinite = takeValues(group, centred, greatest);
  const bool sharesFinite = std::isfinite(kernels.share[0]) && std::isfinite(kernels.share[1]);
  // What an infinite share or kernel makes of 1 is not its own weight: no part of so much weight
  // has room, and no part of infinity is NaN.
  centred.lastIsOne = centred.lastIsOne && values_[group.places.back()] == 1.0F &&
                      isOrdinary(kernels.radius, kernels.share, *group.kernels);
  const auto slice = static_cast<std::uint32_t>(source.slice);
  const bool finite = valuesFinite && sharesFinite;
  if (!finite && !addNotFinite(group, slice, x, kernels, centred)) return;
  const std::size_t place = centred.count++;
  centred.inOrder = centred.inOrder && (place == 0 || centred.slices[place - 1] <= slice);
  centred.slices[place] = slice;
  const dvSplatRecord record = recordOf(kernels.radius, kernels.share, x);
  centred.records[place] = record;
  const float share = record.near + record.far;
  centred.hasGreat = centred.hasGreat || greatest * share > dvGreatValue || share > dvGreatValue;
}

void dvSplatLineMaker::splat(const dvSplatSource& source) {
  if (source.slice >= settings_.slices || settings_.bank->empty()) return;
  const Kernels kernels = kernelsOf(source);
  if (kernels.share[0] <= 0.0F && kernels.share[1] <= 0.0F) return;
  fillValues(source);
  for (std::size_t g = 0; g < groups_.size(); ++g)
    addToGroup(settings_.groups[g], source, kernels, groups_[g]);
}

dvSplatRow dvSplatLineMaker::sorted(Centred& centred, std::size_t channels, std::size_t slices) {
  makeRoom(centred.count, channels, centred);
  dvSplatRow row;
  row.hasGreat = centred.hasGreat;
  row.sliceBegin.assign(slices + 1, 0);
  for (const std::uint32_t slice : centred.slices)
    ++row.sliceBegin[slice + 1];
  for (std::size_t slice = 0; slice < slices; ++slice)
    row.sliceBegin[slice + 1] += row.sliceBegin[slice];
  if (centred.inOrder) {
    row.records = fitted(std::move(centred.records));
    row.values = fitted(std::move(centred.values));
    return row;
  }
  std::vector<std::uint32_t> next(row.sliceBegin.begin(), row.sliceBegin.end() - 1);
  row.records.resize(centred.records.size());
  row.values.resize(centred.values.size());
  for (std::size_t i = 0; i < centred.records.size(); ++i) {
    const std::size_t place = next[centred.slices[i]]++;
    row.records[place] = centred.records[i];
    for (std::size_t c = 0; c < channels; ++c)
      row.values[place * channels + c] = centred.values[i * channels + c];
  }
  return row;
}

dvSplatLine dvSplatLineMaker::line() {
  dvSplatLine line;
  line.sourceY = sourceY_;
  line.groups.reserve(groups_.size());
  for (Group& group : groups_) {
    const dvSplatGroup& settings = settings_.groups[line.groups.size()];
    std::vector<dvCentredSplats> centred;
    centred.reserve(group.rows.size());
    for (Centred& splats : group.rows) {
      centred.push_back({splats.y, sorted(splats, settings.places.size(), settings_.slices),
                         fitted(std::move(splats.specials)), fitted(std::move(splats.notFinite)),
                         splats.lastIsOne});
      // Blurs move by shifts of their own, past one another.
      if (settings.shift != 0.0F) centred.back().row.sortByColumn();
    }
    line.groups.push_back(std::move(centred));
    group = {};
  }
  return line;
}

}  // namespace drevin
