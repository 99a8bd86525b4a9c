#include "deep/DeepExrSource.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "DeepExrFixture.h"
#include "ScratchFolder.h"
#include "terminal/ExitCode.h"

namespace drevintool {
namespace {

using DD::Image::Chan_Alpha;
using DD::Image::Chan_DeepBack;
using DD::Image::Chan_DeepFront;
using DD::Image::Chan_Red;
using DD::Image::Channel;
using DD::Image::ChannelSet;
using testing::DeepPartFixture;
using testing::DeepPixelFixture;
using testing::ScratchFolder;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using Values = std::vector<std::vector<float>>;

// The samples of a pixel with their values for the channels, in the order of the list.
Values samplesOf(DeepExrSource& source, int x, int y, const std::vector<Channel>& channels) {
  ChannelSet set;
  for (const Channel channel : channels)
    set += channel;
  const DD::Image::ChannelMap map(set);
  embedded::DeepRow row;
  source.readRow(y, x, x + 1, set, row);
  EXPECT_EQ(row.counts.size(), 1U);
  EXPECT_EQ(row.values.size(), row.counts.at(0) * map.size());
  Values samples;
  for (std::size_t i = 0; i < row.counts.at(0); ++i) {
    std::vector<float> sample;
    sample.reserve(channels.size());
    for (const Channel channel : channels)
      sample.push_back(
          row.values.at(i * map.size() + static_cast<std::size_t>(map.chanNo(channel))));
    samples.push_back(sample);
  }
  return samples;
}

class DeepSource : public ::testing::Test {
 protected:
  DeepExrSource& open(const DeepPartFixture& part) { return open(std::vector{part}); }

  DeepExrSource& open(const std::vector<DeepPartFixture>& parts, const std::string& name = "",
                      const std::string& view = "") {
    writeDeepFixture(path_, parts);
    source_ = std::make_unique<DeepExrSource>(path_, name, view);
    return *source_;
  }

  // The one line with which opening fails.
  std::string failureOf(const std::vector<DeepPartFixture>& parts, const std::string& name = "",
                        const std::string& view = "") {
    try {
      open(parts, name, view);
    } catch (const ToolError& error) {
      EXPECT_EQ(error.code(), ExitCode::InputUnreadable);
      std::string line = error.what();
      EXPECT_EQ(line.find('\n'), std::string::npos) << line;
      EXPECT_NE(line.find(path_), std::string::npos) << line;
      return line;
    }
    ADD_FAILURE() << "no failure";
    return {};
  }

  static DeepPartFixture part(int width, int height,
                              const std::vector<testing::DeepChannelFixture>& channels,
                              const std::function<DeepPixelFixture(int, int)>& samples) {
    DeepPartFixture made;
    made.display = made.data = Imath::Box2i({0, 0}, {width - 1, height - 1});
    made.channels = channels;
    made.samples = samples;
    return made;
  }

  ScratchFolder folder_;
  std::string path_ = folder_.file("deep.exr");
  std::unique_ptr<DeepExrSource> source_;
};

// A, Z: as many samples as the column's number, with depths that tell column and row.
DeepPixelFixture columnMany(int x, int y) {
  DeepPixelFixture pixel;
  for (int i = 0; i < x; ++i)
    pixel.push_back({0.5, 100.0 * y + 10.0 * x + i});
  return pixel;
}

const std::vector<testing::DeepChannelFixture> kAlphaDepth = {{"A", Imf::HALF}, {"Z", Imf::FLOAT}};
const std::vector<testing::DeepChannelFixture> kAlphaDepthBack = {
    {"A", Imf::HALF}, {"Z", Imf::FLOAT}, {"ZBack", Imf::FLOAT}};

void expectColumnMany(DeepExrSource& source, int width, int height) {
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Values samples = samplesOf(source, x, height - 1 - y, {Chan_DeepFront});
      ASSERT_EQ(samples.size(), static_cast<std::size_t>(x)) << x << " " << y;
      for (int i = 0; i < x; ++i)
        ASSERT_EQ(
            samples[static_cast<std::size_t>(i)][0],
            100.0F * static_cast<float>(y) + 10.0F * static_cast<float>(x) + static_cast<float>(i));
    }
  }
}

