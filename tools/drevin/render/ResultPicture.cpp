#include "render/ResultPicture.h"

#include <memory>

#include "picture/ExrWriter.h"
#include "picture/PngWriter.h"
#include "render/HostPicture.h"

namespace drevintool {
namespace {

// Without a rendered channel of that name the node drew nothing into it.
Samples renderedSamples(const embedded::RenderResult& result, const PlannedChannel& channel) {
  const auto plane = result.image.planes.find(DD::Image::findChannel(channel.hostName.c_str()));
  if (plane != result.image.planes.end()) return FloatSamples(plane->second);
  const PixelBox box = pixelBox(result.image.box);
  return FloatSamples(std::make_shared<std::vector<float>>(box.area()));
}

}  // namespace

bool isPng(const std::string& path) {
  const char last = path.back();
  return last == 'g' || last == 'G';
}

OutputPicture composeOutput(const Picture& input, const std::vector<PlannedChannel>& plan,
                            const embedded::RenderResult& result) {
  OutputPicture output;
  output.display = input.display;
  output.box = pixelBox(result.image.box);
  output.attributes = input.attributes;
  for (const PlannedChannel& channel : plan) {
    Samples samples = channel.rendered ? renderedSamples(result, channel)
                                       : cutSamples(input, *channel.source, output.box);
    output.channels.push_back({channel.fileName, channel.hostName, std::move(samples)});
  }
  return output;
}

void writePicture(const OutputPicture& output, const std::string& path) {
  if (isPng(path)) {
    writePng(output, path);
  } else {
    writeExr(output, path);
  }
}

}  // namespace drevintool
