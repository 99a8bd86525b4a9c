#include "arguments/SheetParser.h"

#include <CLI/CLI.hpp>

#include "arguments/OptionChecks.h"

namespace drevintool {
namespace {

constexpr int kMostWidth = 16384;
constexpr int kMostColumns = 1000;

}  // namespace

SheetParser::SheetParser(CLI::App& app)
    : app_(*app.add_subcommand("sheet", "Put pictures with different settings on one sheet")),
      render_(app_, RenderScope::Sheet) {
  app_.add_option("--vary", arguments_.vary,
                  "A control and the values to show, by commas (by ; where a value has commas); "
                  "with a second one, the first gives the columns and the second the rows")
      ->type_name("NAME=VALUE,...")
      ->allow_extra_args(false)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app_.add_option("--width", width_,
                  "Width of each picture in pixels (default: so that the sheet has about 2000)")
      ->type_name("N");
  app_.add_option("--columns", columns_,
                  "Pictures in a row, for one --vary (default: a nearly square sheet)")
      ->type_name("N");
}

bool SheetParser::parsed() const {
  return app_.parsed();
}

SheetArguments SheetParser::checked() const {
  SheetArguments arguments = arguments_;
  static_cast<RenderArguments&>(arguments) = render_.checked();
  if (arguments.vary.empty()) {
    failUsage("--vary is missing: name a control and values, such as --vary focalPlane=2,4,8");
  }
  if (given(app_, "--width")) {
    arguments.width = static_cast<int>(parseCount("--width", width_, kMostWidth));
  }
  if (!given(app_, "--columns")) return arguments;
  if (arguments.vary.size() > 1) {
    failUsage("--columns: is for one --vary; of two, the first gives the columns");
  }
  arguments.columns = static_cast<int>(parseCount("--columns", columns_, kMostColumns));
  return arguments;
}

}  // namespace drevintool