TEST_F(DeepSource, scanlines_readAsTheyWereWritten) {
  expectColumnMany(open(part(7, 5, kAlphaDepth, columnMany)), 7, 5);
}

TEST_F(DeepSource, everyCompression_readsTheSame) {
  for (const Imf::Compression compression :
       {Imf::NO_COMPRESSION, Imf::RLE_COMPRESSION, Imf::ZIPS_COMPRESSION}) {
    DeepPartFixture fixture = part(7, 5, kAlphaDepth, columnMany);
    fixture.compression = compression;
    expectColumnMany(open(fixture), 7, 5);
    fixture.tileWidth = fixture.tileHeight = 4;
    expectColumnMany(open(fixture), 7, 5);
  }
}

TEST_F(DeepSource, rowsStoredFromTheBottom_readTheSame) {
  DeepPartFixture fixture = part(7, 5, kAlphaDepth, columnMany);
  fixture.lineOrder = Imf::DECREASING_Y;
  expectColumnMany(open(fixture), 7, 5);
}

TEST_F(DeepSource, tiles_readAsScanlines) {
  for (const auto& [width, height] : {std::pair(4, 4), std::pair(3, 2), std::pair(16, 1)}) {
    DeepPartFixture fixture = part(13, 9, kAlphaDepth, columnMany);
    fixture.tileWidth = width;
    fixture.tileHeight = height;
    expectColumnMany(open(fixture), 13, 9);
  }
}

TEST_F(DeepSource, tilesOfSeveralLevels_readTheFullOne) {
  DeepPartFixture fixture = part(13, 9, kAlphaDepth, columnMany);
  fixture.tileWidth = fixture.tileHeight = 4;
  fixture.mipMaps = true;
  expectColumnMany(open(fixture), 13, 9);
}

TEST_F(DeepSource, numbersOfEveryType_becomeTheirValues) {
  DeepExrSource& source =
      open(part(1, 1, {{"A", Imf::FLOAT}, {"R", Imf::HALF}, {"Z", Imf::HALF}, {"id", Imf::UINT}},
                [](int, int) {
                  return DeepPixelFixture{{0.1, 0.333251953125, 2.5, 4294967040.0}};
                }));
  const Values samples = samplesOf(
      source, 0, 0, {Chan_Alpha, Chan_Red, Chan_DeepFront, DD::Image::getChannel("other.id")});
  ASSERT_EQ(samples.size(), 1U);
  EXPECT_EQ(samples[0], (std::vector<float>{0.1F, 0.333251953125F, 2.5F, 4294967040.0F}));
}

TEST_F(DeepSource, backDepths_stayAsTheyStand) {
  DeepExrSource& source = open(part(1, 1, kAlphaDepthBack, [](int, int) {
    return DeepPixelFixture{{1.0, 2.0, 3.5}, {1.0, 4.0, 1.0}};
  }));
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_DeepFront, Chan_DeepBack}),
            (Values{{2.0F, 3.5F}, {4.0F, 1.0F}}));
}

TEST_F(DeepSource, withoutBackDepths_theBackIsTheFront) {
  DeepExrSource& source = open(part(3, 1, kAlphaDepth, columnMany));
  EXPECT_TRUE(source.channels().contains(Chan_DeepBack));
  EXPECT_EQ(samplesOf(source, 2, 0, {Chan_DeepFront, Chan_DeepBack}),
            (Values{{20.0F, 20.0F}, {21.0F, 21.0F}}));
}

TEST_F(DeepSource, withoutAlpha_samplesAreOpaque) {
  DeepExrSource& source = open(part(1, 1, {{"R", Imf::HALF}, {"Z", Imf::FLOAT}}, [](int, int) {
    return DeepPixelFixture{{0.5, 1.0}, {0.25, 2.0}};
  }));
  EXPECT_FALSE(source.hasAlpha());
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_Alpha, Chan_Red}), (Values{{1.0F, 0.5F}, {1.0F, 0.25F}}));
}

