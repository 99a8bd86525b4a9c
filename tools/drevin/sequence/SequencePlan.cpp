#include "sequence/SequencePlan.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <set>
#include <system_error>
#include <unordered_set>

#include "picture/AtomicFile.h"
#include "picture/NearestFile.h"
#include "render/Report.h"
#include "sequence/FrameList.h"
#include "terminal/ExitCode.h"
#include "terminal/OneLine.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

[[noreturn]] void fail(const std::string& line, ExitCode code = ExitCode::Usage) {
  throw ToolError(code, oneLine(line));
}

std::vector<FrameTask> tasksOf(const RenderArguments& arguments) {
  const std::vector<std::string> views =
      arguments.views.empty() ? std::vector<std::string>{""} : arguments.views;
  std::vector<std::optional<int>> frames(arguments.frames.begin(), arguments.frames.end());
  if (frames.empty()) frames.emplace_back();
  if (frames.size() * views.size() > kMostFrames)
    fail("--frames, --views: more than 1000000 pictures; render fewer frames at a time");
  std::vector<FrameTask> tasks;
  tasks.reserve(frames.size() * views.size());
  for (const std::optional<int> frame : frames) {
    for (const std::string& view : views)
      tasks.push_back({frame, view});
  }
  return tasks;
}

bool exists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

bool isSameFile(const std::string& one, const std::string& other) {
  FileSet file;
  file.add(one);
  return file.has(other);
}

RenderArguments withoutLists(RenderArguments arguments) {
  arguments.frames.clear();
  arguments.views.clear();
  return arguments;
}

}  // namespace

SequencePlan::SequencePlan(const RenderArguments& arguments)
    : arguments_(arguments),
      picture_(withoutLists(arguments)),
      sequence_(!arguments.frames.empty() || !arguments.views.empty()),
      tasks_(tasksOf(arguments)) {
  addPath("--input", &RenderArguments::input);
  addPath("--deep", &RenderArguments::deep);
  addPath("--view", &RenderArguments::view);
  addPath("--kernel", &RenderArguments::kernel);
  addPath("--mattes", &RenderArguments::mattes);
  addPath("--camera", &RenderArguments::camera);
  addPath("--output", &RenderArguments::output);
  addPath("--report", &RenderArguments::report);
  checkPlaces();
  checkOutputsDiffer();
  checkTakenPlaces();
  checkReports();
  const FramePattern report(arguments.report);
  reportsEach_ = !sequence_ || report.hasFrame() || report.hasView();
}

void SequencePlan::addPath(const char* option, std::string RenderArguments::*text) {
  paths_.push_back({option, text, FramePattern(arguments_.*text)});
}

// A place that nothing is there for.
void SequencePlan::checkPlaces() const {
  for (const Path& path : paths_) {
    checkForeignPlace(path);
    const std::string start = std::string(path.option) + " " + arguments_.*path.text + ": ";
    if (path.pattern.hasFrame() && arguments_.frames.empty()) {
      fail(
          start +
          "stands for the files of a sequence; give --frames FIRST-LAST (or put a backslash before "
          "#, @ or % where it is part of a name)");
    }
    if (path.pattern.hasView() && arguments_.views.empty()) {
      fail(start + "has a place for a view; give --views NAME,NAME");
    }
  }
}

// A file may have such a name all the same.
void SequencePlan::checkForeignPlace(const Path& path) const {
  const std::string& text = arguments_.*path.text;
  const std::string place = foreignFramePlace(text);
  if (place.empty() || arguments_.frames.empty() || path.pattern.hasFrame()) return;
  if (exists(filled(path, tasks_.front()))) return;
  fail(std::string(path.option) + " " + text + ": " + place +
       " is no place for the frame; write %04d or ####");
}

void SequencePlan::checkOutputsDiffer() const {
  for (const char* option : {"--output", "--report"}) {
    const Path& path = pathOf(option);
    const bool each = path.pattern.hasFrame() || path.pattern.hasView();
    if (option == std::string("--report") && !each) continue;
    FileSet names;
    std::unordered_set<std::string> places;
    for (const FrameTask& task : tasks_) {
      throwIfInterrupted();
      const std::string file = filled(path, task);
      if (places.insert(names.place(file)).second) continue;
      fail(std::string(option) + " " + arguments_.*path.text + ": " + task.name() +
           " would overwrite " + file + ", which another has written; put #### for the frame" +
           (arguments_.views.empty() ? "" : " and %V for the view") + " into the name");
    }
  }
}

void SequencePlan::checkReports() const {
  if (arguments_.report.empty()) return;
  FileSet reports;
  forEachFile("--report", [&](const std::string& file) { reports.add(file); });
  const auto check = [&](const std::string& option, const std::string& file) {
    if (file.empty() || !reports.has(file)) return;
    fail("--report " + arguments_.report + ": would take the place of " + file + ", the file of " +
         option + "; name another file");
  };
  for (const char* option : {"--input", "--deep", "--kernel", "--mattes", "--camera", "--output"})
    forEachFile(option, [&](const std::string& file) { check(option, file); });
  check("--script", arguments_.script);
}

FileSet SequencePlan::outputFiles() const {
  FileSet outputs;
  forEachFile("--output", [&](const std::string& file) { outputs.add(file); });
  return outputs;
}

void SequencePlan::refuseOutput(const char* option, FileSet& outputs, const char* reason) const {
  forEachFile(option, [&](const std::string& file) {
    if (file.empty() || !outputs.has(file)) return;
    fail("--output " + arguments_.output + ": would take the place of " + file + ", the file of " +
         option + reason + "; name another file");
  });
}

