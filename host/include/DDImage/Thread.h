#pragma once

/// Functions run on the host's pool of threads.

#include "DDImage/Export.h"

namespace DD {
namespace Image {

class DD_EXPORT Thread {
 public:
  using ThreadFunction = void (*)(unsigned index, unsigned nThreads, void* userData);

  /// Starts `function` for every index from 0 to nThreads - 1 and returns at once. The pool grows
  /// so that all of them can run together where the system allows it. False if nThreads is 0.
  static bool spawn(ThreadFunction function, unsigned nThreads, void* userData);
  /// Returns when everything spawned with `userData` has ended. The calling thread takes part in
  /// what has not begun, so that pool threads may spawn and wait too. The first exception that left
  /// one of the functions leaves here.
  static void wait(void* userData);
  /// True while something spawned with `userData` has not ended.
  static bool running(void* userData);

  /// How many threads a computation should use.
  static unsigned numCPUs;
};

}  // namespace Image
}  // namespace DD
