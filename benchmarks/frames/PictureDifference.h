#pragma once

/// How far two renders of the same picture lie apart.

#include "EmbeddedHost/ImageInput.h"

namespace drevin::bench {

/// The largest difference of `part` from `whole`, whose box holds that of the part and which has
/// its channels, in parts of the bound 1e-5 + 1e-4 |b|. Equal infinities do not differ, nor does a
/// NaN from a NaN; any other infinity or NaN is infinitely far.
double differenceOf(const embedded::Image& part, const embedded::Image& whole);

}  // namespace drevin::bench
