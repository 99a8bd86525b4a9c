#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfDeepFrameBuffer.h>
#include <OpenEXR/ImfDeepScanLineInputFile.h>
#include <OpenEXR/ImfPartType.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "DemoSamples.h"
#include "ScratchFolder.h"
#include "demo/DemoDeepFile.h"
#include "demo/DemoDeepScene.h"
#include "demo/DemoFigure.h"
#include "demo/DemoRenderer.h"
#include "demo/DemoShelter.h"
#include "demo/DemoSmoke.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using testing::compositeOf;
using testing::DemoSamples;
using testing::kHalfStep;
using testing::shareBetween;

constexpr int kDeepWidth = 240;
constexpr int kDeepHeight = 135;

const DemoPictures& pictures() {
  static const DemoPictures kPictures = renderDemoPictures(DemoCamera{}, kDeepWidth);
  return kPictures;
}

// The samples of every pixel, row by row.
std::vector<DemoSamples> pixelsOf(const DemoDeepPicture& picture) {
  std::vector<DemoSamples> pixels;
  for (const DemoDeepRow& row : picture.rows) {
    auto first = row.samples.begin();
    for (const unsigned count : row.counts) {
      pixels.emplace_back(first, first + count);
      first += count;
    }
  }
  return pixels;
}

const std::vector<DemoSamples>& pixels() {
  static const std::vector<DemoSamples> kPixels = pixelsOf(pictures().deep);
  return kPixels;
}

const DemoSamples& pixelAt(int column, int row) {
  const int index = row * kDeepWidth + column;
  return pixels()[static_cast<std::size_t>(index)];
}

bool isThick(const DemoDeepSample& sample) {
  return sample.back > sample.front;
}

// Whether a pixel shows the scene alone, without glass and steam.
bool isPlain(int column, int row) {
  const DemoRay ray = DemoCamera{}.ray(column + 0.5, row + 0.5, kDeepWidth, kDeepHeight);
  const DemoSamples& samples = pixelAt(column, row);
  return !nearShelter(ray, 0.01) && std::none_of(samples.begin(), samples.end(), isThick);
}

// The scene at four times the size, one ray a pixel: 16 rays for each pixel of the deep picture,
// traced apart from it.
class Finer {
 public:
  Finer() : renderer_(DemoCamera{}, kDeepWidth * kDemoSide, kDeepHeight * kDemoSide) {}

  DemoVector colour(int column, int row) const {
    DemoVector sum;
    forRays(column, row, [&](int x, int y, const DemoHit& hit) {
      sum = sum + hit.radiance + renderer_.glow(x, y, hit.t);
    });
    return sum * (1.0 / (kDemoSide * kDemoSide));
  }

  double shareBetween(int column, int row, double from, double to) const {
    int count = 0;
    forRays(column, row, [&](int, int, const DemoHit& hit) {
      if (hit.t >= from && hit.t < to) ++count;
    });
    return static_cast<double>(count) / (kDemoSide * kDemoSide);
  }

 private:
  template <typename Work>
  void forRays(int column, int row, const Work& work) const {
    for (int y = row * kDemoSide; y < (row + 1) * kDemoSide; ++y) {
      for (int x = column * kDemoSide; x < (column + 1) * kDemoSide; ++x)
        work(x, y, renderer_.sketched(x, y));
    }
  }

  DemoRenderer renderer_;
};

const Finer& finer() {
  static const Finer kFiner;
  return kFiner;
}

// --- the scene -----------------------------------------------------------------------------

TEST(DemoDeepScene, picture_hasTheFlatOnesSizeAndSamplesEverywhere) {
  EXPECT_EQ(pictures().deep.width, kDeepWidth);
  EXPECT_EQ(pictures().deep.height(), kDeepHeight);
  ASSERT_EQ(pixels().size(), static_cast<std::size_t>(kDeepWidth * kDeepHeight));
  for (const DemoSamples& samples : pixels())
    ASSERT_FALSE(samples.empty());
}

TEST(DemoDeepScene, flatPicture_isTheOneRenderedAlone) {
  EXPECT_EQ(pictures().flat.planes, renderDemoScene(DemoCamera{}, kDeepWidth).planes);
}

