#include "engine/FrameMaker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

#include "engine/EngineFrame.h"
#include "engine/FrameScenes.h"
#include "engine/SimdLevels.h"
#include "engine/ThreadParallel.h"
#include "support/Agreement.h"
#include "support/Draw.h"
#include "support/PlainScene.h"
#include "support/RandomScene.h"

namespace drevin::test {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr dvTileChoice allChoices[] = {dvTileChoice::Nothing, dvTileChoice::Everything,
                                       dvTileChoice::ByCost};

/// Rows on both sides of the borders between tiles, which begin a padding below the picture.
std::vector<int> telltaleRows(const LiteralScene& scene, int padding) {
  std::vector<int> rows{0, 1, scene.image.formatHeight / 2, scene.image.formatHeight - 1};
  for (int y = 128 - padding; y < scene.image.formatHeight; y += 128)
    rows.insert(rows.end(), {y - 1, y});
  return rows;
}

/// Compares under every choice of what is transformed.
void expectSceneOfTheRowCode(const LiteralScene& scene) {
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const dvTileChoice choice : allChoices) {
    SCOPED_TRACE(static_cast<int>(choice));
    expectRowsOfTheRowCode(frame, frame.make(lines, choice), telltaleRows(scene, frame.padding()));
  }
}

struct Tally {
  long long values = 0;
  long long compared = 0;
};

/// Compares a whole small scene with the literal one; false at the first disagreement.
bool compareScene(const LiteralScene& scene, dvTileChoice choice, Tally& tally) {
  const LiteralFrame literal(scene);
  const EngineFrame frame(scene);
  if (frame.channels().empty()) return true;
  const LiteralBox box = literal.box();
  const dvFramePlanes planes =
      frame.make(frame.lines({box.left, box.bottom, box.right, box.top}), choice);
  for (int y = box.bottom; y < box.top; ++y) {
    const LiteralRow expected = literal.row(y, box.left, box.right);
    for (std::size_t c = 0; c < planes.size(); ++c) {
      const std::vector<LiteralValue>& values = expected.at(frame.channels()[c]);
      for (std::size_t i = 0; i < values.size(); ++i) {
        ++tally.values;
        if (!isComparable(values[i])) continue;
        ++tally.compared;
        const float value = planes[c].row(y)[i];
        if (agrees(value, values[i].value)) continue;
        ADD_FAILURE() << value << " in place of " << values[i].value << ", slack "
                      << values[i].slack << ", row " << y << ", place " << i << ", channel "
                      << frame.channels()[c];
        return false;
      }
    }
  }
  return true;
}

class FrameMakerByChoice : public testing::TestWithParam<dvTileChoice> {};

TEST_P(FrameMakerByChoice, randomScenes_agreeWithTheLiteralRows) {
  Tally tally;
  for (unsigned seed = 0; seed < 60; ++seed) {
    LiteralScene scene = randomScene(seed);
    if (scene.settings.outputType > 1) continue;
    EXPECT_TRUE(compareScene(scene, GetParam(), tally)) << "seed " << seed;
  }
  EXPECT_GT(static_cast<double>(tally.compared), 0.95 * static_cast<double>(tally.values));
}

INSTANTIATE_TEST_SUITE_P(AllChoices, FrameMakerByChoice, testing::ValuesIn(allChoices));

TEST(FrameMaker, uniformBlur_isThatOfTheRowCode) {
  expectSceneOfTheRowCode(farScene(70.0F));
}

TEST(FrameMaker, rampOfOneSlice_isThatOfTheRowCode) {
  expectSceneOfTheRowCode(rampScene(40.0F, 1));
}

TEST(FrameMaker, stagesOfTwoSlices_areThoseOfTheRowCode) {
  expectSceneOfTheRowCode(stagedScene(50.0F, 2));
}

TEST(FrameMaker, stagesOfTenSlices_areThoseOfTheRowCode) {
  expectSceneOfTheRowCode(stagedScene(60.0F, 10));
}

