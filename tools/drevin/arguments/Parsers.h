#pragma once

/// The whole command line: the command and all its subcommands.

#include <CLI/CLI.hpp>

#include "arguments/ControlsParser.h"
#include "arguments/DemoParser.h"
#include "arguments/DoctorParser.h"
#include "arguments/InspectParser.h"
#include "arguments/RenderParser.h"
#include "arguments/ScriptParser.h"
#include "arguments/SheetParser.h"

namespace drevintool {

struct Parsers {
  Parsers() {
    app.set_version_flag("--version", "drevin " DREVIN_VERSION);
    app.require_subcommand(1);
  }

  CLI::App app{"Lens defocus of pictures with depth", "drevin"};
  RenderParser render{app};
  SheetParser sheet{app};
  InspectParser inspect{app};
  ControlsParser controls{app};
  ScriptParser script{app};
  DemoParser demo{app};
  DoctorParser doctor{app};
};

}  // namespace drevintool
