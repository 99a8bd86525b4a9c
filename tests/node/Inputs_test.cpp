#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "EmbeddedHost/Plugin.h"
#include "node/DeepStandIns.h"
#include "node/NodeBench.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

using DD::Image::Op;

const char* const cameraControls[] = {"focalPlane", "focalLength", "fStop", "apertureWidth",
                                      "apertureHeight"};

embedded::Image smallPicture() {
  return hostImage(plainScene(4, 3, 10.0F).image);
}

TEST(NodeClass, registration_hasTheNameAndTheBuildString) {
  const Op::Description* description = embedded::findClass("Drevin");
  ASSERT_NE(description, nullptr);
  EXPECT_STREQ(description->name, "Drevin");
  EXPECT_STREQ(description->compiled, "Oct  4 2019 for 12.0");
}

TEST(NodeClass, classAndHelp_areTheName) {
  NodeBench bench;
  EXPECT_STREQ(bench.drevin().Class(), "Drevin");
  EXPECT_STREQ(bench.drevin().node_help(), "Drevin");
}

/// A picture that carries metadata.
class TaggedPicture : public embedded::ImageInput {
 public:
  TaggedPicture() : ImageInput(smallPicture()) { tags_.setData("input/filename", "street.exr"); }
  const DD::Image::MetaData::Bundle& _fetchMetaData(const char* /*key*/) override { return tags_; }

 private:
  DD::Image::MetaData::Bundle tags_;
};

TEST(NodeClass, metadata_isEmptyWhateverTheInputHas) {
  TaggedPicture picture;
  ASSERT_FALSE(picture.fetchMetaData(nullptr).empty());
  NodeBench bench;
  ASSERT_TRUE(bench.connect(0, &picture));
  EXPECT_TRUE(bench.drevin().fetchMetaData(nullptr).empty());
  EXPECT_TRUE(bench.drevin().fetchMetaData("input/filename").empty());
  bench.connect(0, nullptr);
}

TEST(NodeInputs, count_isFive) {
  NodeBench bench;
  EXPECT_EQ(bench.drevin().inputs(), 5);
}

TEST(NodeInputs, labels_areTheFiveNamesAndEmptyBeyond) {
  NodeBench bench;
  const char* const labels[] = {"Input", "Kernel", "Camera", "Deep Input", "Mattes"};
  char buffer[64] = "";
  for (int i = 0; i < 5; ++i) {
    EXPECT_STREQ(bench.drevin().input_label(i, buffer), labels[i]);
  }
  for (const int beyond : {5, 6, 1000}) {
    EXPECT_STREQ(bench.drevin().input_label(beyond, buffer), "");
  }
}

TEST(NodeInputs, unconnected_haveAStandInForTheImageOnly) {
  NodeBench bench;
  const std::unique_ptr<Op> standIn(bench.drevin().default_input(0));
  EXPECT_NE(standIn, nullptr);
  for (int i = 1; i < 5; ++i) {
    EXPECT_EQ(bench.drevin().default_input(i), nullptr);
  }
  bench.validate();
  EXPECT_NE(bench.drevin().Op::input(0), nullptr);
  for (int i = 1; i < 5; ++i) {
    EXPECT_EQ(bench.drevin().Op::input(i), nullptr);
  }
}

TEST(NodeInputs, null_isRefusedEverywhere) {
  NodeBench bench;
  for (int i = 0; i < 5; ++i) {
    EXPECT_FALSE(bench.drevin().test_input(i, nullptr));
  }
}

TEST(NodeInputs, imageOperator_isTakenByImageKernelAndMattes) {
  NodeBench bench;
  embedded::ImageInput image(smallPicture());
  const bool taken[] = {true, true, false, false, true};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(bench.drevin().test_input(i, &image), taken[i]) << i;
  }
}

TEST(NodeInputs, camera_isTakenByTheCameraInputOnly) {
  NodeBench bench;
  embedded::CameraInput camera({});
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(bench.drevin().test_input(i, &camera), i == 2) << i;
  }
}

TEST(NodeInputs, deepOperator_isTakenByTheDeepInputOnly) {
  NodeBench bench;
  DeepStandIn deep({0, 0, 4, 3}, DD::Image::Mask_Deep);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(bench.drevin().test_input(i, &deep), i == 3) << i;
  }
}

