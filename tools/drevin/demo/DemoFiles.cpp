#include "demo/DemoFiles.h"

#include <Imath/half.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "picture/AtomicFile.h"
#include "picture/ChannelNames.h"
#include "picture/ExrWriter.h"

namespace drevintool {
namespace {

// The samples of a plane turned upward, each through `convert`.
template <typename Value, typename Convert>
std::shared_ptr<std::vector<Value>> upward(const DemoPicture& picture,
                                           const std::vector<float>& plane, Convert convert) {
  auto samples = std::make_shared<std::vector<Value>>();
  samples->reserve(plane.size());
  const auto width = static_cast<std::size_t>(picture.width);
  for (std::size_t end = plane.size(); end >= width && width > 0; end -= width) {
    for (std::size_t i = end - width; i < end; ++i)
      samples->push_back(convert(plane[i]));
  }
  return samples;
}

Samples samplesOf(const DemoPicture& picture, const std::string& name,
                  const std::vector<float>& plane) {
  if (name == "Z") return upward<float>(picture, plane, [](float v) { return v; });
  return upward<std::uint16_t>(picture, plane, [](float v) {
    constexpr float kMost = 65504.0F;
    return imath_float_to_half(std::clamp(v, -kMost, kMost));
  });
}

}  // namespace

void writeDemoPicture(const DemoPicture& picture, const std::string& path) {
  OutputPicture output;
  output.display = {0, 0, picture.width - 1, picture.height - 1};
  output.box = {0, 0, picture.width, picture.height};
  for (const auto& [name, plane] : picture.planes) {
    output.channels.push_back({name, hostChannelName(name), samplesOf(picture, name, plane)});
  }
  writeExr(output, path);
}

void writeDemoText(const std::string& line, const std::string& path) {
  AtomicFile file(path);
  const std::string whole = line + "\n";
  file.write(whole.data(), whole.size());
  file.commit();
}

}  // namespace drevintool
