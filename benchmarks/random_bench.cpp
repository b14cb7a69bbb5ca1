#include <benchmark/benchmark.h>

#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/random/yRandom.h"

namespace zelkova {
namespace {

/// A hundred columns of `rows`.
void draw(benchmark::State& state, const char* distribution, const char* para1, const char* para2,
          const char* rows) {
  startEmbeddedHost();
  const yRandom random;
  DoubleArray result;
  for (auto _ : state) {
    random.RandomOutput(distribution, "100", rows, para1, para2, "", {}, {}, result);
    benchmark::DoNotOptimize(result);
  }
}

BENCHMARK_CAPTURE(draw, normal, "Normal", "10", "2", "10000")
    ->Name("random_normal/1e6")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, gamma, "Gamma", "2.5", "3", "10000")
    ->Name("random_gamma/1e6")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, beta, "Beta", "2", "3.5", "1000")
    ->Name("random_beta/1e5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, student, "t", "7", "", "1000")->Name("random_t/1e5")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, poisson, "Poisson", "4", "", "10000")
    ->Name("random_poisson/1e6")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
