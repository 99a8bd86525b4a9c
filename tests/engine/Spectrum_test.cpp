#include "engine/Spectrum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <thread>
#include <vector>

#include "engine/SimdLevels.h"
#include "engine/TileRandomKernels.h"

namespace drevin::test {
namespace {

/// Measured: 1.1e-7 at most.
constexpr double spectrumTolerance = 2e-7;

/// The kernel's own definition, in double, without the scale.
std::complex<double> directFrequency(const dvKernelTable& table, const dvCutKernel& kernel,
                                     int length, int u, int v) {
  const int radius = kernel.radius;
  const int lowest = -radius + (kernel.cut < 0 ? -kernel.cut : 0);
  const int highest = radius - (kernel.cut > 0 ? kernel.cut : 0);
  std::complex<double> sum;
  for (int y = lowest; y <= highest; ++y) {
    const float* row = table.row(radius, radius - y) + radius;
    for (int x = -radius; x <= radius; ++x) {
      const int turn = (u * x + v * y) % length;
      sum += static_cast<double>(row[x]) * std::polar(1.0, -2.0 * M_PI * turn / length);
    }
  }
  return sum;
}

/// The largest that a frequency can be.
double absoluteSum(const dvKernelTable& table, int radius) {
  double sum = 0.0;
  for (int r = 0; r <= 2 * radius; ++r) {
    for (int c = 0; c <= 2 * radius; ++c)
      sum += std::abs(static_cast<double>(table.row(radius, r)[c]));
  }
  return sum;
}

/// The factor at a position and lane of a block's strip, as the multiplication reads it.
std::complex<double> factorAt(const dvStripFactors& factors, int block, int position, int lane) {
  const auto read = [&](int i, int l) {
    const float* at = factors.values + i * dvStripStep + l;
    return std::complex<double>(at[0], at[dvStripLanes]);
  };
  if (factors.mirroredBlocks == nullptr) return read(position, lane);
  const int group = position / dvStripLanes;
  const int place = position % dvStripLanes;
  const int turned = group == 0 ? (dvStripLanes - place) % dvStripLanes : dvStripLanes - 1 - place;
  EXPECT_NE(block, 0);
  return std::conj(
      read(factors.mirroredBlocks[group] * dvStripLanes + turned, dvStripLanes - 1 - lane));
}

/// Largest error over every frequency, relative to the largest that one can be.
double spectrumError(int length, const dvCutKernel& kernel) {
  const dvKernelTable table = randomKernels(kernel.radius, 3);
  const dvKernelSpectrum spectrum(table, length, kernel);
  const dvFourierPlan& plan = spectrum.plan();
  double worst = 0.0;
  for (int block = 0; block < plan.blocks(); ++block) {
    const dvStripFactors factors = spectrum.factors(block);
    for (int i = 0; i < length; ++i) {
      for (int lane = 0; lane < dvStripLanes; ++lane) {
        const int v = plan.frequency(block * dvStripLanes + lane);
        const std::complex<double> expected =
            directFrequency(table, kernel, length, plan.frequency(i), v);
        const std::complex<double> scaled =
            factorAt(factors, block, i, lane) * static_cast<double>(length * length);
        worst = std::max(worst, std::abs(scaled - expected));
      }
    }
  }
  return worst / absoluteSum(table, kernel.radius);
}

TEST(Spectrum, everyFrequency_isTheKernelsSum) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    EXPECT_LT(spectrumError(16, {0}), spectrumTolerance);
    EXPECT_LT(spectrumError(16, {7}), spectrumTolerance);
    EXPECT_LT(spectrumError(32, {5}), spectrumTolerance);
    EXPECT_LT(spectrumError(48, {9}), spectrumTolerance);
    EXPECT_LT(spectrumError(64, {3}), spectrumTolerance);
    EXPECT_LT(spectrumError(80, {4}), spectrumTolerance);
  }
}

