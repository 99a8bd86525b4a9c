#include "frames/ExrFile.h"

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfOutputFile.h>

#include <utility>
#include <vector>

namespace drevin::bench {

using DD::Image::Channel;

void writeExr(const embedded::Image& image, const std::string& path) {
  const int width = image.box.w();
  const int height = image.box.h();
  const std::vector<std::pair<const char*, Channel>> channels = {{"R", DD::Image::Chan_Red},
                                                                 {"G", DD::Image::Chan_Green},
                                                                 {"B", DD::Image::Chan_Blue},
                                                                 {"A", DD::Image::Chan_Alpha},
                                                                 {"Z", DD::Image::Chan_Z}};
  Imf::Header header(width, height);
  header.compression() = Imf::NO_COMPRESSION;
  Imf::FrameBuffer buffer;
  const std::size_t rowBytes = static_cast<std::size_t>(width) * sizeof(float);
  std::vector<embedded::Plane> planes;  // the file's first row is the topmost
  planes.reserve(channels.size());
  for (const auto& [name, channel] : channels) {
    header.channels().insert(name, Imf::Channel(Imf::FLOAT));
    embedded::Plane& plane = planes.emplace_back();
    for (int y = height; y-- > 0;) {
      const auto row = image.planes.at(channel)->begin() + static_cast<std::ptrdiff_t>(y) * width;
      plane.insert(plane.end(), row, row + width);
    }
    buffer.insert(name, Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(plane.data()), sizeof(float),
                                   rowBytes));
  }
  Imf::OutputFile file(path.c_str(), header);
  file.setFrameBuffer(buffer);
  file.writePixels(height);
}

}  // namespace drevin::bench
