#include "arguments/FixOptions.h"

#include <CLI/CLI.hpp>

#include <optional>

#include "arguments/OptionChecks.h"
#include "terminal/NumberText.h"

namespace drevintool {

void FixOptions::addTo(CLI::App& app) {
  app.add_option(
         "--fix-background", background_,
         "Give pixels whose depth stands for nothing (0, not finite, 1e10 and beyond, and the "
         "background that drevin inspect tells) this depth, or that of the farthest other pixel")
      ->type_name("VALUE|far");
  app.add_flag("--fix-edges", edges_,
               "Give pixels whose depth was averaged across an edge that of the closer side");
  app.add_option("--clamp-fireflies", mostColour_,
                 "Dim pixels, or deep samples, with a colour above this to it; their hue stays")
      ->type_name("VALUE");
}

PictureFixes FixOptions::checked(const CLI::App& app) const {
  PictureFixes fixes;
  if (given(app, "--fix-background")) {
    const std::optional<double> depth = parseNumber(background_);
    if (!depth && background_ != "far") {
      failUsage("--fix-background " + background_ + ": give a depth, or far");
    }
    fixes.background = BackgroundFix{!depth, static_cast<float>(depth.value_or(0.0))};
  }
  fixes.edges = edges_;
  if (edges_ && given(app, "--deep")) {
    failUsage("--fix-edges: is for flat pictures; deep samples have depths of their own");
  }
  if (given(app, "--clamp-fireflies")) {
    const std::optional<double> most = parseNumber(mostColour_);
    const float value = static_cast<float>(most.value_or(0.0));
    if (!(value > 0.0F)) failUsage("--clamp-fireflies " + mostColour_ + ": give a number above 0");
    fixes.mostColour = value;
  }
  return fixes;
}

}  // namespace drevintool
