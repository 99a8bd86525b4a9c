#include "arguments/NodeOptions.h"

#include <CLI/CLI.hpp>

namespace drevintool {

void addNodeOptions(CLI::App& app, std::vector<std::string>& settings, std::string& camera,
                    std::string& plugin) {
  app.add_option("--set", settings,
                 "Set a control as by hand, in the order given: a number, 0/1/true/false, several "
                 "values by commas, a choice's label or index, channel names; NAME@FRAME=VALUE is "
                 "a key of a "
                 "number that changes over frames")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--camera", camera,
                 "A camera on the Camera input: focalLength (mm), fStop, focalPlane (scene units), "
                 "horizontalAperture, verticalAperture (mm), those that matter; it wins over --set")
      ->type_name("KEY=VALUE,...");
  app.add_option(
         "--plugin", plugin,
         "The plug-in (default: DREVIN_PLUGIN, else Drevin.so beside the command or in ../lib)")
      ->type_name("FILE");
}

}  // namespace drevintool
