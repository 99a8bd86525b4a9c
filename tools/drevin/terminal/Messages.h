#pragma once

/// Messages of the command on standard error, one line each.

#include <string>

namespace drevintool {

/// "drevin: error: <text>", "drevin: warning: <text>" and "drevin: <text>"; line breaks in the text
/// become blanks. On a terminal that has colours the words before the text are coloured.
void printError(const std::string& text);
void printWarning(const std::string& text);
void printNote(const std::string& text);

}  // namespace drevintool
