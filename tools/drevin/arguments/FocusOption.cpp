#include "arguments/FocusOption.h"

#include <CLI/CLI.hpp>

#include "arguments/OptionChecks.h"
#include "controls/FocusControl.h"

namespace drevintool {

void FocusOption::addTo(CLI::App& app) {
  app.add_option("--focus-at", text_,
                 "Focus on what is at this pixel: sets focalPlane to the depth there, frame by "
                 "frame, and wins over script and camera; row 0 is the bottom row, as viewers of "
                 "the host show, or with x,y,top the top row, as picture viewers do")
      ->type_name("x,y[,top]");
}

std::optional<FocusPoint> FocusOption::checked(const CLI::App& app,
                                               const NodeArguments& arguments) const {
  if (!given(app, "--focus-at")) return std::nullopt;
  checkFocusNotSet(arguments.settings, "--focus-at");
  return parseFocusPoint(text_);
}

}  // namespace drevintool