TEST(NodeInputs, deepOperatorThatIsAnImageToo_isTakenByAllButTheCamera) {
  NodeBench bench;
  DeepImageStandIn both(smallPicture());
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(bench.drevin().test_input(i, &both), i != 2) << i;
  }
}

/// Names of all controls that are greyed out, in order.
std::vector<std::string> greyedOut(NodeBench& bench) {
  std::vector<std::string> names;
  for (const auto& knob : bench.node().knobs()) {
    if (!knob->isEnabled()) names.push_back(knob->name());
  }
  return names;
}

TEST(Camera, connected_greysOutExactlyTheFiveLensControls) {
  NodeBench bench;
  bench.set("filmFormat", 9);
  const std::vector<std::string> before = greyedOut(bench);
  bench.connectCamera({});
  std::vector<std::string> expected = before;
  for (const char* name : cameraControls)
    expected.emplace_back(name);
  std::vector<std::string> after = greyedOut(bench);
  std::sort(expected.begin(), expected.end());
  std::sort(after.begin(), after.end());
  EXPECT_EQ(after, expected);
}

TEST(Camera, disconnected_enablesTheFiveAlsoForAPredefinedFilmBack) {
  NodeBench bench;
  EXPECT_FALSE(bench.enabled("apertureWidth"));
  bench.connectCamera({});
  EXPECT_FALSE(bench.enabled("focalPlane"));
  EXPECT_TRUE(bench.connect(2, nullptr));
  for (const char* name : cameraControls) {
    EXPECT_TRUE(bench.enabled(name)) << name;
  }
}

TEST(Camera, otherOperatorOnItsInput_enablesTheFive) {
  NodeBench bench;
  bench.connectCamera({});
  embedded::ImageInput image(smallPicture());
  bench.drevin().set_input(2, &image, 0, 0);
  for (const char* name : cameraControls) {
    EXPECT_TRUE(bench.enabled(name)) << name;
  }
  bench.drevin().set_input(2, nullptr, 0, 0);
}

TEST(Camera, otherInputs_leaveTheFiveAlone) {
  NodeBench bench;
  bench.connectCamera({});
  embedded::ImageInput image(smallPicture());
  EXPECT_TRUE(bench.connect(0, &image));
  for (const char* name : cameraControls) {
    EXPECT_FALSE(bench.enabled(name)) << name;
  }
  bench.connect(0, nullptr);
}

TEST(Camera, values_winOverTheControls) {
  NodeBench bench(plainScene(4, 3, 10.0F));
  embedded::CameraValues values;
  values.focalLength = 85.0;
  values.fStop = 1.8;
  values.focalPlane = 4.25;
  values.horizontalAperture = 36.0;
  values.verticalAperture = 24.0;
  bench.connectCamera(values);
  bench.validate();
  EXPECT_EQ(bench.settings().focalLength, 85.0F);
  EXPECT_EQ(bench.settings().fStop, 1.8F);
  EXPECT_EQ(bench.settings().focalPlane, 4.25F);
  EXPECT_EQ(bench.settings().apertureWidth, 36.0F);
  EXPECT_EQ(bench.settings().apertureHeight, 24.0F);
}

TEST(Camera, disconnected_givesTheControlsTheirValuesBack) {
  NodeBench bench(plainScene(4, 3, 10.0F));
  bench.set("focalPlane", 17.0);
  bench.connectCamera({});
  bench.validate();
  bench.connect(2, nullptr);
  bench.validate();
  EXPECT_EQ(bench.settings().focalPlane, 17.0F);
  EXPECT_EQ(bench.settings().focalLength, 35.0F);
}

TEST(NodeHash, append_addsTheVersionAndNothingElse) {
  DD::Image::Hash expected;
  expected.append(1);
  expected.append(4);
  expected.append(6);
  NodeBench bench;
  DD::Image::Hash fresh;
  bench.drevin().append(fresh);
  EXPECT_EQ(fresh, expected);
  bench.set("multiplier", 99.0);
  bench.connectPicture(0, plainScene(4, 3, 10.0F).image);
  bench.validate();
  DD::Image::Hash changed;
  bench.drevin().append(changed);
  EXPECT_EQ(changed, expected);
}

TEST(NodeHash, hashOfTheNode_changesWithAControl) {
  NodeBench bench;
  bench.validate();
  const DD::Image::Hash before = bench.drevin().hash();
  bench.set("multiplier", 99.0);
  bench.validate();
  EXPECT_NE(bench.drevin().hash(), before);
}

}  // namespace
}  // namespace drevin::test
