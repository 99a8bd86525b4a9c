#pragma once

/// Loading operator plug-ins, as a host does at start-up.

#include <stdexcept>
#include <string>
#include <vector>

#include "DDImage/Op.h"

namespace embedded {

/// A plug-in that could not be loaded, or that does not hold the wanted class.
/// what() is one line that names the file and the reason.
class DD_EXPORT PluginError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Loads the shared library `file` (once; it stays loaded) and returns the description that it
/// registered for `className`. Throws PluginError if the file is missing, is no shared library,
/// registers no such class, or one whose build string names another version of hosts ("... for
/// 12.1") than this one, or none; releases of a version do not matter.
DD_EXPORT const DD::Image::Op::Description& loadPlugin(const std::string& file,
                                                       const std::string& className);

/// The registered operator class of that name, or null.
DD_EXPORT const DD::Image::Op::Description* findClass(const std::string& className);

}  // namespace embedded