TEST(FrameMaker, rampOfFortySlices_isThatOfTheRowCode) {
  expectSceneOfTheRowCode(rampScene(30.0F, 40));
}

TEST(FrameMaker, frontAlone_leavesUncoveredPixelsExactlyZero) {
  LiteralScene scene = stagedScene(45.0F, 10);
  scene.settings.focusOutput = 1;
  expectSceneOfTheRowCode(scene);
  const EngineFrame frame(scene);
  const dvFramePlanes planes = frame.make(frame.lines(formatBox(scene)), dvTileChoice::Everything);
  // The left is behind the focus, farther than any kernel reaches.
  for (int y = 0; y < scene.image.formatHeight; ++y)
    EXPECT_EQ(planes[3].row(y)[0], 0.0F);
  EXPECT_NEAR(planes[3].row(200)[300], 1.0F, 1e-5F);
}

TEST(FrameMaker, chromaticShift_isThatOfTheRowCode) {
  for (const float amount : {8.0F, -8.0F}) {
    LiteralScene scene = stagedScene(40.0F, 3);
    scene.settings.chromaticAberration = amount;
    scene.settings.chromaticOffset[0] = 1.4F;
    expectSceneOfTheRowCode(scene);
  }
}

TEST(FrameMaker, mattesAndBloom_areThoseOfTheRowCode) {
  LiteralScene scene = rampScene(40.0F, 2);
  addMattesAndShift(scene);
  expectSceneOfTheRowCode(scene);
}

TEST(FrameMaker, negativeValues_areThoseOfTheRowCode) {
  LiteralScene scene = farScene(50.0F);
  Draw draw(3);
  for (int channel = 1; channel <= 3; ++channel) {
    for (float& value : scene.image.planes[channel])
      value = draw.real(-2.0F, channel == 1 ? -1.0F : 2.0F);
  }
  expectSceneOfTheRowCode(scene);
}

TEST(FrameMaker, oneLightOnBlack_isThatOfTheRowCode) {
  LiteralScene scene = farScene(50.0F);
  for (int channel = 1; channel <= 3; ++channel)
    scene.image.planes[channel] = constantPlane(scene.image.box, 0.0F);
  pixelAt(scene.image, 1, 130, 150) = 1e5F;
  pixelAt(scene.image, 2, 91, 92) = 300.0F;
  expectSceneOfTheRowCode(scene);
  const EngineFrame frame(scene);
  const dvFramePlanes planes = frame.make(frame.lines(formatBox(scene)), dvTileChoice::Everything);
  EXPECT_GT(planes[0].row(150)[130], 10.0F);
  // Black is covered by black.
  EXPECT_EQ(planes[0].row(20)[300], 0.0F);
}

/// How many pixels of the format a test of a plane is true for.
template <typename Test>
int pixelsThat(const LiteralScene& scene, const dvFramePlane<float>& plane, const Test& test) {
  int count = 0;
  for (int y = 0; y < scene.image.formatHeight; ++y) {
    for (int x = 0; x < scene.image.formatWidth; ++x)
      count += test(plane.row(y)[x], x, y) ? 1 : 0;
  }
  return count;
}

bool isNotZero(float value, int /*x*/, int /*y*/) {
  return value != 0.0F;
}

TEST(FrameMaker, channelsOfZeros_stayExactlyZero) {
  LiteralScene scene = farScene(50.0F);
  scene.image.planes[2] = constantPlane(scene.image.box, 0.0F);
  expectSceneOfTheRowCode(scene);
  scene.image.planes[4] = constantPlane(scene.image.box, 0.0F);
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  const dvFramePlanes planes = frame.make(lines, dvTileChoice::Everything);
  expectAgreement(planes, frame.make(lines, dvTileChoice::Nothing));
  EXPECT_EQ(pixelsThat(scene, planes[1], isNotZero), 0);
  EXPECT_EQ(pixelsThat(scene, planes[3], isNotZero), 0);
  EXPECT_GT(pixelsThat(scene, planes[0], isNotZero), 400 * 290);
}

