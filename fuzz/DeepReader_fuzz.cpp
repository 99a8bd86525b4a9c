/// Any bytes as a deep OpenEXR file: it is refused with one line, or its rows are what they must
/// be.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "Expect.h"
#include "MemoryFile.h"
#include "deep/DeepExrSource.h"

namespace {

using drevinfuzz::expect;
using drevinfuzz::expectOneLine;
using drevinfuzz::MemoryFile;
using drevintool::DeepExrSource;

float placeOf(float depth) {
  return std::isnan(depth) ? INFINITY : depth;
}

void expectSorted(const embedded::DeepRow& row, const DD::Image::ChannelMap& channels) {
  const auto front = static_cast<std::size_t>(channels.chanNo(DD::Image::Chan_DeepFront));
  const float* sample = row.values.data();
  for (const std::uint32_t count : row.counts) {
    for (std::uint32_t i = 0; i < count; ++i, sample += channels.size()) {
      if (i == 0) continue;
      const float before = *(sample - channels.size() + front);
      expect(placeOf(before) <= placeOf(sample[front]), "samples come nearest first");
    }
  }
}

void readRows(DeepExrSource& source) {
  const DD::Image::Box& box = source.box();
  const DD::Image::ChannelMap channels(source.channels());
  embedded::DeepRow row;
  std::uint64_t total = 0;
  for (int y = box.y(); y < box.t(); ++y) {
    source.readRow(y, box.x(), box.r(), source.channels(), row);
    std::size_t samples = 0;
    for (const std::uint32_t count : row.counts)
      samples += count;
    expect(row.counts.size() == static_cast<std::size_t>(box.w()), "every column has a count");
    expect(row.values.size() == samples * channels.size(), "every sample has its values");
    expectSorted(row, channels);
    total += samples;
  }
  expect(total == source.counts().samples, "the samples that were read are counted");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const MemoryFile file("deep");
  file.fill(bytes, count);
  try {
    DeepExrSource source(file.path(), "", "");
    readRows(source);
  } catch (const std::runtime_error& error) {
    expectOneLine(error.what(), file.path());
  }
  return 0;
}
