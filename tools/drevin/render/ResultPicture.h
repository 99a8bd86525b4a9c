#pragma once

/// The picture that a render leaves, and its file.

#include <string>
#include <vector>

#include "EmbeddedHost/Render.h"
#include "picture/OutputFormat.h"
#include "picture/OutputPicture.h"
#include "picture/Picture.h"
#include "render/ChannelPlan.h"

namespace drevintool {

/// Whether the name is that of a PNG file; all others are OpenEXR files.
bool isPng(const std::string& path);

/// The planned channels over the box that was rendered: those that the node made, in the type that
/// the format asks for, and the samples of `input` for the others.
OutputPicture composeOutput(const Picture& input, const std::vector<PlannedChannel>& plan,
                            const embedded::RenderResult& result, const OutputFormat& format);

/// Writes the picture in the format of the name. Throws ToolError (OutputNotWritten, or Interrupted
/// and Terminated on a signal).
void writePicture(const OutputPicture& output, const std::string& path);

}  // namespace drevintool
