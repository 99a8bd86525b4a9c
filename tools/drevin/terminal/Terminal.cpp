#include "terminal/Terminal.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace drevintool {

bool obeysCodes(const char* term) {
  return term != nullptr && *term != '\0' && std::strcmp(term, "dumb") != 0;
}

bool drawsOnError() {
  return isatty(STDERR_FILENO) == 1 && obeysCodes(std::getenv("TERM"));
}

}  // namespace drevintool
