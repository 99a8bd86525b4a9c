#pragma once

/// The file of a plug-in before it is loaded.

#include <string>

namespace embedded {

/// Whether the file is a library that ends before its own segments do. Loading such a file maps
/// what is not there, and touching that kills the process. False for a file of any other kind,
/// which the loader refuses by itself.
bool isCutOff(const std::string& file);

}  // namespace embedded
