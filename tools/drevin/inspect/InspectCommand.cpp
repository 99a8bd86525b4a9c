#include "inspect/InspectCommand.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "controls/PluginSearch.h"
#include "inspect/FileInspection.h"
#include "inspect/InspectText.h"
#include "sequence/FramePattern.h"
#include "terminal/ExitCode.h"
#include "terminal/Messages.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

using Json = nlohmann::ordered_json;

struct InspectedFile {
  std::string path;
  std::optional<int> frame;
};

std::vector<InspectedFile> filesOf(const InspectArguments& arguments) {
  std::vector<InspectedFile> files;
  for (const std::string& path : arguments.files) {
    const FramePattern pattern(path);
    if (!pattern.hasFrame()) {
      const bool oneFrame = arguments.frames.size() == 1;
      files.push_back(
          {pattern.path(0), oneFrame ? std::optional(arguments.frames[0]) : std::nullopt});
    } else if (arguments.frames.empty()) {
      throw ToolError(ExitCode::Usage,
                      oneLine(path + ": stands for the files of a sequence; give --frames "
                                     "FIRST-LAST (or put a backslash before #, @ or % where it is "
                                     "part of a name)"));
    }
    for (const int frame : pattern.hasFrame() ? arguments.frames : std::vector<int>())
      files.push_back({pattern.path(frame), frame});
  }
  return files;
}

// Prints texts as they come; JSON is one array, which is printed at the end.
class Listing {
 public:
  explicit Listing(bool json) : json_(json) {}

  void add(const Json& file) {
    if (json_) {
      all_.push_back(file);
      return;
    }
    const bool failed = file.contains("error");
    if (failed) return;
    std::fputs(((first_ ? "" : "\n") + inspectText(file)).c_str(), stdout);
    std::fflush(stdout);
    first_ = false;
  }

  void end() const {
    if (!json_) return;
    const std::string text = all_.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
    std::fputs(text.c_str(), stdout);
  }

 private:
  bool json_;
  bool first_ = true;
  Json all_ = Json::array();
};

}  // namespace

int runInspect(const InspectArguments& arguments) {
  const std::vector<InspectedFile> files = filesOf(arguments);
  const DD::Image::Op::Description& description = loadNodeClass(arguments.plugin);
  const Node fresh(description);
  const ControlChanges changes(arguments, fresh);
  for (const std::string& warning : changes.warnings())
    printWarning(warning);
  const bool predict =
      !arguments.settings.empty() || !arguments.script.empty() || !arguments.camera.empty();
  Listing listing(arguments.json);
  ExitCode code = ExitCode::Done;
  for (const InspectedFile& file : files) {
    try {
      listing.add(
          inspectFile(file.path, {description, changes, arguments.camera, file.frame}, predict));
    } catch (const ToolError& error) {
      if (error.code() != ExitCode::InputUnreadable) throw;
      printError(error.what());
      listing.add({{"file", file.path}, {"error", error.what()}});
      code = error.code();
    }
  }
  listing.end();
  return static_cast<int>(code);
}

}  // namespace drevintool
