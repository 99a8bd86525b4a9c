#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

#include "CommandRun.h"
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Node.h"
#include "EmbeddedHost/Plugin.h"
#include "EmbeddedHost/Render.h"

namespace drevintool::testing {
namespace {

using DD::Image::Channel;
using DD::Image::ChannelSet;

constexpr int kWidth = 48;
constexpr int kHeight = 32;

embedded::Image pictureOf(int frame) {
  embedded::Image image;
  image.format = DD::Image::Format(kWidth, kHeight, 1.0);
  image.box = DD::Image::Box(0, 0, kWidth, kHeight);
  ChannelSet channels(DD::Image::Mask_RGBA);
  channels += DD::Image::Chan_Z;
  for (const Channel z : channels) {
    auto plane = std::make_shared<embedded::Plane>();
    for (int i = 0; i < kWidth * kHeight; ++i) {
      const int noise = (i * 7919 + frame * 104729 + static_cast<int>(z) * 31) % 101;
      plane->push_back(static_cast<float>(z == DD::Image::Chan_Z ? 50 + noise : noise) * 0.5F);
    }
    image.planes[z] = plane;
  }
  return image;
}

// One frame from its node to its planes, as every frame of a sequence has them.
embedded::Image rendered(int frame) {
  embedded::ImageInput input(pictureOf(frame));
  Node node(embedded::loadPlugin(builtPlugin(), "Drevin"));
  node.connect(0, &input);
  node.setByHand(*node.knob("multiplier"), std::vector<double>{6.0 + frame});
  node.setByHand(*node.knob("focalPlane"), std::vector<double>{40.0});
  node.setByHand(*node.knob("kChrAbb"), std::vector<double>{frame % 2 == 0 ? 2.0 : 0.0});
  embedded::RenderOptions options;
  options.channels = ChannelSet(DD::Image::Mask_RGBA);
  options.threads = 2;
  embedded::RenderResult result = embedded::render(node, options);
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  return result.image;
}

void expectSamePlanes(const embedded::Image& image, const embedded::Image& other) {
  ASSERT_EQ(image.planes.size(), 4U);
  ASSERT_EQ(other.planes.size(), 4U);
  for (const auto& [channel, plane] : image.planes)
    EXPECT_TRUE(*plane == *other.planes.at(channel)) << static_cast<int>(channel);
}

TEST(NodesTogether, renderedAtOneTime_areTheSameAsAlone) {
  constexpr int kFrames = 6;
  std::vector<embedded::Image> alone;
  for (int frame = 0; frame < kFrames; ++frame)
    alone.push_back(rendered(frame));
  for (int round = 0; round < 3; ++round) {
    std::vector<embedded::Image> together(kFrames);
    std::vector<std::thread> threads;
    for (int frame = 0; frame < kFrames; ++frame)
      threads.emplace_back(
          [&together, frame] { together[static_cast<std::size_t>(frame)] = rendered(frame); });
    for (std::thread& thread : threads)
      thread.join();
    for (std::size_t frame = 0; frame < kFrames; ++frame)
      expectSamePlanes(alone[frame], together[frame]);
  }
}

TEST(NodesTogether, nodesMadeAtOneTime_haveControlsOfTheirOwn) {
  const auto& description = embedded::loadPlugin(builtPlugin(), "Drevin");
  std::vector<double> values(8);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < values.size(); ++i) {
    threads.emplace_back([&values, &description, i] {
      Node node(description);
      for (int round = 0; round < 50; ++round) {
        node.setByHand(*node.knob("bloom"), std::vector<double>{0.125 * static_cast<double>(i)});
        node.showPanel();
        node.storeKnobs();
      }
      values[i] = node.knob("bloom")->get_value();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  for (std::size_t i = 0; i < values.size(); ++i)
    EXPECT_EQ(values[i], 0.125 * static_cast<double>(i));
}

}  // namespace
}  // namespace drevintool::testing
