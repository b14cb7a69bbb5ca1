#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/hypothesis/yNormality.h"

namespace zelkova {
namespace {

constexpr Index million = 1'000'000;

DoubleArray normalValues(Index n, double mean, std::uint64_t seed = 1) {
  std::mt19937_64 random(seed);
  std::normal_distribution<double> normal(mean, 2);
  DoubleArray values(n);
  for (double& x : values.elements()) x = normal(random);
  return values;
}

/// `stretch` equal labels after each other, over and over from level 1 to `levels`.
StringArray labels(Index n, Index levels, Index stretch) {
  StringArray result(n);
  for (Index i = 0; i < n; ++i) result(i + 1) = "Level " + std::to_string(i / stretch % levels + 1);
  return result;
}

void kruskal(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray dy = normalValues(million, 10);
  const StringArray dx = labels(million, 3, 1);
  const yHTest test;
  DoubleArray groups;
  DoubleArray result;
  StringArray category;
  for (auto _ : state) {
    test.KruskalWOutput(dy, dx, groups, result, category);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(kruskal)->Name("kruskal/1e6")->Unit(benchmark::kMillisecond);

void twoSamples(benchmark::State& state, Index n) {
  startEmbeddedHost();
  const DoubleArray dy1 = normalValues(n, 10);
  const DoubleArray dy2 = normalValues(n, 10.5, 2);
  const yHTest test;
  DoubleArray result;
  for (auto _ : state) {
    test.TwoMannWOutput(dy1, dy2, "Not equals", result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK_CAPTURE(twoSamples, , million)->Name("mann_whitney/2x1e6")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(twoSamples, , 316)->Name("hodges_lehmann/316x316")->Unit(benchmark::kMillisecond);

void wilcoxon(benchmark::State& state, Index n) {
  startEmbeddedHost();
  const DoubleArray dy = normalValues(n, 10);
  const yHTest test;
  DoubleArray result;
  for (auto _ : state) {
    test.OneWilcoxonOutput(dy, 9.9, 0.95, "Not equals", result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK_CAPTURE(wilcoxon, , 2000)->Name("wilcoxon/2000")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(wilcoxon, , 20000)->Name("wilcoxon/20000")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(wilcoxon, , million)->Name("wilcoxon/1e6")->Unit(benchmark::kMillisecond);

void friedman(benchmark::State& state) {
  startEmbeddedHost();
  constexpr Index treatments = 10;
  const DoubleArray dy = normalValues(million, 10);
  const StringArray dx1 = labels(million, treatments, 1);
  const StringArray dx2 = labels(million, million / treatments, treatments);
  const yHTest test;
  DoubleArray table;
  DoubleArray result;
  StringArray category;
  for (auto _ : state) {
    test.FriedmanOutput(dy, dx1, dx2, table, result, category);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(friedman)->Name("friedman/1e5x10")->Unit(benchmark::kMillisecond);

void andersonDarling(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray values = normalValues(million, 10);
  const yNormality test;
  DoubleArray result;
  for (auto _ : state) {
    test.NormTestOutput(values, result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(andersonDarling)->Name("anderson_darling/1e6")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
