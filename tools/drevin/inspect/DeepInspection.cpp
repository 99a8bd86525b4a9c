#include "inspect/DeepInspection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <vector>

#include "DDImage/ChannelMap.h"
#include "deep/DeepReading.h"
#include "deep/SamplePlace.h"
#include "inspect/DepthInspection.h"
#include "inspect/ValueRange.h"
#include "picture/SampleTypeName.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Channel;
using DD::Image::ChannelMap;
using DD::Image::ChannelSet;
using Json = nlohmann::ordered_json;

// Thinner samples are points, and never cut.
constexpr float kThinSample = 1e-6F;

class DeepFigures {
 public:
  DeepFigures(const ChannelMap& channels, const DeepExrSource& deep)
      : channels_(channels),
        deep_(deep),
        front_(placeOf(channels, Chan_DeepFront)),
        back_(placeOf(channels, Chan_DeepBack)),
        alpha_(placeOf(channels, Chan_Alpha)),
        ranges_(channels.size()) {}

  void addRow(const embedded::DeepRow& row) {
    const float* samples = row.values.data();
    for (const std::uint32_t count : row.counts) {
      addPixel(samples, count);
      samples += count * channels_.size();
    }
  }

  Json json() const {
    const DeepSampleCounts counts = deep_.counts();
    Json json;
    json["samples"] = {{"all", counts.samples},
                       {"mostPerPixel", counts.mostPerPixel},
                       {"medianPerPixel", medianPerPixel()}};
    json["pixels"] = pixels_;
    const auto empty = perPixel_.find(0);
    json["emptyPixels"] = empty == perPixel_.end() ? 0 : empty->second;
    json["points"] = counts.samples - counts.thick - counts.inverted;
    json["thick"] = counts.thick;
    json["inverted"] = counts.inverted;
    json["overlappingPixels"] = overlapping_;
    json["pieces"] = pieces_;
    json["unsortedPixels"] = counts.unsorted;
    json["alphaAboveOne"] = alphaAboveOne_;
    json["notFinite"] = counts.notFinite;
    addDistances(json);
    json["channels"] = channelsJson();
    return json;
  }

 private:
  void addDistances(Json& json) const {
    const ValueRange& depths = ranges_[front_];
    const float median = medianNearest();
    json["style"] = {{"guess", "Real"}, {"why", "depths of deep samples are distances always"}};
    json["unit"] = unitJson(median);
    json["medianNearest"] = nearest_.empty() ? Json() : depthJson(median);
    json["near"] = depths.anyFinite() ? depthJson(static_cast<float>(depths.least)) : Json();
    json["far"] = depths.anyFinite() ? depthJson(static_cast<float>(depths.most)) : Json();
    json["farthestBacks"] = rangeJson(ends_);
  }

  // Samples lie nearest first.
  void addPixel(const float* sample, std::uint32_t count) {
    ++pixels_;
    ++perPixel_[count];
    if (count > 0 && std::isfinite(sample[front_])) nearest_.push_back(sample[front_]);
    bool overlap = false;
    float reached = 0.0F;
    std::uint64_t chain = 0;  // pieces that the sample before it comes to
    for (std::uint32_t i = 0; i < count; ++i, sample += channels_.size()) {
      for (std::size_t c = 0; c < ranges_.size(); ++c)
        ranges_[c].add(static_cast<double>(sample[c]));
      if (sample[alpha_] > 1.0F) ++alphaAboveOne_;
      overlap = overlap || (i > 0 && sample[front_] < reached);
      chain = piecesOf(sample, i > 0 ? sample - channels_.size() : nullptr, chain);
      pieces_ += chain;
      reached = i == 0 ? sample[back_] : std::max(reached, sample[back_]);
    }
    if (overlap) ++overlapping_;
    if (count > 0) ends_.add(static_cast<double>(reached));
  }

  // Of the pixels that have samples: what is seen first. NaN if there is none.
  float medianNearest() const {
    if (nearest_.empty()) return std::numeric_limits<float>::quiet_NaN();
    std::vector<float> depths = nearest_;
    const auto middle = depths.begin() + static_cast<std::ptrdiff_t>((depths.size() - 1) / 2);
    std::nth_element(depths.begin(), middle, depths.end());
    return *middle;
  }

  // A thick sample is cut at the one before it, and comes with all pieces of that.
  std::uint64_t piecesOf(const float* sample, const float* before, std::uint64_t chain) const {
    const bool thick = sample[back_] - sample[front_] >= kThinSample;
    if (before == nullptr || !thick || !(sample[back_] > before[front_])) return 1;
    return 1 + chain + (sample[back_] > before[back_] ? 1 : 0);
  }

  std::uint64_t medianPerPixel() const {
    std::uint64_t below = 0;
    for (const auto& [samples, pixels] : perPixel_) {
      below += pixels;
      if (2 * below >= pixels_) return samples;
    }
    return 0;
  }

  Json channelsJson() const {
    Json json = Json::array();
    std::size_t place = 0;
    for (const Channel channel : static_cast<const ChannelSet&>(channels_)) {
      const ExrChannelFacts* stored = deep_.storedChannel(channel);
      Json entry = {{"name", stored == nullptr ? Json() : Json(stored->name)},
                    {"hostName", DD::Image::getName(channel)},
                    {"type", stored == nullptr ? Json() : Json(sampleTypeName(stored->type))}};
      entry.update(rangeJson(ranges_[place++]));
      json.push_back(entry);
    }
    return json;
  }

  const ChannelMap& channels_;
  const DeepExrSource& deep_;
  std::size_t front_;
  std::size_t back_;
  std::size_t alpha_;
  std::vector<ValueRange> ranges_;
  ValueRange ends_;                                  // the farthest backs of the pixels
  std::vector<float> nearest_;                       // the first finite fronts of the pixels
  std::map<std::uint32_t, std::uint64_t> perPixel_;  // pixels by their number of samples
  std::uint64_t pixels_ = 0;
  std::uint64_t overlapping_ = 0;
  std::uint64_t pieces_ = 0;
  std::uint64_t alphaAboveOne_ = 0;
};

}  // namespace

Json inspectDeep(DeepExrSource& deep) {
  const ChannelMap channels(deep.channels());
  DeepFigures figures(channels, deep);
  const DD::Image::Box& box = deep.box();
  embedded::DeepRow row;
  readingDeep([&] {
    for (int y = box.t() - 1; y >= box.y(); --y) {
      throwIfInterrupted();
      deep.readRow(y, box.x(), box.r(), deep.channels(), row);
      figures.addRow(row);
    }
  });
  Json json;
  json["part"] = deep.partName().empty() ? Json() : Json(deep.partName());
  json.update(figures.json());
  return json;
}

}  // namespace drevintool
