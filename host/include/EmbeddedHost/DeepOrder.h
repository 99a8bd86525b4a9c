#pragma once

/// Which end of a deep pixel the host calls sample 0.

#include "DDImage/Export.h"

namespace embedded {

enum class DeepOrder {
  NearFirst,  ///< sample 0 of DeepPixel::getOrderedSample is the nearest
  FarFirst,   ///< sample 0 is the farthest
};

/// Sets the order for the whole process; NearFirst until then. Planes that were made before are not
/// to be read any more.
DD_EXPORT void setDeepOrder(DeepOrder order);
DD_EXPORT DeepOrder deepOrder();

}  // namespace embedded
