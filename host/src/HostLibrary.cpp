#include "EmbeddedHost/HostLibrary.h"

#include <dlfcn.h>

#include "DDImage/ddImageVersionNumbers.h"

namespace embedded {

namespace {

// Of this library, wherever it was loaded.
const char kPlace = '\0';

}  // namespace

std::string interfaceVersion() {
  return kDDImageVersion;
}

std::string libraryFile() {
  Dl_info info{};
  if (dladdr(&kPlace, &info) == 0 || info.dli_fname == nullptr) return {};
  return info.dli_fname;
}

}  // namespace embedded
