#pragma once

/// The command `drevin demo`.

#include "arguments/DemoArguments.h"
#include "demo/DemoScene.h"

namespace drevintool {

/// Writes street.exr (R, G, B, A, Z), street.deep.exr (R, G, B, A, Z, ZBack), mattes.exr,
/// kernel.exr and camera.txt into the folder, which is made if missing, and prints commands to try
/// on them, as text or as JSON. Returns 0. Throws ToolError (OutputNotWritten, or Interrupted and
/// Terminated on a signal).
int runDemo(const DemoArguments& arguments, int width = kDemoWidth);

}  // namespace drevintool
