#pragma once

/// The record by which a class makes itself known when its library is loaded.

#include "DDImage/Export.h"

/// The build string of the classes of a library; a build may define its own.
#ifndef DDIMAGE_COMPILED
#define DDIMAGE_COMPILED __DATE__ " for 12.0"
#endif

namespace DD {
namespace Image {

/// Registers itself under its name while it lives. Of several with one name the first counts.
class DD_EXPORT Description {
 public:
  const char* name;      ///< class name
  const char* compiled;  ///< build string: date and interface version
  const char* plugin;    ///< file that it was loaded from; null outside plug-ins

  Description(const Description&) = delete;
  Description& operator=(const Description&) = delete;

 protected:
  Description(const char* className, const char* buildString);
  ~Description();
};

}  // namespace Image
}  // namespace DD
