#include "controls/ScriptFile.h"

#include <cstdio>
#include <vector>

#include "controls/PluginSearch.h"
#include "picture/FileBytes.h"
#include "terminal/ExitCode.h"
#include "terminal/NearestName.h"
#include "terminal/OneLine.h"

namespace drevintool {
namespace {

[[noreturn]] void fail(const std::string& file, const std::string& reason,
                       ExitCode code = ExitCode::InputUnreadable) {
  throw ToolError(code, oneLine(scriptOrigin(file) + ": " + reason));
}

// One byte more than a script may have tells that there is too much.
std::string standardInput() {
  std::string text;
  std::vector<char> buffer(std::size_t{1} << 16);
  while (text.size() <= kMostScriptBytes) {
    const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stdin);
    if (count == 0) break;
    text.append(buffer.data(), count);
  }
  return text;
}

std::string textOf(const std::string& file) {
  if (file == "-") return standardInput();
  FileBytes bytes(file);
  if (bytes.size() > kMostScriptBytes) fail(file, "is larger than 64 MiB");
  return bytes.take(bytes.size());
}

std::string nameOf(const ScriptNode& node) {
  const ScriptWord* name = node.find("name");
  return name == nullptr ? "line " + std::to_string(node.line) : name->text;
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
  if (nodes.empty()) fail(file, std::string("holds no node of the class ") + kClassName);
  if (name.empty() && nodes.size() == 1) return nodes.front();
  std::vector<std::string> names;
  std::string list;
  for (const ScriptNode& node : nodes) {
    if (!name.empty() && nameOf(node) == name) return node;
    names.push_back(nameOf(node));
    list += (list.empty() ? "" : ", ") + names.back();
  }
  if (name.empty()) fail(file, "holds several nodes; choose with --node: " + list, ExitCode::Usage);
  fail(file, "holds no node '" + name + "'" + nearestHintAndList(name, names, list),
       ExitCode::Usage);
}

}  // namespace drevintool
