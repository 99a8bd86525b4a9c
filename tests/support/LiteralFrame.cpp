#include "support/LiteralFrame.h"

#include <algorithm>
#include <cstddef>

#include "support/LiteralBank.h"
#include "support/LiteralBlur.h"
#include "support/LiteralComposite.h"
#include "support/LiteralPassValue.h"

namespace drevin::test {

LiteralFrame::LiteralFrame(const LiteralScene& scene) : LiteralFrame(scene, nullptr) {}

LiteralFrame::LiteralFrame(const LiteralScene& scene, const LiteralEstimate& estimate)
    : LiteralFrame(scene, &estimate) {}

LiteralFrame::LiteralFrame(const LiteralScene& scene, const LiteralEstimate* estimate)
    : scene_(scene),
      lens_(literalLens(scene.settings, scene.image.formatWidth, scene.image.formatHeight)),
      processed_(scene.settings.bokehAll ? scene.channels : scene.settings.bokehChannels),
      kernelSize_(scene.settings.maxKernelSize) {
  if (scene.settings.outputType != 2 && scene.settings.outputType != 4) {
    prepareKernels(estimate);
  }
}

void LiteralFrame::prepareKernels(const LiteralEstimate* estimate) {
  const LiteralSettings& settings = scene_.settings;
  const bool toFormat = settings.outputType == 3;
  const int wanted = toFormat ? std::min(scene_.image.formatHeight, scene_.image.formatWidth)
                              : settings.maxKernelSize;
  hero_ = literalHero(settings, processed_, wanted, scene_.kernel ? &*scene_.kernel : nullptr);
  if (!toFormat) {
    estimate_ = estimate != nullptr ? *estimate : literalEstimate(settings, lens_, scene_.image);
    kernelSize_ = estimate_.kernelSize;
    padding_ = estimate_.padding;
    bank_ = literalBank(hero_, kernelSize_);
  }
}

LiteralBox LiteralFrame::box() const {
  LiteralBox box = scene_.image.box;
  if (scene_.settings.expandBox) {
    const int k = scene_.settings.maxKernelSize;
    box.left += -(k / 2);
    box.bottom += -(k / 2);
    box.right += (k - 1) / 2;
    box.top += (k - 1) / 2;
  }
  return box;
}

bool LiteralFrame::processes(int channel) const {
  return std::find(processed_.begin(), processed_.end(), channel) != processed_.end();
}

LiteralRow LiteralFrame::row(int y, int left, int right) const {
  LiteralRow out = passThrough(y, left, right);
  switch (scene_.settings.outputType) {
    case 0:
    case 1:
      defocus(y, left, right, out);
      break;
    case 3:
      kernelView(y, left, right, out);
      break;
    default:
      depthView(y, left, right, out);
  }
  return out;
}

LiteralRow LiteralFrame::passThrough(int y, int left, int right) const {
  LiteralRow out;
  for (const int channel : scene_.channels) {
    for (int x = left; x < right; ++x) {
      out[channel].push_back({static_cast<double>(scene_.image.at(x, y, channel)), 0.0, true});
    }
  }
  return out;
}

void LiteralFrame::kernelView(int y, int left, int right, LiteralRow& out) const {
  for (auto& [channel, values] : out) {
    for (int x = left; x < right; ++x) {
      LiteralValue& value = values[static_cast<std::size_t>(x - left)];
      value = LiteralValue{};
      const bool inside = x >= 0 && x < hero_.side && y >= 0 && y < hero_.side;
      if (processes(channel) && inside) {
        const int at = y * hero_.side + x;
        value.value = static_cast<double>(hero_.planes.at(channel)[static_cast<std::size_t>(at)]);
      }
    }
  }
}

void LiteralFrame::depthView(int y, int left, int right, LiteralRow& out) const {
  for (auto& [channel, values] : out) {
    for (int x = left; x < right && channel <= 3; ++x) {
      const float raw = scene_.image.at(x, y, scene_.settings.depthChannel);
      const LiteralBlur blur = literalBlur(raw, scene_.settings, lens_, kernelSize_);
      float value = 0.0F;
      literalPassValue(scene_.settings, kernelSize_, blur.coc, blur.region, channel, value);
      values[static_cast<std::size_t>(x - left)].value = static_cast<double>(value);
    }
  }
}

float LiteralFrame::matte(int channel, int x, int y) const {
  return scene_.mattes && channel != 0 ? scene_.mattes->at(x, y, channel) : 1.0F;
}

void LiteralFrame::splatPixel(LiteralSource& source, int readY, LiteralSums& sums) const {
  const LiteralSettings& settings = scene_.settings;
  const LiteralPicture& image = scene_.image;
  source.clampedX = std::clamp(source.x, 0, image.formatWidth - 1);
  source.clampedY = readY;
  for (const int channel : scene_.channels) {
    source.pixel[channel] = image.at(source.x, readY, channel);
  }
  source.bloomMatte = matte(settings.bloomMatteChannel, source.x, readY);
  source.chromaticMatte = matte(settings.chromaticMatteChannel, source.x, readY);
  const float raw = image.at(source.clampedX, readY, settings.depthChannel);
  const LiteralBlur blur = literalBlur(raw, settings, lens_, kernelSize_);
  const float coc = blur.coc * matte(settings.defocusMatteChannel, source.x, readY);
  source.coc = 1.0F > coc ? 1.0F : coc;
  source.slice = literalSlice(blur.depth, settings, lens_);
  const bool shown = settings.focusOutput == 0 || (settings.focusOutput == 1 && blur.region == 1) ||
                     (settings.focusOutput == 2 && blur.region != 1);
  if (shown) {
    literalSplat(settings, image.formatWidth, image.formatHeight, bank_, source, sums);
  }
}

void LiteralFrame::defocus(int y, int left, int right, LiteralRow& out) const {
  LiteralSums sums(static_cast<std::size_t>(scene_.settings.correctiveSlices));
  for (auto& slice : sums) {
    for (const int channel : scene_.channels) {
      slice[channel].resize(static_cast<std::size_t>(right - left));
    }
  }
  LiteralSource source;
  source.left = left;
  source.y = y;
  source.right = right;
  for (int sy = y - padding_; sy <= y + padding_; ++sy) {
    for (int sx = left - padding_; sx < right + padding_; ++sx) {
      source.x = sx;
      source.sourceY = sy;
      splatPixel(source, std::clamp(sy, scene_.image.box.bottom, scene_.image.box.top), sums);
    }
  }
  for (const int channel : scene_.channels) {
    for (int x = left; x < right && processes(channel); ++x) {
      const auto at = static_cast<std::size_t>(x - left);
      out[channel][at] = literalComposite(sums, channel, at);
    }
  }
}

}  // namespace drevin::test
