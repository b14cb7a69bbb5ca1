#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "zelkova/charts/yControlChart.h"

namespace zelkova {
namespace {

DoubleArray normalValues(Index n) {
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray values(n);
  for (double& x : values.elements()) x = normal(random);
  return values;
}

/// "1", ... with `size` rows each.
StringArray numbered(Index n, Index size) {
  StringArray labels(n);
  for (Index i = 1; i <= n; ++i) labels(i) = std::to_string((i - 1) / size + 1);
  return labels;
}

/// One chart with limits at 1, 2 and 3 sigma and all eight tests.
void chart(benchmark::State& state, const char* type, const DoubleArray& dy, const StringArray& dx,
           const char* estimate) {
  const StringArray dp(dy.rows(), "1");
  const yControlChart charts;
  DoubleArray x, y, centre, lower, upper, phaseX, phaseY;
  StringArray failed;
  for (auto _ : state) {
    charts.ControlChartOutput(type, dy, dx, dp, x, y, centre, lower, upper, phaseX, phaseY, failed, "1,2,3",
                              "", "", estimate, "3", "9", "6", "14", "2", "4", "15", "8", "", "", "2", "",
                              "0.2", "", "");
    benchmark::DoNotOptimize(failed);
  }
}

constexpr Index million = 1'000'000;

void xbar(benchmark::State& state) {
  chart(state, "XBAR", normalValues(million), numbered(million, 5), "Pooled Std Dev");
}
BENCHMARK(xbar)->Name("xbar/1e6")->Unit(benchmark::kMillisecond);

void individual(benchmark::State& state) {
  chart(state, "INDIVIDUAL", normalValues(million), {}, "Average Moving Range");
}
BENCHMARK(individual)->Name("individual/1e6")->Unit(benchmark::kMillisecond);

void ewma(benchmark::State& state) {
  chart(state, "EWMA", normalValues(million), numbered(million, 1), "Average Moving Range>Pooled Std Dev");
}
BENCHMARK(ewma)->Name("ewma/1e6")->Unit(benchmark::kMillisecond);

void pChart(benchmark::State& state) {
  std::mt19937_64 random(1);
  DoubleArray defectives(100'000);
  StringArray sizes(defectives.rows());
  for (Index i = 1; i <= defectives.rows(); ++i) {
    const std::uint64_t size = 100 + random() % 100;
    sizes(i) = std::to_string(size);
    defectives(i) = static_cast<double>(random() % (size / 10));
  }
  chart(state, "PChart", defectives, sizes, "");
}
BENCHMARK(pChart)->Name("p_chart/1e5")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
