#include "render/ResultPicture.h"

#include <cstdint>
#include <memory>

#include "picture/ExrWriter.h"
#include "picture/HalfFloat.h"
#include "picture/PngWriter.h"
#include "render/HostPicture.h"

namespace drevintool {
namespace {

// Without a rendered channel of that name the node drew nothing into it.
FloatSamples renderedSamples(const embedded::RenderResult& result, const PlannedChannel& channel) {
  const auto plane = result.image.planes.find(DD::Image::findChannel(channel.hostName.c_str()));
  if (plane != result.image.planes.end()) return plane->second;
  const PixelBox box = pixelBox(result.image.box);
  return std::make_shared<std::vector<float>>(box.area());
}

bool becomesHalf(const PlannedChannel& channel, ResultType type) {
  if (type != ResultType::Input) return type == ResultType::Half;
  return channel.source != nullptr && std::holds_alternative<HalfSamples>(channel.source->samples);
}

Samples samplesOf(const embedded::RenderResult& result, const PlannedChannel& channel,
                  ResultType type) {
  const FloatSamples samples = renderedSamples(result, channel);
  if (becomesHalf(channel, type)) return halfSamples(*samples);
  return samples;
}

}  // namespace

bool isPng(const std::string& path) {
  const char last = path.back();
  return last == 'g' || last == 'G';
}

OutputPicture composeOutput(const Picture& input, const std::vector<PlannedChannel>& plan,
                            const embedded::RenderResult& result, const OutputFormat& format) {
  OutputPicture output;
  output.compression = format.compression;
  output.display = input.display;
  output.box = pixelBox(result.image.box);
  output.attributes = input.attributes;
  for (const PlannedChannel& channel : plan) {
    Samples samples = channel.rendered ? samplesOf(result, channel, format.type)
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
