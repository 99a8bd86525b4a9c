#pragma once

/// Where the plug-in is found.

#include <string>

#include "DDImage/Op.h"

namespace drevintool {

/// The class that the command renders with, and the name of its file.
constexpr const char* kClassName = "Drevin";

/// Loads the plug-in: the file or folder that `option` names, else the one in the environment
/// variable DREVIN_PLUGIN, else Drevin.so beside the executable or in its ../lib folders. Throws
/// ToolError (PluginNotLoaded) with one line that names the file, or the places where none was.
const DD::Image::Op::Description& loadNodeClass(const std::string& option);

}  // namespace drevintool
