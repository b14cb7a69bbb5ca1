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

/// The critical value of that chart; and the slowest there is, of few levels with few degrees of freedom.
void criticalValue(benchmark::State& state, Index levels, double df) {
  WorksheetFunction& host = startEmbeddedHost()->worksheetFunction();
  for (auto _ : state) benchmark::DoNotOptimize(anom::exactCriticalValue(host, 0.05, levels, df));
}
BENCHMARK_CAPTURE(criticalValue, large, groups, static_cast<double>(n - groups))
    ->Name("anom_critical")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(criticalValue, slowest, 5, 1)->Name("anom_critical/slowest")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
