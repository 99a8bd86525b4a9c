#include "deep/DeepBandReader.h"

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfDeepFrameBuffer.h>
#include <OpenEXR/ImfDeepScanLineInputPart.h>
#include <OpenEXR/ImfDeepTiledInputPart.h>
#include <OpenEXR/ImfMultiPartInputFile.h>
#include <OpenEXR/ImfPartType.h>
#include <OpenEXR/ImfThreading.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

#include "EmbeddedHost/DeepInput.h"
#include "deep/SamplePlace.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Channel;
using DD::Image::ChannelSet;

// A band while it is filled: what the library writes into, and its frame buffer.
class BandFilling {
 public:
  BandFilling(const ExrPartFacts& facts, const DeepBandRows& rows, const DeepChannels& channels,
              const ChannelSet& wanted)
      : channels_(channels),
        window_({facts.dataWindow.minX, rows.first}, {facts.dataWindow.maxX, rows.last}) {
    band_->firstRow = rows.first;
    band_->width = static_cast<std::size_t>(facts.dataWindow.width());
    band_->channels = DD::Image::ChannelMap(wanted + ChannelSet(DD::Image::Mask_Deep));
    const auto height = static_cast<std::size_t>(std::int64_t{rows.last} - rows.first + 1);
    counts_.resize(band_->width * height);
    for (const DeepChannel& channel : channels.stored) {
      if (!band_->channels.contains(channel.number)) continue;
      pointers_.push_back({channel, std::vector<float*>(counts_.size())});
    }
  }

  // Valid until the filling ends.
  Imf::DeepFrameBuffer frame() {
    Imf::DeepFrameBuffer frame;
    constexpr std::size_t kCount = sizeof(std::uint32_t);
    frame.insertSampleCountSlice(
        Imf::Slice::Make(Imf::UINT, counts_.data(), window_, kCount, kCount * band_->width));
    constexpr std::size_t kPointer = sizeof(float*);
    const std::size_t row = kPointer * band_->width;
    for (ChannelPointers& entry : pointers_) {
      char* base =
          Imf::Slice::Make(Imf::FLOAT, entry.toSamples.data(), window_, kPointer, row).base;
      frame.insert(entry.channel.fileName,
                   Imf::DeepSlice(Imf::FLOAT, base, kPointer, row, sampleBytes()));
    }
    return frame;
  }

  // The counts are there: gives the samples memory and the library its pointers to it.
  void allocate(std::uint64_t planned) {
    std::size_t total = 0;
    band_->starts.reserve(counts_.size() + 1);
    for (std::size_t pixel = 0; pixel < counts_.size(); ++pixel) {
      if (counts_[pixel] > kMostPixelSamples) {
        failPixel(pixel, counts_[pixel], "samples", kMostPixelSamples);
      }
      band_->starts.push_back(total);
      total += counts_[pixel];
      band_->counts.mostPerPixel =
          std::max<std::uint64_t>(band_->counts.mostPerPixel, counts_[pixel]);
    }
    band_->starts.push_back(total);
    if (total != planned) {
      throw std::runtime_error("damaged: from row " + std::to_string(band_->firstRow) +
                               " on its blocks announce " + std::to_string(planned) +
                               " samples, but its pixels have " + std::to_string(total));
    }
    band_->counts.samples = total;
    band_->values.resize(total * band_->channels.size());
    for (ChannelPointers& entry : pointers_)
      point(entry);
  }

  // The samples are there: adds what the file leaves out, and sorts.
  std::shared_ptr<const DeepBand> finish() {
    const std::size_t front = place(Chan_DeepFront);
    const std::size_t back = place(Chan_DeepBack);
    const std::size_t size = band_->channels.size();
    for (std::size_t pixel = 0; pixel < counts_.size(); ++pixel) {
      float* samples = band_->values.data() + band_->starts[pixel] * size;
      complete(samples, samples + counts_[pixel] * size);
      countThick(pixel, samples);
      countNotFinite(pixel, samples);
      countOddDepths(pixel, samples);
      embedded::sortNearestFirst(samples, counts_[pixel], size, front, back);
    }
    return band_;
  }

