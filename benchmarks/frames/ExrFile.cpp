#include "frames/ExrFile.h"

#include <OpenEXR/ImfCompression.h>

#include <utility>
#include <vector>

#include "picture/ExrWriter.h"
#include "picture/HalfFloat.h"

namespace drevin::bench {

drevintool::OutputPicture outputPicture(const embedded::Image& image, bool halfColours) {
  drevintool::OutputPicture picture;
  picture.display = {0, 0, image.box.w() - 1, image.box.h() - 1};
  picture.box = {0, 0, image.box.w(), image.box.h()};
  const std::vector<std::pair<const char*, DD::Image::Channel>> channels = {
      {"R", DD::Image::Chan_Red},
      {"G", DD::Image::Chan_Green},
      {"B", DD::Image::Chan_Blue},
      {"A", DD::Image::Chan_Alpha},
      {"Z", DD::Image::Chan_Z}};
  for (const auto& [name, channel] : channels) {
    const auto& plane = image.planes.at(channel);
    const bool half = halfColours && channel != DD::Image::Chan_Z;
    picture.channels.push_back(
        {name, name,
         half ? drevintool::Samples(drevintool::halfSamples(*plane)) : drevintool::Samples(plane)});
  }
  return picture;
}

void writeExr(const embedded::Image& image, const std::string& path) {
  drevintool::OutputPicture picture = outputPicture(image, false);
  picture.compression = Imf::NO_COMPRESSION;
  drevintool::writeExr(picture, path);
}

}  // namespace drevin::bench
