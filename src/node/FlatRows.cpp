/// Output rows of flat inputs: host rows in, imaging code, host rows out.

#include <algorithm>

#include "defocus/DepthView.h"
#include "kernel/FilterShapeView.h"
#include "node/Drevin.h"
#include "node/HostConversions.h"

namespace drevin {

using DD::Image::Channel;
using DD::Image::ChannelSet;
using DD::Image::Iop;
using DD::Image::Mask_RGB;
using DD::Image::Row;

namespace {

/// Host rows of one source row, as the defocus reads them.
class SourceRow {
 public:
  explicit SourceRow(const dvScanlineDefocus& defocus)
      : columns_(defocus.sourceColumns()),
        depthColumns_(defocus.depthColumns()),
        colour_(columns_.left, columns_.right),
        depth_(depthColumns_.left, depthColumns_.right),
        mattes_(columns_.left, columns_.right) {}

  void readImage(Iop& image, int y, const ChannelSet& channels, Channel depthChannel) {
    colour_.get(image, y, columns_.left, columns_.right, channels);
    depth_.get(image, y, depthColumns_.left, depthColumns_.right, ChannelSet(depthChannel));
    foreach (z, channels)
      source_.colour.push_back(colour_[z]);
    source_.depth = depth_[depthChannel];
  }

  void readMattes(Iop& mattes, int y, const ChannelSet& channels) {
    mattes_.get(mattes, y, columns_.left, columns_.right, channels);
  }

  const float* matte(Channel channel) const { return mattes_[channel]; }

  dvSourceRow& source() { return source_; }

 private:
  dvColumns columns_;
  dvColumns depthColumns_;
  Row colour_;
  Row depth_;
  Row mattes_;
  dvSourceRow source_;
};

}  // namespace

void Drevin::passInputThrough(int y, int x, int r, const ChannelSet& channels, Row& out) {
  if (channels.empty()) return;
  Row row(x, r);
  row.get(input0(), y, x, r, channels);
  out.copy(row, channels, x, r);
}

void Drevin::splatSourceRow(int sy, const ChannelSet& channels, dvScanlineDefocus& defocus) {
  const DD::Image::Box& box = input0().info();
  const int clampedY = std::max(box.y(), std::min(sy, box.t()));
  SourceRow row(defocus);
  row.readImage(input0(), clampedY, channels, settings_.depthChannel);
  row.source().y = sy;
  row.source().clampedY = clampedY;
  Iop* mattes = input(dvInput::mattes);
  if (mattes != nullptr && !matteChannels_.empty()) {
    row.readMattes(*mattes, clampedY, matteChannels_);
    const DrevinSettings& s = settings_;
    if (bloomMatteUsed_) row.source().bloomMatte = row.matte(s.bloomMatteChannel);
    if (defocusMatteUsed_) row.source().defocusMatte = row.matte(s.defocusMatteChannel);
    if (chromaticMatteUsed_) {
      row.source().chromaticMatte = row.matte(s.chromaticAberrationMatteChannel);
    }
  }
  defocus.splatSourceRow(row.source());
}

dvSplatFrame Drevin::splatFrame() const {
  return {splatSettings(settings_, format()), &kernelBank_, settings_.correctiveSlices, padding_,
          format().w()};
}

void Drevin::defocus(int y, int x, int r, const ChannelSet& channels, Row& out) {
  passInputThrough(y, x, r, channels, out);
  // A later request may want other channels than the kernels were built for: those pass through.
  // An opening that was cut short leaves no kernels, and its rows are not wanted.
  ChannelSet processed(channels);
  processed &= kernelChannels_;
  if (processed.empty() || kernelBank_.empty()) return;
  const dvDefocusSettings settings{blurSettings(settings_, kernelSize_, sliceBoundaries_),
                                   splatFrame()};
  const std::vector<int> numbers = channelNumbers(processed);
  dvScanlineDefocus scanline(settings, {x, y, r}, numbers);
  for (int sy = y - padding_; sy <= y + padding_; ++sy) {
    if (aborted()) return;
    splatSourceRow(sy, processed, scanline);
  }
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    scanline.composite(i, out.writable(static_cast<Channel>(numbers[i])));
  }
}

void Drevin::depthVisualization(int y, int x, int r, const ChannelSet& channels, Row& out) {
  Row depth(x, r);
  depth.get(input0(), y, x, r, ChannelSet(settings_.depthChannel));
  ChannelSet passed(channels);
  passed -= Mask_RGB;
  ChannelSet shown(channels);
  shown &= Mask_RGB;
  const dvLens lens = lensOf(settings_, kernelSize_);
  const dvPassSettings pass = passSettings(settings_, kernelSize_);
  foreach (z, shown) {
    depthViewRow(depth[settings_.depthChannel], static_cast<int>(z), x, r, lens, pass,
                 out.writable(z));
  }
  passInputThrough(y, x, r, passed, out);
}

void Drevin::kernelVisualization(int y, int x, int r, const ChannelSet& channels, Row& out) {
  out.erase(channels);
  ChannelSet shown(channels);
  shown &= kernelChannels_;
  foreach (z, shown) {
    filterShapeRow(heroKernel_, static_cast<int>(z), y, x, r, out.writable(z));
  }
}

void Drevin::getPassValue(const float& coc, const int& region, Channel channel, float* out) {
  drevin::getPassValue(coc, static_cast<dvFocusRegion>(region), static_cast<int>(channel),
                       passSettings(settings_, kernelSize_), out);
}

void Drevin::convole(const int& clampedX, const int& clampedY, const int& outLeft, const int& outY,
                     const int& outRight, const int& srcX, const int& srcY, const float& coc,
                     const unsigned long& slice, const float& weight, float* pixel,
                     std::vector<std::vector<float*>>& colourAcc,
                     std::vector<std::vector<float*>>& weightAcc, const ChannelSet& channels,
                     float& bloomMatte, float& chromaticMatte) {
  ChannelSet splatted(channels);
  splatted &= kernelChannels_;
  const dvSplatSource source{clampedX, clampedY, srcX,  srcY,       coc,
                             slice,    weight,   pixel, bloomMatte, chromaticMatte};
  drevin::convole(splatSettings(settings_, format()), kernelBank_, {outLeft, outY, outRight},
                  source, channelNumbers(splatted), colourAcc, weightAcc);
}

}  // namespace drevin
