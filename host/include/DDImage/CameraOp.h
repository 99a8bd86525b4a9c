#pragma once

/// The camera operator, as far as its lens.

#include "DDImage/Op.h"

namespace DD {
namespace Image {

class DD_EXPORT CameraOp : public Op {
 public:
  explicit CameraOp(Node* node);
  ~CameraOp() override;

  double focal_length() const { return focalLength_; }  ///< mm
  double film_width() const { return filmWidth_; }      ///< horizontal aperture, mm
  double film_height() const { return filmHeight_; }    ///< vertical aperture, mm
  double fstop() const { return fStop_; }
  double focal_point() const { return focalPoint_; }  ///< focus distance, scene units

 protected:
  double focalLength_ = 50.0;
  double filmWidth_ = 24.576;
  double filmHeight_ = 18.672;
  double fStop_ = 16.0;
  double focalPoint_ = 2.0;
};

}  // namespace Image
}  // namespace DD
