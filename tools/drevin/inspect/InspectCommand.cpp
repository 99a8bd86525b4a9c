#include "inspect/InspectCommand.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "controls/CameraOption.h"
#include "controls/ControlChanges.h"
#include "controls/PluginSearch.h"
#include "inspect/FileInspection.h"
#include "inspect/InspectText.h"
#include "picture/ExrReader.h"
#include "picture/MemoryBudget.h"
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
    if (arguments.frames.empty() || !pattern.hasFrame()) {
      const bool oneFrame = arguments.frames.size() == 1;
      files.push_back({onlyFile(path, "", "give --frames FIRST-LAST"),
                       oneFrame ? std::optional(arguments.frames[0]) : std::nullopt});
      continue;
    }
    refuseView(path, "");
    for (const int frame : arguments.frames)
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
    std::fputs(((first_ ? "" : "\n") + inspectText(file)).c_str(), stdout);
    std::fflush(stdout);
    first_ = false;
  }

  void addFailure(const std::string& path, const std::string& line) {
    if (json_) all_.push_back({{"file", path}, {"error", line}});
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

// A picture beside the first, read when its file is another than before.
class BesidePicture {
 public:
  explicit BesidePicture(const std::string& path) : pattern_(path), given_(!path.empty()) {}

  // Null if none is given.
  std::shared_ptr<const Picture> at(const std::optional<int>& frame) {
    if (!given_) return nullptr;
    const std::string path = pattern_.path(frame.value_or(0));
    if (!picture_ || picture_->path != path) {
      picture_ = nullptr;
      picture_ = std::make_shared<const Picture>(readExr(path));
    }
    return picture_;
  }

 private:
  FramePattern pattern_;
  bool given_;
  std::shared_ptr<const Picture> picture_;
};

// What renders are asked about, for all files.
class Asking {
 public:
  explicit Asking(const InspectArguments& arguments)
      : description_(loadNodeClass(arguments.plugin)),
        changes_(arguments, Node(description_)),
        camera_(arguments.camera),
        kernel_(arguments.kernel),
        mattes_(arguments.mattes) {
    for (const std::string& warning : changes_.warnings())
      printWarning(warning);
  }

  // Throws what reading the pictures beside the first throws.
  AskedRender at(const std::optional<int>& frame) {
    return {description_, changes_, camera_, frame, kernel_.at(frame), mattes_.at(frame)};
  }

  // Throws what is the fault of no file.
  void check(const std::optional<int>& frame) {
    Node node(description_);
    changes_.applyValues(node, frame);
    if (!camera_.empty()) {
      const CameraOption camera(camera_);
      if (!camera.isHeader()) camera.at(frame, node, nullptr);
    }
    at(frame);
  }

 private:
  const DD::Image::Op::Description& description_;
  ControlChanges changes_;
  std::string camera_;
  BesidePicture kernel_;
  BesidePicture mattes_;
};

bool asksForPrediction(const InspectArguments& arguments) {
  const bool controls =
      !arguments.settings.empty() || !arguments.script.empty() || !arguments.camera.empty();
  return controls || !arguments.kernel.empty() || !arguments.mattes.empty();
}

struct Failure {
  ExitCode code;
  std::string line;
};

bool isInterruption(const ToolError& error) {
  return error.code() == ExitCode::Interrupted || error.code() == ExitCode::Terminated;
}

Failure failureOf(ExitCode code, const std::string& path, const std::string& reason) {
  const bool named = reason.find(oneLine(path)) != std::string::npos;
  return {code, oneLine(named ? reason : path + ": " + reason)};
}

// Adds the file to the listing, or says why not.
std::optional<Failure> inspect(const InspectedFile& file, std::optional<Asking>& asking,
                               bool predict, Listing& listing) {
  try {
    const auto asked = asking ? std::optional(asking->at(file.frame)) : std::nullopt;
    listing.add(inspectFile(file.path, asked ? &*asked : nullptr, predict));
    return std::nullopt;
  } catch (const ToolError& error) {
    if (isInterruption(error)) throw;
    return failureOf(error.code(), file.path, error.what());
  } catch (const std::bad_alloc&) {
    return failureOf(ExitCode::RenderFailed, file.path, "not enough memory to look at it");
  } catch (const std::exception& error) {
    return failureOf(ExitCode::RenderFailed, file.path, error.what());
  }
}

}  // namespace

int runInspect(const InspectArguments& arguments) {
  const std::vector<InspectedFile> files = filesOf(arguments);
  limitMemory(arguments.maxMemory);
  const bool predict = asksForPrediction(arguments);
  std::optional<Asking> asking;
  if (predict || !arguments.plugin.empty()) asking.emplace(arguments);
  if (asking) asking->check(files.front().frame);
  Listing listing(arguments.json);
  int code = static_cast<int>(ExitCode::Done);
  for (const InspectedFile& file : files) {
    const std::optional<Failure> failure = inspect(file, asking, predict, listing);
    if (!failure) continue;
    printError(failure->line);
    listing.addFailure(file.path, failure->line);
    code = std::max(code, static_cast<int>(failure->code));
  }
  listing.end();
  return code;
}

}  // namespace drevintool
