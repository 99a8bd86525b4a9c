#pragma once

/// What this host is.

#include <string>

#include "DDImage/Export.h"

namespace embedded {

/// The version of the interface that plug-ins find here: "12.0v1".
DD_EXPORT std::string interfaceVersion();

/// The file that the host's library was loaded from; empty where the system does not tell.
DD_EXPORT std::string libraryFile();

}  // namespace embedded