TEST(DemoDeepScene, samples_areNearestFirstWithoutOverlap) {
  for (const DemoSamples& samples : pixels()) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
      ASSERT_GT(samples[i].front, 1.0F);
      ASSERT_GE(samples[i].back, samples[i].front);
      if (i > 0) {
        ASSERT_GE(samples[i].front, samples[i - 1].back);
      }
    }
  }
}

TEST(DemoDeepScene, valuesOfSamples_areFiniteAndAlphasEndInOne) {
  for (const DemoSamples& samples : pixels()) {
    for (const DemoDeepSample& sample : samples) {
      ASSERT_GT(sample.alpha, 0.0F);
      ASSERT_LE(sample.alpha, 1.0F);
      for (const float value : {sample.front, sample.back, sample.red, sample.green, sample.blue})
        ASSERT_TRUE(std::isfinite(value) && value >= 0.0F) << value;
    }
    ASSERT_EQ(samples.back().alpha, 1.0F);
    for (std::size_t i = 0; i + 1 < samples.size(); ++i)
      ASSERT_LT(samples[i].alpha, 1.0F);
  }
}

TEST(DemoDeepScene, pixels_haveFewSamples) {
  std::size_t most = 0;
  std::size_t all = 0;
  for (const DemoSamples& samples : pixels()) {
    most = std::max(most, samples.size());
    all += samples.size();
  }
  EXPECT_LE(most, 16U);
  EXPECT_LT(all, 3 * pixels().size());
}

TEST(DemoDeepScene, sky_isOpaqueAndFarButNotInfinitely) {
  std::size_t sky = 0;
  for (const DemoSamples& samples : pixels())
    sky += std::abs(samples.back().front - kDemoSkyDepth) < 0.01 ? 1U : 0U;
  EXPECT_GT(sky, pixels().size() / 100);
}

TEST(DemoDeepScene, edges_holdTheSurfaceBehindInItsOwnDepth) {
  int edges = 0;
  for (const DemoSamples& samples : pixels()) {
    const bool edge = samples.size() >= 2 && samples[0].front > kDemoFigureNear &&
                      samples[0].front < kDemoFigureFar && samples[1].front > 10.0F;
    if (!edge) continue;
    EXPECT_LT(samples[0].alpha, 1.0F);
    ++edges;
  }
  EXPECT_GT(edges, 300);  // the outline of the figure at this size
}

// Steam and glass lie behind the figure, so its shares are those of the scene everywhere. Where the
// four neighbours showed the same thing a pixel has one ray, and a thin thing may slip through.
TEST(DemoDeepScene, sharesOfTheFigure_areThoseOfAnIndependentTrace) {
  int partial = 0;
  int missed = 0;
  for (int row = 0; row < kDeepHeight; ++row) {
    for (int column = 0; column < kDeepWidth; ++column) {
      const DemoSamples& samples = pixelAt(column, row);
      const double want = finer().shareBetween(column, row, kDemoFigureNear, kDemoFigureFar);
      const double got = shareBetween(samples, kDemoFigureNear, kDemoFigureFar);
      if (want > 0.0 && want < 1.0) ++partial;
      if (std::abs(got - want) > kHalfStep) ++missed;
    }
  }
  EXPECT_GT(partial, 300);
  EXPECT_LE(missed, partial / 50);
}

// A pixel of several samples had all its rays: what remains is the rounding of alphas, and light in
// the air that is told once a sample instead of once a ray.
TEST(DemoDeepScene, compositeAtEdges_isTheAntialiasedScene) {
  int edges = 0;
  for (int row = 0; row < kDeepHeight; ++row) {
    for (int column = 0; column < kDeepWidth; ++column) {
      const DemoSamples& samples = pixelAt(column, row);
      if (!isPlain(column, row) || samples.size() < 2) continue;
      const double want = luminance(finer().colour(column, row));
      ASSERT_NEAR(luminance(compositeOf(samples)), want, 0.002 + 0.005 * want)
          << column << " " << row;
      ++edges;
    }
  }
  EXPECT_GT(edges, 500);
}

