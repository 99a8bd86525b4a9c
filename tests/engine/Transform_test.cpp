#include "engine/Transform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numeric>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "engine/SimdLevels.h"

namespace drevin::test {
namespace {

using Line = std::vector<std::complex<double>>;

/// Largest error of a frequency, relative to the root of the line's or plane's energy. Measured:
/// 3.5e-7 at most.
constexpr double frequencyTolerance = 5e-7;

std::vector<int> supportedLengths() {
  std::vector<int> lengths;
  for (int length = transformSide(1); length != 0; length = transformSide(length + 1))
    lengths.push_back(length);
  return lengths;
}

Line randomLine(int count, unsigned seed) {
  std::mt19937 generator(seed);
  std::uniform_real_distribution<float> value(-1.0F, 1.0F);
  Line line(static_cast<std::size_t>(count));
  for (auto& z : line)
    z = {value(generator), value(generator)};
  return line;
}

double energy(const Line& line) {
  double sum = 0.0;
  for (const auto& z : line)
    sum += std::norm(z);
  return sum;
}

/// exp(-2 pi i k / length) by k.
Line roots(int length) {
  Line roots;
  for (int k = 0; k < length; ++k)
    roots.push_back(std::polar(1.0, -2.0 * M_PI * k / length));
  return roots;
}

Line directTransform(const Line& line, int length) {
  const Line root = roots(length);
  Line frequencies(static_cast<std::size_t>(length));
  for (int k = 0; k < length; ++k) {
    for (std::size_t n = 0; n < line.size(); ++n) {
      const auto turn = n * static_cast<std::size_t>(k) % static_cast<std::size_t>(length);
      frequencies[static_cast<std::size_t>(k)] += line[n] * root[turn];
    }
  }
  return frequencies;
}

/// Strips with a line in one lane.
class Strip {
 public:
  explicit Strip(int length) : length_(length), values_(size()) {
    std::fill_n(values_.data(), size(), 0.0F);
  }
  float* data() { return values_.data(); }
  std::complex<double> at(int position, int lane) const {
    const float* at = values_.data() + position * dvStripStep + lane;
    return {at[0], at[dvStripLanes]};
  }
  void set(int lane, const Line& line) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      float* at = values_.data() + i * dvStripStep + static_cast<std::size_t>(lane);
      at[0] = static_cast<float>(line[i].real());
      at[dvStripLanes] = static_cast<float>(line[i].imag());
    }
  }

 private:
  std::size_t size() const { return static_cast<std::size_t>(length_) * dvStripStep; }

  int length_;
  dvFourierBuffer values_;
};

int blocksOf(int positions) {
  return (positions + dvStripLanes - 1) / dvStripLanes;
}

/// Different lines of `support` values in all lanes, transformed; the largest relative error
/// against the direct transform, checked in the first, last and a middle lane.
double stripError(int length, int support) {
  const dvFourierPlan& plan = fourierPlan(length);
  const int headBlocks = blocksOf(support);
  Strip head(headBlocks * dvStripLanes);
  Strip frequencies(length);
  std::vector<Line> lines;
  for (int lane = 0; lane < dvStripLanes; ++lane) {
    lines.push_back(randomLine(support, static_cast<unsigned>(length + lane)));
    head.set(lane, lines.back());
  }
  fourierPasses().forward(plan.steps(), head.data(), headBlocks, frequencies.data());
  double worst = 0.0;
  for (const int lane : {0, 6, dvStripLanes - 1}) {
    const Line& line = lines[static_cast<std::size_t>(lane)];
    const Line expected = directTransform(line, length);
    for (int i = 0; i < length; ++i) {
      const auto k = static_cast<std::size_t>(plan.frequency(i));
      worst = std::max(worst, std::abs(frequencies.at(i, lane) - expected[k]));
    }
    if (support > 0) worst /= std::sqrt(energy(line));
  }
  return worst;
}

TEST(TransformSide, least_isCoveredByTheNextLength) {
  const std::vector<int> lengths = supportedLengths();
  EXPECT_TRUE(std::is_sorted(lengths.begin(), lengths.end()));
  for (int least = 1; least <= dvLargestTransform; ++least) {
    const auto next = std::lower_bound(lengths.begin(), lengths.end(), least);
    EXPECT_EQ(transformSide(least), *next);
  }
}

