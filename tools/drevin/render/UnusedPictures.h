#pragma once

/// Pictures that were given, but that the controls leave out.

#include <string>

#include "EmbeddedHost/Node.h"
#include "render/InputPictures.h"

namespace drevintool {

/// One line that names the remedy if there is a picture of an aperture and `kernelType` draws
/// another one; empty otherwise.
std::string unusedKernelWarning(const InputPictures& pictures, const Node& node);

/// One line that names the controls that pick a matte if there are mattes and none of those does;
/// empty otherwise.
std::string unusedMattesWarning(const InputPictures& pictures, const Node& node);

}  // namespace drevintool
