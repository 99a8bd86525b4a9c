#include "arguments/ControlsParser.h"

#include <CLI/CLI.hpp>

#include "arguments/NodeOptions.h"

namespace drevintool {

ControlsParser::ControlsParser(CLI::App& app)
    : app_(*app.add_subcommand("controls", "Print the node's controls, after the changes given")) {
  app_.add_flag("--json", arguments_.json, "As a JSON array");
  addNodeOptions(app_, arguments_);
}

bool ControlsParser::parsed() const {
  return app_.parsed();
}

ControlsArguments ControlsParser::checked() const {
  checkNodeOptions(app_);
  return arguments_;
}

}  // namespace drevintool
