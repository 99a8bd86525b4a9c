#include "support/LiteralDeepFrame.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "support/LiteralComposite.h"
#include "support/LiteralPassValue.h"

namespace drevin::test {

namespace {

constexpr float largest = std::numeric_limits<float>::max();

bool holds(const std::vector<int>& channels, int channel) {
  return std::find(channels.begin(), channels.end(), channel) != channels.end();
}

/// One output row while source pixels are gathered.
class DeepRow {
 public:
  DeepRow(const LiteralDeepScene& scene, const LiteralFrame& frame, int y, int left, int right)
      : scene_(scene),
        settings_(scene.flat.settings),
        frame_(frame),
        sums_(static_cast<std::size_t>(settings_.correctiveSlices)) {
    for (const int channel : scene.flat.channels) {
      if (holds(frame.processed(), channel)) channels_.push_back(channel);
    }
    for (auto& slice : sums_) {
      for (const int channel : channels_)
        slice[channel].resize(static_cast<std::size_t>(right - left));
    }
    source_.left = left;
    source_.y = y;
    source_.right = right;
  }

  void gather() {
    const int padding = frame_.estimate().padding;
    const int lastColumn = scene_.flat.image.formatWidth - 1;
    const int x0 = std::clamp(source_.left - padding, 0, lastColumn);
    const int x1 = std::clamp(source_.right + padding, 0, lastColumn);
    for (int yy = source_.y - padding; yy <= source_.y + padding; ++yy) {
      for (int xx = source_.left - padding; xx < source_.right + padding; ++xx) {
        source_.x = xx;
        source_.sourceY = yy;
        source_.clampedX = std::clamp(xx, 0, lastColumn);
        source_.clampedY = std::clamp(yy, 0, scene_.flat.image.formatHeight - 1);
        if (source_.clampedX >= x0 && source_.clampedX < x1) addPixel();
      }
    }
  }

  LiteralRow composited() const {
    LiteralRow out;
    for (const int channel : channels_) {
      for (int x = source_.left; x < source_.right; ++x) {
        out[channel].push_back(
            literalComposite(sums_, channel, static_cast<std::size_t>(x - source_.left)));
      }
    }
    return out;
  }

 private:
  float matte(int channel) const {
    const bool used = scene_.flat.mattes.has_value() && channel != 0;
    return used ? scene_.flat.mattes->at(source_.x, source_.clampedY, channel) : 1.0F;
  }

  void addPixel() {
    for (const int channel : channels_) {
      source_.pixel[channel] = scene_.flat.image.at(source_.clampedX, source_.clampedY, channel);
    }
    source_.bloomMatte = matte(settings_.bloomMatteChannel);
    source_.chromaticMatte = matte(settings_.chromaticMatteChannel);
    LiteralDeepPixel merged;
    literalCombineSamples(scene_.deep.at(source_.clampedX, source_.clampedY), merged);
    merged = literalReadBack(merged);
    float coverage = 0.0F;
    for (const LiteralDeepSample& sample : merged) {
      addSample(sample, coverage);
      if (1.0F - coverage < 1e-6F) break;
    }
    if (merged.empty() || coverage < 1.0F) addBackground(1.0F - coverage);
  }

  void addSample(const LiteralDeepSample& sample, float& coverage) {
    const float a = sample.values.at(4);
    for (const auto& [channel, value] : sample.values) {
      if (source_.pixel.count(channel) != 0) source_.pixel[channel] = value / a;
    }
    const float w = (1.0F - coverage) * a;
    const float d = settings_.depthChannel == literalBack ? sample.back : sample.front;
    const LiteralBlur blur = blurOf(d);
    const float coc = blur.coc * matte(settings_.defocusMatteChannel);
    if (settings_.focusOutput != 0 && settings_.focusOutput != blur.region) {
      return;
    }
    splat(coc, blur.depth, w);
    coverage += w;
  }

  void addBackground(float weight) {
    for (auto& entry : source_.pixel)
      entry.second = 0.0F;
    source_.bloomMatte = 0.0F;
    source_.chromaticMatte = 1.0F;
    const LiteralBlur blur = blurOf(largest);
    splat(blur.coc, blur.depth, weight);
  }

  LiteralBlur blurOf(float depth) const {
    return literalDeepBlur(depth, settings_, frame_.lens(), frame_.kernelSize());
  }

  void splat(float coc, float depth, float weight) {
    source_.coc = 1.0F > coc ? 1.0F : coc;
    source_.slice = literalSlice(depth, settings_, frame_.lens());
    source_.weight = weight;
    literalSplat(settings_, scene_.flat.image.formatWidth, scene_.flat.image.formatHeight,
                 frame_.bank(), source_, sums_);
  }

  const LiteralDeepScene& scene_;
  const LiteralSettings& settings_;
  const LiteralFrame& frame_;
  std::vector<int> channels_;
  LiteralSums sums_;
  LiteralSource source_;
};

}  // namespace

const LiteralDeepPixel& LiteralDeepImage::at(int column, int row) const {
  static const LiteralDeepPixel none;
  if (column < box.left || column >= box.right || row < box.bottom || row >= box.top) {
    return none;
  }
  return pixels[static_cast<std::size_t>(row - box.bottom) *
                    static_cast<std::size_t>(box.right - box.left) +
                static_cast<std::size_t>(column - box.left)];
}

LiteralBlur literalDeepBlur(float depth, const LiteralSettings& settings, const LiteralLens& lens,
                            int kernelSize) {
  LiteralBlur blur = literalCircle(depth, settings, lens);
  blur.region = blur.depth < settings.focalPlane ? 1 : 2;
  if (std::fabs(blur.depth - largest) < 1e-5F) {
    blur.coc = static_cast<float>(kernelSize);
  }
  blur.coc = blur.coc * settings.contextScale;
  return blur;
}

LiteralRow literalDeepRow(const LiteralDeepScene& scene, const LiteralFrame& frame, int y, int left,
                          int right) {
  DeepRow row(scene, frame, y, left, right);
  row.gather();
  return row.composited();
}

float literalDeepDepthValue(const LiteralDeepPixel& samples, int channel,
                            const LiteralSettings& settings, const LiteralLens& lens,
                            int kernelSize) {
  const auto shown = [&](float depth) {
    const LiteralBlur blur = literalDeepBlur(depth, settings, lens, kernelSize);
    float value = 0.0F;
    literalPassValue(settings, kernelSize, blur.coc, blur.region, channel, value);
    return value < 0.0F ? 0.0F : value;
  };
  float out = 0.0F;
  float coverage = 0.0F;
  float left = 1.0F;
  for (std::size_t i = 0; i < samples.size() && left > 0.0F; ++i) {
    const LiteralDeepSample& sample = samples[i];
    const float w = (1.0F - coverage) * sample.values.at(4);
    coverage += w;
    left = 1.0F - coverage;
    out += shown(settings.depthChannel == literalBack ? sample.back : sample.front) * w;
  }
  if (samples.empty() || coverage < 1.0F) {
    out += shown(largest) * left;
  }
  return out;
}

}  // namespace drevin::test
