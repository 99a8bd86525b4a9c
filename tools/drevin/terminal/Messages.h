#pragma once

/// Messages of the command on standard error, one line each.

#include <string>

namespace drevintool {

/// "drevin: error: <text>", "drevin: warning: <text>" and "drevin: <text>"; line breaks in the text
/// become blanks.
void printError(const std::string& text);
void printWarning(const std::string& text);
void printNote(const std::string& text);

}  // namespace drevintool
