#include "controls/CameraKeys.h"

#include <vector>

#include "terminal/NearestName.h"

namespace drevintool {

const std::array<CameraKey, 5>& cameraKeys() {
  using Values = embedded::CameraValues;
  static const std::array<CameraKey, 5> keys = {{
      {"focalLength", "focalLength", "mm", &Values::focalLength},
      {"fStop", "fStop", "", &Values::fStop},
      {"focalPlane", "focalPlane", "scene units", &Values::focalPlane},
      {"horizontalAperture", "apertureWidth", "mm", &Values::horizontalAperture},
      {"verticalAperture", "apertureHeight", "mm", &Values::verticalAperture},
  }};
  return keys;
}

const CameraKey* findCameraKey(const std::string& name) {
  for (const CameraKey& key : cameraKeys()) {
    if (name == key.name) return &key;
  }
  return nullptr;
}

std::string unknownCameraKey(const std::string& name) {
  std::vector<std::string> names;
  std::string list;
  for (const CameraKey& key : cameraKeys()) {
    names.emplace_back(key.name);
    list += (list.empty() ? "" : ", ") + names.back();
  }
  const std::string nearest = nearestName(name, names);
  return "no key '" + name + "'" +
         (nearest.empty() ? "; the keys are " + list : "; did you mean " + nearest + "?");
}

}  // namespace drevintool
