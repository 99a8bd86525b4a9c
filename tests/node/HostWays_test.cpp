/// What a host may do besides one render after the other: several requests, rows of any kind from
/// many threads, opening, closing and validating in any order.

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "engine/FrameScenes.h"
#include "node/NodeBench.h"
#include "support/Agreement.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

using DD::Image::Box;
using DD::Image::ChannelSet;
using DD::Image::Mask_RGBA;
using DD::Image::Row;

constexpr int width = 170;
constexpr int height = 140;

/// All stages of the engine are of use: lights, several slices, radii that few and many share.
LiteralScene wideScene() {
  return stagedScene(20.0F, 3, width, height);
}

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

/// Two ways of making the same values: each within a quarter of what a picture may differ by.
void expectAgreement(const Pixels& a, const Pixels& b) {
  ASSERT_EQ(a.size(), b.size());
  double worst = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i)
    worst = std::max(worst, differenceInParts(a[i], static_cast<double>(b[i])));
  EXPECT_LE(worst, 0.5);
}

/// The node, validated, asked for boxes and opened by hand; closes at the end.
class OpenedNode {
 public:
  explicit OpenedNode(const LiteralScene& scene) : bench_(scene) { bench_.validate(); }
  OpenedNode(const LiteralScene& scene, const std::vector<Box>& requests) : OpenedNode(scene) {
    for (const Box& box : requests)
      node().request(box, Mask_RGBA, 1);
    node().open();
  }
  ~OpenedNode() { node().close(); }
  OpenedNode(const OpenedNode&) = delete;
  OpenedNode& operator=(const OpenedNode&) = delete;

  NodeBench& bench() { return bench_; }
  Drevin& node() { return bench_.drevin(); }
  bool hasPicture(const Box& box, const ChannelSet& channels = Mask_RGBA) {
    return node().picture().has(box.y(), box.x(), box.r(), channels, dvDeepMode::Both) &&
           node().picture().has(box.t() - 1, box.x(), box.r(), channels, dvDeepMode::Both);
  }

 private:
  NodeBench bench_;
};

const Box whole(0, 0, width, height);

TEST(HostWays, requestsOfTwoBoxes_areServedAsOneAroundBoth) {
  const LiteralScene scene = wideScene();
  OpenedNode all(scene, {whole});
  const Box low(5, 3, 40, 30);
  const Box high(100, 80, 160, 120);
  OpenedNode two(scene, {low, high});
  EXPECT_TRUE(two.hasPicture({5, 3, 160, 120}));
  EXPECT_FALSE(two.hasPicture(whole));
  for (const Box& box : {low, high, Box(5, 3, 160, 120)})
    expectAgreement(rowsOf(two.node(), box), rowsOf(all.node(), box));
}

TEST(HostWays, sameBoxRequestedTwice_isThatOfOneRequest) {
  const LiteralScene scene = wideScene();
  OpenedNode once(scene, {whole});
  OpenedNode twice(scene, {whole, whole});
  EXPECT_TRUE(sameBits(rowsOf(twice.node(), whole), rowsOf(once.node(), whole)));
}

TEST(HostWays, requestsOfOtherChannels_areServedTogether) {
  const LiteralScene scene = wideScene();
  OpenedNode all(scene, {whole});
  OpenedNode apart(scene);
  apart.node().request(whole, DD::Image::Mask_Red, 1);
  apart.node().request(whole, DD::Image::Mask_Green, 1);
  apart.node().open();
  ChannelSet both(DD::Image::Mask_Red);
  both += DD::Image::Chan_Green;
  EXPECT_TRUE(apart.hasPicture(whole, both));
  EXPECT_FALSE(apart.hasPicture(whole));
  expectAgreement(rowsOf(apart.node(), whole, both), rowsOf(all.node(), whole, both));
}

TEST(HostWays, rowsOfChannelsNotRequested_areMadeAlike) {
  const LiteralScene scene = wideScene();
  OpenedNode all(scene, {whole});
  OpenedNode red(scene);
  red.node().request(whole, DD::Image::Mask_Red, 1);
  red.node().open();
  EXPECT_FALSE(red.hasPicture(whole));
  const Box some(0, 60, width, 64);
  expectAgreement(rowsOf(red.node(), some), rowsOf(all.node(), some));
  expectAgreement(rowsOf(red.node(), some, DD::Image::Mask_Blue),
                  rowsOf(all.node(), some, DD::Image::Mask_Blue));
}

TEST(HostWays, rowsOutsideWhatWasRequested_areMadeAlike) {
  const LiteralScene scene = wideScene();
  OpenedNode all(scene, {whole});
  OpenedNode part(scene, {{30, 40, 90, 80}});
  const Box asked[] = {{30, 80, 90, 83}, {30, 37, 90, 40}, {20, 60, 60, 62},
                       {60, 60, 91, 62}, {0, 0, width, 2}, {100, 100, 140, 102}};
  for (const Box& box : asked) {
    EXPECT_FALSE(part.hasPicture(box)) << box.x() << ", " << box.y();
    expectAgreement(rowsOf(part.node(), box), rowsOf(all.node(), box));
  }
}

