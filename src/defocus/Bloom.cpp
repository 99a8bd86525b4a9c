#include "defocus/Bloom.h"

#include <cmath>

namespace drevin {

float bloomRadialFactor(const dvBloom& bloom, int x, int y) {
  if (bloom.curvature <= 0.0F) return 1.0F;
  const float halfWidth = 0.5F * static_cast<float>(bloom.formatWidth);
  const float halfHeight = 0.5F * static_cast<float>(bloom.formatHeight);
  const float dx = (1.0F / halfWidth) * std::fabs(static_cast<float>(x) - halfWidth);
  const float dy = (1.0F / halfHeight) * std::fabs(static_cast<float>(y) - halfHeight);
  const float factor = std::pow(std::sqrt(dx * dx + dy * dy), bloom.curvature + 0.001F);
  if (factor < 0.0F) return 0.0F;
  return factor > 1.0F ? 1.0F : factor;
}

}  // namespace drevin
