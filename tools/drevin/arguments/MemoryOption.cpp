#include "arguments/MemoryOption.h"

#include <CLI/CLI.hpp>

#include <optional>

#include "arguments/OptionChecks.h"
#include "terminal/SizeText.h"

namespace drevintool {

void MemoryOption::addTo(CLI::App& app) {
  app.add_option("--max-memory", text_,
                 "Memory that the pictures may take, such as 512M or 8G (default: most of what is "
                 "free)")
      ->type_name("SIZE");
}

MemoryLimit MemoryOption::checked(const CLI::App& app) const {
  if (!given(app, "--max-memory")) return {};
  const std::optional<std::uint64_t> bytes = parseSize(text_);
  if (!bytes) failUsage("--max-memory " + text_ + ": give a size such as 512M or 8G");
  return {*bytes, text_};
}

}  // namespace drevintool
