#pragma once

/// A result ready to be written.

#include <OpenEXR/ImfCompression.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "picture/Picture.h"

namespace drevintool {

struct OutputChannel {
  std::string fileName;
  std::string hostName;
  Samples samples;  ///< of the output picture's box
};

struct OutputPicture {
  DisplayWindow display;
  PixelBox box;  ///< in the host's coordinates: row 0 is the bottom row of the display window
  std::vector<OutputChannel> channels;
  std::shared_ptr<const HeaderAttributes> attributes;  ///< null: none
  std::optional<Imf::Compression> compression;         ///< none: the writer's choice
};

/// The samples of a channel of `picture` over `box`, bits unchanged. Outside the picture's box the
/// nearest edge pixel repeats, except for unsigned integers (object numbers), which are 0 there;
/// all are 0 if the picture's box is empty.
Samples cutSamples(const Picture& picture, const PictureChannel& channel, const PixelBox& box);

}  // namespace drevintool
