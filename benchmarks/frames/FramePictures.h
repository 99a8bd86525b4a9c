#pragma once

/// All the pictures that a case of the frame table reads.

#include <memory>
#include <optional>

#include "EmbeddedHost/ImageInput.h"
#include "frames/DeepGrid.h"
#include "frames/FrameCase.h"

namespace drevin::bench {

struct FramePictures {
  embedded::Image image;
  std::optional<embedded::Image> aperture;
  std::optional<embedded::Image> mattes;
  std::shared_ptr<DeepGrid> deep;  ///< null for a flat picture
};

FramePictures framePictures(const FrameCase& picture);

}  // namespace drevin::bench
