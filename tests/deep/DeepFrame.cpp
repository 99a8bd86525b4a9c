#include "deep/DeepFrame.h"

#include <algorithm>
#include <cstddef>

#include "defocus/FloatRules.h"

namespace drevin::test {

namespace {

int placeIn(const std::vector<int>& channels, int channel) {
  const auto found = std::find(channels.begin(), channels.end(), channel);
  return found == channels.end() ? dvDeepLayout::absent
                                 : static_cast<int>(found - channels.begin());
}

/// The row's buffer, addressed by absolute column; null where it has no columns.
template <typename Row>
auto absolute(Row& row, int left) {
  return row.empty() ? nullptr : row.data() - left;
}

}  // namespace

dvDeepLayout layoutOf(const std::vector<int>& channels) {
  dvDeepLayout layout;
  layout.channels = channels;
  layout.front = placeIn(channels, literalFront);
  layout.back = placeIn(channels, literalBack);
  layout.depth = placeIn(channels, literalZ);
  layout.alpha = placeIn(channels, 4);
  return layout;
}

dvDeepSamples samplesOf(const LiteralDeepPixel& pixel, const std::vector<int>& channels) {
  dvDeepSamples samples;
  for (const LiteralDeepSample& sample : pixel) {
    samples.fronts.push_back(sample.front);
    samples.backs.push_back(sample.back);
    for (const int channel : channels) {
      samples.values.push_back(sample.values.at(channel));
    }
  }
  return samples;
}

DeepFrame::DeepFrame(const LiteralDeepScene& scene) : scene_(scene), imaging_(scene.flat) {
  const LiteralSettings& settings = scene.flat.settings;
  const dvBlurSettings& blur = imaging_.settings().blur;
  settings_.lens = blur.lens;
  settings_.slices = blur.slices;
  settings_.sliceStarts = blur.sliceStarts;
  settings_.useBackDepth = settings.depthChannel == literalBack;
  settings_.mode = static_cast<dvDeepMode>(settings.focusOutput);
  for (const int channel : scene.flat.channels) {
    const bool processed =
        settings.bokehAll || placeIn(settings.bokehChannels, channel) != dvDeepLayout::absent;
    if (!processed) continue;
    dvDeepChannel splatted{channel, dvDeepChannel::flat};
    const int place = placeIn(scene.deep.channels, channel);
    if (place != dvDeepLayout::absent) {
      splatted.place = static_cast<int>(splatted_.size());
      splatted_.push_back(static_cast<std::size_t>(place));
    }
    channels_.push_back(splatted);
  }
}

dvDeepRecordRow DeepFrame::records(int y, const dvColumns& columns) const {
  dvDeepRecordRow row(layoutOf(scene_.deep.channels), splatted_);
  std::vector<dvDeepPiece> pieces;
  for (int x = columns.left; x < columns.right; ++x) {
    const LiteralDeepPixel& pixel = scene_.deep.at(x, y);
    const dvDeepSamples samples = samplesOf(pixel, scene_.deep.channels);
    mergeSamples(samples, pieces);
    row.addPixel(samples, pieces, settings_);
  }
  return row;
}

std::vector<float> DeepFrame::read(const LiteralPicture& picture, int y, const dvColumns& columns,
                                   int channel) const {
  std::vector<float> row;
  for (int x = columns.left; x < columns.right; ++x) {
    row.push_back(picture.at(x, y, channel));
  }
  return row;
}

void DeepFrame::splatRow(dvDeepDefocus& defocus, int sy) const {
  const LiteralScene& flat = scene_.flat;
  dvDeepSourceRow row;
  row.y = sy;
  row.clampedY = std::clamp(sy, 0, flat.image.formatHeight - 1);
  const dvColumns deep = defocus.deepColumns();
  const dvDeepRecordRow made = records(row.clampedY, deep);
  row.records = &made;
  row.recordsLeft = deep.left;
  std::vector<std::vector<float>> values(channels_.size());
  for (std::size_t c = 0; c < channels_.size(); ++c) {
    const bool isFlat = channels_[c].place == dvDeepChannel::flat;
    values[c] = read(flat.image, row.clampedY, deep, channels_[c].number);
    row.flat.push_back(isFlat ? absolute(values[c], deep.left) : nullptr);
  }
  const dvColumns columns = defocus.sourceColumns();
  const LiteralSettings& s = flat.settings;
  const int mattes[3] = {s.bloomMatteChannel, s.defocusMatteChannel, s.chromaticMatteChannel};
  const float** places[3] = {&row.bloomMatte, &row.defocusMatte, &row.chromaticMatte};
  std::vector<float> matteRows[3];
  for (int i = 0; i < 3 && flat.mattes; ++i) {
    if (mattes[i] != 0) {
      matteRows[i] = read(*flat.mattes, row.clampedY, columns, mattes[i]);
      *places[i] = absolute(matteRows[i], columns.left);
    }
  }
  defocus.splatSourceRow(row);
}

std::map<int, std::vector<float>> DeepFrame::row(int y, int left, int right) const {
  dvDeepDefocus defocus(imaging_.settings().frame, deepBlur(dvInfinitelyFar, settings_),
                        {left, y, right}, channels_);
  for (int sy = y - padding(); sy <= y + padding(); ++sy) {
    splatRow(defocus, sy);
  }
  std::map<int, std::vector<float>> out;
  for (std::size_t i = 0; i < channels_.size(); ++i) {
    std::vector<float>& values = out[channels_[i].number];
    values.resize(static_cast<std::size_t>(right - left));
    defocus.composite(i, absolute(values, left));
  }
  return out;
}

}  // namespace drevin::test
