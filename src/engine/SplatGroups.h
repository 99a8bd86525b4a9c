#pragma once

/// Channels that are splatted alike: with the same kernels, at the same places. They share one
/// weight.

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
