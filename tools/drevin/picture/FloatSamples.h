#pragma once

/// Samples of any type as single precision values.

#include "picture/Picture.h"

namespace drevintool {

/// The samples as floats: halves exactly, whole numbers rounded to the nearest float. Samples that
/// are floats already are shared, not copied.
FloatSamples floatSamples(const Samples& samples);

}  // namespace drevintool
