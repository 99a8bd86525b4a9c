#pragma once

/// The channels of a deep part as the host knows them.

#include <string>
#include <vector>

#include "DDImage/ChannelSet.h"
#include "picture/ExrHeaderScan.h"

namespace drevintool {

struct DeepChannel {
  std::string fileName;
  DD::Image::Channel number;
};

struct DeepChannels {
  std::vector<DeepChannel> stored;  ///< those that are read, each host channel once
  DD::Image::ChannelSet served;     ///< those, and front, back and alpha
  bool hasBack = false;             ///< else the back is the front
  bool hasAlpha = false;            ///< else alpha is 1
};

/// Z is deep.front, ZBack is deep.back, the others have the names of flat channels. Of two channels
/// with one host name the first counts; channels beyond the host's 1023 numbers are left out.
/// Throws ToolError (InputUnreadable) with one line that names the file if there is no front.
DeepChannels planDeepChannels(const ExrPartFacts& part, const std::string& path);

}  // namespace drevintool
