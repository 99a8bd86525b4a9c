#pragma once

/// The node whose controls are fuzzed. Its sources are linked in, so that there is no plug-in to
/// load.

#include <optional>
#include <string>

#include "EmbeddedHost/Node.h"
#include "EmbeddedHost/Plugin.h"
#include "Expect.h"
#include "controls/ControlChanges.h"
#include "controls/PluginSearch.h"
#include "terminal/ExitCode.h"

namespace drevinfuzz {

inline const DD::Image::Op::Description& nodeClass() {
  const DD::Image::Op::Description* found = embedded::findClass(drevintool::kClassName);
  expect(found != nullptr, "the class of the node is registered");
  return *found;
}

/// Makes a node with the changes, at a frame: they are refused with one line that names `origin`,
/// or all of them are applied.
inline void applyChanges(const drevintool::NodeArguments& arguments, const std::string& origin) {
  constexpr double kFrame = 10.5;
  try {
    const Node plain(nodeClass());
    const drevintool::ControlChanges changes(arguments, plain);
    Node node(nodeClass());
    changes.applyValues(node, kFrame);
    changes.applyChannels(node, [](const auto&, const auto&) { return nullptr; });
    static_cast<void>(changes.curves(node));
  } catch (const drevintool::ToolError& error) {
    const bool theirs = error.code() == drevintool::ExitCode::Usage ||
                        error.code() == drevintool::ExitCode::InputUnreadable;
    expect(theirs, "the user is told of a fault of his own");
    expectOneLine(error.what(), origin);
  }
}

}  // namespace drevinfuzz
