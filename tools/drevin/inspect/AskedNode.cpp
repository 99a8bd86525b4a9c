#include "inspect/AskedNode.h"

#include <utility>

#include "controls/CameraOption.h"
#include "render/InputPictures.h"

namespace drevintool {
namespace {

using DD::Image::Knob;

// The picture that a control picks a channel from; null where any name will do.
const Picture* sourceOf(const Knob& knob, const AskedRender& asked, const Picture& picture) {
  if (knob.name() == "depthChannel") return &picture;
  const bool ofKernel = knob.name() == "missingKernelChannel";
  return ofKernel                              ? asked.kernel.get()
         : knob.channelInput() == kMattesInput ? asked.mattes.get()
                                               : nullptr;
}

}  // namespace

AskedNode::AskedNode(const AskedRender& asked, const Picture& picture, embedded::Image image)
    : node_(asked.description) {
  connect(kImageInput, std::move(image));
  asked.changes.applyValues(node_, asked.frame);
  asked.changes.applyChannels(node_, [&](const Knob& knob, const ControlSetting&) {
    return sourceOf(knob, asked, picture);
  });
  if (asked.camera.empty()) return;
  auto camera = std::make_unique<embedded::CameraInput>(
      CameraOption(asked.camera).at(asked.frame, node_, &picture).values);
  connectCamera(node_, *camera);
  inputs_.push_back(std::move(camera));
}

void AskedNode::connect(int input, embedded::Image image) {
  inputs_.push_back(std::make_unique<embedded::ImageInput>(std::move(image)));
  node_.connect(input, inputs_.back().get());
}

void AskedNode::connect(std::shared_ptr<embedded::DeepSource> deep) {
  inputs_.push_back(std::make_unique<embedded::DeepInput>(std::move(deep)));
  node_.connect(kDeepInput, inputs_.back().get());
}

void useCircularAperture(Node& node) {
  constexpr double kInput = 0.0;
  constexpr double kCircular = 1.0;
  Knob* type = node.knob("kernelType");
  if (type == nullptr || type->get_value() != kInput) return;
  node.setByHand(*type, std::vector<double>{kCircular});
}

}  // namespace drevintool
