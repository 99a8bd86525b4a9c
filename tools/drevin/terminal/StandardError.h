#pragma once

/// The only way to standard error.

#include <string>

namespace drevintool {

/// Writes the text at once and in one piece. That it cannot be written - a log on a full disk, a
/// reader that went away - is no failure of what the text tells of.
void writeStandardError(const std::string& text) noexcept;

}  // namespace drevintool