// Elsewhere one ray may stand for sixteen, where its neighbours were much like it.
TEST(DemoDeepScene, composite_isTheAntialiasedSceneAlmostEverywhere) {
  int plain = 0;
  int close = 0;
  double wanted = 0.0;
  double gotten = 0.0;
  for (int row = 0; row < kDeepHeight; ++row) {
    for (int column = 0; column < kDeepWidth; ++column) {
      if (!isPlain(column, row)) continue;
      const double want = luminance(finer().colour(column, row));
      const double got = luminance(compositeOf(pixelAt(column, row)));
      ++plain;
      if (std::abs(got - want) <= 0.01 + 0.02 * want) ++close;
      wanted += want;
      gotten += got;
    }
  }
  EXPECT_GT(plain, kDeepWidth * kDeepHeight / 2);
  EXPECT_GT(close, plain * 97 / 100);
  EXPECT_NEAR(gotten / wanted, 1.0, 0.01);
}

TEST(DemoDeepScene, pane_letsTheStreetThroughInItsOwnDepth) {
  int panes = 0;
  for (const DemoSamples& samples : pixels()) {
    const bool pane = std::abs(samples[0].front - kDemoPaneDepth) < 0.05 &&
                      samples[0].alpha > 0.25F && samples[0].alpha < 0.9F;
    if (!pane) continue;
    ASSERT_GE(samples.size(), 2U);
    ASSERT_GT(samples[1].front, kDemoPaneDepth + 0.1);
    ++panes;
  }
  EXPECT_GT(panes, kDeepWidth * kDeepHeight / 8);
}

TEST(DemoDeepScene, steam_isThickSamplesSeveralToAPixelBetweenItsDepths) {
  int several = 0;
  for (const DemoSamples& samples : pixels()) {
    const auto thick = std::count_if(samples.begin(), samples.end(), isThick);
    if (thick >= 2) ++several;
    for (const DemoDeepSample& sample : samples) {
      if (!isThick(sample)) continue;
      ASSERT_GE(sample.front, kDemoSmokeNear);
      ASSERT_LE(sample.back, kDemoSmokeFar);
      ASSERT_LT(sample.alpha, 1.0F);
    }
  }
  EXPECT_GT(several, kDeepWidth * kDeepHeight / 50);
}

// --- the file --------------------------------------------------------------------------------

struct ReadDeep {
  Imf::Header header;
  std::vector<DemoSamples> pixels;
};

ReadDeep readDeep(const std::string& path) {
  Imf::DeepScanLineInputFile file(path.c_str());
  ReadDeep read{file.header(), {}};
  const Imath::Box2i window = read.header.dataWindow();
  const std::size_t width = static_cast<std::size_t>(window.max.x) + 1;
  const std::size_t count = width * (static_cast<std::size_t>(window.max.y) + 1);
  std::vector<unsigned> counts(count);
  Imf::DeepFrameBuffer frame;
  frame.insertSampleCountSlice(Imf::Slice(Imf::UINT, reinterpret_cast<char*>(counts.data()),
                                          sizeof(unsigned), sizeof(unsigned) * width));
  const std::array<std::pair<const char*, float DemoDeepSample::*>, 6> channels = {
      {{"R", &DemoDeepSample::red},
       {"G", &DemoDeepSample::green},
       {"B", &DemoDeepSample::blue},
       {"A", &DemoDeepSample::alpha},
       {"Z", &DemoDeepSample::front},
       {"ZBack", &DemoDeepSample::back}}};
  std::array<std::vector<char*>, 6> pointers;
  for (std::size_t c = 0; c < channels.size(); ++c) {
    pointers[c].resize(count);
    frame.insert(channels[c].first,
                 Imf::DeepSlice(Imf::FLOAT, reinterpret_cast<char*>(pointers[c].data()),
                                sizeof(char*), sizeof(char*) * width, sizeof(DemoDeepSample)));
  }
  file.setFrameBuffer(frame);
  file.readPixelSampleCounts(window.min.y, window.max.y);
  read.pixels.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    read.pixels[i].resize(counts[i]);
    for (std::size_t c = 0; c < channels.size(); ++c) {
      DemoDeepSample* first = read.pixels[i].data();
      if (first != nullptr)
        pointers[c][i] = reinterpret_cast<char*>(&(first->*(channels[c].second)));
    }
  }
  file.readPixels(window.min.y, window.max.y);
  return read;
}

