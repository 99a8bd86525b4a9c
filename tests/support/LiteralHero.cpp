#include "support/LiteralHero.h"

#include <algorithm>
#include <cmath>

#include "support/LiteralKernelBank.h"

namespace drevin::test {

namespace {

float bladeTerm(const LiteralSettings& settings, float dx, float dy, float h2) {
  const float a = settings.aspectRatio;
  if (a > 1.0F) {
    dx = dx * a;
  } else if (a < 1.0F) {
    dy = dy * (1.0F / a);
  }
  const float turn = 6.2831855F;
  const float seg = 1.0F / static_cast<float>(settings.numSides);
  const float qb = (dx * dx + dy * dy) / h2;
  float theta = std::atan2(dy, dx);
  if (theta < 0.0F) theta = theta + turn;
  const float u = (settings.rotation * turn + theta) / turn;
  const auto m =
      static_cast<float>(std::fmod(static_cast<long double>(u), static_cast<long double>(seg)));
  const float t = m / seg;
  const float d = std::sin(t * 3.1415927F) * (1.0F - settings.bladeCurvature) * seg + qb;
  return d < 1.0F ? 1.0F - d : 0.0F;
}

float circleTerm(const LiteralSettings& settings, float dx, float dy, float h2) {
  float ax = std::fabs(dx);
  float ay = std::fabs(dy);
  const float a = settings.aspectRatio;
  if (a > 1.0F) {
    ax = ax * a;
  } else if (a < 1.0F) {
    ay = ay * (1.0F / a);
  }
  const float q = (ax * ax + ay * ay) / h2;
  return q < 1.0F ? 1.0F - q : 0.0F;
}

float shapeValue(const LiteralSettings& settings, int side, int column, int row) {
  const float g = settings.softness < 0.001F ? 0x1.f3fffep+9F : 1.0F / settings.softness;
  const float h = 0.5F * static_cast<float>(side);
  const float dx = (static_cast<float>(column) + 0.5F) - h;
  const float dy = (static_cast<float>(row) + 0.5F) - h;
  const float circle = circleTerm(settings, dx, dy, h * h);
  const float base = settings.kernelType == 2 ? bladeTerm(settings, dx, dy, h * h) : circle;
  float v = base * g;
  if (!(v < 1.0F)) v = 1.0F;
  const float k = settings.sphericalAberration;
  float aberration = 0.0F;
  if (k > 0.0F) aberration = k * circle;
  if (k < 0.0F) aberration = std::fabs(k) * (1.0F - circle);
  const float value = v - aberration;
  if (value < 0.0F) return 0.0F;
  if (value > 1.0F) return 1.0F;
  return value;
}

float imageValue(const LiteralSettings& settings, const LiteralPicture& image, int wanted,
                 int column, int row, int channel) {
  if (settings.missingKernelChannel != 0 && image.planes.count(channel) == 0) {
    channel = settings.missingKernelChannel;
  }
  const int w = image.box.right - image.box.left;
  const int ht = image.box.top - image.box.bottom;
  const float sx = static_cast<float>(w) / static_cast<float>(wanted);
  const float sy = static_cast<float>(ht) / static_cast<float>(wanted);
  const float px = (static_cast<float>(column) + 0.5F) * sx;
  const float py = (static_cast<float>(row) + 0.5F) * sy;
  const int ix = static_cast<int>(px);
  const int iy = static_cast<int>(py);
  float across[4];
  for (int i = 0; i < 4; ++i) {
    float down[4];
    for (int j = 0; j < 4; ++j) {
      down[j] = image.at(std::clamp(ix - 1 + i, 0, w - 1) + image.box.left,
                         std::clamp(iy - 1 + j, 0, ht - 1) + image.box.bottom, channel);
    }
    across[i] =
        literalCubic<float>(down[0], down[1], down[2], down[3], py - static_cast<float>(iy));
  }
  return literalCubic<float>(across[0], across[1], across[2], across[3],
                             px - static_cast<float>(ix));
}

}  // namespace

LiteralKernel literalHero(const LiteralSettings& settings, const std::vector<int>& channels,
                          int wanted, const LiteralPicture* image) {
  LiteralKernel hero;
  hero.side = wanted;
  if (settings.kernelType == 0 && image != nullptr) {
    hero.side =
        std::min({wanted, image->box.top - image->box.bottom, image->box.right - image->box.left});
  }
  for (const int channel : channels) {
    std::vector<float>& plane = hero.planes[channel];
    for (int row = 0; row < hero.side; ++row) {
      for (int column = 0; column < hero.side; ++column) {
        if (settings.kernelType != 0) {
          plane.push_back(shapeValue(settings, hero.side, column, row));
        } else if (image != nullptr) {
          plane.push_back(imageValue(settings, *image, wanted, column, row, channel));
        } else {
          plane.push_back(0.0F);
        }
      }
    }
  }
  return hero;
}

}  // namespace drevin::test
