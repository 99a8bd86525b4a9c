#pragma once

/// What the checks of all subcommands share.

#include <initializer_list>
#include <string>

namespace CLI {
class App;
}

namespace drevintool {

/// Throws ToolError (Usage) with that line.
[[noreturn]] void failUsage(const std::string& line);

/// Whether the option stands on the command line.
bool given(const CLI::App& app, const char* option);

/// Throws ToolError (Usage) for the first of the options that is given with an empty text.
void checkNotEmpty(const CLI::App& app, std::initializer_list<const char*> options);

/// The whole number from 1 to `most` that the text of an option is. Throws ToolError (Usage) for
/// any other text.
unsigned parseCount(const std::string& option, const std::string& text, int most);

}  // namespace drevintool
