#include "arguments/InspectParser.h"

#include <CLI/CLI.hpp>

#include <algorithm>

#include "arguments/NodeOptions.h"
#include "arguments/OptionChecks.h"
#include "sequence/FrameList.h"

namespace drevintool {

InspectParser::InspectParser(CLI::App& app)
    : app_(*app.add_subcommand("inspect",
                               "Say what pictures hold: parts, channels, depth, samples, camera")) {
  app_.add_option("files", arguments_.files, "Flat or deep pictures (EXR)")->type_name("FILE");
  app_.add_option("--frames", frames_, "Frames that stand where files have ####, @ or %04d")
      ->type_name("LIST");
  addNodeOptions(app_, arguments_);
  app_.add_option("--kernel", arguments_.kernel,
                  "A picture of the aperture (EXR), for what the render comes to")
      ->type_name("FILE");
  app_.add_option("--mattes", arguments_.mattes, "Mattes (EXR), for what the render comes to")
      ->type_name("FILE");
  memory_.addTo(app_);
  app_.add_flag("--json", arguments_.json, "As a JSON array with an object for each file");
}

bool InspectParser::parsed() const {
  return app_.parsed();
}

InspectArguments InspectParser::checked() const {
  checkNotEmpty(app_, {"--kernel", "--mattes"});
  checkNodeOptions(app_);
  InspectArguments arguments = arguments_;
  const std::vector<std::string>& files = arguments.files;
  if (files.empty() || std::find(files.begin(), files.end(), "") != files.end()) {
    failUsage("inspect: name the pictures to look at");
  }
  arguments.maxMemory = memory_.checked(app_);
  if (given(app_, "--frames")) arguments.frames = parseFrameList(frames_);
  return arguments;
}

}  // namespace drevintool
