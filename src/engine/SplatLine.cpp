#include "engine/SplatLine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "defocus/KernelPair.h"
#include "kernel/KernelImage.h"

namespace drevin {

namespace {

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

/// Whether only values can be the reason that something is not finite.
bool isOrdinary(const std::int32_t (&radius)[2], const float (&share)[2],
                const dvKernelTable& kernels) {
  for (int i = 0; i < 2; ++i)
    if (!std::isfinite(share[i]) || !kernels.isFinite(radius[i])) return false;
  return true;
}

}  // namespace

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
    if (rows.size() == 1) {
      place->slices.reserve(expected_);
      place->records.reserve(expected_);
      place->values.reserve(expected_ * channels);
    }
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

inline void dvSplatLineMaker::addRecord(const dvSplatGroup& group, std::uint32_t slice, int x,
                                        const Kernels& kernels, Centred& centred) const {
  if (!centred.slices.empty() && slice < centred.slices.back()) centred.inOrder = false;
  centred.slices.push_back(slice);
  centred.records.push_back(recordOf(kernels.radius, kernels.share, x));
  float greatest = 0.0F;
  for (const std::size_t place : group.places) {
    const float value = std::isfinite(values_[place]) ? values_[place] : 0.0F;
    greatest = std::fmax(greatest, std::fabs(value));
    centred.values.push_back(value);
  }
  const float share = centred.records.back().near + centred.records.back().far;
  centred.hasGreat = centred.hasGreat || greatest * share > dvGreatValue || share > dvGreatValue;
}

inline void dvSplatLineMaker::addToGroup(const dvSplatGroup& group, const dvSplatSource& source,
                                         const Kernels& kernels, Group& made) const {
  const float distance =
      group.shift == 0.0F ? 0.0F : shiftDistance(group.shift, source.coc, source.chromaticMatte);
  const int x = shiftedPlace(source.x, distance);
  Centred& centred = rowAt(shiftedPlace(source.y, distance), group.places.size(), made);
  bool finite = std::isfinite(kernels.share[0]) && std::isfinite(kernels.share[1]);
  // A value of 1 times an infinite share is not its own weight: that one is spread as a number.
  centred.lastIsOne = centred.lastIsOne && finite && values_[group.places.back()] == 1.0F;
  for (const std::size_t place : group.places)
    finite = finite && std::isfinite(values_[place]);
  const auto slice = static_cast<std::uint32_t>(source.slice);
  if (finite || addNotFinite(group, slice, x, kernels, centred))
    addRecord(group, slice, x, kernels, centred);
}

void dvSplatLineMaker::splat(const dvSplatSource& source) {
  if (source.slice >= settings_.slices || settings_.bank->empty()) return;
  const Kernels kernels = kernelsOf(source);
  if (kernels.share[0] <= 0.0F && kernels.share[1] <= 0.0F) return;
  fillValues(source);
  for (std::size_t g = 0; g < groups_.size(); ++g)
    addToGroup(settings_.groups[g], source, kernels, groups_[g]);
}

dvSplatRow dvSplatLineMaker::sorted(Centred& centred, std::size_t slices) {
  dvSplatRow row;
  row.hasGreat = centred.hasGreat;
  row.sliceBegin.assign(slices + 1, 0);
  for (const std::uint32_t slice : centred.slices)
    ++row.sliceBegin[slice + 1];
  for (std::size_t slice = 0; slice < slices; ++slice)
    row.sliceBegin[slice + 1] += row.sliceBegin[slice];
  if (centred.inOrder) {
    row.records = std::move(centred.records);
    row.values = std::move(centred.values);
    return row;
  }
  std::vector<std::uint32_t> next(row.sliceBegin.begin(), row.sliceBegin.end() - 1);
  row.records.resize(centred.records.size());
  row.values.resize(centred.values.size());
  const std::size_t channels = centred.values.size() / centred.records.size();
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
  for (Group& group : groups_) {
    std::vector<dvCentredSplats> centred;
    for (Centred& splats : group.rows) {
      centred.push_back({splats.y, sorted(splats, settings_.slices), std::move(splats.specials),
                         std::move(splats.notFinite), splats.lastIsOne});
      // Blurs move by shifts of their own, past one another.
      if (settings_.groups[line.groups.size()].shift != 0.0F) centred.back().row.sortByColumn();
    }
    line.groups.push_back(std::move(centred));
    group = {};
  }
  return line;
}

}  // namespace drevin