// A picture may be blurred in its place, but none may be made of what another one has left there.
void SequencePlan::refuseOutputOfOthers(FileSet& outputs) const {
  const Path& input = pathOf("--input");
  const Path& output = pathOf("--output");
  if (tasks_.size() < 2 || arguments_.input.empty()) return;
  for (const FrameTask& task : tasks_) {
    throwIfInterrupted();
    const std::string file = filled(input, task);
    const std::string own = filled(output, task);
    if (file == own || !outputs.has(file) || isSameFile(file, own)) continue;
    fail("--output " + arguments_.output + ": would take the place of " + file +
         ", the file of --input that " + task.name() + " is made of too; name another file");
  }
}

void SequencePlan::checkTakenPlaces() const {
  FileSet outputs = outputFiles();
  for (const char* option : {"--deep", "--kernel", "--mattes", "--camera"})
    refuseOutput(option, outputs, "");
  if (arguments_.skipExisting) {
    refuseOutput("--input", outputs, ", and be skipped as there already");
  }
  refuseOutputOfOthers(outputs);
}

void SequencePlan::checkInputsStay() const {
  FileSet outputs = outputFiles();
  refuseOutput("--input", outputs, "");
}

template <typename Visit>
void SequencePlan::forEachFile(const char* option, const Visit& visit) const {
  const Path& path = pathOf(option);
  const bool each = path.pattern.hasFrame() || path.pattern.hasView();
  for (std::size_t i = 0; i < (each ? tasks_.size() : 1); ++i) {
    throwIfInterrupted();
    visit(filled(path, tasks_[i]));
  }
}

const SequencePlan::Path& SequencePlan::pathOf(const char* option) const {
  const auto named = [&](const Path& path) { return path.option == std::string(option); };
  return *std::find_if(paths_.begin(), paths_.end(), named);
}

std::string SequencePlan::filled(const Path& path, const FrameTask& task) {
  return path.pattern.path(task.frame.value_or(0), task.view);
}

std::set<std::string> SequencePlan::sharedFiles() const {
  std::set<std::string> files;
  if (tasks_.size() < 2) return files;
  for (const char* option : {"--input", "--kernel", "--mattes", "--camera"}) {
    const Path& path = pathOf(option);
    const std::string file = filled(path, tasks_.front());
    const bool each = path.pattern.hasFrame() || path.pattern.hasView();
    if (!each && !file.empty()) files.insert(file);
  }
  return files;
}

RenderArguments SequencePlan::argumentsOf(const FrameTask& task) const {
  RenderArguments arguments = picture_;
  for (const Path& path : paths_)
    arguments.*path.text = filled(path, task);
  if (!reportsEach_) arguments.report.clear();
  return arguments;
}

std::vector<FrameTask> SequencePlan::missing(const Path& path) const {
  const Path& output = pathOf("--output");
  std::vector<FrameTask> tasks;
  std::copy_if(tasks_.begin(), tasks_.end(), std::back_inserter(tasks), [&](const FrameTask& task) {
    throwIfInterrupted();
    const bool stays = arguments_.skipExisting && exists(filled(output, task));
    return !stays && !exists(filled(path, task));
  });
  return tasks;
}

void SequencePlan::failMissing(const Path& path, const std::vector<FrameTask>& tasks) const {
  const std::string start = std::string(path.option) + " " + arguments_.*path.text + ": ";
  const std::string file = filled(path, tasks.front());
  if (tasks.size() == tasks_.size()) {
    fail(start + "there is no such file for any of " + std::to_string(tasks.size()) +
         " pictures, the first would be " + file +
         (path.pattern.hasFrame() ? nearestSequenceHint(file) : nearestFileHint(file)));
  }
  const std::string option = arguments_.frames.empty() ? "views" : "frames";
  fail(start + "there is no such file for " +
       (tasks.size() == 1 ? tasks.front().name() : option + " " + frameNames(tasks)) +
       ", the first would be " + file + "; give --" + option +
       " that are there, or --skip-bad-frames to go on without");
}

// A file that all frames read would fail every one of them.
void SequencePlan::checkOfAll(const Path& path) const {
  const std::string& file = arguments_.*path.text;
  const bool isFile = path.option != std::string("--camera");
  if (!sequence_ || !isFile || file.empty() || missing(path).empty()) return;
  fail(std::string(path.option) + " " + file + ": there is no such file" +
           nearestFileHint(filled(path, tasks_.front())),
       ExitCode::InputUnreadable);
}

void SequencePlan::checkInputs() const {
  for (const char* option : {"--input", "--deep", "--kernel", "--mattes", "--camera"}) {
    const Path& path = pathOf(option);
    if (!path.pattern.hasFrame() && !path.pattern.hasView()) {
      checkOfAll(path);
      continue;
    }
    const std::vector<FrameTask> tasks = missing(path);
    if (tasks.empty() || (arguments_.skipBadFrames && tasks.size() < tasks_.size())) continue;
    failMissing(path, tasks);
  }
}

void SequencePlan::checkOutputs() const {
  std::set<std::string> folders;
  for (const char* option : {"--output", "--report"}) {
    const Path& path = pathOf(option);
    const std::string& text = arguments_.*path.text;
    if (text.empty() || text == kStandardOutput) continue;
    for (const FrameTask& task : tasks_) {
      throwIfInterrupted();
      const std::string file = filled(path, task);
      const std::string folder = std::filesystem::path(file).parent_path().string();
      if (folders.insert(option + folder).second) AtomicFile::checkPlace(file);
    }
  }
}

}  // namespace drevintool
