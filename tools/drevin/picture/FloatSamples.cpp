#include "picture/FloatSamples.h"

#include <memory>
#include <vector>

#include "picture/HalfFloat.h"

namespace drevintool {
namespace {

FloatSamples floats(const FloatSamples& samples) {
  return samples;
}

FloatSamples floats(const HalfSamples& samples) {
  auto values = std::make_shared<std::vector<float>>();
  values->reserve(samples->size());
  for (const std::uint16_t bits : *samples)
    values->push_back(floatFromHalf(bits));
  return values;
}

FloatSamples floats(const UintSamples& samples) {
  auto values = std::make_shared<std::vector<float>>();
  values->reserve(samples->size());
  for (const std::uint32_t number : *samples)
    values->push_back(static_cast<float>(number));
  return values;
}

}  // namespace

FloatSamples floatSamples(const Samples& samples) {
  return std::visit([](const auto& s) { return floats(s); }, samples);
}

}  // namespace drevintool
