#pragma once

/// The register of operator classes.

#include <mutex>
#include <vector>

#include "DDImage/Op.h"

namespace embedded {

/// Filled by the static descriptions of libraries as they are loaded, from any thread.
class Classes {
 public:
  /// The one register, made before its first use.
  static Classes& instance();

  void add(DD::Image::Description* description);
  void remove(DD::Image::Description* description);
  /// All that are registered now, in order.
  std::vector<DD::Image::Description*> all();
  /// The first description of that name, or null.
  DD::Image::Description* find(const char* name);

 private:
  std::mutex mutex_;
  std::vector<DD::Image::Description*> descriptions_;
};

}  // namespace embedded
