#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// The examples of host/README.md, word for word.
// [example]
#include "EmbeddedHost/ImageInput.h"
#include "EmbeddedHost/Plugin.h"
#include "EmbeddedHost/Render.h"

/// Renders `picture` through the class `name` of a plug-in, with one control set.
embedded::Image process(const std::string& plugin, const std::string& name,
                        const embedded::Image& picture, const std::string& control,
                        const std::string& value) {
  embedded::ImageInput input(picture);
  Node node(embedded::loadPlugin(plugin, name));  // destroyed before its input
  node.connect(0, &input);

  DD::Image::Knob* knob = node.knob(control);
  if (knob == nullptr || !node.setByHand(*knob, value)) {
    throw std::invalid_argument(control + " does not take " + value);
  }

  embedded::RenderOptions options;
  options.channels = DD::Image::Mask_All;  // whatever the operator announces
  const embedded::RenderResult result = embedded::render(node, options);
  for (const embedded::Message& message : result.messages) {
    std::fprintf(stderr, "%s\n", message.text.c_str());
  }
  if (result.status != embedded::RenderStatus::Done) {
    throw std::runtime_error("no picture");
  }
  return result.image;
}
// [example]

// [example]
#include "EmbeddedHost/DeepInput.h"

/// What an operator with a deep input makes of one pixel: a card that stands in fog.
embedded::RenderResult cardInFog(const DD::Image::Op::Description& deepReader) {
  using namespace DD::Image;
  auto picture = std::make_shared<embedded::DeepImage>(Format(1, 1), Box(0, 0, 1, 1),
                                                       Mask_Red | Mask_Alpha | Mask_Deep);
  // Red, alpha, front and back of each sample: the channels in ascending order.
  picture->setPixel(0, 0,
                    {0.75F, 1.0F, 5.0F, 5.0F,    // the card
                     0.10F, 0.5F, 1.0F, 9.0F});  // the fog

  embedded::DeepInput input(picture);
  Node node(deepReader);  // destroyed before its input
  node.connect(0, &input);
  embedded::RenderOptions options;
  options.channels = Mask_All;
  return embedded::render(node, options);
}
// [example]

#include "host/FlattenOp.h"
#include "host/HostBench.h"

namespace {

std::string textOf(const std::string& file) {
  std::FILE* stream = std::fopen(file.c_str(), "rb");
  std::string all;
  for (int c = stream == nullptr ? EOF : std::fgetc(stream); c != EOF; c = std::fgetc(stream))
    all += static_cast<char>(c);
  if (stream != nullptr) std::fclose(stream);
  return all;
}

/// All that stands between a line `from` and the next line `to`.
std::vector<std::string> between(const std::string& text, const std::string& from,
                                 const std::string& to) {
  std::vector<std::string> parts;
  std::size_t begin = text.find("\n" + from + "\n");
  while (begin != std::string::npos) {
    const std::size_t first = begin + from.size() + 2;
    const std::size_t end = text.find("\n" + to + "\n", first);
    if (end == std::string::npos) break;
    parts.push_back(text.substr(first, end - first));
    begin = text.find("\n" + from + "\n", end + to.size() + 1);
  }
  return parts;
}

}  // namespace

TEST(ReadmeExample, rendersThroughAPlugin) {
  const embedded::Image picture = smooth::markedImage(DD::Image::Box(0, 0, 4, 4));
  const embedded::Image image = process(HOST_TEST_MODULE, "HostTestModule", picture, "factor", "3");
  EXPECT_EQ(image.box, picture.box);
  EXPECT_EQ(image.planes.at(DD::Image::Chan_Red)->at(5),
            3.0F * smooth::markedValue(1, 1, DD::Image::Chan_Red));
  EXPECT_THROW(process(HOST_TEST_MODULE, "HostTestModule", picture, "factor", "much"),
               std::invalid_argument);
}

TEST(ReadmeExample, rendersADeepPicture) {
  const embedded::RenderResult result = cardInFog(deep::FlattenOp::description);
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  const float through = std::sqrt(0.5F);  // the fog in front of the card
  EXPECT_NEAR(result.image.planes.at(DD::Image::Chan_Red)->at(0),
              0.1F * (1.0F - through) / 0.5F + through * 0.75F, 1e-6F);
}

TEST(ReadmeExample, areThoseInTheDocument) {
  const std::vector<std::string> tested =
      between(textOf(HOST_README_TEST), "// [example]", "// [example]");
  ASSERT_EQ(tested.size(), 2U);
  EXPECT_GT(tested[0].size(), 500U);
  EXPECT_EQ(between(textOf(HOST_README), "```cpp", "```"), tested);
}
