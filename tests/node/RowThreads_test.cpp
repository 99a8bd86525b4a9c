/// Rows are made by the threads that ask for them: only the opening may spawn others.

#include <gtest/gtest.h>

#include "DDImage/Thread.h"
#include "node/DeepBench.h"
#include "node/TransformedScenes.h"

namespace drevin::test {
namespace {

using DD::Image::Box;
using DD::Image::Row;

constexpr unsigned processors = 3;

/// More than one processor for as long as it lives.
class RowThreads : public testing::Test {
 protected:
  RowThreads() { embedded::setThreadCount(processors); }
  ~RowThreads() override { embedded::setThreadCount(before_); }

  /// How often threads were spawned for the opening, and then while rows within the picture that is
  /// made then and beside it were asked for.
  struct Spawned {
    std::uint64_t byOpening = 0;
    std::uint64_t byRows = 0;
  };
  static void expectNoneByRows(NodeBench& bench) {
    const Spawned made = spawned(bench);
    EXPECT_GT(made.byOpening, 0U) << "the count tells of the node's threads";
    EXPECT_EQ(made.byRows, 0U);
  }
  static Spawned spawned(NodeBench& bench) {
    bench.options.region = Box(0, 0, transformedWidth, 40);
    Spawned spawned;
    const std::uint64_t first = embedded::spawnCalls();
    embedded::RenderSession session(bench.node(), bench.options);
    const std::uint64_t opened = embedded::spawnCalls();
    for (const int y : {0, 20, 39, 60, 139}) {
      Row row(0, transformedWidth);
      EXPECT_TRUE(session.row(y, 0, transformedWidth, bench.options.channels, row)) << y;
    }
    spawned.byOpening = opened - first;
    spawned.byRows = embedded::spawnCalls() - opened;
    return spawned;
  }

 private:
  unsigned before_ = DD::Image::Thread::numCPUs;
};

TEST_F(RowThreads, ofFlatPictures_areNotSpawned) {
  NodeBench plain(transformedScene());
  expectNoneByRows(plain);
  NodeBench effects(transformedEffects());
  expectNoneByRows(effects);
}

TEST_F(RowThreads, ofDeepPictures_areNotSpawned) {
  for (const double apart : {0.0, 1.0}) {
    DeepBench bench(transformedDeepScene());
    bench.node().set("integrateFrontAndBackSeperately", apart);
    expectNoneByRows(bench.node());
  }
}

TEST_F(RowThreads, ofVisualizations_areNotSpawned) {
  for (const double outputType : {1.0, 2.0, 3.0, 4.0}) {
    NodeBench flat(transformedScene());
    flat.set("outputType", outputType);
    EXPECT_EQ(spawned(flat).byRows, 0U) << outputType;
    DeepBench deep(transformedDeepScene());
    deep.node().set("outputType", outputType);
    EXPECT_EQ(spawned(deep.node()).byRows, 0U) << outputType;
  }
}

}  // namespace
}  // namespace drevin::test
