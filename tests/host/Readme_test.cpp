#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <string>

// The example of host/README.md, word for word.
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

#include "host/HostBench.h"

TEST(ReadmeExample, rendersThroughAPlugin) {
  const embedded::Image picture = smooth::markedImage(DD::Image::Box(0, 0, 4, 4));
  const embedded::Image image = process(HOST_TEST_MODULE, "HostTestModule", picture, "factor", "3");
  EXPECT_EQ(image.box, picture.box);
  EXPECT_EQ(image.planes.at(DD::Image::Chan_Red)->at(5),
            3.0F * smooth::markedValue(1, 1, DD::Image::Chan_Red));
  EXPECT_THROW(process(HOST_TEST_MODULE, "HostTestModule", picture, "factor", "much"),
               std::invalid_argument);
}

TEST(ReadmeExample, isTheOneInTheDocument) {
  const auto between = [](const std::string& file, const std::string& from, const std::string& to) {
    const std::string text = [&] {
      std::FILE* stream = std::fopen(file.c_str(), "rb");
      std::string all;
      for (int c = stream == nullptr ? EOF : std::fgetc(stream); c != EOF; c = std::fgetc(stream))
        all += static_cast<char>(c);
      if (stream != nullptr) std::fclose(stream);
      return all;
    }();
    const std::size_t begin = text.find(from);
    if (begin == std::string::npos) return std::string();
    const std::size_t first = begin + from.size();
    return text.substr(first, text.find(to, first) - first);
  };
  const std::string tested = between(__FILE__, "// [example]\n", "// [example]\n");
  ASSERT_GT(tested.size(), 500U);
  EXPECT_EQ(between(HOST_README, "```cpp\n", "```"), tested);
}
