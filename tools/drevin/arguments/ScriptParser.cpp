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
  app_.add_option("--name", arguments_.name,
                  "The node's name (default: that of the script's node, else Drevin1)")
      ->type_name("NAME");
  focus_.addTo(app_);
  app_.add_option("--input", arguments_.input,
                  "The picture for --focus-at and --camera header (EXR)")
      ->type_name("FILE");
  app_.add_option("--deep", arguments_.deep, "The same, a deep picture (EXR)")->type_name("FILE");
}

void ScriptParser::checkFocus() const {
  checkNotEmpty(app_, {"--input", "--deep"});
  const bool picture = given(app_, "--input") || given(app_, "--deep");
  if (given(app_, "--input") && given(app_, "--deep")) {
    failUsage("--deep: give either it or --input");
  }
  if (given(app_, "--focus-at") && !picture) {
    failUsage("--focus-at: name the picture to focus in with --input or --deep");
  }
  const std::string& camera = arguments_.camera;
  const bool header = camera == "header" || camera.rfind("header,", 0) == 0;
  if (picture && !given(app_, "--focus-at") && !header) {
    failUsage("--input and --deep: are read for --focus-at and --camera header only; give one too");
  }
}

bool ScriptParser::parsed() const {
  return app_.parsed();
}

ScriptArguments ScriptParser::checked() const {
  checkNodeOptions(app_);
  if (given(app_, "--name")) checkName(arguments_.name);
  checkFocus();
  ScriptArguments arguments = arguments_;
  arguments.focus = focus_.checked(app_, arguments);
  arguments.focusKeys = focus_.keys();
  return arguments;
}

}  // namespace drevintool
