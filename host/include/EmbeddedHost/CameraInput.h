#pragma once

/// A camera with fixed values as an input of a node.

#include "DDImage/CameraOp.h"

namespace embedded {

struct CameraValues {
  double focalLength = 50.0;           ///< mm
  double fStop = 16.0;                 ///< aperture number
  double focalPlane = 2.0;             ///< focus distance, scene units
  double horizontalAperture = 24.576;  ///< film back width, mm
  double verticalAperture = 18.672;    ///< film back height, mm
};

class DD_EXPORT CameraInput : public DD::Image::CameraOp {
 public:
  explicit CameraInput(const CameraValues& values);
  const char* Class() const override;
  const char* node_help() const override;
  void append(DD::Image::Hash& hash) override;
};

}  // namespace embedded
