#pragma once

/// What a user is told of a deep picture that renders, but perhaps not as meant.

#include <string>

#include "EmbeddedHost/DeepOrder.h"
#include "deep/DeepExrSource.h"

namespace drevintool {

/// One line if the file has no alpha; else empty.
std::string opaqueWarning(const DeepExrSource& deep);
/// One line with the figures if samples that were read are thick and were served nearest first;
/// else empty.
std::string thickWarning(const DeepExrSource& deep, embedded::DeepOrder order);

/// One line with the figures if samples that were read are not finite; else empty.
std::string notFiniteWarning(const DeepExrSource& deep);

}  // namespace drevintool
