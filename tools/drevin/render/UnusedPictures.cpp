#include "render/UnusedPictures.h"

#include "render/MatteControls.h"
#include "terminal/OneLine.h"

namespace drevintool {
std::string unusedKernelWarning(const InputPictures& pictures, const Node& node) {
  constexpr double kInput = 0.0;
  const DD::Image::Knob* type = node.knob("kernelType");
  const Picture* kernel = pictures.at(kKernelInput);
  if (kernel == nullptr || type == nullptr || type->get_value() == kInput) return {};
  return oneLine("--kernel " + kernel->path +
                 ": has no effect without --set kernelType=Input; the aperture is drawn");
}

std::string unusedMattesWarning(const InputPictures& pictures, const Node& node) {
  const Picture* mattes = pictures.at(kMattesInput);
  if (mattes == nullptr) return {};
  std::string remedy;
  for (const DD::Image::Knob* control : matteControls(node)) {
    if (isChosen(control)) return {};
    remedy += (remedy.empty() ? "" : ", ") + control->name();
  }
  return oneLine("--mattes " + mattes->path +
                 ": has no effect, for no control picks a channel of it; --set one of " + remedy +
                 " to a channel's name");
}

}  // namespace drevintool
