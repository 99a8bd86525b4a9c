#include "frames/Yardstick.h"

#include <algorithm>

#include "support/Agreement.h"
#include "support/LiteralEstimate.h"

namespace drevin::bench {

using test::LiteralDeepPixel;
using test::LiteralPicture;

namespace {

LiteralPicture literalPicture(const embedded::Image& image) {
  LiteralPicture picture;
  picture.formatWidth = image.format.w();
  picture.formatHeight = image.format.h();
  picture.box = {image.box.x(), image.box.y(), image.box.r(), image.box.t()};
  for (const auto& [channel, plane] : image.planes)
    picture.planes[static_cast<int>(channel)] = *plane;
  return picture;
}

/// The samples of a pixel, farthest first.
LiteralDeepPixel literalPixel(const DeepGrid& deep, int x, int y) {
  LiteralDeepPixel pixel;
  const float* values = deep.pixel(x, y);
  for (int i = deep.samples(); i-- > 0;) {
    const float* sample = values + static_cast<std::size_t>(i) * DeepGrid::sampleSize;
    const float front = sample[4];
    const float back = sample[5];
    pixel.push_back({front,
                     back,
                     {{1, sample[0]},
                      {2, sample[1]},
                      {3, sample[2]},
                      {4, sample[3]},
                      {test::literalFront, front},
                      {test::literalBack, back}}});
  }
  return pixel;
}

/// What the size estimate reads of a deep picture is the back of each pixel's farthest sample.
test::LiteralEstimate deepEstimate(const DeepGrid& deep, const test::LiteralSettings& settings) {
  const DD::Image::Box& box = deep.box();
  const test::LiteralLens lens = test::literalLens(settings, box.w(), box.h());
  const auto last = static_cast<std::size_t>(deep.samples()) * DeepGrid::sampleSize - 1;
  int largest = 0;
  for (int y = box.y(); y < box.t(); ++y) {
    for (int x = box.x(); x < box.r(); ++x) {
      const float back = deep.pixel(x, y)[last];
      largest = std::max(largest, test::literalDeepDiameter(back, settings, lens));
    }
  }
  return test::literalEstimateOf(largest, settings);
}

}  // namespace

Yardstick::Yardstick(const FrameCase& picture, const FramePictures& pictures)
    : deep_(pictures.deep) {
  scene_.settings = picture.settings;
  scene_.image = literalPicture(pictures.image);
  if (pictures.aperture) scene_.kernel = literalPicture(*pictures.aperture);
  if (pictures.mattes) scene_.mattes = literalPicture(*pictures.mattes);
  scene_.channels = {1, 2, 3, 4};
  frame_ = deep_ == nullptr ? std::make_unique<test::LiteralFrame>(scene_)
                            : std::make_unique<test::LiteralFrame>(
                                  scene_, deepEstimate(*deep_, scene_.settings));
}

test::LiteralDeepImage Yardstick::deepRows(int bottom, int top) const {
  const DD::Image::Box& box = deep_->box();
  test::LiteralDeepImage image;
  image.box = {box.x(), std::max(box.y(), bottom), box.r(), std::min(box.t(), top)};
  image.channels = {1, 2, 3, 4, test::literalFront, test::literalBack};
  for (int y = image.box.bottom; y < image.box.top; ++y) {
    for (int x = image.box.left; x < image.box.right; ++x)
      image.pixels.push_back(literalPixel(*deep_, x, y));
  }
  return image;
}

test::LiteralRow Yardstick::row(int y) const {
  const int width = scene_.image.formatWidth;
  if (deep_ == nullptr) return frame_->row(y, 0, width);
  const int reach = frame_->estimate().padding;
  test::LiteralDeepScene scene;
  scene.flat = scene_;
  scene.deep = deepRows(y - reach, y + reach + 1);
  return test::literalDeepRow(scene, *frame_, y, 0, width);
}

double rowError(const std::vector<float>& row, const test::LiteralRow& literal) {
  double worst = 0.0;
  auto rendered = row.begin();
  for (const auto& entry : literal) {
    for (const test::LiteralValue& expected : entry.second) {
      const float value = *rendered++;
      if (!test::isComparable(expected)) continue;
      worst = std::max(worst, test::differenceInParts(value, expected.value));
    }
  }
  return worst;
}

std::vector<float> pictureRow(const embedded::Image& picture, int y) {
  std::vector<float> values;
  const auto width = static_cast<std::ptrdiff_t>(picture.box.w());
  for (const auto& entry : picture.planes) {
    const auto begin = entry.second->begin() + (y - picture.box.y()) * width;
    values.insert(values.end(), begin, begin + width);
  }
  return values;
}

}  // namespace drevin::bench
