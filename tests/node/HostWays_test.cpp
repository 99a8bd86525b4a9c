/// What a host may do besides one render after the other: several requests, rows of any kind from
/// many threads, opening, closing and validating in any order.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <thread>

#include "node/DeepBench.h"
#include "node/TransformedScenes.h"
#include "support/Agreement.h"

namespace drevin::test {
namespace {

using DD::Image::Box;
using DD::Image::ChannelSet;
using DD::Image::Mask_RGBA;
using DD::Image::Row;

constexpr int width = transformedWidth;
constexpr int height = transformedHeight;

/// A picture as rows by channel, channel numbers from 1 to 4.
using Pixels = std::vector<float>;

/// Columns [x, r) of rows [y, t), as a host asks for them one after the other.
Pixels rowsOf(Drevin& node, const Box& box, const ChannelSet& channels = Mask_RGBA) {
  Pixels pixels;
  for (int y = box.y(); y < box.t(); ++y) {
    Row row(box.x(), box.r());
    node.engine(y, box.x(), box.r(), channels, row);
    for (const DD::Image::Channel z : channels)
      pixels.insert(pixels.end(), row[z] + box.x(), row[z] + box.r());
  }
  return pixels;
}

bool sameBits(const Pixels& a, const Pixels& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

enum class Source { Flat, Effects, Deep };

/// A node of one kind of picture with its inputs.
class SourceBench {
 public:
  SourceBench(Source source, float blur) {
    if (source == Source::Deep) {
      deep_ = std::make_unique<DeepBench>(transformedDeepScene(blur));
    } else {
      const bool effects = source == Source::Effects;
      flat_ =
          std::make_unique<NodeBench>(effects ? transformedEffects(blur) : transformedScene(blur));
    }
  }
  NodeBench& node() { return deep_ ? deep_->node() : *flat_; }

 private:
  std::unique_ptr<NodeBench> flat_;
  std::unique_ptr<DeepBench> deep_;
};

/// The node, validated, asked for boxes and opened by hand; closes at the end.
class OpenedNode {
 public:
  explicit OpenedNode(Source source, float blur = transformedBlur) : bench_(source, blur) {
    bench().validate();
  }
  OpenedNode(Source source, const std::vector<Box>& requests, float blur = transformedBlur)
      : OpenedNode(source, blur) {
    for (const Box& box : requests)
      node().request(box, Mask_RGBA, 1);
    node().open();
  }
  ~OpenedNode() { node().close(); }
  OpenedNode(const OpenedNode&) = delete;
  OpenedNode& operator=(const OpenedNode&) = delete;

  NodeBench& bench() { return bench_.node(); }
  Drevin& node() { return bench().drevin(); }
  bool hasPicture(const Box& box, const ChannelSet& channels = Mask_RGBA) {
    return node().picture().has(box.y(), box.x(), box.r(), channels, dvDeepMode::Both) &&
           node().picture().has(box.t() - 1, box.x(), box.r(), channels, dvDeepMode::Both);
  }

 private:
  SourceBench bench_;
};

const Box whole(0, 0, width, height);

class HostWays : public testing::TestWithParam<Source> {
 protected:
  /// Rows of a box from two nodes, made in two ways: within half of what a picture may differ by.
  /// A shifted splat from beyond the columns that are asked for may be missing, so that with a
  /// shift, 6.3 px at most here, the columns at their edges are left out.
  static void expectAgreement(Drevin& a, Drevin& b, const Box& box,
                              const ChannelSet& channels = Mask_RGBA) {
    const std::size_t edge = GetParam() == Source::Effects ? 7 : 0;
    const auto columns = static_cast<std::size_t>(box.w());
    const Pixels first = rowsOf(a, box, channels);
    const Pixels second = rowsOf(b, box, channels);
    ASSERT_EQ(first.size(), second.size());
    double worst = 0.0;
    for (std::size_t i = 0; i < first.size(); ++i) {
      const std::size_t column = i % columns;
      if (column < edge || column + edge >= columns) continue;
      worst = std::max(worst, differenceInParts(first[i], static_cast<double>(second[i])));
    }
    EXPECT_LE(worst, 0.5);
  }
};

std::string nameOf(const testing::TestParamInfo<Source>& source) {
  if (source.param == Source::Flat) return "flat";
  return source.param == Source::Effects ? "effects" : "deep";
}

INSTANTIATE_TEST_SUITE_P(Sources, HostWays,
                         testing::Values(Source::Flat, Source::Effects, Source::Deep), nameOf);

TEST_P(HostWays, requestsOfTwoBoxes_areServedAsOneAroundBoth) {
  OpenedNode all(GetParam(), {whole});
  const Box low(5, 3, 40, 30);
  const Box high(100, 80, 160, 120);
  OpenedNode two(GetParam(), {low, high});
  EXPECT_TRUE(two.hasPicture({5, 3, 160, 120}));
  EXPECT_FALSE(two.hasPicture(whole));
  for (const Box& box : {low, high, Box(5, 3, 160, 120)})
    expectAgreement(two.node(), all.node(), box);
}

TEST_P(HostWays, sameBoxRequestedTwice_isThatOfOneRequest) {
  OpenedNode once(GetParam(), {whole});
  OpenedNode twice(GetParam(), {whole, whole});
  EXPECT_TRUE(sameBits(rowsOf(twice.node(), whole), rowsOf(once.node(), whole)));
}

TEST_P(HostWays, requestsOfOtherChannels_areServedTogether) {
  OpenedNode all(GetParam(), {whole});
  OpenedNode apart(GetParam());
  apart.node().request(whole, DD::Image::Mask_Red, 1);
  apart.node().request(whole, DD::Image::Mask_Green, 1);
  apart.node().open();
  ChannelSet both(DD::Image::Mask_Red);
  both += DD::Image::Chan_Green;
  EXPECT_TRUE(apart.hasPicture(whole, both));
  EXPECT_FALSE(apart.hasPicture(whole));
  expectAgreement(apart.node(), all.node(), whole, both);
}

// With all channels the last request settles which are processed.
TEST_P(HostWays, requestsOfOtherChannelsOfAll_areServedAsTheLast) {
  OpenedNode all(GetParam(), {whole});
  OpenedNode apart(GetParam());
  apart.bench().setText("bokehChannels", "all");
  apart.bench().validate();
  apart.node().request(whole, DD::Image::Mask_Red, 1);
  apart.node().request(whole, DD::Image::Mask_Green, 1);
  apart.node().open();
  EXPECT_TRUE(apart.bench().settings().processChannels == DD::Image::Mask_Green);
  EXPECT_TRUE(apart.hasPicture(whole, DD::Image::Mask_Green));
  EXPECT_FALSE(apart.hasPicture(whole, DD::Image::Mask_Red));
  expectAgreement(apart.node(), all.node(), whole, DD::Image::Mask_Green);
}

TEST_P(HostWays, rowsOfChannelsNotRequested_areMadeAlike) {
  OpenedNode all(GetParam(), {whole});
  OpenedNode red(GetParam());
  red.node().request(whole, DD::Image::Mask_Red, 1);
  red.node().open();
  EXPECT_FALSE(red.hasPicture(whole));
  const Box some(0, 60, width, 64);
  expectAgreement(red.node(), all.node(), some);
  expectAgreement(red.node(), all.node(), some, DD::Image::Mask_Blue);
}

TEST_P(HostWays, rowsOutsideWhatWasRequested_areMadeAlike) {
  OpenedNode all(GetParam(), {whole});
  OpenedNode part(GetParam(), {{30, 40, 90, 80}});
  const Box asked[] = {{30, 80, 90, 83}, {30, 37, 90, 40}, {20, 60, 60, 62},
                       {60, 60, 91, 62}, {0, 0, width, 2}, {100, 100, 140, 102}};
  for (const Box& box : asked) {
    EXPECT_FALSE(part.hasPicture(box)) << box.x() << ", " << box.y();
    expectAgreement(part.node(), all.node(), box);
  }
}

TEST_P(HostWays, rowsAskedForAgain_haveTheSameBits) {
  OpenedNode opened(GetParam(), {{0, 0, width, 70}});
  for (const Box& box : {Box(0, 0, width, 70), Box(0, 100, width, 103)}) {
    const Pixels first = rowsOf(opened.node(), box);
    EXPECT_TRUE(sameBits(rowsOf(opened.node(), box), first));
  }
}

/// What a host calls that opens a node more than once: this one passes over the second time.
void openOnceMore(Drevin& node) {
  struct Opening : Drevin {
    using Drevin::_open;
  };
  (node.*&Opening::_open)();
}

TEST_P(HostWays, secondOpening_changesNothing) {
  OpenedNode opened(GetParam(), {whole});
  const Pixels before = rowsOf(opened.node(), whole);
  const int padding = opened.node().padding();
  const std::size_t kernels = opened.node().kernelBank().size();
  openOnceMore(opened.node());
  EXPECT_EQ(opened.node().padding(), padding);
  EXPECT_EQ(opened.node().kernelBank().size(), kernels);
  EXPECT_TRUE(opened.hasPicture(whole));
  EXPECT_TRUE(sameBits(rowsOf(opened.node(), whole), before));
}

TEST_P(HostWays, requestBetweenTwoOpenings_growsThePicture) {
  OpenedNode opened(GetParam(), {{0, 0, width, 40}});
  EXPECT_FALSE(opened.hasPicture(whole));
  opened.node().request(whole, Mask_RGBA, 1);
  openOnceMore(opened.node());
  OpenedNode fresh(GetParam(), {whole});
  ASSERT_TRUE(opened.hasPicture(whole));
  EXPECT_TRUE(sameBits(rowsOf(opened.node(), whole), rowsOf(fresh.node(), whole)));
}

TEST_P(HostWays, closedAndOpenedAgain_freesAllAndMakesTheSamePicture) {
  OpenedNode opened(GetParam(), {whole});
  const Pixels before = rowsOf(opened.node(), whole);
  const int padding = opened.node().padding();
  opened.node().close();
  EXPECT_FALSE(opened.hasPicture(whole));
  EXPECT_TRUE(opened.node().kernelBank().empty());
  EXPECT_EQ(opened.node().heroKernel().width, 0);
  opened.node().open();
  EXPECT_EQ(opened.node().padding(), padding);
  EXPECT_TRUE(opened.hasPicture(whole));
  EXPECT_TRUE(sameBits(rowsOf(opened.node(), whole), before));
}

TEST(HostWaysOfFlatInputs, validationWithoutOpening_leavesTheInputInTheRows) {
  OpenedNode validated(Source::Flat);
  validated.node().request(whole, Mask_RGBA, 1);
  EXPECT_FALSE(validated.hasPicture(whole));
  const Box line(0, 50, width, 51);
  const Pixels row = rowsOf(validated.node(), line, DD::Image::Mask_Green);
  const LiteralScene scene = transformedScene();
  for (int x = 0; x < width; ++x)
    EXPECT_EQ(row[static_cast<std::size_t>(x)], scene.image.at(x, 50, 2)) << x;
}

TEST(HostWaysOfFlatInputs, openingWithoutARequest_makesNoPicture) {
  OpenedNode opened(Source::Flat, std::vector<Box>{});
  EXPECT_FALSE(opened.hasPicture(Box(0, 0, 1, 1)));
  EXPECT_FALSE(opened.hasPicture(whole));
}

TEST_P(HostWays, requestBesideTheOrigin_isTheBoxOfThePicture) {
  const Box beside(100, 80, 160, 120);
  OpenedNode opened(GetParam(), {beside});
  EXPECT_TRUE(opened.hasPicture(beside));
  EXPECT_FALSE(opened.hasPicture({99, 80, 160, 120}));
  EXPECT_FALSE(opened.hasPicture({100, 79, 160, 120}));
}

TEST_P(HostWays, validationsWithoutOpening_doNotShowLater) {
  OpenedNode fresh(GetParam(), {whole});
  OpenedNode often(GetParam());
  for (int i = 0; i < 3; ++i) {
    often.bench().validate();
    often.node().request(Box(0, 0, 10 + i, 10), DD::Image::Mask_Red, 1);
  }
  often.bench().validate();
  often.node().request(whole, Mask_RGBA, 1);
  often.node().open();
  EXPECT_TRUE(sameBits(rowsOf(often.node(), whole), rowsOf(fresh.node(), whole)));
}

TEST_P(HostWays, changedControl_makesThePictureOfAFreshNode) {
  OpenedNode changed(GetParam(), {whole});
  const Pixels before = rowsOf(changed.node(), whole);
  for (const float multiplier : {7.0F, 52.0F}) {
    changed.node().close();
    changed.bench().set("multiplier", static_cast<double>(multiplier));
    changed.bench().validate();
    EXPECT_FALSE(changed.hasPicture(whole)) << "the old picture is gone";
    changed.node().request(whole, Mask_RGBA, 1);
    changed.node().open();
    OpenedNode fresh(GetParam(), {whole}, multiplier);
    const Pixels after = rowsOf(changed.node(), whole);
    EXPECT_TRUE(sameBits(after, rowsOf(fresh.node(), whole))) << multiplier;
    EXPECT_FALSE(sameBits(after, before)) << multiplier;
  }
}

TEST_P(HostWays, smallerRequestAfterALarger_makesTheSmallerAlone) {
  OpenedNode reused(GetParam(), {whole});
  const Box small(10, 20, 50, 60);
  reused.node().close();
  reused.bench().validate();
  reused.node().request(small, Mask_RGBA, 1);
  reused.node().open();
  EXPECT_TRUE(reused.hasPicture(small));
  EXPECT_FALSE(reused.hasPicture(whole));
  OpenedNode fresh(GetParam(), {small});
  EXPECT_TRUE(sameBits(rowsOf(reused.node(), small), rowsOf(fresh.node(), small)));
}

TEST_P(HostWays, sixteenThreadsAtOnce_getTheSameBits) {
  // Some rows lie in the picture, some are made by the callers.
  OpenedNode opened(GetParam(), {{0, 0, width, 130}});
  const Box asked(0, 126, width, 134);
  const Pixels alone = rowsOf(opened.node(), asked);
  std::vector<Pixels> together(16);
  std::vector<std::thread> threads;
  threads.reserve(together.size());
  for (Pixels& pixels : together)
    threads.emplace_back([&] { pixels = rowsOf(opened.node(), asked); });
  for (std::thread& thread : threads)
    thread.join();
  for (const Pixels& pixels : together)
    EXPECT_TRUE(sameBits(pixels, alone));
}

TEST_P(HostWays, rowsWhileAnotherNodeOpens_areNotDisturbed) {
  OpenedNode served(GetParam(), {whole});
  const Pixels before = rowsOf(served.node(), whole);
  std::thread other([] { const OpenedNode opening(GetParam(), {whole}); });
  EXPECT_TRUE(sameBits(rowsOf(served.node(), whole), before));
  other.join();
  EXPECT_TRUE(sameBits(rowsOf(served.node(), whole), before));
}

}  // namespace
}  // namespace drevin::test
