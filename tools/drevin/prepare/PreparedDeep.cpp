#include "prepare/PreparedDeep.h"

#include <algorithm>
#include <utility>

#include "DDImage/ChannelMap.h"
#include "deep/SamplePlace.h"
#include "depth/DepthCodes.h"
#include "prepare/DepthFixes.h"
#include "prepare/Fireflies.h"
#include "prepare/FixNotes.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

using DD::Image::Chan_Blue;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Chan_Green;
using DD::Image::Chan_Red;
using DD::Image::Channel;
using DD::Image::ChannelMap;
using DD::Image::ChannelSet;
using DD::Image::Mask_Deep;
using DD::Image::Mask_RGB;
using embedded::DeepRow;

// Depths of deep samples are distances in any case.
constexpr DepthCodes kCodes{DepthStyle::Real, false};

// Whether the front was, or the back; both then are distances.
bool mendDepths(float& front, float& back, float depth) {
  const bool backIsCode = kCodes.isBackground(back);
  const bool atCamera = front == 0.0F && !backIsCode && back > 0.0F;
  const bool frontIsCode = kCodes.isBackground(front) && !atCamera;
  if (frontIsCode) front = depth;
  if (backIsCode) back = depth;
  if (frontIsCode || backIsCode) back = std::max(back, front);
  return frontIsCode || backIsCode;
}

// Leaves of each sample the channels that are wanted.
void keepChannels(const ChannelSet& had, const ChannelSet& wanted, DeepRow& row) {
  if (wanted.contains(had)) return;
  const ChannelMap from(had);
  std::vector<float> kept;
  for (std::size_t sample = 0; sample < row.values.size(); sample += from.size()) {
    for (const Channel channel : wanted)
      kept.push_back(row.values[sample + placeOf(from, channel)]);
  }
  row.values = std::move(kept);
}

}  // namespace

// The changes to the samples of a row, whose channels have these places.
class PreparedDeep::Mending {
 public:
  Mending(const ChannelSet& channels, std::optional<float> depth, std::optional<float> mostColour)
      : map_(channels), depth_(depth), mostColour_(mostColour) {}

  Counts mend(DeepRow& row) const {
    Counts counts;
    float* samples = row.values.data();
    for (const std::uint32_t count : row.counts) {
      mendPixel(samples, count, counts);
      samples += count * map_.size();
    }
    return counts;
  }

 private:
  std::size_t place(Channel channel) const { return placeOf(map_, channel); }

  void mendPixel(float* samples, std::uint32_t count, Counts& counts) const {
    bool moved = false;
    float* sample = samples;
    for (std::uint32_t i = 0; i < count; ++i, sample += map_.size()) {
      ++counts.samples;
      if (depth_ &&
          mendDepths(sample[place(Chan_DeepFront)], sample[place(Chan_DeepBack)], *depth_)) {
        ++counts.background;
        moved = true;
      }
      if (mostColour_ && dimColour(sample[place(Chan_Red)], sample[place(Chan_Green)],
                                   sample[place(Chan_Blue)], *mostColour_)) {
        ++counts.bright;
      }
    }
    if (moved) {
      embedded::sortNearestFirst(samples, count, map_.size(), place(Chan_DeepFront),
                                 place(Chan_DeepBack));
    }
  }

  ChannelMap map_;
  std::optional<float> depth_;
  std::optional<float> mostColour_;
};

PreparedDeep::PreparedDeep(std::shared_ptr<DeepSource> source, const PictureFixes& fixes)
    : source_(std::move(source)),
      fixes_(fixes),
      colours_(fixes.mostColour && source_->channels().contains(ChannelSet(Mask_RGB))) {
  if (fixes_.background && fixes_.background->farthest) {
    findFarthest();
  } else if (fixes_.background) {
    depth_ = fixes_.background->depth;
  }
  countChanges();
}

void PreparedDeep::readRow(int y, int x, int r, const ChannelSet& channels, DeepRow& row) {
  const ChannelSet read = neededFor(channels);
  source_->readRow(y, x, r, read, row);
  mend(read, row);
  keepChannels(read, channels, row);
}

void PreparedDeep::append(DD::Image::Hash& hash) const {
  source_->append(hash);
  hash.append(depth_.has_value());
  hash.append(depth_.value_or(0.0F));
  hash.append(fixes_.mostColour.value_or(0.0F));
}

std::vector<std::string> PreparedDeep::notes() const {
  std::vector<std::string> notes;
  if (fixes_.background) {
    notes.push_back(
        backgroundNote(*fixes_.background, depth_, counts_.background, counts_.samples, "samples"));
  }
  if (colours_) {
    notes.push_back(firefliesNote(*fixes_.mostColour, counts_.bright, counts_.samples, "samples"));
  } else if (fixes_.mostColour) {
    notes.push_back(noColoursNote(*fixes_.mostColour, "the deep picture"));
  }
  return notes;
}

void PreparedDeep::findFarthest() {
  const ChannelSet channels(Mask_Deep);
  const ChannelMap map(channels);
  const std::size_t front = placeOf(map, Chan_DeepFront);
  FarthestDepth farthest(kCodes);
  DeepRow row;
  for (int y = box().t() - 1; y >= box().y(); --y) {
    throwIfInterrupted();
    source_->readRow(y, box().x(), box().r(), channels, row);
    for (std::size_t sample = 0; sample < row.values.size(); sample += map.size())
      farthest.add(row.values[sample + front]);
  }
  depth_ = farthest.raw();
}

void PreparedDeep::countChanges() {
  const ChannelSet channels = neededFor(colours_ ? ChannelSet(Mask_RGB) : ChannelSet(Mask_Deep));
  DeepRow row;
  for (int y = box().t() - 1; y >= box().y(); --y) {
    throwIfInterrupted();
    source_->readRow(y, box().x(), box().r(), channels, row);
    const Counts counts = mend(channels, row);
    counts_.samples += counts.samples;
    counts_.background += counts.background;
    counts_.bright += counts.bright;
  }
}

// One colour cannot be dimmed without the others, nor one depth be mended without the other.
ChannelSet PreparedDeep::neededFor(const ChannelSet& channels) const {
  ChannelSet needed(channels);
  needed += ChannelSet(Mask_Deep);
  const bool anyColour =
      channels.contains(Chan_Red) || channels.contains(Chan_Green) || channels.contains(Chan_Blue);
  if (colours_ && anyColour) needed += ChannelSet(Mask_RGB);
  return needed;
}

PreparedDeep::Counts PreparedDeep::mend(const ChannelSet& channels, DeepRow& row) const {
  const bool dim = colours_ && channels.contains(Chan_Red);
  return Mending(channels, fixes_.background ? depth_ : std::nullopt,
                 dim ? fixes_.mostColour : std::nullopt)
      .mend(row);
}

}  // namespace drevintool
