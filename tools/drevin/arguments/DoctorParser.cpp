#include "arguments/DoctorParser.h"

#include <CLI/CLI.hpp>

namespace drevintool {

DoctorParser::DoctorParser(CLI::App& app)
    : app_(*app.add_subcommand("doctor", "Say what renders would run with on this machine")) {
  app_.add_option("--plugin", arguments_.plugin, "The plug-in, as for render")->type_name("FILE");
  app_.add_flag("--json", arguments_.json, "As a JSON object");
}

bool DoctorParser::parsed() const {
  return app_.parsed();
}

DoctorArguments DoctorParser::checked() const {
  return arguments_;
}

}  // namespace drevintool