// A premultiplied element before nothing, as a renderer gives it: depth everywhere, alpha not.
TEST(FrameMaker, elementOnNothing_isExactlyZeroBeyondItsReach) {
  LiteralScene scene = farScene(50.0F);
  const auto distance = [](int x, int y) { return std::hypot(x - 200, y - 150); };
  for (int channel = 1; channel <= 4; ++channel) {
    for (int y = 0; y < scene.image.formatHeight; ++y) {
      for (int x = 0; x < scene.image.formatWidth; ++x)
        if (distance(x, y) > 40.0) pixelAt(scene.image, channel, x, y) = 0.0F;
    }
  }
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  const dvFramePlanes planes = frame.make(lines, dvTileChoice::Everything);
  expectAgreement(planes, frame.make(lines, dvTileChoice::Nothing));
  // A disc spread by a disc of 53 px and its soft rim.
  const auto isLeftBeyond = [&](float value, int x, int y) {
    return distance(x, y) > 40.0 + 26.5 + 1.0 && value != 0.0F;
  };
  for (const dvFramePlane<float>& plane : planes)
    EXPECT_EQ(pixelsThat(scene, plane, isLeftBeyond), 0);
  EXPECT_GT(planes[3].row(150)[200], 0.9F);
}

TEST(FrameMaker, fewLightsBesideShadows_areThoseOfTheRowCode) {
  LiteralScene scene = farScene(50.0F);
  Draw draw(9);
  for (int channel = 1; channel <= 3; ++channel) {
    for (float& value : scene.image.planes[channel])
      value = draw.chance(0.0005) ? 1e5F : 1e-3F;
  }
  expectSceneOfTheRowCode(scene);
}

TEST(FrameMaker, brightAreaBesideShadows_isThatOfTheRowCode) {
  expectSceneOfTheRowCode(brightSide(1e5F, 1e-3F));
}

TEST(FrameMaker, skyBesideShadows_isThatOfTheRowCode) {
  expectSceneOfTheRowCode(brightSide(200.0F, 0.01F));
}

TEST(FrameMaker, brightWithoutAlpha_isThatOfTheRowCode) {
  // Three values and the weight: the last value shares a transform with the weight.
  LiteralScene scene = brightSide(2e4F, 1e4F);
  scene.channels = {1, 2, 3};
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  expectAgreement(frame.make(lines, dvTileChoice::Everything),
                  frame.make(lines, dvTileChoice::Nothing));
}

TEST(FrameMaker, alphaOfOnesButForOnePixel_isThatOfTheRowCode) {
  LiteralScene scene = stagedScene(30.0F, 3);
  for (float& alpha : scene.image.planes[4])
    alpha = 1.0F;
  expectSceneOfTheRowCode(scene);
  scene.image.planes[4][60 * 400 + 200] = 0.25F;
  expectSceneOfTheRowCode(scene);
}

TEST(FrameMaker, brightChannelBesideADimOne_isThatOfTheRowCode) {
  LiteralScene scene = farScene(50.0F);
  for (float& value : scene.image.planes[1])
    value *= 1e5F;
  for (float& value : scene.image.planes[2])
    value *= 1e-3F;
  expectSceneOfTheRowCode(scene);
}

TEST(FrameMaker, valuesNearTheLargestFloat_areThoseOfTheRowCode) {
  expectSceneOfTheRowCode(brightSide(1e36F, 1e36F));
}

TEST(FrameMaker, tinyValues_areThoseOfTheRowCode) {
  expectSceneOfTheRowCode(brightSide(1e-30F, 1e-38F));
}

TEST(FrameMaker, nanAndInfinity_reachTheSquaresThatTheRowCodeGivesThem) {
  LiteralScene scene = stagedScene(40.0F, 2);
  pixelAt(scene.image, 1, 92, 92) = nan;
  pixelAt(scene.image, 2, 210, 150) = std::numeric_limits<float>::infinity();
  pixelAt(scene.image, 3, 399, 299) = -std::numeric_limits<float>::infinity();
  pixelAt(scene.image, 5, 300, 100) = nan;
  expectSceneOfTheRowCode(scene);
  const EngineFrame frame(scene);
  const dvFramePlanes planes = frame.make(frame.lines(formatBox(scene)));
  EXPECT_TRUE(std::isnan(planes[0].row(100)[95]));
  EXPECT_FALSE(std::isnan(planes[0].row(200)[300]));
}

