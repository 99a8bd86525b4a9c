#include <gtest/gtest.h>

#include <atomic>
#include <set>

#include "node/DeepBench.h"
#include "node/HostParallel.h"
#include "node/PreparedPicture.h"
#include "support/Agreement.h"
#include "support/PlainScene.h"

namespace drevin::test {
namespace {

constexpr int width = 20;
constexpr int height = 200;
constexpr int padding = 5;

/// Source rows of one splat a pixel, of a value that tells the row; row 100 cannot be read.
class Rows {
 public:
  Rows() {
    hero_.resize(9, {1});
    std::fill_n(hero_.plane(1), 81, 1.0F);
    for (int i = 0; i < 12; ++i)
      initializeBankEntry(bank_.emplace_back(), i, hero_, {1});
    settings.bank = &bank_;
    settings.channels = {1};
    settings.groups = splatGroups(bank_, {}, {1});
    source.lastRow = height - 1;
    source.modes = {dvDeepMode::Both};
    source.read = [this](int row) -> dvRowSplats {
      ++reads;
      if (row == 100) return nullptr;
      return [this, row](int sourceY) {
        ++made;
        std::vector<dvSplatLine> lines;
        lines.push_back(line(row, sourceY));
        return lines;
      };
    };
  }

  dvLineSettings settings;
  dvLineSource source;
  std::atomic<int> reads{0};
  std::atomic<int> made{0};  ///< lines of all source rows

 private:
  dvSplatLine line(int row, int sourceY) const {
    dvSplatLineMaker maker(settings, sourceY);
    for (int x = -padding; x < width + padding; ++x) {
      maker.pixel(1) = static_cast<float>((row * 37 + x * 11) % 17);
      dvSplatSource splat;
      splat.x = x;
      splat.y = sourceY;
      splat.coc = 1.0F + static_cast<float>((row + x + padding) % 7);
      maker.splat(splat);
    }
    return maker.line();
  }