TEST(DemoDeepFile, file_isDeepWithHalfColourAndFloatDepths) {
  const testing::ScratchFolder folder;
  writeDemoDeep(pictures().deep, folder.file("a.exr"));
  const Imf::Header header = readDeep(folder.file("a.exr")).header;
  EXPECT_EQ(header.type(), Imf::DEEPSCANLINE);
  EXPECT_EQ(header.compression(), Imf::ZIPS_COMPRESSION);
  EXPECT_EQ(header.displayWindow(), Imath::Box2i({0, 0}, {kDeepWidth - 1, kDeepHeight - 1}));
  EXPECT_EQ(header.dataWindow(), header.displayWindow());
  for (const char* name : {"R", "G", "B", "A"})
    EXPECT_EQ(header.channels()[name].type, Imf::HALF) << name;
  for (const char* name : {"Z", "ZBack"})
    EXPECT_EQ(header.channels()[name].type, Imf::FLOAT) << name;
}

TEST(DemoDeepFile, samples_areReadBack) {
  const testing::ScratchFolder folder;
  writeDemoDeep(pictures().deep, folder.file("a.exr"));
  const ReadDeep read = readDeep(folder.file("a.exr"));
  ASSERT_EQ(read.pixels.size(), pixels().size());
  for (std::size_t i = 0; i < read.pixels.size(); ++i) {
    ASSERT_EQ(read.pixels[i].size(), pixels()[i].size()) << i;
    for (std::size_t s = 0; s < read.pixels[i].size(); ++s) {
      const DemoDeepSample& want = pixels()[i][s];
      const DemoDeepSample& got = read.pixels[i][s];
      ASSERT_EQ(got.front, want.front);
      ASSERT_EQ(got.back, want.back);
      ASSERT_EQ(got.alpha, want.alpha);
      ASSERT_NEAR(got.red, want.red, 1e-6F + want.red * static_cast<float>(kHalfStep));
      ASSERT_NEAR(got.blue, want.blue, 1e-6F + want.blue * static_cast<float>(kHalfStep));
    }
  }
}

TEST(DemoDeepFile, pixelsWithoutSamplesAndValuesBeyondHalf_areWritten) {
  const testing::ScratchFolder folder;
  DemoDeepPicture picture;
  picture.width = 2;
  picture.rows = {{{0, 1}, {{2.0F, 3.0F, 0.5F, 1e6F, 1.0F, 0.0F}}}, {{0, 0}, {}}};
  writeDemoDeep(picture, folder.file("a.exr"));
  const ReadDeep read = readDeep(folder.file("a.exr"));
  ASSERT_EQ(read.pixels.size(), 4U);
  EXPECT_TRUE(read.pixels[0].empty());
  ASSERT_EQ(read.pixels[1].size(), 1U);
  EXPECT_EQ(read.pixels[1][0].red, 65504.0F);
  EXPECT_EQ(read.pixels[1][0].back, 3.0F);
  EXPECT_TRUE(read.pixels[3].empty());
}

TEST(DemoDeepFile, anyNumberOfThreads_givesTheSameFile) {
  const testing::ScratchFolder folder;
  for (const unsigned threads : {1U, 2U, 5U}) {
    const std::string path = folder.file(std::to_string(threads) + ".exr");
    writeDemoDeep(renderDemoPictures(DemoCamera{}, 96, threads).deep, path);
    EXPECT_FALSE(testing::bytesOfFile(path).empty());
    EXPECT_EQ(testing::bytesOfFile(path), testing::bytesOfFile(folder.file("1.exr"))) << threads;
  }
}

TEST(DemoDeepFile, folderThatIsMissing_leavesNothingAndNamesTheFile) {
  const testing::ScratchFolder folder;
  try {
    writeDemoDeep(pictures().deep, folder.file("none/a.exr"));
    FAIL() << "nothing was thrown";
  } catch (const ToolError& error) {
    EXPECT_EQ(error.code(), ExitCode::OutputNotWritten);
    EXPECT_NE(std::string(error.what()).find("none/a.exr"), std::string::npos);
  }
  EXPECT_TRUE(folder.entries().empty());
}

}  // namespace
}  // namespace drevintool