TEST(Spectrum, kernelLargerThanTheLength_overlapsItself) {
  EXPECT_LT(spectrumError(16, {12}), spectrumTolerance);
  EXPECT_LT(spectrumError(16, {40}), spectrumTolerance);
}

TEST(Spectrum, cutRows_areLeftOut) {
  for (const int cut : {-9, -2, 2, 9})
    EXPECT_LT(spectrumError(48, {9, cut}), spectrumTolerance) << cut;
}

TEST(Spectrum, memory_isHalfThePlaneAndABlock) {
  const dvKernelTable table = randomKernels(4, 1);
  for (const int length : {16, 48, 160, 192, 384, 512}) {
    const dvKernelSpectrum spectrum(table, length, {4});
    const auto side = static_cast<std::size_t>(length);
    EXPECT_LE(spectrum.bytes(), 4 * side * (side + 32)) << length;
  }
}

TEST(SpectrumCache, askedTwice_isTheSame) {
  const dvKernelTable table = randomKernels(9, 1);
  dvSpectrumCache cache(table);
  const dvKernelSpectrum& spectrum = cache.spectrum(64, {9});
  EXPECT_EQ(&cache.spectrum(64, {9}), &spectrum);
  EXPECT_NE(&cache.spectrum(64, {8}), &spectrum);
  EXPECT_NE(&cache.spectrum(80, {9}), &spectrum);
  EXPECT_NE(&cache.spectrum(64, {9, 1}), &spectrum);
  EXPECT_NE(&cache.spectrum(64, {9, 1}), &cache.spectrum(64, {9, -1}));
  EXPECT_EQ(spectrum.plan().side(), 64);
}

TEST(SpectrumCache, bytes_areThoseOfWhatWasMade) {
  const dvKernelTable table = randomKernels(3, 1);
  dvSpectrumCache cache(table);
  EXPECT_EQ(cache.bytes(), 0U);
  const std::size_t first = cache.spectrum(32, {0}).bytes();
  const std::size_t second = cache.spectrum(dvLargestTransform, {3}).bytes();
  cache.spectrum(32, {0});
  EXPECT_EQ(cache.bytes(), first + second);
}

TEST(SpectrumCache, severalThreadsAtOnce_makeEachOnce) {
  const dvKernelTable table = randomKernels(20, 1);
  dvSpectrumCache cache(table);
  std::vector<std::vector<const dvKernelSpectrum*>> seen(4);
  std::vector<std::thread> threads;
  threads.reserve(seen.size());
  for (auto& spectra : seen) {
    threads.emplace_back([&] {
      for (int radius = 0; radius <= 20; ++radius)
        spectra.push_back(&cache.spectrum(64, {radius}));
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  std::size_t bytes = 0;
  for (const dvKernelSpectrum* spectrum : seen.front())
    bytes += spectrum->bytes();
  EXPECT_EQ(cache.bytes(), bytes);
  for (const auto& spectra : seen)
    EXPECT_EQ(spectra, seen.front());
}

TEST(SpectrumCache, spectrum_isThatMadeAlone) {
  const dvKernelTable table = randomKernels(6, 2);
  dvSpectrumCache cache(table);
  const dvKernelSpectrum alone(table, 48, {6});
  const dvKernelSpectrum& cached = cache.spectrum(48, {6});
  ASSERT_EQ(alone.bytes(), cached.bytes());
  EXPECT_EQ(std::memcmp(alone.factors(0).values, cached.factors(0).values, alone.bytes()), 0);
}

TEST(SpectrumCache, clear_forgetsAllAndMakesThemAnew) {
  const dvKernelTable table = randomKernels(8, 1);
  dvSpectrumCache cache(table);
  cache.spectrum(32, {5, 0});
  const std::size_t bytes = cache.bytes();
  cache.spectrum(48, {8, 0});
  cache.clear();
  EXPECT_EQ(cache.bytes(), 0U);
  cache.spectrum(32, {5, 0});
  EXPECT_EQ(cache.bytes(), bytes);
}

}  // namespace
}  // namespace drevin::test
