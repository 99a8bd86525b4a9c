#include "EmbeddedHost/DeepInput.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "EmbeddedHost/Render.h"
#include "host/DeepOrderGuard.h"
#include "host/DeepSources.h"

using namespace DD::Image;
using deep::alphaAndDepths;
using deep::markedDeepImage;
using deep::WatchedSource;
using embedded::DeepInput;

namespace {

/// A validated input of the marked picture, through a source that is watched.
struct WatchedInput {
  WatchedInput() { input.DeepOp::validate(true); }
  explicit WatchedInput(std::shared_ptr<embedded::DeepSource> picture)
      : source(std::make_shared<WatchedSource>(std::move(picture))) {
    input.DeepOp::validate(true);
  }
  ~WatchedInput() { embedded::clearAbort(); }
  WatchedInput(const WatchedInput&) = delete;
  WatchedInput& operator=(const WatchedInput&) = delete;

  bool read(const Box& box, const ChannelSet& channels = alphaAndDepths) {
    return input.deepEngine(box, channels, plane);
  }

  std::shared_ptr<WatchedSource> source = std::make_shared<WatchedSource>(markedDeepImage());
  DeepInput input{source};
  DeepPlane plane;
};

/// Each pixel of the plane has the marked samples in the order of the host, or none.
void expectMarked(const DeepPlane& plane, bool farFirst, const Box& picture = Box(0, 0, 6, 4)) {
  for (int y = plane.box().y(); y < plane.box().t(); ++y) {
    for (int x = plane.box().x(); x < plane.box().r(); ++x) {
      const DeepPixel pixel = plane.getPixel(y, x);
      const bool inside = picture.contains(Box(x, y, x + 1, y + 1));
      const int count = inside ? deep::countOf(x, y) : 0;
      ASSERT_EQ(pixel.getSampleCount(), static_cast<std::size_t>(count)) << x << ", " << y;
      for (int i = 0; i < count; ++i) {
        const std::size_t at = static_cast<std::size_t>(farFirst ? count - 1 - i : i);
        EXPECT_EQ(pixel.getOrderedSample(at, Chan_DeepFront), 1.0F + static_cast<float>(i));
        EXPECT_EQ(pixel.getOrderedSample(at, Chan_Alpha), deep::markOf(x, y, i));
      }
    }
  }
}

class DeepInputOrder : public deep::InBothOrders {};
INSTANTIATE_TEST_SUITE_P(Order, DeepInputOrder, deep::bothOrders(), deep::orderName);

}  // namespace

TEST_P(DeepInputOrder, boxInsideThePicture_hasItsSamples) {
  WatchedInput bench;
  ASSERT_TRUE(bench.read(Box(1, 1, 5, 3)));
  EXPECT_EQ(bench.plane.box(), Box(1, 1, 5, 3));
  expectMarked(bench.plane, farFirst());
}

TEST_P(DeepInputOrder, boxAroundThePicture_hasEmptyPixelsOutside) {
  WatchedInput bench;
  ASSERT_TRUE(bench.read(Box(-2, -3, 9, 6)));
  EXPECT_EQ(bench.plane.box(), Box(-2, -3, 9, 6));
  expectMarked(bench.plane, farFirst());
  EXPECT_EQ(bench.plane.getTotalSampleCount(), 36U);
}

TEST_P(DeepInputOrder, boxAcrossOneEdge_hasEmptyPixelsBeyondIt) {
  for (const Box& box : {Box(-2, 1, 2, 3), Box(4, 1, 9, 3), Box(1, -2, 3, 2), Box(1, 2, 3, 7)}) {
    WatchedInput bench;
    ASSERT_TRUE(bench.read(box));
    expectMarked(bench.plane, farFirst());
    EXPECT_GT(bench.plane.getTotalSampleCount(), 0U);
  }
}

TEST_P(DeepInputOrder, boxBesideThePicture_isEmptyAndReadsNothing) {
  for (const Box& box : {Box(-9, 0, 0, 4), Box(6, 0, 9, 4), Box(0, -5, 6, 0), Box(0, 4, 6, 5)}) {
    WatchedInput bench;
    ASSERT_TRUE(bench.read(box));
    EXPECT_EQ(bench.plane.box(), box);
    EXPECT_EQ(bench.plane.getTotalSampleCount(), 0U);
    EXPECT_EQ(bench.plane.getSampleCount(box.t() - 1, box.r() - 1), 0U);
    EXPECT_TRUE(bench.source->calls().empty());
  }
}

TEST_P(DeepInputOrder, emptyPicture_isEmptyEverywhere) {
  WatchedInput bench(std::make_shared<embedded::DeepImage>(Format(8, 6), Box(), alphaAndDepths));
  ASSERT_TRUE(bench.read(Box(0, 0, 3, 2)));
  EXPECT_EQ(bench.plane.getSampleCount(1, 2), 0U);
  EXPECT_TRUE(bench.source->calls().empty());
}

