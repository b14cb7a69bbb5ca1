#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/anom/criticalValue.h"
#include "zelkova/anom/yANOM.h"

namespace zelkova {
namespace {

constexpr Index n = 1'000'000;
constexpr Index groups = 50;

void oneWay(benchmark::State& state) {
  startEmbeddedHost();
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray dy(n);
  StringArray dx(n);
  for (Index i = 1; i <= n; ++i) {
    dy(i) = normal(random);
    dx(i) = "Level " + std::to_string(i % groups + 1);
  }
  const yANOM anom;
  DoubleArray summary, levels;
  StringArray labels;
  for (auto _ : state) {
    anom.ANOMOneOutput(dy, dx, 0.05, summary, levels, labels);
    benchmark::DoNotOptimize(levels);
  }
}
BENCHMARK(oneWay)->Name("anom_one/1e6")->Unit(benchmark::kMillisecond);

/// The critical value of that chart; and those of five levels, the fewest whose tails take the cosine
/// integral, and the slowest to give them: on one degree of freedom, over which many tails are mixed, and on
/// many at a large alpha, where Sidak's bound is no near start.
void criticalValue(benchmark::State& state, double alpha, Index levels, double df) {
  WorksheetFunction& host = startEmbeddedHost()->worksheetFunction();
  for (auto _ : state) benchmark::DoNotOptimize(anom::exactCriticalValue(host, alpha, levels, df));
}
BENCHMARK_CAPTURE(criticalValue, large, 0.05, groups, static_cast<double>(n - groups))
    ->Name("anom_critical")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(criticalValue, fewDF, 0.05, 5, 1)
    ->Name("anom_critical/few_df")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(criticalValue, largeAlpha, 0.3, 5, 1e6)
    ->Name("anom_critical/large_alpha")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
