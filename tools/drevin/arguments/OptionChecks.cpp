#include "arguments/OptionChecks.h"

#include <CLI/CLI.hpp>

#include "terminal/ExitCode.h"
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

}  // namespace drevintool
