#pragma once

/// Which channels a result has, and where each comes from.

#include <string>
#include <vector>

#include "DDImage/ChannelSet.h"
#include "EmbeddedHost/Node.h"
#include "picture/Picture.h"

namespace drevintool {

struct PlannedChannel {
  std::string fileName;
  std::string hostName;
  const PictureChannel* source = nullptr;  ///< in input 0; null for a channel that the node makes
  bool rendered = false;                   ///< by the node; otherwise its samples pass through
};

/// The channels of the result: those that `wanted` names (file or host names, rgb, rgba, all), or
/// all of input 0's, with R, G and B where the node's output type makes them.
///
/// What the node changes is rendered: the channels of bokehChannels for the pictures, R, G and B
/// for the views of depth, every channel for the filter shape. Unsigned integers always pass
/// through. Throws ToolError (InputUnreadable) with the list of what there is for a channel that
/// there is not.
std::vector<PlannedChannel> planChannels(const Picture& input, const Node& node,
                                         const std::vector<std::string>& wanted);

/// The rendered ones, as the host's set.
DD::Image::ChannelSet renderedSet(const std::vector<PlannedChannel>& plan);

/// Throws ToolError (InputUnreadable) with the list of what there is if the output type reads a
/// depth and input 0 has no channel depthChannel. A depthChannel of none is let pass.
void checkDepthChannel(const Picture& input, const Node& node);

/// One warning line for the rendered channels that an aperture image in use lacks, where no other
/// channel stands in for them: such channels come out black. Empty if there is nothing to warn of.
std::string missingKernelWarning(const Picture& kernel, const Node& node,
                                 const std::vector<PlannedChannel>& plan);

}  // namespace drevintool
