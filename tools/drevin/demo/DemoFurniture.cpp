#include "demo/DemoFurniture.h"

#include <vector>

#include "demo/DemoBox.h"
#include "demo/DemoLights.h"
#include "demo/DemoSolid.h"

namespace drevintool {
namespace {

constexpr int kPost = 20;
constexpr int kWire = 21;
constexpr double kMargin = 0.4;
constexpr double kFarWire = 3.0;  // lights nearer than this hang on the wire

DemoBox upright(double x, double z, double half, double low, double high) {
  return {{x - half, low, z - half}, {x + half, high, z + half}};
}

// A post under each street lamp, a post and a dark housing behind each signal.
std::vector<DemoBox> allPosts() {
  std::vector<DemoBox> posts;
  for (const DemoLight& light : demoLights()) {
    const DemoVector& p = light.position;
    const bool lamp = p.y == 4.05;
    const bool signal = !lamp && light.radius >= 0.1 && p.y > 2.0;
    if (lamp) posts.push_back(upright(p.x, p.z, 0.045, 0.0, p.y - 0.1));
    if (lamp) posts.push_back(upright(p.x, p.z, 0.11, p.y + 0.11, p.y + 0.17));
    if (!signal) continue;
    posts.push_back(upright(p.x, p.z + 0.3, 0.17, p.y - 0.65, p.y + 0.65));
    posts.push_back(upright(p.x, p.z + 0.3, 0.05, 0.0, p.y));
  }
  return posts;
}

DemoHit tracePosts(const DemoRay& ray) {
  static const std::vector<DemoBox> kPosts = allPosts();
  DemoHit hit;
  for (const DemoBox& post : kPosts) {
    // Rays run along the street within a slope of 1, posts are thin: most are passed aside.
    const double ahead = post.low.z - ray.origin.z;
    const double aside = ray.origin.x * ray.along.z + ray.along.x * ahead;
    if (aside < (post.low.x - kMargin) * ray.along.z ||
        aside > (post.high.x + kMargin) * ray.along.z)
      continue;
    const auto inside = intersect(post, ray);
    if (!inside || inside->enter <= 0.0 || inside->enter >= hit.t) continue;
    hit.t = inside->enter;
    hit.object = kPost;
    hit.radiance = DemoVector{0.02, 0.018, 0.018} * (inside->normal.x < 0.0 ? 2.2 : 1.0);
  }
  return hit;
}

double wireDistance(const DemoVector& p) {
  static const std::vector<DemoVector> kPoints = demoNearWire();
  double nearest = 1.0;
  for (std::size_t i = 0; i < kPoints.size(); ++i) {
    const DemoVector& at = kPoints[i];
    const DemoVector next = i + 1 < kPoints.size() ? kPoints[i + 1] : at + (at - kPoints[i - 1]);
    const DemoVector before = i > 0 ? kPoints[i - 1] : at + (at - kPoints[1]);
    nearest = std::min({nearest, rodDistance(p, at, next, 0.0011, 0.0011),
                        rodDistance(p, at, before, 0.0011, 0.0011),
                        rodDistance(p, at, at - DemoVector{0.0, 0.008, 0.0}, 0.003, 0.0035)});
  }
  return nearest;
}

DemoHit traceWire(const DemoRay& ray) {
  static const DemoBox kAround{{-0.1, 1.5, 1.3}, {0.5, 1.95, kFarWire}};
  DemoHit hit;
  const auto inside = intersect(kAround, ray);
  if (!inside) return hit;
  const auto t = march(wireDistance, ray, inside->enter, inside->leave, 1.0);
  if (!t) return hit;
  hit.t = *t;
  hit.object = kWire;
  hit.radiance = {0.012, 0.010, 0.008};
  return hit;
}

}  // namespace

DemoHit traceFurniture(const DemoRay& ray) {
  const DemoHit post = tracePosts(ray);
  const DemoHit wire = traceWire(ray);
  return wire.t < post.t ? wire : post;
}

}  // namespace drevintool