TEST_F(DeepSource, withoutDepth_isRefusedWithWhatThereIs) {
  const std::string line = failureOf({part(1, 1, {{"A", Imf::HALF}, {"ZBack", Imf::FLOAT}},
                                           [](int, int) { return DeepPixelFixture(); })});
  EXPECT_NE(line.find("no depth channel Z"), std::string::npos) << line;
  EXPECT_NE(line.find("A, ZBack"), std::string::npos) << line;
}

TEST_F(DeepSource, unsortedSamples_comeNearestFirst) {
  DeepExrSource& source = open(part(1, 1, kAlphaDepthBack, [](int, int) {
    return DeepPixelFixture{{0.1, 5.0, 6.0}, {0.2, 1.0, 9.0}, {0.3, 5.0, 5.5}, {0.4, 1.0, 2.0}};
  }));
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_DeepFront, Chan_DeepBack}),
            (Values{{1.0F, 2.0F}, {1.0F, 9.0F}, {5.0F, 5.5F}, {5.0F, 6.0F}}));
}

TEST_F(DeepSource, samplesAtTheSameDepths_keepTheirOrder) {
  DeepExrSource& source = open(part(1, 1, kAlphaDepth, [](int, int) {
    return DeepPixelFixture{{0.75, 5.0}, {0.5, 2.0}, {0.25, 5.0}, {1.0, 5.0}};
  }));
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_Alpha}), (Values{{0.5F}, {0.75F}, {0.25F}, {1.0F}}));
}

TEST_F(DeepSource, depthsThatAreNoNumbers_comeLast) {
  DeepExrSource& source = open(part(1, 1, kAlphaDepth, [](int, int) {
    return DeepPixelFixture{{0.75, kNaN}, {0.5, 1e30}, {0.25, -3.0}};
  }));
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_Alpha}), (Values{{0.25F}, {0.5F}, {0.75F}}));
}

TEST_F(DeepSource, windows_becomeFormatAndBox) {
  DeepPartFixture fixture = part(1, 1, kAlphaDepth, [](int x, int y) {
    return DeepPixelFixture{{1.0, 1000.0 * x + y}};
  });
  fixture.display = Imath::Box2i({10, 20}, {19, 25});
  fixture.data = Imath::Box2i({-3, 18}, {12, 27});
  for (const int tile : {0, 5}) {
    fixture.tileWidth = fixture.tileHeight = tile;
    DeepExrSource& source = open(fixture);
    EXPECT_EQ(source.format().width(), 10);
    EXPECT_EQ(source.format().height(), 6);
    EXPECT_EQ(source.box().x(), -13);
    EXPECT_EQ(source.box().r(), 3);
    EXPECT_EQ(source.box().y(), -2);
    EXPECT_EQ(source.box().t(), 8);
    EXPECT_EQ(samplesOf(source, -13, -2, {Chan_DeepFront}), (Values{{-3000.0F + 27.0F}}));
    EXPECT_EQ(samplesOf(source, 2, 7, {Chan_DeepFront}), (Values{{12000.0F + 18.0F}}));
  }
}

TEST_F(DeepSource, dataWindowBesideTheDisplayWindow_isRead) {
  DeepPartFixture fixture = part(4, 4, kAlphaDepth, columnMany);
  fixture.data = Imath::Box2i({100, -50}, {102, -50});
  fixture.samples = [](int x, int) { return DeepPixelFixture{{1.0, 1.0 * x}}; };
  DeepExrSource& source = open(fixture);
  EXPECT_EQ(source.box().y(), 53);
  EXPECT_EQ(samplesOf(source, 101, 53, {Chan_DeepFront}), (Values{{101.0F}}));
}

TEST_F(DeepSource, emptyPixels_areEmpty) {
  for (const int tile : {0, 3}) {
    DeepPartFixture fixture = part(6, 4, kAlphaDepth, [](int, int) { return DeepPixelFixture(); });
    fixture.tileWidth = fixture.tileHeight = tile;
    DeepExrSource& source = open(fixture);
    for (int y = 0; y < 4; ++y) {
      for (int x = 0; x < 6; ++x)
        EXPECT_TRUE(samplesOf(source, x, y, {Chan_DeepFront}).empty());
    }
    EXPECT_EQ(source.counts().samples, 0U);
    EXPECT_EQ(source.counts().mostPerPixel, 0U);
  }
}

