#pragma once

namespace drevintool {

/// Writes what is left of standard output. Throws ToolError (OutputNotWritten) if some of it was
/// lost: what is printed there is a result like any other. A reader that has enough and goes, as
/// `head` does, is no failure.
void finishStandardOutput();

}  // namespace drevintool
