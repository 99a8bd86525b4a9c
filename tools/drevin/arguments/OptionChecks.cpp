#include "arguments/OptionChecks.h"

#include <CLI/CLI.hpp>

#include "terminal/ExitCode.h"
#include "terminal/NumberText.h"
#include "terminal/OneLine.h"

namespace drevintool {

void failUsage(const std::string& line) {
  throw ToolError(ExitCode::Usage, oneLine(line));
}

bool given(const CLI::App& app, const char* option) {
  return app.get_option(option)->count() > 0;
}

void checkNotEmpty(const CLI::App& app, std::initializer_list<const char*> options) {
  for (const char* option : options) {
    if (given(app, option) && app.get_option(option)->as<std::string>().empty()) {
      failUsage(std::string(option) + ": is empty");
    }
  }
}

unsigned parseCount(const std::string& option, const std::string& text, int most) {
  const std::optional<int> count = parseInteger(text);
  if (!count || *count < 1 || *count > most) {
    failUsage(option + " " + text + ": give a whole number from 1 to " + std::to_string(most));
  }
  return static_cast<unsigned>(*count);
}

}  // namespace drevintool
