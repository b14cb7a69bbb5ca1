#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/models/yBoxCox.h"
#include "zelkova/plots/yHistogram.h"

namespace zelkova {
namespace {

void histogram(benchmark::State& state) {
  startEmbeddedHost();
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray dy(1'000'000);
  for (double& x : dy.elements()) x = normal(random);
  const yHistogram bars;
  DoubleArray interval, frequency, curve;
  for (auto _ : state) {
    DoubleArray midpoints;
    bars.HistogramOutput(dy, midpoints, interval, frequency, curve);
    benchmark::DoNotOptimize(frequency);
  }
}
BENCHMARK(histogram)->Name("histogram/1e6")->Unit(benchmark::kMillisecond);

/// Skewed data in units that make the search long, in subgroups of 5.
void boxCox(benchmark::State& state) {
  startEmbeddedHost();
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray dy(100'000);
  StringArray dx(dy.rows());
  for (Index i = 1; i <= dy.rows(); ++i) {
    dy(i) = std::exp(normal(random));
    dx(i) = std::to_string((i - 1) / 5);
  }
  const yBoxCox boxCox;
  double lambda = 0, minimum = 0, limit = 0, lower = 0, upper = 0;
  DoubleArray powers, spreads, transformed;
  for (auto _ : state) {
    boxCox.BoxcoxOutput(dy, dx, true, "", lambda, minimum, limit, lower, upper, powers, spreads, transformed);
    benchmark::DoNotOptimize(spreads);
  }
  state.counters["points"] = static_cast<double>(powers.size());
}
BENCHMARK(boxCox)->Name("boxcox/1e5")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
