#include <benchmark/benchmark.h>

#include <random>

#include "host/EmbeddedHost.h"
#include "zelkova/hypothesis/yHTest.h"

namespace zelkova {
namespace {

void oneT(benchmark::State& state) {
  startEmbeddedHost();
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray dy(1'000'000);
  for (double& y : dy.elements()) y = normal(random);
  const yHTest test;
  DoubleArray result;
  for (auto _ : state) {
    test.OneTOutput(dy, 10, 0.95, "Not equals", result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(oneT)->Name("one_t/1e6")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
