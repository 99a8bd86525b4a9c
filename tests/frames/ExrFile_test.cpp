#include "frames/ExrFile.h"

#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfInputFile.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "frames/FrameScenes.h"

namespace drevin::bench {
namespace {

constexpr int width = 6;
constexpr int height = 4;

/// A channel as the file has it, its topmost row first.
std::vector<float> readChannel(const std::string& path, const char* name) {
  Imf::InputFile file(path.c_str());
  std::vector<float> values(static_cast<std::size_t>(width) * height);
  Imf::FrameBuffer buffer;
  buffer.insert(name, Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(values.data()), sizeof(float),
                                 sizeof(float) * width));
  file.setFrameBuffer(buffer);
  file.readPixels(0, height - 1);
  return values;
}

TEST(WriteExr, everyChannel_isReadBackWithTheTopRowFirst) {
  const embedded::Image image = frameScene("scene", width, height);
  const std::string path = testing::TempDir() + "drevin_frames_scene.exr";
  writeExr(image, path);
  const std::vector<std::pair<const char*, DD::Image::Channel>> channels = {
      {"R", DD::Image::Chan_Red},
      {"G", DD::Image::Chan_Green},
      {"B", DD::Image::Chan_Blue},
      {"A", DD::Image::Chan_Alpha},
      {"Z", DD::Image::Chan_Z}};
  for (const auto& [name, channel] : channels) {
    const std::vector<float> values = readChannel(path, name);
    const embedded::Plane& plane = *image.planes.at(channel);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const std::size_t row = height - 1 - i / width;
      EXPECT_EQ(values[i], plane[row * width + i % width]) << name << " " << i;
    }
  }
  std::remove(path.c_str());
}

TEST(WriteExr, folderThatIsNotThere_throws) {
  EXPECT_THROW(writeExr(frameScene("scene", width, height), "/nowhere/at/all.exr"), std::exception);
}

}  // namespace
}  // namespace drevin::bench
