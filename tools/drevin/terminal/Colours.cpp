#include "terminal/Colours.h"

#include <cstring>

namespace drevintool {

bool coloursWanted(bool terminal, const char* noColor, const char* term) {
  const bool refused = noColor != nullptr && *noColor != '\0';
  const bool able = term != nullptr && *term != '\0' && std::strcmp(term, "dumb") != 0;
  return terminal && able && !refused;
}

}  // namespace drevintool
