#include "demo/DemoBox.h"

#include <limits>
#include <utility>

namespace drevintool {
namespace {

// Narrows the stretch to one slab; false if nothing is left.
bool narrow(double low, double high, double origin, double along, const DemoVector& axis,
            DemoBoxHit& hit) {
  if (along == 0.0) return origin >= low && origin <= high;
  double enter = (low - origin) / along;
  double leave = (high - origin) / along;
  if (enter > leave) std::swap(enter, leave);
  if (enter > hit.enter) {
    hit.enter = enter;
    hit.normal = axis * (along > 0.0 ? -1.0 : 1.0);
  }
  hit.leave = std::min(hit.leave, leave);
  return hit.enter <= hit.leave;
}

}  // namespace

std::optional<DemoBoxHit> intersect(const DemoBox& box, const DemoRay& ray) {
  DemoBoxHit hit;
  hit.leave = std::numeric_limits<double>::infinity();
  const bool inside =
      narrow(box.low.x, box.high.x, ray.origin.x, ray.along.x, {1.0, 0.0, 0.0}, hit) &&
      narrow(box.low.y, box.high.y, ray.origin.y, ray.along.y, {0.0, 1.0, 0.0}, hit) &&
      narrow(box.low.z, box.high.z, ray.origin.z, ray.along.z, {0.0, 0.0, 1.0}, hit);
  if (!inside) return std::nullopt;
  return hit;
}

}  // namespace drevintool