TEST(TransformSide, lengthsInUse_areSupported) {
  for (const int length : {16,  32,  64,  96,  128, 160, 192, 240, 256,  288,
                           320, 384, 480, 512, 576, 640, 768, 960, 1024, 1152}) {
    EXPECT_EQ(transformSide(length), length);
  }
}

TEST(TransformSide, nothingOrLess_isTheSmallest) {
  EXPECT_EQ(transformSide(0), 16);
  EXPECT_EQ(transformSide(-100), 16);
}

TEST(TransformSide, beyondTheLargest_isNone) {
  EXPECT_EQ(transformSide(dvLargestTransform), dvLargestTransform);
  EXPECT_EQ(transformSide(dvLargestTransform + 1), 0);
}

TEST(TransformSide, step_isAtMostAThird) {
  // Padding is paid for: from 48 on the next length is not far.
  for (int least = 49; least <= dvLargestTransform; ++least)
    EXPECT_LE(transformSide(least) * 3, least * 4 + 2) << least;
}

TEST(TransformPlan, frequencies_areEachThereOnce) {
  for (const int length : supportedLengths()) {
    const dvFourierPlan& plan = fourierPlan(length);
    std::set<int> frequencies;
    for (int i = 0; i < length; ++i)
      frequencies.insert(plan.frequency(i));
    EXPECT_EQ(static_cast<int>(frequencies.size()), length);
    EXPECT_EQ(*frequencies.begin(), 0);
    EXPECT_EQ(*frequencies.rbegin(), length - 1);
  }
}

TEST(TransformPlan, mirroredBlocks_haveTheNegatedFrequencies) {
  for (const int length : supportedLengths()) {
    const dvFourierPlan& plan = fourierPlan(length);
    for (int i = 0; i < length; ++i) {
      const int block = i / dvStripLanes;
      const int lane = i % dvStripLanes;
      const int place = block == 0 ? (dvStripLanes - lane) % dvStripLanes : dvStripLanes - 1 - lane;
      const int partner = plan.mirroredBlocks()[static_cast<std::size_t>(block)];
      EXPECT_EQ(plan.frequency(partner * dvStripLanes + place),
                (length - plan.frequency(i)) % length);
    }
  }
}

TEST(TransformPlan, keptBlocks_areOneOfEachPair) {
  for (const int length : supportedLengths()) {
    const dvFourierPlan& plan = fourierPlan(length);
    for (int block = 0; block < plan.blocks(); ++block) {
      const int partner = plan.mirroredBlocks()[static_cast<std::size_t>(block)];
      EXPECT_EQ(plan.isKept(block) && plan.isKept(partner), block == partner);
      EXPECT_TRUE(plan.isKept(block) || plan.isKept(partner));
    }
  }
}

TEST(TransformPlan, severalThreadsAtOnce_getTheSame) {
  std::vector<const dvFourierPlan*> plans(4);
  std::vector<std::thread> threads;
  threads.reserve(plans.size());
  for (auto& plan : plans)
    threads.emplace_back([&plan] { plan = &fourierPlan(1152); });
  for (std::thread& thread : threads)
    thread.join();
  for (const dvFourierPlan* plan : plans)
    EXPECT_EQ(plan, plans.front());
}

TEST(TransformStrip, everyLength_isTheDirectTransform) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (const int length : supportedLengths())
      EXPECT_LT(stripError(length, length), frequencyTolerance) << length;
  }
}

TEST(TransformStrip, lineOfWhichOnlyTheHeadIsThere_isTheDirectTransform) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (const int length : {16, 48, 128, 160, 192, 256, 288, 384, 400, 576}) {
      if (transformSide(length) != length) continue;
      for (const int support : {0, 1, length / 8, length / 4 + 1, length / 3, length / 3 + 1,
                                length / 2, length / 2 + 3, length * 3 / 4, length - 1}) {
        EXPECT_LT(stripError(length, support), frequencyTolerance) << length << ' ' << support;
      }
    }
  }
}

TEST(TransformStrip, scratchOfBefore_doesNotShow) {
  const dvFourierPlan& plan = fourierPlan(384);
  Strip head(112);
  head.set(3, randomLine(100, 1));
  Strip clean(384);
  Strip used(384);
  std::fill_n(used.data(), 384 * dvStripStep, 1e9F);
  fourierPasses().forward(plan.steps(), head.data(), 7, clean.data());
  fourierPasses().forward(plan.steps(), head.data(), 7, used.data());
  EXPECT_TRUE(std::equal(clean.data(), clean.data() + 384 * dvStripStep, used.data()));
}