 private:
  struct ChannelPointers {
    DeepChannel channel;
    std::vector<float*> toSamples;  // of each pixel
  };

  std::size_t place(Channel channel) const { return placeOf(band_->channels, channel); }

  std::size_t sampleBytes() const { return band_->channels.size() * sizeof(float); }

  // Gives samples the back and the alpha that the file lacks.
  void complete(float* sample, const float* end) const {
    const bool opaque = !channels_.hasAlpha && band_->channels.contains(Chan_Alpha);
    for (; sample != end; sample += band_->channels.size()) {
      if (!channels_.hasBack) sample[place(Chan_DeepBack)] = sample[place(Chan_DeepFront)];
      if (opaque) sample[place(Chan_Alpha)] = 1.0F;
    }
  }

  void countThick(std::size_t pixel, const float* sample) {
    const std::size_t front = place(Chan_DeepFront);
    const std::size_t back = place(Chan_DeepBack);
    std::uint32_t thick = 0;
    for (std::uint32_t i = 0; i < counts_[pixel]; ++i, sample += band_->channels.size()) {
      if (sample[back] > sample[front]) ++thick;
    }
    if (thick > kMostThickSamples) failPixel(pixel, thick, "thick samples", kMostThickSamples);
    band_->counts.thick += thick;
  }

  void countOddDepths(std::size_t pixel, const float* sample) {
    const std::size_t front = place(Chan_DeepFront);
    const std::size_t back = place(Chan_DeepBack);
    bool sorted = true;
    for (std::uint32_t i = 0; i < counts_[pixel]; ++i, sample += band_->channels.size()) {
      if (sample[back] < sample[front]) ++band_->counts.inverted;
      if (i == 0) continue;
      const float* before = sample - band_->channels.size();
      const bool tie = sample[front] == before[front];
      if (sample[front] < before[front] || (tie && sample[back] < before[back])) sorted = false;
    }
    if (!sorted) ++band_->counts.unsorted;
  }

  void point(ChannelPointers& entry) {
    const std::size_t size = band_->channels.size();
    const std::size_t value = place(entry.channel.number);
    for (std::size_t pixel = 0; pixel < counts_.size(); ++pixel) {
      if (counts_[pixel] == 0) continue;
      entry.toSamples[pixel] = &band_->values[band_->starts[pixel] * size + value];
    }
  }

  void countNotFinite(std::size_t pixel, const float* sample) {
    const std::size_t size = band_->channels.size();
    for (std::uint32_t i = 0; i < counts_[pixel]; ++i, sample += size) {
      const bool finite =
          std::all_of(sample, sample + size, [](float value) { return std::isfinite(value); });
      if (!finite) ++band_->counts.notFinite;
    }
  }

  [[noreturn]] void failPixel(std::size_t pixel, std::uint32_t count, const std::string& what,
                              std::uint32_t most) const {
    const auto column = static_cast<std::int64_t>(pixel % band_->width) + window_.min.x;
    const auto row = static_cast<std::int64_t>(pixel / band_->width) + window_.min.y;
    throw std::runtime_error("pixel " + std::to_string(column) + "," + std::to_string(row) +
                             " has " + std::to_string(count) + " " + what + ", more than the " +
                             std::to_string(most) + " that a pixel may have");
  }

  const DeepChannels& channels_;
  Imath::Box2i window_;
  std::shared_ptr<DeepBand> band_ = std::make_shared<DeepBand>();
  std::vector<std::uint32_t> counts_;
  std::vector<ChannelPointers> pointers_;
};

bool sameWindow(const Imath::Box2i& box, const ExrWindow& window) {
  return box == Imath::Box2i({window.minX, window.minY}, {window.maxX, window.maxY});
}

bool sameChannels(const Imf::ChannelList& list, std::vector<ExrChannelFacts> channels) {
  std::sort(channels.begin(), channels.end(),
            [](const ExrChannelFacts& a, const ExrChannelFacts& b) { return a.name < b.name; });
  auto it = list.begin();
  for (const ExrChannelFacts& channel : channels) {
    if (it == list.end() || channel.name != it.name() ||
        channel.type != static_cast<int>(it.channel().type)) {
      return false;
    }
    ++it;
  }
  return it == list.end();
}