TEST(HostWays, rowsAskedForAgain_haveTheSameBits) {
  OpenedNode opened(wideScene(), {{0, 0, width, 70}});
  for (const Box& box : {Box(0, 0, width, 70), Box(0, 100, width, 103)}) {
    const Pixels first = rowsOf(opened.node(), box);
    EXPECT_TRUE(sameBits(rowsOf(opened.node(), box), first));
  }
}

TEST(HostWays, secondOpening_changesNothing) {
  OpenedNode opened(wideScene(), {whole});
  const Pixels before = rowsOf(opened.node(), whole);
  opened.node().open();
  EXPECT_TRUE(sameBits(rowsOf(opened.node(), whole), before));
}

TEST(HostWays, closedAndOpenedAgain_makesTheSamePicture) {
  OpenedNode opened(wideScene(), {whole});
  const Pixels before = rowsOf(opened.node(), whole);
  const int padding = opened.node().padding();
  opened.node().close();
  opened.node().open();
  EXPECT_EQ(opened.node().padding(), padding);
  EXPECT_TRUE(opened.hasPicture(whole));
  EXPECT_TRUE(sameBits(rowsOf(opened.node(), whole), before));
}

TEST(HostWays, validationWithoutOpening_leavesTheInputInTheRows) {
  const LiteralScene scene = wideScene();
  OpenedNode validated(scene);
  validated.node().request(whole, Mask_RGBA, 1);
  EXPECT_FALSE(validated.hasPicture(whole));
  const Box line(0, 50, width, 51);
  const Pixels row = rowsOf(validated.node(), line, DD::Image::Mask_Green);
  for (int x = 0; x < width; ++x)
    EXPECT_EQ(row[static_cast<std::size_t>(x)], scene.image.at(x, 50, 2)) << x;
}

TEST(HostWays, validationsWithoutOpening_doNotShowLater) {
  const LiteralScene scene = wideScene();
  OpenedNode fresh(scene, {whole});
  OpenedNode often(scene);
  for (int i = 0; i < 3; ++i) {
    often.bench().validate();
    often.node().request(Box(0, 0, 10 + i, 10), DD::Image::Mask_Red, 1);
  }
  often.bench().validate();
  often.node().request(whole, Mask_RGBA, 1);
  often.node().open();
  EXPECT_TRUE(sameBits(rowsOf(often.node(), whole), rowsOf(fresh.node(), whole)));
}

TEST(HostWays, changedControl_makesThePictureOfAFreshNode) {
  LiteralScene scene = wideScene();
  OpenedNode changed(scene, {whole});
  const Pixels before = rowsOf(changed.node(), whole);
  for (const float multiplier : {7.0F, 26.0F}) {
    changed.node().close();
    changed.bench().set("multiplier", static_cast<double>(multiplier));
    changed.bench().validate();
    EXPECT_FALSE(changed.hasPicture(whole)) << "the old picture is gone";
    changed.node().request(whole, Mask_RGBA, 1);
    changed.node().open();
    scene.settings.multiplier = multiplier;
    OpenedNode fresh(scene, {whole});
    const Pixels after = rowsOf(changed.node(), whole);
    EXPECT_TRUE(sameBits(after, rowsOf(fresh.node(), whole))) << multiplier;
    EXPECT_FALSE(sameBits(after, before)) << multiplier;
  }
}

TEST(HostWays, smallerRequestAfterALarger_makesTheSmallerAlone) {
  const LiteralScene scene = wideScene();
  OpenedNode reused(scene, {whole});
  const Box small(10, 20, 50, 60);
  reused.node().close();
  reused.bench().validate();
  reused.node().request(small, Mask_RGBA, 1);
  reused.node().open();
  EXPECT_TRUE(reused.hasPicture(small));
  EXPECT_FALSE(reused.hasPicture(whole));
  OpenedNode fresh(scene, {small});
  EXPECT_TRUE(sameBits(rowsOf(reused.node(), small), rowsOf(fresh.node(), small)));
}

TEST(HostWays, sixteenThreadsAtOnce_getTheSameBits) {
  // Some rows lie in the picture, some are made by the callers.
  OpenedNode opened(wideScene(), {{0, 0, width, 130}});
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

TEST(HostWays, rowsWhileAnotherNodeOpens_areNotDisturbed) {
  const LiteralScene scene = wideScene();
  OpenedNode served(scene, {whole});
  const Pixels before = rowsOf(served.node(), whole);
  std::thread other([&] { const OpenedNode opening(scene, {whole}); });
  EXPECT_TRUE(sameBits(rowsOf(served.node(), whole), before));
  other.join();
  EXPECT_TRUE(sameBits(rowsOf(served.node(), whole), before));
}

}  // namespace
}  // namespace drevin::test