TEST(TransformStrip, forwardAndBack_isTheLineTimesItsLength) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (const int length : supportedLengths()) {
      const dvFourierPlan& plan = fourierPlan(length);
      const Line line = randomLine(length, 5);
      Strip head(length);
      head.set(9, line);
      Strip strip(length);
      fourierPasses().forward(plan.steps(), head.data(), length / dvStripLanes, strip.data());
      fourierPasses().inverse(plan.steps(), strip.data());
      for (int i = 0; i < length; ++i) {
        const std::complex<double> back = strip.at(i, 9) / static_cast<double>(length);
        EXPECT_LT(std::abs(back - line[static_cast<std::size_t>(i)]), 2e-6);
        EXPECT_EQ(strip.at(i, 8), std::complex<double>{}) << "lanes are apart";
      }
    }
  }
}

TEST(TransformStrip, energy_isKept) {
  for (const int length : supportedLengths()) {
    const Line line = randomLine(length, 11);
    Strip head(length);
    head.set(0, line);
    Strip strip(length);
    fourierPasses().forward(fourierPlan(length).steps(), head.data(), length / dvStripLanes,
                            strip.data());
    double sum = 0.0;
    for (int i = 0; i < length; ++i)
      sum += std::norm(strip.at(i, 0));
    EXPECT_NEAR(sum / length / energy(line), 1.0, 1e-6);
  }
}

TEST(TransformStrip, sum_hasTheSumOfTheTransforms) {
  const int length = 240;
  const Line a = randomLine(length, 21);
  const Line b = randomLine(length, 22);
  Line sum;
  for (std::size_t i = 0; i < a.size(); ++i)
    sum.push_back(a[i] + 3.0 * b[i]);
  Strip head(length);
  head.set(0, a);
  head.set(1, b);
  head.set(2, sum);
  Strip strip(length);
  fourierPasses().forward(fourierPlan(length).steps(), head.data(), length / dvStripLanes,
                          strip.data());
  for (int i = 0; i < length; ++i) {
    const std::complex<double> expected = strip.at(i, 0) + 3.0 * strip.at(i, 1);
    EXPECT_LT(std::abs(strip.at(i, 2) - expected), 1e-6 * std::sqrt(energy(sum)));
  }
}

TEST(TransformStrip, impulseAtTheStart_isOneEverywhere) {
  for (const int length : supportedLengths()) {
    Strip head(dvStripLanes);
    head.set(4, {{1.0, 0.0}});
    Strip strip(length);
    fourierPasses().forward(fourierPlan(length).steps(), head.data(), 1, strip.data());
    for (int i = 0; i < length; ++i)
      EXPECT_EQ(strip.at(i, 4), std::complex<double>(1.0, 0.0));
  }
}

TEST(TransformStrip, turn_exchangesLanesAndPositions) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    Strip from(dvStripLanes);
    Strip to(dvStripLanes);
    for (int lane = 0; lane < dvStripLanes; ++lane)
      from.set(lane, randomLine(dvStripLanes, static_cast<unsigned>(lane)));
    fourierPasses().turn(from.data(), to.data());
    for (int i = 0; i < dvStripLanes; ++i) {
      for (int lane = 0; lane < dvStripLanes; ++lane)
        EXPECT_EQ(to.at(i, lane), from.at(lane, i));
    }
  }
}

TEST(TransformStrip, load_takesTheColumnsThatAreThere) {
  const std::vector<float> rows{1, 2, 3, 4, 5, 6};
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    Strip strip(dvStripLanes);
    std::fill_n(strip.data(), dvStripBlock, 3.0F);
    EXPECT_TRUE(fourierPasses().load(rows.data(), 3, 2, 2, strip.data()));
    EXPECT_EQ(strip.at(0, 1), std::complex<double>(2, 3));
    EXPECT_EQ(strip.at(1, 0), std::complex<double>(4, 3));
    EXPECT_EQ(strip.at(1, 2), std::complex<double>(0, 3));
    EXPECT_EQ(strip.at(2, 0), std::complex<double>(0, 3)) << "the block is filled";
    EXPECT_EQ(strip.at(15, 15), std::complex<double>(0, 3));
    EXPECT_TRUE(fourierPasses().load(rows.data(), 3, 3, 2, strip.data() + dvStripLanes));
    EXPECT_EQ(strip.at(1, 0), std::complex<double>(4, 4));
    EXPECT_EQ(strip.at(15, 2), std::complex<double>());
  }
}

