#include "render/MatteControls.h"

#include "render/InputPictures.h"

namespace drevintool {

int sourceInput(const DD::Image::Knob& knob) {
  return knob.name() == "missingKernelChannel" ? kKernelInput : knob.channelInput();
}

std::vector<const DD::Image::Knob*> matteControls(const Node& node) {
  std::vector<const DD::Image::Knob*> controls;
  for (const auto& knob : node.knobs()) {
    if (sourceInput(*knob) == kMattesInput) controls.push_back(knob.get());
  }
  return controls;
}

bool isChosen(const DD::Image::Knob* knob) {
  return knob != nullptr && knob->channel() != DD::Image::Chan_Black;
}

}  // namespace drevintool