TEST_P(DeepInputOrder, oneRow_isReadByItsColumns) {
  WatchedInput bench;
  ASSERT_TRUE(bench.input.deepEngine(2, 1, 9, alphaAndDepths, bench.plane));
  EXPECT_EQ(bench.plane.box(), Box(1, 2, 9, 3));
  expectMarked(bench.plane, farFirst());
}

TEST_P(DeepInputOrder, samplesAtTheSameDepths_keepTheOrderOfTheSource) {
  auto image = std::make_shared<embedded::DeepImage>(Format(1, 1), Box(0, 0, 1, 1), alphaAndDepths);
  image->setPixel(0, 0, {0.1F, 3, 3, 0.2F, 3, 3, 0.3F, 1, 1, 0.4F, 3, 5, 0.5F, 3, 3});
  WatchedInput bench(image);
  ASSERT_TRUE(bench.read(Box(0, 0, 1, 1)));
  std::vector<float> marks;
  for (std::size_t i = 0; i < 5; ++i)
    marks.push_back(bench.plane.getPixel(0, 0).getOrderedSample(i, Chan_Alpha));
  EXPECT_EQ(marks, farFirst() ? std::vector<float>({0.4F, 0.1F, 0.2F, 0.5F, 0.3F})
                              : std::vector<float>({0.3F, 0.1F, 0.2F, 0.5F, 0.4F}));
}

TEST_P(DeepInputOrder, samples_areStoredInTheHostsOrder) {
  WatchedInput bench;
  ASSERT_TRUE(bench.read(Box(0, 0, 6, 4)));
  EXPECT_EQ(bench.plane.ordering(), farFirst() ? DeepPixel::eZDescending : DeepPixel::eZAscending);
  const DeepPixel pixel = bench.plane.getPixel(0, 3);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(pixel.getUnorderedSample(i, Chan_Alpha), pixel.getOrderedSample(i, Chan_Alpha));
  }
}

TEST_P(DeepInputOrder, fewerChannels_comeWithTheDepths) {
  auto image =
      std::make_shared<embedded::DeepImage>(Format(1, 1), Box(0, 0, 1, 1), Mask_RGBA | Mask_Deep);
  image->setPixel(0, 0, {1, 2, 3, 4, 7, 8, 11, 12, 13, 14, 5, 6});
  WatchedInput bench(image);
  ASSERT_TRUE(bench.read(Box(0, 0, 1, 1), Mask_Green));
  EXPECT_EQ(static_cast<const ChannelSet&>(bench.plane.channels()),
            ChannelSet(Mask_Green | Mask_Deep));
  const DeepPixel pixel = bench.plane.getPixel(0, 0);
  const std::size_t nearest = farFirst() ? 1 : 0;
  EXPECT_EQ(pixel.getOrderedSample(nearest, Chan_Green), 12.0F);
  EXPECT_EQ(pixel.getOrderedSample(nearest, Chan_DeepBack), 6.0F);
  EXPECT_EQ(pixel.getOrderedSample(nearest, Chan_Red), 0.0F) << "not asked for";
}

TEST(DeepInput, channelsThatThePictureLacks_areLeftOut) {
  WatchedInput bench;
  ASSERT_TRUE(bench.read(Box(0, 0, 6, 1), Mask_RGBA | Mask_Z));
  EXPECT_EQ(static_cast<const ChannelSet&>(bench.plane.channels()), alphaAndDepths);
  EXPECT_EQ(bench.source->calls().at(0).channels, alphaAndDepths);
  EXPECT_EQ(bench.plane.getPixel(0, 1).getOrderedSample(0, Chan_Red), 0.0F);
}

TEST(DeepInput, source_isAskedForNothingOutsideItsBox) {
  WatchedInput bench;
  ASSERT_TRUE(bench.read(Box(-2, -3, 9, 6)));
  const std::vector<WatchedSource::Call> calls = bench.source->calls();
  ASSERT_EQ(calls.size(), 4U);
  for (int y = 0; y < 4; ++y) {
    EXPECT_EQ(calls[static_cast<std::size_t>(y)].y, y);
    EXPECT_EQ(calls[static_cast<std::size_t>(y)].x, 0);
    EXPECT_EQ(calls[static_cast<std::size_t>(y)].r, 6);
  }
}

TEST(DeepInput, emptyBox_isReadWithoutTheSource) {
  WatchedInput bench;
  EXPECT_TRUE(bench.read(Box(2, 2, 2, 2)));
  EXPECT_EQ(bench.plane.getTotalSampleCount(), 0U);
  EXPECT_TRUE(bench.source->calls().empty());
}

TEST(DeepInput, info_isThatOfThePicture) {
  const WatchedInput bench;
  const DeepInfo& info = bench.input.deepInfo();
  EXPECT_EQ(info.box(), Box(0, 0, 6, 4));
  EXPECT_EQ(info.x(), 0);
  EXPECT_EQ(info.y(), 0);
  EXPECT_EQ(info.r(), 6);
  EXPECT_EQ(info.t(), 4);
  EXPECT_EQ(info.channels(), alphaAndDepths);
  EXPECT_EQ(info.format()->width(), 8);
  EXPECT_EQ(info.formats().fullSizeFormat()->height(), 6);
}

