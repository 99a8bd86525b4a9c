#include "arguments/ScriptParser.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>

#include "arguments/NodeOptions.h"
#include "arguments/OptionChecks.h"

namespace drevintool {
namespace {

// What the host takes for a node's name.
void checkName(const std::string& name) {
  const auto fits = [](char c) {
    return c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0;
  };
  const bool digitFirst = !name.empty() && std::isdigit(static_cast<unsigned char>(name[0])) != 0;
  if (name.empty() || digitFirst || !std::all_of(name.begin(), name.end(), fits)) {
    failUsage("--name " + name + ": give letters, digits and _, a letter first");
  }
}

}  // namespace

ScriptParser::ScriptParser(CLI::App& app)
    : app_(*app.add_subcommand(
          "script", "Print the node with its changes, for pasting into the host's script")) {
  addNodeOptions(app_, arguments_);
  app_.add_option("--name", arguments_.name, "The node's name (default Drevin1)")
      ->type_name("NAME");
}

bool ScriptParser::parsed() const {
  return app_.parsed();
}

ScriptArguments ScriptParser::checked() const {
  checkNodeOptions(app_);
  checkName(arguments_.name);
  return arguments_;
}

}  // namespace drevintool