  dvChannelFloatBuffer hero_;
  dvKernelBank bank_;
};

std::vector<float> pictureOf(const dvPreparedPicture& picture, int bottom, int top) {
  std::vector<float> values;
  for (int y = bottom; y < top; ++y) {
    EXPECT_TRUE(picture.has(y, 0, width, DD::Image::Mask_Red, dvDeepMode::Both)) << y;
    DD::Image::Row row(0, width);
    picture.copy(y, 0, width, DD::Image::Mask_Red, dvDeepMode::Both, row);
    for (int x = 0; x < width; ++x)
      values.push_back(row[DD::Image::Chan_Red][x]);
  }
  return values;
}

struct Made {
  std::vector<float> values;
  int reads = 0;
  int steps = 0;
  double lastProgress = 0.0;
};

Made make(const DD::Image::Box& box, std::size_t bandBytes, int reach = padding) {
  Rows rows;
  dvHostParallel parallel([] { return false; });
  dvPreparedPicture picture;
  Made made;
  picture.make(
      rows.settings, rows.source, reach, box, parallel,
      [&](double done) {
        EXPECT_GE(done, made.lastProgress);
        made.lastProgress = done;
        ++made.steps;
      },
      bandBytes);
  made.values = pictureOf(picture, box.y(), box.t());
  made.reads = rows.reads;
  return made;
}

// Tiles begin where their band does, and a transform rounds by what is in its tile.
void expectAgreement(const std::vector<float>& a, const std::vector<float>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i)
    ASSERT_TRUE(agrees(a[i], static_cast<double>(b[i]))) << a[i] << " and " << b[i] << " at " << i;
}

TEST(PreparedPicture, bandsOfAnyMemory_giveTheSamePictureAndReadEveryRowOnce) {
  const DD::Image::Box box(0, 0, width, height);
  const Made whole = make(box, std::size_t{1} << 30);
  EXPECT_EQ(whole.reads, height);
  EXPECT_EQ(whole.lastProgress, 1.0);
  for (const std::size_t bytes : {std::size_t{0}, std::size_t{40000}, std::size_t{100000}}) {
    const Made bands = make(box, bytes);
    expectAgreement(bands.values, whole.values);
    EXPECT_EQ(bands.reads, height) << bytes;
    EXPECT_EQ(bands.lastProgress, 1.0);
  }
  EXPECT_GT(make(box, 0).steps, make(box, 100000).steps);
  EXPECT_GT(make(box, 100000).steps, whole.steps);
}

// One step of progress is one band.
TEST(PreparedPicture, bandsWithoutMemory_haveAsManyRowsAsThePadding) {
  const DD::Image::Box box(0, 0, width, height);
  EXPECT_EQ(make(box, 0).steps, 7) << "32 rows each";
  EXPECT_EQ(make(box, 0, 50).steps, 4);
  EXPECT_EQ(make(box, 0, 70).steps, 3);
  EXPECT_EQ(make(box, 0, 300).steps, 1);
  expectAgreement(make(box, 0, 50).values, make(box, std::size_t{1} << 30, 50).values);
}

TEST(PreparedPicture, boxBeyondTheRows_repeatsTheFirstAndTheLast) {
  const Made inside = make({0, 0, width, height}, 0);
  const Made beyond = make({0, -40, width, height + 50}, 0);
  EXPECT_EQ(beyond.reads, height);
  ASSERT_EQ(beyond.values.size(), static_cast<std::size_t>(width) * (height + 90));
  const std::vector<float> shared(beyond.values.begin() + 40 * width,
                                  beyond.values.end() - 50 * width);
  EXPECT_EQ(shared, inside.values);
  const std::vector<float> lowest(beyond.values.begin(), beyond.values.begin() + width);
  const std::vector<float> next(beyond.values.begin() + width, beyond.values.begin() + 2 * width);
  EXPECT_EQ(lowest, next) << "made of the first row alone";
}

TEST(PreparedPicture, boxFarAboveTheRows_readsTheLastAlone) {
  const Made above = make({0, height + 100, width, height + 103}, 0);
  EXPECT_EQ(above.reads, 1);
}

TEST(PreparedPicture, otherModesColumnsRowsAndChannels_areNotThere) {
  Rows rows;
  dvHostParallel parallel([] { return false; });
  dvPreparedPicture picture;
  const DD::Image::ChannelSet red(DD::Image::Mask_Red);
  EXPECT_FALSE(picture.has(0, 0, 1, red, dvDeepMode::Both));
  picture.make(rows.settings, rows.source, padding, {2, 3, 10, 9}, parallel, [](double) {});
  EXPECT_TRUE(picture.has(3, 2, 10, red, dvDeepMode::Both));
  EXPECT_FALSE(picture.has(3, 2, 10, red, dvDeepMode::Front));
  EXPECT_FALSE(picture.has(2, 2, 10, red, dvDeepMode::Both));
  EXPECT_FALSE(picture.has(9, 2, 10, red, dvDeepMode::Both));
  EXPECT_FALSE(picture.has(3, 1, 10, red, dvDeepMode::Both));
  EXPECT_FALSE(picture.has(3, 2, 11, red, dvDeepMode::Both));
  EXPECT_FALSE(picture.has(3, 2, 10, DD::Image::Mask_RGB, dvDeepMode::Both));
  picture.clear();
  EXPECT_FALSE(picture.has(3, 2, 10, red, dvDeepMode::Both));
}

TEST(PreparedPicture, abort_leavesNoPicture) {
  Rows rows;
  std::atomic<int> asked{0};
  dvHostParallel parallel([&] { return ++asked > 50; });
  dvPreparedPicture picture;
  picture.make(rows.settings, rows.source, padding, {0, 0, width, height}, parallel, [](double) {});
  EXPECT_FALSE(picture.has(0, 0, width, DD::Image::Mask_Red, dvDeepMode::Both));
}

TEST(PreparedPicture, abortAmongTheCopiesOfARow_leavesTheRest) {
  // Far above the rows every source row shows the last one.
  const DD::Image::Box above(0, height + 1000, width, height + 1001);
  for (const int most : {1, 20}) {
    Rows rows;
    dvHostParallel parallel([&] { return rows.made >= most; });
    dvPreparedPicture picture;
    picture.make(rows.settings, rows.source, 400, above, parallel, [](double) {});
    EXPECT_EQ(rows.made, most) << "of 801";
    EXPECT_FALSE(picture.has(height + 1000, 0, width, DD::Image::Mask_Red, dvDeepMode::Both));
  }
}

}  // namespace
}  // namespace drevin::test