TEST(DeepInput, asAnOperator_isDeepAndMakesNoRows) {
  WatchedInput bench;
  EXPECT_EQ(bench.input.op(), &bench.input);
  EXPECT_EQ(static_cast<Op&>(bench.input).iop(), nullptr);
  EXPECT_EQ(bench.input.inputs(), 0);
  EXPECT_STREQ(bench.input.Class(), "DeepImage");
  EXPECT_STRNE(bench.input.node_help(), "");
}

TEST(DeepInput, hash_isThatOfThePictureAndOfTheOrder) {
  const auto hashOf = [] { return DeepInput(markedDeepImage()).hash().value(); };
  const std::uint64_t plain = hashOf();
  EXPECT_EQ(plain, hashOf());
  EXPECT_NE(plain, DeepInput(markedDeepImage(5)).hash().value());
  const deep::DeepOrderGuard guard(embedded::DeepOrder::FarFirst);
  EXPECT_NE(plain, hashOf());
}

TEST(DeepInput, sourceThatThrows_failsTheReadAndThoseAfterIt) {
  WatchedInput bench;
  bench.source->beforeRow = [](int y) {
    if (y == 2) throw std::runtime_error("row 2 is damaged");
  };
  EXPECT_FALSE(bench.read(Box(0, 0, 6, 4)));
  EXPECT_TRUE(bench.input.inError());
  EXPECT_TRUE(bench.plane.box().empty()) << "the plane is as it was";
  EXPECT_FALSE(bench.read(Box(0, 0, 6, 1))) << "though this row is sound";
  EXPECT_EQ(bench.source->calls().size(), 3U);
}

TEST(DeepInput, sourceThatThrowsAnything_failsTheRead) {
  WatchedInput bench;
  bench.source->beforeRow = [](int) { throw 7; };
  EXPECT_FALSE(bench.read(Box(0, 0, 6, 4)));
  EXPECT_TRUE(bench.input.inError());
}

TEST(DeepInput, errors_lastUntilTheNextValidation) {
  WatchedInput bench;
  bench.source->beforeRow = [](int) { throw std::bad_alloc(); };
  EXPECT_FALSE(bench.read(Box(0, 0, 6, 4)));
  bench.source->beforeRow = nullptr;
  bench.input.invalidate();
  bench.input.DeepOp::validate(true);
  ASSERT_TRUE(bench.read(Box(0, 0, 6, 4)));
  expectMarked(bench.plane, false);
}

TEST(DeepInput, abortBefore_readsNothing) {
  WatchedInput bench;
  embedded::requestAbort();
  EXPECT_FALSE(bench.read(Box(0, 0, 6, 4)));
  EXPECT_TRUE(bench.source->calls().empty());
  EXPECT_FALSE(bench.input.inError());
}

TEST(DeepInput, abortWithin_endsAfterTheRow) {
  WatchedInput bench;
  bench.source->beforeRow = [](int y) {
    if (y == 1) embedded::requestAbort();
  };
  EXPECT_FALSE(bench.read(Box(0, 0, 6, 4)));
  EXPECT_EQ(bench.source->calls().size(), 2U);
}

TEST(DeepInput, abortWithinTheLastRow_failsTheReadToo) {
  WatchedInput bench;
  bench.source->beforeRow = [](int y) {
    if (y == 3) embedded::requestAbort();
  };
  EXPECT_FALSE(bench.read(Box(0, 0, 6, 4)));
}

TEST_P(DeepInputOrder, manyReadersAtOnce_eachGetTheirPixels) {
  WatchedInput bench;
  std::vector<std::thread> readers;
  std::vector<DeepPlane> planes(8);
  std::vector<char> done(planes.size(), 0);
  for (std::size_t i = 0; i < planes.size(); ++i) {
    readers.emplace_back([&bench, &planes, &done, i] {
      const int shift = static_cast<int>(i % 4);
      bool all = true;
      for (int round = 0; round < 20; ++round) {
        all = bench.input.deepEngine(Box(shift - 2, -1, 8, 4 + shift), alphaAndDepths, planes[i]) &&
              all;
      }
      done[i] = all ? 1 : 0;
    });
  }
  for (std::thread& reader : readers)
    reader.join();
  EXPECT_EQ(done, std::vector<char>(planes.size(), 1));
  for (const DeepPlane& plane : planes)
    expectMarked(plane, farFirst());
}

TEST_P(DeepInputOrder, onePlane_isReadByManyThreadsAtOnce) {
  WatchedInput bench;
  ASSERT_TRUE(bench.read(Box(-1, -1, 7, 5)));
  std::vector<std::thread> readers;
  readers.reserve(6);
  for (int i = 0; i < 6; ++i) {
    readers.emplace_back([plane = bench.plane, far = farFirst()] {
      for (int round = 0; round < 10; ++round)
        expectMarked(plane, far);
    });
  }
  for (std::thread& reader : readers)
    reader.join();
}
