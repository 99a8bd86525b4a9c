#pragma once

/// The instruction set of the plug-in's vector code.

#include <string>

#include "DDImage/Op.h"

namespace drevintool {

/// Its name, such as "avx2"; "unknown" of a plug-in that does not tell.
std::string simdName(const DD::Image::Op::Description& description);

/// One line if the environment variable DREVIN_SIMD asks for another one than is used: for one that
/// there is not, with those that there are, or for one that the processor lacks. Empty otherwise,
/// and where the plug-in does not tell.
std::string simdWarning(const DD::Image::Op::Description& description);

/// Prints that warning, if there is one.
void warnOfSimd(const DD::Image::Op::Description& description);

}  // namespace drevintool
