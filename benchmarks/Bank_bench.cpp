/// bank.size<N>: every kernel up to N px from a 256 px hero, production against literal.

#include <benchmark/benchmark.h>

#include "BenchScene.h"
#include "support/LiteralBank.h"
#include "support/LiteralHero.h"

namespace {

using drevin::bench::Frame;
using drevin::bench::uniformScene;

void bank(benchmark::State& state) {
  const auto scene = uniformScene(64, 64, 1);
  const Frame frame(scene);
  const int size = drevin::bankSize(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    drevin::dvKernelBank bank(static_cast<std::size_t>(size));
    for (int i = 0; i < size; ++i) {
      initializeBankEntry(bank[static_cast<std::size_t>(i)], i, frame.hero(), frame.channels());
    }
    benchmark::DoNotOptimize(bank);
  }
}

void bankLiteral(benchmark::State& state) {
  const auto scene = uniformScene(64, 64, 1);
  const drevin::test::LiteralFrame frame(scene);
  for (auto _ : state) {
    auto bank = drevin::test::literalBank(frame.hero(), static_cast<int>(state.range(0)));
    benchmark::DoNotOptimize(bank);
  }
}

BENCHMARK(bank)->Name("bank.production")->Arg(32)->Arg(128)->Unit(benchmark::kMillisecond);
BENCHMARK(bankLiteral)->Name("bank.literal")->Arg(32)->Arg(128)->Unit(benchmark::kMillisecond);

}  // namespace
