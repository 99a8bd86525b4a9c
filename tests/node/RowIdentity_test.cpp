#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <thread>

#include "DDImage/Thread.h"
#include "node/DeepBench.h"
#include "node/TransformedScenes.h"
#include "support/RandomScene.h"

namespace drevin::test {
namespace {

using embedded::RenderSession;

/// Bits of a rendered row, channel by channel; NaN compares by its bits.
using Bits = std::vector<unsigned>;

Bits bitsOf(const DD::Image::Row& row, const DD::Image::ChannelSet& channels, int x, int r) {
  Bits bits;
  for (const DD::Image::Channel z : channels) {
    const float* values = row[z];
    for (int i = x; i < r; ++i) {
      unsigned word = 0;
      std::memcpy(&word, values + i, sizeof word);
      bits.push_back(word);
    }
  }
  return bits;
}

/// Scenes that defocus, without chromatic aberration.
LiteralScene unshiftedScene(unsigned seed) {
  LiteralScene scene = randomScene(seed);
  scene.settings.outputType = seed % 2 == 0 ? 0 : 1;
  scene.settings.chromaticAberration = 0.0F;
  return scene;
}

Bits imageBits(const embedded::Image& image) {
  Bits bits;
  for (const auto& entry : image.planes) {
    for (const float& value : *entry.second) {
      unsigned word = 0;
      std::memcpy(&word, &value, sizeof word);
      bits.push_back(word);
    }
  }
  return bits;
}

/// The picture as `threads` processors make it, when the node opens and in the rows.
Bits madeBy(NodeBench& bench, unsigned threads) {
  const unsigned before = DD::Image::Thread::numCPUs;
  embedded::setThreadCount(threads);
  bench.options.threads = threads;
  const embedded::RenderResult result = bench.render();
  embedded::setThreadCount(before);
  EXPECT_EQ(result.status, embedded::RenderStatus::Done);
  return imageBits(result.image);
}

void expectSameBitsByAnyThreads(NodeBench& bench) {
  const Bits alone = madeBy(bench, 1);
  ASSERT_FALSE(alone.empty());
  for (const unsigned threads : {2U, 3U, 7U})
    EXPECT_TRUE(madeBy(bench, threads) == alone) << "on " << threads;
}

TEST(RenderedNode, anyThreadCount_isBitIdentical) {
  for (unsigned seed = 500; seed < 530; ++seed) {
    SCOPED_TRACE(seed);
    NodeBench bench(randomScene(seed));
    expectSameBitsByAnyThreads(bench);
  }
}

// Several tiles are summed at once, and end in any order.
TEST(RenderedNode, anyThreadCountWithTransforms_isBitIdentical) {
  NodeBench flat(transformedScene());
  expectSameBitsByAnyThreads(flat);
  NodeBench effects(transformedEffects());
  expectSameBitsByAnyThreads(effects);
  DeepBench deep(transformedDeepScene());
  expectSameBitsByAnyThreads(deep.node());
  deep.node().set("integrateFrontAndBackSeperately", 1.0);
  expectSameBitsByAnyThreads(deep.node());
}

Bits rowBits(RenderSession& session, const DD::Image::ChannelSet& channels, int y, int x, int r) {
  DD::Image::Row row(x, r);
  EXPECT_TRUE(session.row(y, x, r, channels, row));
  return bitsOf(row, channels, x, r);
}

/// Whether rows come from the picture that is made at opening, or are made one by one: then only
/// the bottom row is asked for in advance.
class RowsOfNode : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override { bottomOnly_ = GetParam(); }

  /// The box of the node.
  DD::Image::Box prepare(NodeBench& bench) const {
    const RenderSession whole(bench.node(), bench.options);
    const DD::Image::Box box = whole.box();
    if (bottomOnly_) {
      bench.options.region = DD::Image::Box(box.x(), box.y(), box.r(), box.y() + 1);
    }
    return box;
  }

