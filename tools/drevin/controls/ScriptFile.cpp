#include "controls/ScriptFile.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <map>
#include <system_error>
#include <vector>

#include "controls/PluginSearch.h"
#include "picture/FileBytes.h"
#include "sequence/FramePattern.h"
#include "terminal/ExitCode.h"
#include "terminal/NameList.h"
#include "terminal/NearestName.h"
#include "terminal/OneLine.h"
#include "terminal/Signals.h"

namespace drevintool {
namespace {

[[noreturn]] void fail(const std::string& file, const std::string& reason,
                       ExitCode code = ExitCode::InputUnreadable) {
  throw ToolError(code, oneLine(scriptOrigin(file) + ": " + reason));
}

// Returns early once a signal was noted, also one that came just before.
void waitForInput() {
  constexpr int kMilliseconds = 100;
  pollfd input{STDIN_FILENO, POLLIN, 0};
  while (poll(&input, 1, kMilliseconds) <= 0)
    throwIfInterrupted();
}

// One byte more than a script may have tells that there is too much.
std::string standardInput() {
  std::string text;
  std::vector<char> buffer(std::size_t{1} << 16);
  while (text.size() <= kMostScriptBytes) {
    waitForInput();
    const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count == 0) break;
    if (count > 0) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR && errno != EAGAIN) {
      fail("-", std::generic_category().message(errno));
    }
    throwIfInterrupted();
  }
  return text;
}

// Its curves have the values of all frames; a file may have such a name all the same.
void refuseFramePlace(const std::string& file) {
  const FramePattern pattern(file);
  std::error_code error;
  if (!pattern.hasFrame() && !pattern.hasView()) return;
  if (std::filesystem::exists(file, error)) return;
  fail(file,
       "one script is for all frames and views, and its name has no place for them; name one file, "
       "whose curves have the values of each frame",
       ExitCode::Usage);
}

std::string textOf(const std::string& file) {
  if (file == "-") return standardInput();
  refuseFramePlace(file);
  FileBytes bytes(file, "script");
  if (bytes.size() > kMostScriptBytes) fail(file, "is larger than 64 MiB");
  return bytes.take(bytes.size());
}

std::string lineOf(const ScriptNode& node) {
  return "line " + std::to_string(node.line);
}

std::string nameOf(const ScriptNode& node) {
  const ScriptWord* name = node.find("name");
  return name == nullptr ? lineOf(node) : name->text;
}

// With the groups that it lies in.
std::string wholeNameOf(const ScriptNode& node) {
  const bool named = node.find("name") != nullptr;
  return (named && !node.group.empty() ? node.group + "." : "") + nameOf(node);
}

bool isCalled(const ScriptNode& node, const std::string& name) {
  return wholeNameOf(node) == name || nameOf(node) == name || lineOf(node) == name;
}

// What --node takes for each: its whole name, or its line where others have the same one.
std::vector<std::string> choicesOf(const std::vector<ScriptNode>& nodes) {
  std::map<std::string, int> counts;
  for (const ScriptNode& node : nodes)
    ++counts[wholeNameOf(node)];
  std::vector<std::string> choices;
  for (const ScriptNode& node : nodes) {
    const std::string name = wholeNameOf(node);
    choices.push_back(counts[name] == 1 ? shortName(name) : lineOf(node));
  }
  return choices;
}

// The nodes that a name stands for; a whole name wins over one without groups.
std::vector<ScriptNode> nodesCalled(const std::string& name, const std::vector<ScriptNode>& nodes) {
  std::vector<ScriptNode> found;
  const auto add = [&](const auto& fits) {
    if (found.empty()) std::copy_if(nodes.begin(), nodes.end(), std::back_inserter(found), fits);
  };
  add([&](const ScriptNode& node) { return wholeNameOf(node) == name; });
  add([&](const ScriptNode& node) { return isCalled(node, name); });
  return found;
}

// Takes the clones out, which have no values of their own here. Throws ToolError if only they would
// do.
void dropClones(const std::string& file, const std::string& name, std::vector<ScriptNode>& nodes) {
  const auto plain = std::stable_partition(nodes.begin(), nodes.end(),
                                           [](const ScriptNode& node) { return !node.clone; });
  const auto wanted = [&](const ScriptNode& node) { return name.empty() || isCalled(node, name); };
  const auto clone = std::find_if(plain, nodes.end(), wanted);
  if (clone != nodes.end() && std::none_of(nodes.begin(), plain, wanted)) {
    fail(file, "line " + std::to_string(clone->line) +
                   ": is a clone, whose values stand elsewhere; save it as a node of its own");
  }
  nodes.erase(plain, nodes.end());
}

}  // namespace

std::string scriptOrigin(const std::string& file) {
  return "--script " + file;
}

ScriptNode readScriptNode(const std::string& file, const std::string& name) {
  std::vector<ScriptNode> nodes;
  try {
    nodes = parseNodeScript(textOf(file), kClassName);
  } catch (const ScriptFault& fault) {
    fail(file, fault.what());
  }
  dropClones(file, name, nodes);
  if (nodes.empty()) fail(file, std::string("holds no node of the class ") + kClassName);
  const std::vector<ScriptNode> found = name.empty() ? nodes : nodesCalled(name, nodes);
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    const std::vector<std::string> names = choicesOf(nodes);
    fail(file, "holds no node '" + name + "'" + nearestHintAndList(name, names, nameList(names)),
         ExitCode::Usage);
  }
  const std::string several = name.empty() ? "" : " called " + name;
  // Among all: a name of one of those found may be that of another one too.
  std::vector<std::string> names;
  const std::vector<std::string> choices = choicesOf(nodes);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (name.empty() || isCalled(nodes[i], name)) names.push_back(choices[i]);
  }
  fail(file, "holds several nodes" + several + "; choose with --node: " + nameList(names),
       ExitCode::Usage);
}

}  // namespace drevintool
