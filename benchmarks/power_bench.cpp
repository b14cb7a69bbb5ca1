#include <benchmark/benchmark.h>

#include "host/EmbeddedHost.h"
#include "zelkova/power/yPASS.h"

namespace zelkova {
namespace {

/// "first, first + step, ...": `count` numbers.
std::string list(double first, double step, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += (i == 0 ? "" : ",") + std::to_string(first + i * step);
  return text;
}

/// A thousand searches: a hundred differences from 0.2 to 2.2 sigma, ten powers from 0.5 to 0.95.
void sampleSizeOfTTest(benchmark::State& state) {
  startEmbeddedHost();
  const yPASS pass;
  const std::string differences = list(0.2, 0.02, 100);
  const std::string powers = list(0.5, 0.05, 10);
  DoubleArray result;
  for (auto _ : state) {
    pass.PASSOneTOutput("1", "", differences, powers, 1, "Not equals", 0.05, result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(sampleSizeOfTTest)->Name("power_t_n/1000")->Unit(benchmark::kMillisecond);

void differenceOfANOVA(benchmark::State& state) {
  startEmbeddedHost();
  const yPASS pass;
  const std::string sizes = list(5, 1, 100);
  DoubleArray result;
  for (auto _ : state) {
    pass.PASSOneANOVAOutput("2", sizes, "", "0.8,0.9", 2, 0.05, 4, result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(differenceOfANOVA)->Name("power_anova_difference/200")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