TEST_F(DeepSource, someColumnsAndChannels_arePartsOfTheRow) {
  DeepExrSource& source =
      open(part(8, 1, {{"A", Imf::HALF}, {"R", Imf::HALF}, {"Z", Imf::FLOAT}}, [](int x, int) {
        return DeepPixelFixture{{0.5, x / 8.0, 1.0 + x}, {0.25, x / 8.0, 10.0 + x}};
      }));
  embedded::DeepRow row;
  source.readRow(0, 3, 6, ChannelSet(Chan_Red), row);
  EXPECT_EQ(row.counts, (std::vector<std::uint32_t>{2, 2, 2}));
  EXPECT_EQ(row.values, (std::vector<float>{0.375F, 0.375F, 0.5F, 0.5F, 0.625F, 0.625F}));
  source.readRow(0, 0, 1, ChannelSet(Chan_Alpha) + ChannelSet(Chan_DeepFront), row);
  EXPECT_EQ(row.counts, std::vector<std::uint32_t>{2});
  EXPECT_EQ(row.values, (std::vector<float>{0.5F, 1.0F, 0.25F, 10.0F}));
}

TEST_F(DeepSource, channelsOfOneHostName_theFirstCounts) {
  DeepExrSource& source =
      open(part(1, 1, {{"A", Imf::HALF}, {"R", Imf::HALF}, {"Z", Imf::FLOAT}, {"red", Imf::HALF}},
                [](int, int) {
                  return DeepPixelFixture{{1.0, 0.5, 1.0, 0.75}};
                }));
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_Red}), (Values{{0.5F}}));
}

std::vector<DeepPartFixture> fourParts() {
  DeepPartFixture flat = testing::opaqueDeepPart(4, 3, 1.0);
  flat.flat = true;
  flat.name = "beauty";
  DeepPartFixture left = testing::opaqueDeepPart(4, 3, 2.0);
  left.name = "deep.left";
  left.view = "left";
  DeepPartFixture right = testing::opaqueDeepPart(4, 3, 3.0);
  right.name = "deep.right";
  right.view = "right";
  DeepPartFixture tiles = testing::opaqueDeepPart(4, 3, 4.0);
  tiles.name = "smoke.right";
  tiles.view = "right";
  tiles.tileWidth = tiles.tileHeight = 2;
  return {flat, left, right, tiles};
}

TEST_F(DeepSource, ofSeveralParts_theFirstDeepOneIsTaken) {
  DeepExrSource& source = open(fourParts());
  EXPECT_EQ(source.partName(), "deep.left");
  EXPECT_EQ(samplesOf(source, 1, 1, {Chan_DeepFront}), (Values{{2.0F}}));
}

TEST_F(DeepSource, partByItsName_isTaken) {
  EXPECT_EQ(samplesOf(open(fourParts(), "smoke.right"), 3, 2, {Chan_DeepFront}), (Values{{4.0F}}));
  EXPECT_EQ(samplesOf(open(fourParts(), "deep.right"), 3, 2, {Chan_DeepFront}), (Values{{3.0F}}));
}

TEST_F(DeepSource, view_meansItsFirstDeepPart) {
  EXPECT_EQ(open(fourParts(), "", "right").partName(), "deep.right");
  EXPECT_EQ(open(fourParts(), "smoke.right", "right").partName(), "smoke.right");
}

TEST_F(DeepSource, unknownPartOrView_listsTheDeepOnes) {
  for (const auto& [name, view] : {std::pair("beauty", ""), std::pair("", "middle"),
                                   std::pair("deep.left", "right"), std::pair("nope", "")}) {
    const std::string line = failureOf(fourParts(), name, view);
    EXPECT_NE(line.find("deep.left (view left), deep.right (view right), smoke.right (view right)"),
              std::string::npos)
        << line;
    EXPECT_NE(line.find(*name != '\0' ? name : view), std::string::npos) << line;
  }
}

TEST_F(DeepSource, partsWithoutNames_areListedByNumber) {
  const std::string line = failureOf({testing::opaqueDeepPart(2, 2, 1.0)}, "nope");
  EXPECT_NE(line.find("part 0 without a name"), std::string::npos) << line;
}

