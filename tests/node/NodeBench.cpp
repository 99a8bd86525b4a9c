#include "node/NodeBench.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "EmbeddedHost/Plugin.h"

namespace drevin::test {

using DD::Image::Channel;
using DD::Image::ChannelSet;

Channel hostChannel(int number) {
  if (number <= DD::Image::Chan_DeepBack) {
    return static_cast<Channel>(number);
  }
  return DD::Image::getChannel(("extra.c" + std::to_string(number)).c_str());
}

ChannelSet hostChannels(const std::vector<int>& numbers) {
  ChannelSet set;
  for (const int number : numbers) {
    set += hostChannel(number);
  }
  return set;
}

embedded::Image hostImage(const LiteralPicture& picture) {
  embedded::Image image;
  image.format = DD::Image::Format(picture.formatWidth, picture.formatHeight);
  const LiteralBox& box = picture.box;
  image.box = DD::Image::Box(box.left, box.bottom, box.right, box.top);
  for (const auto& [channel, plane] : picture.planes) {
    image.planes[hostChannel(channel)] = std::make_shared<const embedded::Plane>(plane);
  }
  return image;
}

NodeBench::NodeBench() {
  const DD::Image::Op::Description* description = embedded::findClass("Drevin");
  if (description == nullptr) throw std::logic_error("the class Drevin is not registered");
  node_ = std::make_unique<Node>(*description);
  drevin_ = dynamic_cast<Drevin*>(&node_->op());
  options.channels = DD::Image::Mask_RGBA;
}

NodeBench::NodeBench(const LiteralScene& scene) : NodeBench() {
  connectPicture(dvInput::image, scene.image);
  if (scene.kernel) connectPicture(dvInput::kernel, *scene.kernel);
  if (scene.mattes) connectPicture(dvInput::mattes, *scene.mattes);
  setControls(scene.settings);
  options.channels = hostChannels(scene.channels);
  options.proxyScale = scene.settings.contextScale;
}

NodeBench::~NodeBench() {
  close();
  node_.reset();
}

DD::Image::Knob& NodeBench::knob(const std::string& name) {
  DD::Image::Knob* found = node_->knob(name);
  EXPECT_NE(found, nullptr) << name;
  return found == nullptr ? standIn_ : *found;
}

void NodeBench::setText(const std::string& name, const std::string& text) {
  EXPECT_TRUE(node_->setByHand(knob(name), text)) << name << " " << text;
}

void NodeBench::connectPicture(int input, const LiteralPicture& picture) {
  inputs_.push_back(std::make_unique<embedded::ImageInput>(hostImage(picture)));
  EXPECT_TRUE(node_->connect(input, inputs_.back().get()));
}

void NodeBench::connectCamera(const embedded::CameraValues& values) {
  inputs_.push_back(std::make_unique<embedded::CameraInput>(values));
  EXPECT_TRUE(node_->connect(dvInput::camera, inputs_.back().get()));
}

void NodeBench::validate() {
  node_->storeKnobs();
  node_->op().invalidate();
  node_->op().validate(true);
}

void NodeBench::setControls(const LiteralSettings& s) {
  std::string channels;
  for (const int channel : s.bokehChannels) {
    channels += (channels.empty() ? "" : ",") + std::string(getName(hostChannel(channel)));
  }
  if (s.bokehAll) channels = "all";
  setText("bokehChannels", channels.empty() ? "none" : channels);
  set("depthChannel", hostChannel(s.depthChannel));
  set("outputType", s.outputType);
  set("focusOutput", s.focusOutput);
  set("multiplier", static_cast<double>(s.multiplier));
  set("frontmultiplier", static_cast<double>(s.frontMultiplier));
  set("backmultiplier", static_cast<double>(s.backMultiplier));
  set("depthStyle", s.depthStyle);
  set("focalPlane", static_cast<double>(s.focalPlane));
  set("focusRegionSize", static_cast<double>(s.focusRegionSize));
  set("focusRegionFalloff", s.falloff);
  set("defocusMatteChannel", hostChannel(s.defocusMatteChannel));
  set("normalizeVisualization", s.normalizeVisualization);
  set("correctiveSlices", s.correctiveSlices);
  set("overrideNearAndFarForSlices", s.overrideNearAndFar);
  set("depthSlicesNearAndFar",
      {static_cast<double>(s.slicesNearAndFar[0]), static_cast<double>(s.slicesNearAndFar[1])});
  setLensControls(s);
  setKernelControls(s);
}

void NodeBench::setLensControls(const LiteralSettings& s) {
  set("realWorldLens", s.realWorldLens);
  set("focalLength", static_cast<double>(s.focalLength));
  set("fStop", static_cast<double>(s.fStop));
  set("worldScale", s.worldScale);
  set("worldScaleMultiplier", static_cast<double>(s.worldScaleMultiplier));
  set("filmFormat", s.filmFormat);
  if (s.filmFormat == 9) {
    set("apertureWidth", static_cast<double>(s.apertureWidth));
    set("apertureHeight", static_cast<double>(s.apertureHeight));
  }
  set("bloom", static_cast<double>(s.bloom));
  set("bloomCurvature", static_cast<double>(s.bloomCurvature));
  set("bloomThreshold", static_cast<double>(s.bloomThreshold));
  set("bloomMatteChannel", hostChannel(s.bloomMatteChannel));
  set("kSphAbb", static_cast<double>(s.sphericalAberration));
  set("kChrAbb", static_cast<double>(s.chromaticAberration));
  set("kChrAbbOff",
      {static_cast<double>(s.chromaticOffset[0]), static_cast<double>(s.chromaticOffset[1]),
       static_cast<double>(s.chromaticOffset[2])});
  set("chromicAberrationMatteChannel", hostChannel(s.chromaticMatteChannel));
}

void NodeBench::setKernelControls(const LiteralSettings& s) {
  set("kernelType", s.kernelType);
  set("max_kernelsize", s.maxKernelSize);
  set("expandBBoxToMaxKernelSize", s.expandBox);
  set("missingKernelChannel", hostChannel(s.missingKernelChannel));
  set("kAspectRatio", static_cast<double>(s.aspectRatio));
  set("kSoftness", static_cast<double>(s.softness));
  set("kNumSides", s.numSides);
  set("kCurvature", static_cast<double>(s.bladeCurvature));
  set("kRotation", static_cast<double>(s.rotation));
}

}  // namespace drevin::test
