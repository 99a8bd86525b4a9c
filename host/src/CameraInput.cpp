#include "EmbeddedHost/CameraInput.h"

namespace DD {
namespace Image {

CameraOp::CameraOp(Node* node) : Op(node) {}
CameraOp::~CameraOp() = default;

}  // namespace Image
}  // namespace DD

namespace embedded {

CameraInput::CameraInput(const CameraValues& values) : CameraOp(nullptr) {
  focalLength_ = values.focalLength;
  fStop_ = values.fStop;
  focalPoint_ = values.focalPlane;
  filmWidth_ = values.horizontalAperture;
  filmHeight_ = values.verticalAperture;
}

const char* CameraInput::Class() const {
  return "Camera";
}
const char* CameraInput::node_help() const {
  return "A camera with fixed values";
}

void CameraInput::append(DD::Image::Hash& hash) {
  for (const double value : {focalLength_, fStop_, focalPoint_, filmWidth_, filmHeight_}) {
    hash.append(value);
  }
}

}  // namespace embedded
