#pragma once

/// What a fuzz target holds to be true of every input.

#include <cstdio>
#include <cstdlib>

namespace drevinfuzz {

/// Ends the run, as a finding, with the law that does not hold.
inline void expect(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", law);
  std::abort();
}

}  // namespace drevinfuzz
