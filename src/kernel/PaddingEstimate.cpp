#include "kernel/PaddingEstimate.h"

#include <algorithm>

namespace drevin {

dvPaddingResult paddingResult(int largest, int maxKernelSize) {
  dvPaddingResult result;
  result.kernelSize = std::min(largest, maxKernelSize);
  result.padding = result.kernelSize / 2 + 2;
  result.largest = largest;
  result.exceeded = largest > maxKernelSize;
  return result;
}

int validationPadding(int maxKernelSize) {
  return (maxKernelSize - maxKernelSize % 2 + 1) / 2;
}

}  // namespace drevin
