#pragma once

/// Foreign text made fit for a one-line message.

#include <string>

namespace drevintool {

/// `text` with every control character and every byte that is not part of well-formed UTF-8
/// replaced by '?', line breaks by blanks.
std::string oneLine(const std::string& text);

}  // namespace drevintool
