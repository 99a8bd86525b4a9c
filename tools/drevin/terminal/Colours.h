#pragma once

/// Colours of messages on a terminal.

namespace drevintool {

/// Bold red, bold yellow, and the end of both.
constexpr const char* kRed = "\033[1;31m";
constexpr const char* kYellow = "\033[1;33m";
constexpr const char* kPlain = "\033[0m";

/// Whether to use them: on a terminal whose TERM is there and not "dumb", unless NO_COLOR is there
/// and not empty. The texts are those of the environment, null where it has none.
bool coloursWanted(bool terminal, const char* noColor, const char* term);

}  // namespace drevintool
