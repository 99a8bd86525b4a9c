#include "arguments/FocusOption.h"

#include <CLI/CLI.hpp>

#include "arguments/OptionChecks.h"
#include "controls/FocusControl.h"

namespace drevintool {

void FocusOption::addTo(CLI::App& app) {
  app.add_option("--focus-at", texts_,
                 "Focus on what is at this pixel: sets focalPlane to the depth there, frame by "
                 "frame, and wins over script and camera; row 0 is the bottom row, as viewers of "
                 "the host show, or with x,y,top the top row, as picture viewers do; several "
                 "x,y@FRAME pull the focus from what is there at one frame to what is at the next")
      ->type_name("x,y[,top][@FRAME]")
      ->allow_extra_args(false)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

// A point among several must be a key as well.
bool FocusOption::keyed() const {
  return texts_.size() > 1 || (texts_.size() == 1 && texts_.front().find('@') != std::string::npos);
}

std::optional<FocusPoint> FocusOption::checked(const CLI::App& app,
                                               const NodeArguments& arguments) const {
  if (!given(app, "--focus-at")) return std::nullopt;
  checkFocusNotSet(arguments.settings, "--focus-at");
  if (keyed()) return std::nullopt;
  return parseFocusPoint(texts_.front());
}

std::vector<FocusKey> FocusOption::keys() const {
  return keyed() ? parseFocusKeys(texts_) : std::vector<FocusKey>();
}

}  // namespace drevintool