TEST(FrameMaker, nanOfACorner_spoilsNothingOutOfReach) {
  LiteralScene scene = farScene(40.0F);
  pixelAt(scene.image, 1, 200, 150) = nan;
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const dvTileChoice choice : allChoices) {
    const dvFramePlanes planes = frame.make(lines, choice);
    for (int y = 0; y < scene.image.formatHeight; ++y) {
      for (int x = 0; x < scene.image.formatWidth; ++x) {
        const bool inReach = std::abs(x - 200) <= 20 && std::abs(y - 150) <= 20;
        ASSERT_EQ(std::isnan(planes[0].row(y)[x]), inReach) << x << ", " << y;
        ASSERT_FALSE(std::isnan(planes[1].row(y)[x]));
      }
    }
  }
}

TEST(FrameMaker, anyNumberOfWorkers_givesTheSameBits) {
  const LiteralScene scene = stagedScene(30.0F, 2);
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const dvTileChoice choice : allChoices) {
    ThreadParallel alone(1);
    const dvFramePlanes first = frame.make(lines, alone, choice);
    for (const int workers : {2, 5}) {
      ThreadParallel parallel(workers);
      EXPECT_TRUE(sameBits(first, frame.make(lines, parallel, choice))) << workers;
    }
  }
}

TEST(FrameMaker, instructionSets_agree) {
  const LiteralScene scene = stagedScene(40.0F, 3);
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const dvTileChoice choice : allChoices) {
    const dvFramePlanes best = frame.make(lines, choice);
    for (const dvSimdLevel level : usableLevels()) {
      const SimdLevelInUse use(level);
      SCOPED_TRACE(simdLevelName(level));
      expectAgreement(frame.make(lines, choice), best);
    }
  }
}

TEST(FrameMaker, shiftedBox_showsNoSeams) {
  const LiteralScene scene = stagedScene(45.0F, 2);
  const EngineFrame frame(scene);
  const dvFramePlanes whole = frame.make(frame.lines({0, 0, 330, 230}));
  const int shifts[][2] = {{1, 0}, {0, 1}, {2, 3}, {16, 5}, {7, 19}, {37, 37}};
  for (const auto& shift : shifts) {
    const dvFrameBox box{shift[0], shift[1], shift[0] + 330, shift[1] + 230};
    SCOPED_TRACE(shift[0]);
    expectAgreement(frame.make(frame.lines(box), dvTileChoice::Everything), whole);
  }
}

TEST(FrameMaker, partsOfABox_areThoseOfTheWhole) {
  const LiteralScene scene = farScene(50.0F);
  const EngineFrame frame(scene);
  const dvFramePlanes whole = frame.make(frame.lines(formatBox(scene)));
  for (const dvFrameBox& box : {dvFrameBox{0, 0, 400, 150}, dvFrameBox{0, 150, 400, 300},
                                dvFrameBox{17, 100, 18, 101}, dvFrameBox{399, 0, 400, 300}})
    expectAgreement(frame.make(frame.lines(box)), whole);
}

TEST(FrameMaker, boxAwayFromTheFormat_isThatOfTheRowCode) {
  const LiteralScene scene = farScene(40.0F, 60, 50);
  const EngineFrame frame(scene);
  for (const dvFrameBox& box : {dvFrameBox{-500, -400, -380, -380}, dvFrameBox{700, 30, 850, 50},
                                dvFrameBox{-20, 45, 300, 60}}) {
    const EngineLines lines = frame.lines(box);
    for (const dvTileChoice choice : allChoices)
      expectRowsOfTheRowCode(frame, frame.make(lines, choice), {box.bottom, box.top - 1});
  }
}

