#include "frames/FrameNode.h"

#include <stdexcept>

#include "EmbeddedHost/Plugin.h"

namespace drevin::bench {

using DD::Image::Box;
using DD::Image::Mask_RGBA;

namespace {

/// Of the whole picture the least that a node opens for.
embedded::RenderOptions onePixel(embedded::RenderOptions options) {
  options.region = Box(0, 0, 1, 1);
  return options;
}

}  // namespace

FrameNode::FrameNode(const FrameCase& picture, const FramePictures& pictures)
    : image_(pictures.image) {
  const auto* description = embedded::findClass("Drevin");
  if (description == nullptr) throw std::logic_error("the class Drevin is not registered");
  node_ = std::make_unique<Node>(*description);
  options_.channels = Mask_RGBA;
  connect(dvInput::image, image_);
  if (pictures.aperture) {
    others_.push_back(std::make_unique<embedded::ImageInput>(*pictures.aperture));
    connect(dvInput::kernel, *others_.back());
  }
  if (pictures.mattes) {
    others_.push_back(std::make_unique<embedded::ImageInput>(*pictures.mattes));
    connect(dvInput::mattes, *others_.back());
  }
  if (pictures.deep != nullptr) {
    others_.push_back(std::make_unique<embedded::DeepInput>(pictures.deep));
    connect(dvInput::deep, *others_.back());
  }
  setControls(picture.settings);
}

FrameNode::~FrameNode() {
  node_.reset();
}

void FrameNode::connect(int input, DD::Image::Op& op) {
  if (!node_->connect(input, &op)) throw std::logic_error("the node refuses a picture");
}

void FrameNode::set(const char* name, double value) {
  DD::Image::Knob* knob = node_->knob(name);
  if (knob == nullptr) throw std::logic_error(std::string("no control ") + name);
  node_->setByHand(*knob, std::vector<double>(1, value));
}

void FrameNode::setControls(const test::LiteralSettings& settings) {
  set("multiplier", static_cast<double>(settings.multiplier));
  set("focalPlane", static_cast<double>(settings.focalPlane));
  set("focusRegionSize", static_cast<double>(settings.focusRegionSize));
  set("correctiveSlices", settings.correctiveSlices);
  set("kernelType", settings.kernelType);
  set("kSoftness", static_cast<double>(settings.softness));
  set("kNumSides", settings.numSides);
  set("kCurvature", static_cast<double>(settings.bladeCurvature));
  set("kChrAbb", static_cast<double>(settings.chromaticAberration));
  set("bloom", static_cast<double>(settings.bloom));
  set("bloomMatteChannel", settings.bloomMatteChannel);
  set("defocusMatteChannel", settings.defocusMatteChannel);
  set("chromicAberrationMatteChannel", settings.chromaticMatteChannel);
}

embedded::RenderResult FrameNode::render(const embedded::RenderOptions& options) {
  embedded::RenderResult result = embedded::render(*node_, options);
  if (result.status != embedded::RenderStatus::Done) {
    throw std::runtime_error(result.messages.empty() ? "the picture was not rendered"
                                                     : result.messages.front().text);
  }
  return result;
}

embedded::RenderResult FrameNode::render() {
  return render(options_);
}

embedded::RenderResult FrameNode::render(const Box& region) {
  embedded::RenderOptions options = options_;
  options.region = region;
  return render(options);
}

PlainNodeRows::PlainNodeRows(FrameNode& node)
    : node_(node), session_(node.node(), onePixel(node.options())) {}

std::vector<float> PlainNodeRows::row(int y) {
  Drevin& drevin = node_.drevin();
  const int width = drevin.format().w();
  DD::Image::Row row(0, width);
  if (drevin.settings().deepInput) {
    drevin.deepDefocus(y, 0, width, Mask_RGBA, row, static_cast<int>(dvDeepMode::Both));
  } else {
    drevin.defocusRow(y, 0, width, Mask_RGBA, row);
  }
  std::vector<float> values;
  foreach (z, DD::Image::ChannelSet(Mask_RGBA))
    values.insert(values.end(), row[z], row[z] + width);
  return values;
}

}  // namespace drevin::bench
