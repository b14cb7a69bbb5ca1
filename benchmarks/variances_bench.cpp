#include <benchmark/benchmark.h>

#include <random>

#include "host/EmbeddedHost.h"
#include "zelkova/hypothesis/yHTest.h"

namespace zelkova {
namespace {

void levene(benchmark::State& state) {
  startEmbeddedHost();
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  const char* const suppliers[] = {"north", "south", "west"};
  DoubleArray dy(1'000'000);
  StringArray dx(dy.rows());
  for (Index i = 1; i <= dy.rows(); ++i) {
    dy(i) = normal(random);
    dx(i) = suppliers[random() % 3];
  }
  const yHTest test;
  DoubleArray result;
  StringArray category;
  for (auto _ : state) {
    test.LeveneOutput(dy, dx, 0.95, result, category);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(levene)->Name("levene/1e6")->Unit(benchmark::kMillisecond);

void correlation(benchmark::State& state) {
  startEmbeddedHost();
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray dym(100'000, 20, 0.0);
  for (double& x : dym.elements()) x = normal(random);
  const yHTest test;
  DoubleArray corr;
  DoubleArray p;
  for (auto _ : state) {
    test.CorrelationOutput(dym, corr, p);
    benchmark::DoNotOptimize(corr);
  }
}
BENCHMARK(correlation)->Name("correlation/1e5x20")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
