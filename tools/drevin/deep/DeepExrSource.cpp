#include "deep/DeepExrSource.h"

#include <sys/stat.h>

#include <algorithm>
#include <stdexcept>

#include "deep/DeepChunks.h"
#include "deep/DeepParts.h"
#include "deep/SamplePlace.h"
#include "picture/ExrLimits.h"
#include "picture/HeaderAttributes.h"
#include "picture/MemoryBudget.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using DD::Image::Box;
using DD::Image::Channel;
using DD::Image::ChannelMap;
using DD::Image::ChannelSet;

Box boxOf(const ExrWindow& data, const ExrWindow& display) {
  return {data.minX - display.minX, display.maxY - data.maxY, data.maxX - display.minX + 1,
          display.maxY - data.minY + 1};
}

// What of the header still holds for a flat picture of other channels.
std::shared_ptr<const HeaderAttributes> flatAttributes(const Imf::Header& header, bool multiPart) {
  auto attributes = std::make_shared<HeaderAttributes>();
  attributes->multiPart = multiPart;
  for (auto it = header.begin(); it != header.end(); ++it) {
    const std::string name = it.name();
    if (name == "deepImageState" || name == "idManifest") continue;
    attributes->header.insert(name, it.attribute());
  }
  return attributes;
}

// The places of the channels of `wanted` among those of the band.
std::vector<std::size_t> placesOf(const ChannelMap& wanted, const ChannelMap& band) {
  std::vector<std::size_t> places;
  places.reserve(wanted.size());
  for (const Channel channel : static_cast<const ChannelSet&>(wanted))
    places.push_back(placeOf(band, channel));
  return places;
}

void copySamples(const DeepBand& band, std::size_t first, std::size_t end, const ChannelMap& wanted,
                 std::vector<float>& values) {
  const std::size_t size = band.channels.size();
  const float* from = band.values.data() + first * size;
  const float* to = band.values.data() + end * size;
  if (wanted.size() == size) {
    values.assign(from, to);
    return;
  }
  const std::vector<std::size_t> places = placesOf(wanted, band.channels);
  values.reserve((end - first) * places.size());
  for (; from != to; from += size) {
    for (const std::size_t place : places)
      values.push_back(from[place]);
  }
}

}  // namespace

DeepExrSource::DeepExrSource(const std::string& path, const std::string& partName,
                             const std::string& view)
    : path_(path) {
  const ExrFacts facts = scanExrHeader(path);
  part_ = chooseDeepPart(facts, path, partName, view);
  const MemoryBudget budget = memoryBudget();
  checkExrLimits(facts, path, budget);
  facts_ = facts.parts[part_];
  channels_ = planDeepChannels(facts_, path);
  plan_ = std::make_unique<const DeepBandPlan>(facts_, scanDeepChunks(path, facts, part_),
                                               channels_.served.size(), path, budget);
  try {
    reader_ = std::make_unique<DeepBandReader>(path, facts_, part_, channels_);
  } catch (const std::runtime_error& error) {
    throw ToolError(ExitCode::InputUnreadable, error.what());
  }
  const ExrWindow& display = facts_.displayWindow;
  display_ = {display.minX, display.minY, display.maxX, display.maxY};
  format_ = DD::Image::Format(static_cast<int>(display.width()), static_cast<int>(display.height()),
                              static_cast<double>(reader_->header().pixelAspectRatio()));
  box_ = boxOf(facts_.dataWindow, display);
  attributes_ = flatAttributes(reader_->header(), facts.parts.size() > 1);
  constexpr std::uint64_t kCacheBytes = std::uint64_t{64} << 20;
  cache_ = std::make_unique<DeepBandCache>(plan_->size(), kCacheBytes,
                                           std::max(kCacheBytes, budget.bytes / 2));
  counted_.resize(plan_->size());
  notFinite_.resize(plan_->size());
}

void DeepExrSource::readRow(int y, int x, int r, const ChannelSet& channels,
                            embedded::DeepRow& row) {
  const int fileRow = display_.maxY - y;
  const std::shared_ptr<const DeepBand> band = bandWith(fileRow, channels);
  const std::size_t rowStart = static_cast<std::size_t>(fileRow - band->firstRow) * band->width;
  const std::size_t first = rowStart + static_cast<std::size_t>(x - box_.x());
  const std::size_t end = rowStart + static_cast<std::size_t>(r - box_.x());
  row.clear();
  row.counts.reserve(end - first);
  for (std::size_t pixel = first; pixel < end; ++pixel) {
    row.counts.push_back(static_cast<std::uint32_t>(band->starts[pixel + 1] - band->starts[pixel]));
  }
  copySamples(*band, band->starts[first], band->starts[end], ChannelMap(channels), row.values);
}

void DeepExrSource::append(DD::Image::Hash& hash) const {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) status = {};
  hash.append(path_);
  hash.append(static_cast<DD::Image::U64>(status.st_size));
  hash.append(static_cast<DD::Image::U64>(status.st_mtim.tv_sec));
  hash.append(static_cast<DD::Image::U64>(status.st_mtim.tv_nsec));
  hash.append(static_cast<DD::Image::U64>(part_));
}

const ExrChannelFacts* DeepExrSource::storedChannel(Channel channel) const {
  const auto& stored = channels_.stored;
  const auto found = std::find_if(stored.begin(), stored.end(), [&](const DeepChannel& known) {
    return known.number == channel;
  });
  if (found == stored.end()) return nullptr;
  const auto facts =
      std::find_if(facts_.channels.begin(), facts_.channels.end(),
                   [&](const ExrChannelFacts& known) { return known.name == found->fileName; });
  return facts == facts_.channels.end() ? nullptr : &*facts;
}

DeepSampleCounts DeepExrSource::counts() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return counts_;
}

std::uint64_t DeepExrSource::bandReads() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return bandReads_;
}

std::optional<std::string> DeepExrSource::failure() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return failure_;
}

std::shared_ptr<const DeepBand> DeepExrSource::bandWith(int fileRow, const ChannelSet& channels) {
  const std::size_t number = plan_->bandOf(fileRow);
  // Bands are read under the lock, so that no two threads read the same one.
  const std::lock_guard<std::mutex> lock(mutex_);
  if (failure_) throw std::runtime_error(*failure_);
  std::shared_ptr<const DeepBand> band = cache_->find(number);
  if (band && band->channels.containsAll(channels)) return band;
  wanted_ += channels;
  band = readBand(number);
  count(number, *band);
  cache_->add(number, band);
  return band;
}

std::shared_ptr<const DeepBand> DeepExrSource::readBand(std::size_t number) {
  ++bandReads_;
  try {
    return reader_->read((*plan_)[number], wanted_);
  } catch (const std::exception& error) {
    failure_ = error.what();
    throw;
  }
}

void DeepExrSource::count(std::size_t number, const DeepBand& band) {
  // The same band may come again with more channels.
  counts_.notFinite += band.counts.notFinite - notFinite_[number];
  notFinite_[number] = band.counts.notFinite;
  if (counted_[number]) return;
  counted_[number] = true;
  counts_.samples += band.counts.samples;
  counts_.thick += band.counts.thick;
  counts_.inverted += band.counts.inverted;
  counts_.unsorted += band.counts.unsorted;
  counts_.mostPerPixel = std::max(counts_.mostPerPixel, band.counts.mostPerPixel);
}

}  // namespace drevintool
