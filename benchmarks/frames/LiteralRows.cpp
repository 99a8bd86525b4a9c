#include "frames/LiteralRows.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace drevin::bench {

namespace {

void addRun(const float* __restrict kernel, int columns, float weight, float value,
            float* __restrict colours, float* __restrict weights) {
  for (int i = 0; i < columns; ++i) {
    const float share = kernel[i] * weight;
    colours[i] += share * value;
    weights[i] += share;
  }
}

/// Lays a slice under those before it.
void addSlice(const float* __restrict colours, const float* __restrict weights, std::size_t columns,
              float* __restrict values, float* __restrict coverage) {
  for (std::size_t x = 0; x < columns; ++x) {
    const float room = 1.0F - coverage[x];
    const bool hidden = room < weights[x];
    values[x] += hidden ? colours[x] * (room / weights[x]) : colours[x];
    coverage[x] += hidden ? room : weights[x];
  }
}

}  // namespace

LiteralRows::LiteralRows(const test::LiteralScene& scene, const test::LiteralFrame& frame,
                         const DeepGrid* deep)
    : scene_(scene),
      frame_(frame),
      deep_(deep),
      lens_(scene.settings, frame.lens()),
      width_(scene.image.formatWidth),
      height_(scene.image.formatHeight),
      depth_(scene.image.planes.at(scene.settings.depthChannel).data()) {
  const bool shifted = std::fabs(scene.settings.chromaticAberration) > 0.0F;
  if (scene.mattes || shifted || scene.settings.bloom > 0.0F)
    throw std::invalid_argument("effects are left out of the plain rows");
  for (std::size_t c = 0; c < channels; ++c)
    colour_[c] = scene.image.planes.at(static_cast<int>(c) + 1).data();
  for (const test::LiteralKernel& kernel : frame.bank()) {
    sides_.push_back(kernel.side);
    kernels_.emplace_back();
    for (std::size_t c = 0; c < channels; ++c)
      kernels_.back()[c] = kernel.planes.at(static_cast<int>(c) + 1).data();
  }
  layout_ = {{1, 2, 3, 4, test::literalFront, test::literalBack}, 4, 5, dvDeepLayout::absent, 3};
}

std::size_t LiteralRows::pixelAt(int x, int y) const {
  return static_cast<std::size_t>(std::clamp(y, 0, height_ - 1)) *
             static_cast<std::size_t>(width_) +
         static_cast<std::size_t>(std::clamp(x, 0, width_ - 1));
}

std::vector<float> LiteralRows::row(int y) {
  const auto slices = static_cast<std::size_t>(scene_.settings.correctiveSlices);
  sums_.assign(slices * channels * 2 * static_cast<std::size_t>(width_), 0.0F);
  const int reach = frame_.estimate().padding;
  // Sources beyond a side repeat the edge; a deep picture's last column takes no part.
  const int right = deep_ == nullptr ? width_ + reach : width_ - 1;
  for (int above = -reach; above <= reach; ++above) {
    for (int x = -reach; x < right; ++x) {
      const Source source{x, above, pixelAt(x, y + above)};
      if (deep_ == nullptr) {
        addFlatPixel(source);
      } else {
        addDeepPixel(source);
      }
    }
  }
  return composited();
}

void LiteralRows::addFlatPixel(const Source& source) {
  Values values;
  for (std::size_t c = 0; c < channels; ++c)
    values[c] = colour_[c][source.at];
  splat(source, lens_.blurOf(depth_[source.at]), 1.0F, values);
}

void LiteralRows::readSamples(std::size_t at) {
  samples_.clear();
  const auto width = static_cast<std::size_t>(width_);
  const float* pixel = deep_->pixel(static_cast<int>(at % width), static_cast<int>(at / width));
  for (int i = deep_->samples(); i-- > 0;) {
    const float* sample = pixel + static_cast<std::size_t>(i) * DeepGrid::sampleSize;
    samples_.fronts.push_back(sample[4]);
    samples_.backs.push_back(sample[5]);
    samples_.values.insert(samples_.values.end(), sample, sample + DeepGrid::sampleSize);
  }
}

void LiteralRows::addDeepPixel(const Source& source) {
  readSamples(source.at);
  mergeSamples(samples_, pieces_);
  float coverage = 0.0F;
  for (const dvDeepPiece& piece : pieces_) {
    const float alpha = pieceValue(layout_, samples_, piece, 3);
    Values values;
    for (std::size_t c = 0; c < channels; ++c)
      values[c] = pieceValue(layout_, samples_, piece, c) / alpha;
    const float weight = (1.0F - coverage) * alpha;
    splat(source, lens_.blurOf(piece.front), weight, values);
    coverage += weight;
    if (1.0F - coverage < 1e-6F) break;
  }
  if (pieces_.empty() || coverage < 1.0F)
    splat(source, lens_.blurOf(std::numeric_limits<float>::max()), 1.0F - coverage, Values{});
}

void LiteralRows::splat(const Source& source, const PlainBlur& blur, float weight,
                        const Values& values) {
  if (blur.slice < 0) return;
  float* sums = sums_.data() + static_cast<std::size_t>(blur.slice) * channels * 2 *
                                   static_cast<std::size_t>(width_);
  const int last = static_cast<int>(kernels_.size()) - 1;
  if (!(blur.diameter < static_cast<float>(kernels_.size()))) {
    addPass(source, last, weight, values, sums);
    return;
  }
  const int index = static_cast<int>(blur.diameter);
  const auto side = static_cast<float>(sides_[static_cast<std::size_t>(index)]);
  const float share = 1.0F - (blur.diameter - side) * 0.5F;
  addPass(source, index, share * weight, values, sums);
  addPass(source, std::min(index + 2, last), (1.0F - share) * weight, values, sums);
}

void LiteralRows::addPass(const Source& source, int index, float weight, const Values& values,
                          float* sums) {
  const int side = sides_[static_cast<std::size_t>(index)];
  const int reach = (side - 1) / 2;
  if (!(weight > 0.0F) || std::abs(source.rowsAbove) > reach) return;
  const int left = std::max(0, source.x - reach);
  const int columns = std::min(width_, source.x - reach + side) - left;
  if (columns <= 0) return;
  const std::ptrdiff_t from =
      static_cast<std::ptrdiff_t>(reach + source.rowsAbove) * side + left - (source.x - reach);
  for (std::size_t c = 0; c < channels; ++c, sums += 2 * width_) {
    addRun(kernels_[static_cast<std::size_t>(index)][c] + from, columns, weight, values[c],
           sums + left, sums + width_ + left);
  }
}

void LiteralRows::compositeChannel(std::size_t channel, float* values, float* coverage) const {
  const auto width = static_cast<std::size_t>(width_);
  const float* sums = sums_.data() + channel * 2 * width;
  for (int slice = 0; slice < scene_.settings.correctiveSlices; ++slice) {
    addSlice(sums, sums + width, width, values, coverage);
    sums += channels * 2 * width;
  }
  for (std::size_t x = 0; x < width; ++x)
    values[x] = coverage[x] > 0.0F ? values[x] / coverage[x] : values[x];
}

std::vector<float> LiteralRows::composited() const {
  const auto width = static_cast<std::size_t>(width_);
  std::vector<float> values(channels * width, 0.0F);
  for (std::size_t c = 0; c < channels; ++c) {
    std::vector<float> coverage(width, 0.0F);
    compositeChannel(c, values.data() + c * width, coverage.data());
  }
  return values;
}

}  // namespace drevin::bench
