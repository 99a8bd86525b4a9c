#include "render/UnusedPictures.h"

#include <array>

#include "terminal/OneLine.h"

namespace drevintool {
namespace {

constexpr std::array<const char*, 3> kMatteControls = {"defocusMatteChannel", "bloomMatteChannel",
                                                       "chromicAberrationMatteChannel"};

}  // namespace

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
  for (const char* control : kMatteControls) {
    const DD::Image::Knob* knob = node.knob(control);
    if (knob != nullptr && knob->channel() != DD::Image::Chan_Black) return {};
    remedy += (remedy.empty() ? "" : ", ") + std::string(control);
  }
  return oneLine("--mattes " + mattes->path +
                 ": has no effect, for no control picks a channel of it; --set one of " + remedy +
                 " to a channel's name");
}

}  // namespace drevintool