bool sameTiles(const Imf::Header& header, const ExrPartFacts& facts) {
  if (!facts.tiled) return header.type() == Imf::DEEPSCANLINE;
  return header.type() == Imf::DEEPTILE && header.hasTileDescription() &&
         header.tileDescription().xSize == facts.tileWidth &&
         header.tileDescription().ySize == facts.tileHeight;
}

// The sizes were checked on the facts: the library must have understood the header likewise.
void checkAgreement(const Imf::Header& header, const ExrPartFacts& facts) {
  const bool same = sameWindow(header.dataWindow(), facts.dataWindow) &&
                    sameWindow(header.displayWindow(), facts.displayWindow) &&
                    static_cast<int>(header.compression()) == facts.compression &&
                    sameTiles(header, facts) && sameChannels(header.channels(), facts.channels);
  if (!same) throw std::runtime_error("damaged: its header contradicts itself");
}

// Runs `step`; whatever it throws becomes one line that names the file.
template <typename Step>
auto named(const std::string& path, const Step& step) {
  try {
    return step();
  } catch (const std::bad_alloc&) {
    throw std::runtime_error(oneLine(path) + ": not enough memory to read it");
  } catch (const std::exception& error) {
    const std::string text = error.what();
    const bool hasPath = text.find(path) != std::string::npos;
    throw std::runtime_error(oneLine(hasPath ? text : path + ": " + text));
  }
}

}  // namespace

// The library's two kinds of deep parts under one face.
class DeepBandReader::Part {
 public:
  Part(const std::string& path, const ExrPartFacts& facts, std::size_t number)
      : file_(path.c_str(), Imf::globalThreadCount(), false),
        number_(static_cast<int>(number)),
        top_(facts.dataWindow.minY),
        tileHeight_(static_cast<int>(facts.tileHeight)) {
    checkAgreement(header(), facts);
    if (facts.tiled) {
      tiles_ = std::make_unique<Imf::DeepTiledInputPart>(file_, number_);
    } else {
      scanlines_ = std::make_unique<Imf::DeepScanLineInputPart>(file_, number_);
    }
  }

  const Imf::Header& header() const { return file_.header(number_); }

  void readCounts(const DeepBandRows& rows, const Imf::DeepFrameBuffer& frame) {
    if (scanlines_) {
      scanlines_->setFrameBuffer(frame);
      scanlines_->readPixelSampleCounts(rows.first, rows.last);
      return;
    }
    tiles_->setFrameBuffer(frame);
    const int row = tileRow(rows);
    tiles_->readPixelSampleCounts(0, tiles_->numXTiles(0) - 1, row, row, 0, 0);
  }

  void readSamples(const DeepBandRows& rows) {
    if (scanlines_) {
      scanlines_->readPixels(rows.first, rows.last);
      return;
    }
    const int row = tileRow(rows);
    tiles_->readTiles(0, tiles_->numXTiles(0) - 1, row, row, 0, 0);
  }

 private:
  int tileRow(const DeepBandRows& rows) const { return (rows.first - top_) / tileHeight_; }

  Imf::MultiPartInputFile file_;
  int number_;
  int top_;
  int tileHeight_;
  std::unique_ptr<Imf::DeepScanLineInputPart> scanlines_;
  std::unique_ptr<Imf::DeepTiledInputPart> tiles_;
};

DeepBandReader::DeepBandReader(const std::string& path, const ExrPartFacts& facts, std::size_t part,
                               DeepChannels channels)
    : path_(path),
      facts_(facts),
      channels_(std::move(channels)),
      part_(named(path, [&] { return std::make_unique<Part>(path, facts, part); })) {}

DeepBandReader::~DeepBandReader() = default;

const Imf::Header& DeepBandReader::header() const {
  return part_->header();
}

std::shared_ptr<const DeepBand> DeepBandReader::read(const DeepBandRows& rows,
                                                     const ChannelSet& wanted) {
  return named(path_, [&] {
    BandFilling filling(facts_, rows, channels_, wanted);
    part_->readCounts(rows, filling.frame());
    filling.allocate(rows.samples);
    part_->readSamples(rows);
    return filling.finish();
  });
}

}  // namespace drevintool