TEST(TransformStrip, load_takesAllColumns) {
  std::vector<float> rows(40);
  std::iota(rows.begin(), rows.end(), 1.0F);
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    Strip strip(dvStripLanes);
    EXPECT_TRUE(fourierPasses().load(rows.data(), 20, 20, 2, strip.data()));
    for (int lane = 0; lane < dvStripLanes; ++lane) {
      EXPECT_EQ(strip.at(0, lane), std::complex<double>(1 + lane, 0));
      EXPECT_EQ(strip.at(1, lane), std::complex<double>(21 + lane, 0));
      EXPECT_EQ(strip.at(2, lane), std::complex<double>());
    }
  }
}

TEST(TransformStrip, loadFromNothing_isZero) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    Strip strip(dvStripLanes);
    std::fill_n(strip.data(), dvStripBlock, 3.0F);
    EXPECT_FALSE(fourierPasses().load(nullptr, 3, 2, 2, strip.data() + dvStripLanes));
    EXPECT_EQ(strip.at(0, 0), std::complex<double>(3, 0));
    EXPECT_EQ(strip.at(15, 15), std::complex<double>(3, 0));
  }
}

TEST(TransformStrip, load_tellsWhetherAnythingIsThere) {
  const std::vector<float> nothing(64, 0.0F);
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    Strip strip(dvStripLanes);
    for (const int columns : {9, 16}) {
      EXPECT_FALSE(fourierPasses().load(nothing.data(), 32, columns, 2, strip.data()));
      for (const int place : {0, columns - 1, 32, 32 + columns - 1}) {
        std::vector<float> one = nothing;
        one[static_cast<std::size_t>(place)] = -1e-30F;
        EXPECT_TRUE(fourierPasses().load(one.data(), 32, columns, 2, strip.data())) << place;
      }
    }
  }
}

/// Random planes of width x height.
struct Planes {
  Planes(int columns, int rows, unsigned seed) : width(columns), height(rows) {
    for (const auto& z : randomLine(columns * rows, seed)) {
      first.push_back(static_cast<float>(z.real()));
      second.push_back(static_cast<float>(z.imag()));
    }
  }
  dvPlanePair pair(bool real) const {
    return {first.data(), real ? nullptr : second.data(), width, width, height};
  }
  std::complex<double> at(int x, int y, bool real) const {
    const int place = y * width + x;
    return {first.data()[place], real ? 0.0 : second.data()[place]};
  }
  double energy(bool real) const {
    double sum = 0.0;
    for (std::size_t i = 0; i < first.size(); ++i)
      sum += first[i] * first[i] + (real ? 0.0F : second[i] * second[i]);
    return sum;
  }

  int width;
  int height;
  std::vector<float> first;
  std::vector<float> second;
};

std::complex<double> directFrequency(const Planes& planes, bool real, const Line& root, int u,
                                     int v) {
  const int length = static_cast<int>(root.size());
  std::complex<double> sum;
  for (int y = 0; y < planes.height; ++y) {
    for (int x = 0; x < planes.width; ++x) {
      const auto turn = static_cast<std::size_t>((u * x + v * y) % length);
      sum += planes.at(x, y, real) * root[turn];
    }
  }
  return sum;
}

/// Largest error over all frequencies of a plane, relative to the root of its energy.
double planeError(const Planes& planes, int length, bool real) {
  dvForwardTransform transform;
  transform.begin(length);
  EXPECT_TRUE(transform.columns(planes.pair(real)));
  const Line root = roots(length);
  double worst = 0.0;
  Strip strip(length);
  for (int block = 0; block < transform.plan().blocks(); ++block) {
    if (real && !transform.plan().isKept(block)) continue;
    transform.rows(block, strip.data());
    for (int i = 0; i < length; ++i) {
      for (int lane = 0; lane < dvStripLanes; ++lane) {
        const int u = transform.plan().frequency(i);
        const int v = transform.plan().frequency(block * dvStripLanes + lane);
        worst = std::max(worst,
                         std::abs(strip.at(i, lane) - directFrequency(planes, real, root, u, v)));
      }
    }
  }
  return worst / std::sqrt(planes.energy(real));
}