TEST_F(DeepSource, flatFile_isSentToTheOtherOption) {
  DeepPartFixture flat = testing::opaqueDeepPart(4, 3, 1.0);
  flat.flat = true;
  const std::string line = failureOf({flat});
  EXPECT_NE(line.find("--input"), std::string::npos) << line;
}

TEST_F(DeepSource, counts_areOfWhatWasRead) {
  DeepExrSource& source = open(part(5, 200, kAlphaDepthBack, [](int x, int) {
    DeepPixelFixture pixel;
    for (int i = 0; i < x; ++i)
      pixel.push_back({1.0, 1.0 * i, i % 2 == 0 ? i + 0.5 : i - 0.5});
    return pixel;
  }));
  EXPECT_EQ(source.counts().samples, 0U) << "opening reads no samples";
  for (int repeat = 0; repeat < 2; ++repeat) {
    for (int y = 0; y < 200; ++y)
      samplesOf(source, 0, y, {Chan_DeepFront});
  }
  EXPECT_EQ(source.counts().samples, 200U * (1 + 2 + 3 + 4));
  EXPECT_EQ(source.counts().thick, 200U * (1 + 1 + 2 + 2)) << "a back in front is not thick";
  EXPECT_EQ(source.counts().mostPerPixel, 4U);
}

TEST_F(DeepSource, bandInMemory_isNotReadAgain) {
  DeepExrSource& source = open(part(7, 300, kAlphaDepth, columnMany));
  for (int repeat = 0; repeat < 3; ++repeat) {
    for (int y = 0; y < 300; ++y)
      samplesOf(source, 3, y, {Chan_DeepFront});
  }
  EXPECT_EQ(source.bandReads(), 5U) << "300 rows in bands of 64";
}

TEST_F(DeepSource, channelThatWasNotAskedBefore_isReadThen) {
  DeepExrSource& source = open(testing::opaqueDeepPart(4, 3, 6.0));
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_DeepFront}), (Values{{6.0F}}));
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_Red, Chan_Alpha}), (Values{{0.75F, 1.0F}}));
  EXPECT_EQ(samplesOf(source, 0, 0, {Chan_DeepFront}), (Values{{6.0F}}));
  EXPECT_EQ(source.bandReads(), 2U);
  EXPECT_EQ(source.counts().samples, 12U) << "counted once";
}

TEST_F(DeepSource, manyThreads_readTheSameAndEachBandOnce) {
  for (const int tile : {0, 16}) {
    DeepPartFixture fixture = part(20, 200, kAlphaDepth, columnMany);
    fixture.tileWidth = fixture.tileHeight = tile;
    DeepExrSource& source = open(fixture);
    std::vector<embedded::DeepRow> rows(200);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&source, &rows, thread] {
        for (int y = thread; y < 200; y += 4)
          source.readRow(y, 0, 20, ChannelSet(Chan_DeepFront), rows[static_cast<std::size_t>(y)]);
      });
    }
    for (std::thread& thread : threads)
      thread.join();
    EXPECT_EQ(source.bandReads(), tile == 0 ? 4U : 13U);
    for (int y = 0; y < 200; ++y) {
      const embedded::DeepRow& row = rows[static_cast<std::size_t>(y)];
      ASSERT_EQ(row.values.size(), 190U);
      ASSERT_EQ(row.values.back(), 100.0F * static_cast<float>(199 - y) + 190.0F + 18.0F);
    }
  }
}

TEST_F(DeepSource, hash_tellsFilesAndPartsApart) {
  const auto hashOf = [](const DeepExrSource& source) {
    DD::Image::Hash hash;
    source.append(hash);
    return hash;
  };
  const DD::Image::Hash left = hashOf(open(fourParts()));
  EXPECT_EQ(hashOf(DeepExrSource(path_, "", "")), left);
  EXPECT_NE(hashOf(DeepExrSource(path_, "deep.right", "")), left);
  const DD::Image::Hash other = hashOf(open({testing::opaqueDeepPart(4, 3, 2.0)}));
  EXPECT_NE(other, left);
}

}  // namespace
}  // namespace drevintool
