#pragma once

/// The node that a file of the host's script holds.

#include <string>

#include "controls/NodeScript.h"

namespace drevintool {

/// The node of class Drevin in the file ("-": standard input), or the one that is called so: its
/// name with the groups that it lies in ("Outer.Inner.Drevin1"), its name alone if no other one has
/// it, or its line ("line 12"). Throws
/// ToolError: InputUnreadable if the file cannot be read, is no script or holds no such node;
/// Usage, with the names that there are, if it holds several and none is named, or none of that
/// name; Interrupted or Terminated for a signal while it waits for standard input.
ScriptNode readScriptNode(const std::string& file, const std::string& name);

/// The file's name in messages.
std::string scriptOrigin(const std::string& file);

}  // namespace drevintool
