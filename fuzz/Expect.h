#pragma once

/// What a fuzz target holds to be true of every input.

#include <cstdio>
#include <cstdlib>
#include <string>

namespace drevinfuzz {

/// Ends the run, as a finding, with the law that does not hold.
inline void expect(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", law);
  std::abort();
}

/// That a message of a failure is one line, and names what failed.
inline void expectOneLine(const std::string& text, const std::string& name) {
  expect(text.find('\n') == std::string::npos, "an error is one line");
  expect(text.find(name) != std::string::npos, "an error names its origin");
}

}  // namespace drevinfuzz