 private:
  bool bottomOnly_ = false;
};

INSTANTIATE_TEST_SUITE_P(PreparedAndNot, RowsOfNode, testing::Bool());

TEST_P(RowsOfNode, inAnyOrder_areBitIdentical) {
  for (unsigned seed = 530; seed < 550; ++seed) {
    NodeBench bench(randomScene(seed));
    const DD::Image::Box box = prepare(bench);
    RenderSession session(bench.node(), bench.options);
    std::vector<Bits> upward;
    for (int y = box.y(); y < box.t(); ++y) {
      upward.push_back(rowBits(session, bench.options.channels, y, box.x(), box.r()));
    }
    for (int y = box.t() - 1; y >= box.y(); --y) {
      EXPECT_EQ(rowBits(session, bench.options.channels, y, box.x(), box.r()),
                upward[static_cast<std::size_t>(y - box.y())])
          << "seed " << seed;
    }
  }
}

/// The columns of `parts` put together again, in the order of one whole row.
Bits joined(const std::vector<Bits>& parts, std::size_t channels) {
  Bits whole;
  for (std::size_t c = 0; c < channels; ++c) {
    for (const Bits& part : parts) {
      const std::size_t width = part.size() / channels;
      const auto first = part.begin() + static_cast<std::ptrdiff_t>(c * width);
      whole.insert(whole.end(), first, first + static_cast<std::ptrdiff_t>(width));
    }
  }
  return whole;
}

TEST_P(RowsOfNode, splitInXWithoutChromaticAberration_areBitIdentical) {
  for (unsigned seed = 550; seed < 590; ++seed) {
    NodeBench bench(unshiftedScene(seed));
    const DD::Image::Box box = prepare(bench);
    RenderSession session(bench.node(), bench.options);
    const DD::Image::ChannelSet& channels = bench.options.channels;
    const int y = (box.y() + box.t()) / 2;
    const Bits whole = rowBits(session, channels, y, box.x(), box.r());
    for (int x = box.x() + 1; x < box.r(); ++x) {
      const std::vector<Bits> parts{rowBits(session, channels, y, box.x(), x),
                                    rowBits(session, channels, y, x, box.r())};
      EXPECT_EQ(joined(parts, channels.size()), whole) << "seed " << seed << " at " << x;
    }
  }
}

TEST_P(RowsOfNode, oneChannelAtATime_areBitIdentical) {
  for (unsigned seed = 590; seed < 600; ++seed) {
    NodeBench bench(unshiftedScene(seed));
    const DD::Image::Box box = prepare(bench);
    RenderSession session(bench.node(), bench.options);
    const DD::Image::ChannelSet& channels = bench.options.channels;
    const int y = box.t() - 1;
    const Bits whole = rowBits(session, channels, y, box.x(), box.r());
    Bits single;
    for (const DD::Image::Channel z : channels) {
      const Bits one = rowBits(session, z, y, box.x(), box.r());
      single.insert(single.end(), one.begin(), one.end());
    }
    EXPECT_EQ(single, whole) << "seed " << seed;
  }
}

TEST_P(RowsOfNode, onThreadsOfTheCaller_areBitIdentical) {
  NodeBench bench(randomScene(601));
  const DD::Image::Box box = prepare(bench);
  RenderSession session(bench.node(), bench.options);
  std::vector<Bits> alone;
  for (int y = box.y(); y < box.t(); ++y) {
    alone.push_back(rowBits(session, bench.options.channels, y, box.x(), box.r()));
  }
  std::vector<std::vector<Bits>> together(4);
  std::vector<std::thread> threads;
  threads.reserve(together.size());
  for (std::vector<Bits>& rows : together) {
    threads.emplace_back([&] {
      for (int y = box.y(); y < box.t(); ++y) {
        rows.push_back(rowBits(session, bench.options.channels, y, box.x(), box.r()));
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  for (const std::vector<Bits>& rows : together)
    EXPECT_EQ(rows, alone);
}

}  // namespace
}  // namespace drevin::test
