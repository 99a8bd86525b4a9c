#include "terminal/Colours.h"

#include "terminal/Terminal.h"

namespace drevintool {

bool coloursWanted(bool terminal, const char* noColor, const char* term) {
  const bool refused = noColor != nullptr && *noColor != '\0';
  return terminal && obeysCodes(term) && !refused;
}

}  // namespace drevintool
