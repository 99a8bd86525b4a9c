#include "arguments/DemoParser.h"

#include <CLI/CLI.hpp>

namespace drevintool {

DemoParser::DemoParser(CLI::App& app)
    : app_(*app.add_subcommand("demo", "Write a scene that shows what defocus does")) {
  app_.add_option("DIR", arguments_.directory, "Folder for the scene; made if missing")->required();
  app_.add_flag("--json", arguments_.json, "Name the files and the commands as a JSON object");
}

bool DemoParser::parsed() const {
  return app_.parsed();
}

DemoArguments DemoParser::checked() const {
  return arguments_;
}

}  // namespace drevintool