TEST(FrameMaker, emptyBox_makesNothing) {
  const LiteralScene scene = farScene(10.0F, 20, 20);
  const EngineFrame frame(scene);
  for (const dvFrameBox& box :
       {dvFrameBox{5, 5, 5, 9}, dvFrameBox{5, 5, 9, 5}, dvFrameBox{9, 9, 5, 5}}) {
    ThreadParallel parallel(2);
    frame.make(frame.lines(box), parallel);
    EXPECT_EQ(parallel.begun(), 0);
  }
}

TEST(FrameMaker, unknownLines_addNothing) {
  const LiteralScene scene = stagedScene(30.0F, 2);
  const EngineFrame frame(scene);
  EngineLines known = frame.lines({50, 60, 250, 220});
  EngineLines unknown = known;
  for (std::size_t i = 0; i < known.rows.size(); ++i) {
    if (i % 5 != 2 && i < 130) continue;
    dvSplatLineMaker nothing(frame.settings(), known.rows[i].sourceY);
    known.rows[i] = nothing.line();
    unknown.places[i] = nullptr;
  }
  for (std::size_t i = 0; i < known.rows.size(); ++i) {
    known.places[i] = &known.rows[i];
    if (unknown.places[i] != nullptr) unknown.places[i] = &unknown.rows[i];
  }
  for (const dvTileChoice choice : allChoices)
    EXPECT_TRUE(sameBits(frame.make(known, choice), frame.make(unknown, choice)));
}

TEST(FrameMaker, noKnownLine_leavesZeros) {
  const LiteralScene scene = farScene(30.0F, 200, 200);
  const EngineFrame frame(scene);
  EngineLines lines = frame.lines(formatBox(scene));
  std::fill(lines.places.begin(), lines.places.end(), nullptr);
  for (const dvTileChoice choice : allChoices) {
    for (const auto& plane : frame.make(lines, choice)) {
      for (int y = 0; y < 200; ++y)
        EXPECT_TRUE(std::all_of(plane.row(y), plane.row(y) + 200, [](float v) { return v == 0; }));
    }
  }
}

TEST(FrameMaker, progress_growsToOneOnTheCallersThread) {
  LiteralScene scene = stagedScene(20.0F, 10);
  scene.settings.chromaticAberration = 4.0F;
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  ThreadParallel parallel(2);
  dvFramePlanes planes(frame.channels().size(), dvFramePlane<float>(lines.box));
  dvFrameMaker maker(frame.settings(), frame.padding(), parallel);
  const std::thread::id caller = std::this_thread::get_id();
  std::vector<double> reports{0.0};
  maker.make(lines.box, lines.places, planes, [&](double done) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    EXPECT_GT(done, reports.back());
    reports.push_back(done);
  });
  EXPECT_GE(reports.size(), 20U);
  EXPECT_DOUBLE_EQ(reports.back(), 1.0);
}

TEST(FrameMaker, abort_leavesPromptlyAtAnyMoment) {
  const LiteralScene scene = stagedScene(50.0F, 10);
  const EngineFrame frame(scene);
  const EngineLines lines = frame.lines(formatBox(scene));
  for (const int items : {1, 5, 12, 13, 14, 40, 400, 900, 1500}) {
    ThreadParallel parallel(4);
    parallel.abortAfter(items);
    frame.make(lines, parallel, dvTileChoice::Everything);
    EXPECT_TRUE(parallel.aborted());
    // What has begun is ended; each worker may have begun one item more.
    EXPECT_LE(parallel.begun(), items + parallel.workers());
  }
}

TEST(FrameMaker, abortBeforehand_beginsNothing) {
  const LiteralScene scene = farScene(50.0F);
  const EngineFrame frame(scene);
  ThreadParallel parallel(2);
  parallel.abort();
  frame.make(frame.lines(formatBox(scene)), parallel);
  EXPECT_EQ(parallel.begun(), 0);
}

}  // namespace
}  // namespace drevin::test
