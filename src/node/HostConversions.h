#pragma once

/// From the host's types to those of the imaging code.

#include <vector>

#include "DDImage/Box.h"
#include "DDImage/ChannelSet.h"
#include "DDImage/Format.h"
#include "defocus/PassValue.h"
#include "defocus/ScanlineDefocus.h"
#include "kernel/HeroKernel.h"
#include "node/DrevinSettings.h"

namespace drevin {

/// Channel numbers of a set, ascending.
std::vector<int> channelNumbers(const DD::Image::ChannelSet& channels);

dvApertureShape apertureShape(const DrevinSettings& settings);

/// `kernelSize`: the node's working maximum kernel diameter, px.
dvLens lensOf(const DrevinSettings& settings, int kernelSize);
dvPassSettings passSettings(const DrevinSettings& settings, int kernelSize);
dvBlurSettings blurSettings(const DrevinSettings& settings, int kernelSize,
                            const std::vector<float>& sliceStarts);
dvSplatSettings splatSettings(const DrevinSettings& settings, const DD::Image::Format& format);

}  // namespace drevin
