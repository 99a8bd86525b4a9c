#include "controls/ScriptFile.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <vector>

#include "controls/PluginSearch.h"
#include "picture/FileBytes.h"
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

std::string textOf(const std::string& file) {
  if (file == "-") return standardInput();
  FileBytes bytes(file, "script");
  if (bytes.size() > kMostScriptBytes) fail(file, "is larger than 64 MiB");
  return bytes.take(bytes.size());
}

std::string nameOf(const ScriptNode& node) {
  const ScriptWord* name = node.find("name");
  return name == nullptr ? "line " + std::to_string(node.line) : name->text;
}

// Takes the clones out, which have no values of their own here. Throws ToolError if only they would
// do.
void dropClones(const std::string& file, const std::string& name, std::vector<ScriptNode>& nodes) {
  const auto plain = std::stable_partition(nodes.begin(), nodes.end(),
                                           [](const ScriptNode& node) { return !node.clone; });
  const auto wanted = [&](const ScriptNode& node) { return name.empty() || nameOf(node) == name; };
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
  if (name.empty() && nodes.size() == 1) return nodes.front();
  std::vector<std::string> names;
  for (const ScriptNode& node : nodes) {
    if (!name.empty() && nameOf(node) == name) return node;
    names.push_back(shortName(nameOf(node)));
  }
  const std::string list = nameList(names);
  if (name.empty()) fail(file, "holds several nodes; choose with --node: " + list, ExitCode::Usage);
  fail(file, "holds no node '" + name + "'" + nearestHintAndList(name, names, list),
       ExitCode::Usage);
}

}  // namespace drevintool
