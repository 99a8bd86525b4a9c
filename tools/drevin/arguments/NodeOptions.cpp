#include "arguments/NodeOptions.h"

#include <CLI/CLI.hpp>

#include "arguments/OptionChecks.h"

namespace drevintool {

void addNodeOptions(CLI::App& app, NodeArguments& arguments) {
  app.add_option("--set", arguments.settings,
                 "Set a control as by hand, in the order given: a number, 0/1/true/false, several "
                 "values by commas, a choice's label or index, channel names; NAME@FRAME=VALUE is "
                 "a key of a "
                 "number that changes over frames")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--script", arguments.script,
                 "Take the controls from a node in a saved script of the host (- for standard "
                 "input); --set wins over it")
      ->type_name("FILE");
  app.add_option("--node", arguments.scriptNode,
                 "The node of the script, if it holds several: NAME, GROUP.NAME or 'line N'")
      ->type_name("NAME");
  app.add_option(
         "--camera", arguments.camera,
         "A camera on the Camera input, which wins over --set: values by commas, a JSON file "
         "of them, or header for those of the picture's header; focalLength (mm), fStop, "
         "focalPlane (scene units), horizontalAperture, verticalAperture (mm)")
      ->type_name("KEY=VALUE,...|FILE|header");
  app.add_option(
         "--plugin", arguments.plugin,
         "The plug-in (default: DREVIN_PLUGIN, else Drevin.so beside the command or in ../lib)")
      ->type_name("FILE");
}

void checkNodeOptions(const CLI::App& app) {
  checkNotEmpty(app, {"--script", "--node", "--camera", "--plugin"});
  if (given(app, "--node") && !given(app, "--script")) {
    failUsage("--node: is for scripts; name one with --script");
  }
}

}  // namespace drevintool
