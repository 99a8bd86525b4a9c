#pragma once

/// Channels that are splatted alike: with the same kernels, at the same places. They share one
/// weight.
///
///   sum_z(x, y)    = sum over splats i of  share_i * K_z(x - x_i - s_z, y - y_i - s_z) * value_z,i
///   weight_z(x, y) = sum over splats i of  share_i * K_z(x - x_i - s_z, y - y_i - s_z)
///
///   z         channel                  K_z  its kernel of the splat's size
///   x_i, y_i  place of the splat       s_z  its chromatic shift, px
///
/// Where K_z and s_z are the same for several channels, so is weight_z: it is summed once.

#include <memory>
#include <vector>

#include "defocus/ChromaticShift.h"
#include "engine/KernelTable.h"

namespace drevin {

struct dvSplatGroup {
  std::vector<std::size_t> places;  ///< of its channels in the list of splatted channels
  float shift = 0.0F;               ///< of its channels, as channelShift gives it
  std::shared_ptr<const dvKernelTable> kernels;
};

/// Groups `channels` (ascending numbers, each with planes in the bank) by kernel bits and shift; in
/// the order of their first channels. Groups of equal kernels share a table. After an abort the
/// tables must not be read.
std::vector<dvSplatGroup> splatGroups(const dvKernelBank& bank,
                                      const dvChromaticAberration& aberration,
                                      const std::vector<int>& channels, dvParallel& parallel);

/// As above, on this thread alone.
inline std::vector<dvSplatGroup> splatGroups(const dvKernelBank& bank,
                                             const dvChromaticAberration& aberration,
                                             const std::vector<int>& channels) {
  dvSerial serial;
  return splatGroups(bank, aberration, channels, serial);
}

}  // namespace drevin
