#include "support/RandomPictures.h"

#include <array>
#include <cstddef>
#include <functional>
#include <limits>

#include "support/RandomScene.h"

namespace drevin::test {

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

float special(Draw& draw) {
  const std::array<float, 10> values = {notANumber, infinity, -infinity, 0.0F,   -0.0F,
                                        1e-41F,     -1e-41F,  -3.0F,     1e-30F, 1e30F};
  return values[static_cast<std::size_t>(draw.whole(0, 9))];
}

std::size_t pixels(const LiteralBox& box) {
  return static_cast<std::size_t>(box.right - box.left) *
         static_cast<std::size_t>(box.top - box.bottom);
}

std::vector<float> plane(const LiteralBox& box, const std::function<float()>& value) {
  std::vector<float> values(pixels(box));
  for (float& v : values) {
    v = value();
  }
  return values;
}

/// The format's box, or one off it: smaller, larger, shifted, perhaps wholly outside.
LiteralBox randomBox(Draw& draw, const LiteralPicture& picture) {
  if (draw.chance(0.5)) {
    return {0, 0, picture.formatWidth, picture.formatHeight};
  }
  LiteralBox box;
  box.left = draw.whole(-6, picture.formatWidth);
  box.bottom = draw.whole(-6, picture.formatHeight);
  box.right = box.left + draw.whole(1, 26);
  box.top = box.bottom + draw.whole(1, 20);
  return box;
}

float randomColour(Draw& draw, double specials) {
  if (draw.chance(specials)) return special(draw);
  if (draw.chance(0.02)) return draw.real(1.0F, 50.0F);
  if (draw.chance(0.02)) return draw.real(-0.5F, 0.0F);
  return draw.real(0.0F, 1.0F);
}

float randomDepth(Draw& draw, const LiteralSettings& settings, double specials) {
  if (draw.chance(specials)) return special(draw);
  if (draw.chance(0.1)) return settings.focalPlane;
  const float depth = settings.focalPlane + draw.real(-0.7F, 0.7F) * settings.focusRegionSize;
  return settings.depthStyle == 1 ? 1.0F / depth : depth;
}

}  // namespace

LiteralPicture randomImage(Draw& draw, const LiteralSettings& settings) {
  LiteralPicture image;
  image.formatWidth = draw.whole(1, 24);
  image.formatHeight = draw.whole(1, 18);
  image.box = randomBox(draw, image);
  const double oddColours = draw.chance(0.3) ? 0.005 : 0.0;
  const double oddDepths = draw.chance(0.5) ? 0.1 : 0.0;
  const auto colour = [&] { return randomColour(draw, oddColours); };
  for (const int channel : {1, 2, 3, 4, firstExtraChannel, secondExtraChannel}) {
    const double present = channel < 4 ? 0.95 : (channel == 4 ? 0.75 : 0.3);
    if (draw.chance(present)) image.planes[channel] = plane(image.box, colour);
  }
  if (image.planes.empty() || draw.chance(0.95)) {
    image.planes[5] = plane(image.box, [&] { return randomDepth(draw, settings, oddDepths); });
  }
  return image;
}

LiteralPicture randomMattes(Draw& draw, const LiteralPicture& image) {
  LiteralPicture mattes;
  mattes.formatWidth = image.formatWidth;
  mattes.formatHeight = image.formatHeight;
  mattes.box = randomBox(draw, image);
  const double odd = draw.chance(0.2) ? 0.01 : 0.0;
  const auto value = [&] { return draw.chance(odd) ? special(draw) : draw.real(-0.5F, 2.0F); };
  for (int channel = 1; channel <= 4; ++channel) {
    if (draw.chance(0.8)) mattes.planes[channel] = plane(mattes.box, value);
  }
  return mattes;
}

LiteralPicture randomKernelImage(Draw& draw) {
  LiteralPicture kernel;
  kernel.formatWidth = draw.whole(1, 80);
  kernel.formatHeight = draw.whole(1, 80);
  kernel.box = {0, 0, kernel.formatWidth, kernel.formatHeight};
  if (draw.chance(0.3)) {
    kernel.box = {draw.whole(-9, 0), draw.whole(-9, 0), draw.whole(1, 70), draw.whole(1, 70)};
  }
  const float least = draw.chance(0.2) ? -0.3F : 0.0F;
  for (const int channel : {1, 2, 3, 4, firstExtraChannel}) {
    if (draw.chance(0.7)) {
      kernel.planes[channel] = plane(kernel.box, [&] { return draw.real(least, 1.0F); });
    }
  }
  return kernel;
}

}  // namespace drevin::test
