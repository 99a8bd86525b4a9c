#include <gtest/gtest.h>

#include "EmbeddedHost/CameraInput.h"
#include "host/HostBench.h"

using DD::Image::Iop;
using DD::Image::Op;
using smooth::HostBench;
using smooth::SmoothOp;

TEST(Inputs, connect_asksThenSetsThenTells) {
  HostBench bench;
  embedded::ImageInput other(smooth::markedImage(DD::Image::Box(0, 0, 2, 2)));
  ASSERT_TRUE(bench.node.connect(1, &other));
  EXPECT_EQ(bench.op().input(1), &other);
  EXPECT_EQ(bench.op().calls, std::vector<std::string>{"set_input"});
  EXPECT_EQ(bench.op().changed.size(), 1U);
}

TEST(Inputs, refusedOperator_changesNothing) {
  HostBench bench;
  embedded::CameraInput camera{embedded::CameraValues()};
  EXPECT_FALSE(bench.node.connect(0, &camera)) << "an image operator takes images";
  EXPECT_EQ(bench.op().input(0), &bench.picture);
  EXPECT_TRUE(bench.op().calls.empty());
  EXPECT_TRUE(bench.op().changed.empty());
}

TEST(Inputs, numberThatThereIsNot_isRefused) {
  HostBench bench;
  EXPECT_FALSE(bench.node.connect(2, &bench.picture));
  EXPECT_FALSE(bench.node.connect(-1, &bench.picture));
  EXPECT_EQ(bench.op().input(2), nullptr);
  EXPECT_EQ(bench.op().input(-1), nullptr);
}

TEST(Inputs, nullDisconnects_withoutBeingAskedFor) {
  HostBench bench;
  ASSERT_TRUE(bench.node.connect(1, &bench.picture));
  ASSERT_TRUE(bench.node.connect(1, nullptr));
  EXPECT_EQ(bench.op().input(1), nullptr) << "its default_input has none";
}

TEST(Inputs, unconnectedImage_isABlackStandIn) {
  HostBench bench;
  ASSERT_TRUE(bench.node.connect(0, nullptr));
  Iop* black = bench.op().input(0);
  ASSERT_NE(black, nullptr);
  black->validate(true);
  EXPECT_EQ(black->format().width(), 1920);
  EXPECT_EQ(black->format().height(), 1080);
  EXPECT_EQ(black->at(5, 5, DD::Image::Chan_Red), 0.0F);
  bench.options.region = DD::Image::Box(0, 0, 4, 4);
  const embedded::RenderResult result = bench.render();
  ASSERT_EQ(result.status, embedded::RenderStatus::Done);
  EXPECT_EQ(result.image.planes.at(DD::Image::Chan_Alpha)->at(7), 0.0F);
}

TEST(Inputs, nodeInput_isTheInput) {
  const HostBench bench;
  EXPECT_EQ(bench.op().node_input(0), &bench.picture);
  EXPECT_EQ(bench.op().node_input(1), nullptr);
}

TEST(Inputs, operatorThatReadsTheNode_isRefused) {
  HostBench first;
  HostBench second;
  ASSERT_TRUE(second.node.connect(0, &first.op()));
  EXPECT_FALSE(first.node.connect(0, &first.op()));
  EXPECT_FALSE(first.node.connect(0, &second.op())) << "it would read itself by way of the other";
  EXPECT_EQ(first.op().input(0), &first.picture);
}

TEST(Inputs, imageCast_isNullForOthers) {
  HostBench bench;
  embedded::CameraInput camera{embedded::CameraValues()};
  EXPECT_EQ(bench.op().iop(), &bench.op());
  EXPECT_EQ(static_cast<const Op&>(bench.op()).iop(), &bench.op());
  EXPECT_EQ(camera.iop(), nullptr);
}

TEST(CameraInput, values_areThoseGiven) {
  embedded::CameraValues values;
  values.focalLength = 35.0;
  values.fStop = 2.8;
  values.focalPlane = 4.5;
  values.horizontalAperture = 36.0;
  values.verticalAperture = 24.0;
  embedded::CameraInput camera(values);
  EXPECT_EQ(camera.focal_length(), 35.0);
  EXPECT_EQ(camera.fstop(), 2.8);
  EXPECT_EQ(camera.focal_point(), 4.5);
  EXPECT_EQ(camera.film_width(), 36.0);
  EXPECT_EQ(camera.film_height(), 24.0);
}

TEST(CameraInput, eachValue_changesItsHash) {
  const auto hashOf = [](double embedded::CameraValues::*value) {
    embedded::CameraValues values;
    if (value != nullptr) values.*value += 1.0;
    return embedded::CameraInput(values).hash();
  };
  using Values = embedded::CameraValues;
  for (auto value : {&Values::focalLength, &Values::fStop, &Values::focalPlane,
                     &Values::horizontalAperture, &Values::verticalAperture}) {
    EXPECT_NE(hashOf(value), hashOf(nullptr));
  }
}

TEST(MetaData, base_passesOnInputZero) {
  class WithData : public embedded::ImageInput {
   public:
    WithData() : ImageInput(smooth::markedImage(DD::Image::Box(0, 0, 1, 1))) {
      data.setData("camera", "7");
    }
    const DD::Image::MetaData::Bundle& _fetchMetaData(const char* /*key*/) override { return data; }
    DD::Image::MetaData::Bundle data;
  };
  WithData source;
  HostBench bench;
  EXPECT_TRUE(bench.op().fetchMetaData(nullptr).empty());
  ASSERT_TRUE(bench.node.connect(0, &source));
  EXPECT_EQ(bench.op().fetchMetaData(nullptr).size(), 1U);
  bench.node.connect(0, nullptr);
}

TEST(Context, proxyScale_reachesBothContexts) {
  HostBench bench;
  float output = 0.0F;
  float interface = 0.0F;
  bench.op().onValidate = [&](SmoothOp& op, bool) {
    output = op.outputContext().scale_x();
    interface = op.uiContext().scale_x();
  };
  bench.render();
  EXPECT_EQ(output, 1.0F);
  EXPECT_EQ(interface, 1.0F);
  bench.options.proxyScale = 0.5F;
  bench.render();
  EXPECT_EQ(output, 0.5F);
  EXPECT_EQ(interface, 0.5F);
}

TEST(Context, proxyScale_changesTheHash) {
  HostBench bench;
  const std::string full = bench.render().hash;
  bench.options.proxyScale = 0.5F;
  EXPECT_NE(bench.render().hash, full);
  bench.options.proxyScale = 1.0F;
  EXPECT_EQ(bench.render().hash, full);
}