TEST(TransformPlane, smallPlanes_areTheDirectTransform) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    EXPECT_LT(planeError(Planes(16, 16, 1), 16, false), frequencyTolerance);
    EXPECT_LT(planeError(Planes(7, 3, 2), 32, false), frequencyTolerance);
    EXPECT_LT(planeError(Planes(33, 20, 3), 48, false), frequencyTolerance);
    EXPECT_LT(planeError(Planes(1, 17, 4), 80, true), frequencyTolerance);
    EXPECT_LT(planeError(Planes(40, 48, 5), 48, true), frequencyTolerance);
    EXPECT_LT(planeError(Planes(32, 9, 6), 32, true), frequencyTolerance);
  }
}

TEST(TransformPlane, zeros_areTold) {
  const std::vector<float> zeros(100, 0.0F);
  dvForwardTransform transform;
  transform.begin(32);
  EXPECT_FALSE(transform.columns({zeros.data(), zeros.data(), 10, 10, 10}));
}

TEST(TransformPlane, emptyColumnsAmongOthers_areZeroThere) {
  for (const auto& [begin, end] : {std::pair(0, 16), std::pair(32, 48), std::pair(0, 48)}) {
    Planes planes(80, 40, 8);
    for (int y = 0; y < 40; ++y) {
      for (int x = begin; x < end; ++x)
        planes.first.data()[y * 80 + x] = planes.second.data()[y * 80 + x] = 0.0F;
    }
    EXPECT_LT(planeError(planes, 80, false), frequencyTolerance);
    EXPECT_LT(planeError(planes, 80, true), frequencyTolerance);
  }
}

std::complex<double> pictureAt(const float* picture, int length, bool real, int x, int y) {
  const int block = x / dvStripLanes;
  const int place = real ? block - block % 2 : block;
  const int position = y / dvStripLanes * length + place * dvStripLanes + y % dvStripLanes;
  const float* at = picture + position * dvStripStep + x % dvStripLanes;
  if (real) return at[block % 2 * dvStripLanes];
  return {at[0], at[dvStripLanes]};
}

/// Largest error of a picture transformed there and back.
double backError(const Planes& planes, int length, bool real) {
  dvForwardTransform transform;
  transform.begin(length);
  transform.columns(planes.pair(real));
  dvFourierBuffer frequencies(transformFloats(length));
  Strip strip(length);
  for (int block = 0; block < transform.plan().blocks(); ++block) {
    float* at = frequencies.data() + block * length * dvStripStep;
    if (real && !transform.plan().isKept(block)) {
      std::fill_n(at, length * dvStripStep, 1e9F);
    } else {
      transform.rows(block, at);
    }
  }
  inverseTransform(transform.plan(), transform.passes(), real, frequencies.data(), strip.data());
  double worst = 0.0;
  for (int y = 0; y < length; ++y) {
    for (int x = 0; x < length; ++x) {
      const std::complex<double> back = pictureAt(frequencies.data(), length, real, x, y);
      const bool inside = x < planes.width && y < planes.height;
      const std::complex<double> expected = inside ? planes.at(x, y, real) : 0.0;
      worst = std::max(worst, std::abs(back / static_cast<double>(length * length) - expected));
    }
  }
  return worst;
}

TEST(TransformPlane, forwardAndBack_isThePlaneTimesItsArea) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (const int length : {16, 32, 48, 80, 96, 160, 192, 240, 384}) {
      const Planes planes(length - length / 3, length - 5, 6);
      EXPECT_LT(backError(planes, length, false), 2e-6) << length;
    }
  }
}

TEST(TransformPlane, halfTheFrequenciesOfARealPlane_suffice) {
  for (const dvSimdLevel level : usableLevels()) {
    const SimdLevelInUse use(level);
    for (const int length : {16, 32, 48, 80, 144, 192, 240, 384})
      EXPECT_LT(backError(Planes(length, length, 7), length, true), 2e-6) << length;
  }
}

}  // namespace
}  // namespace drevin::test
