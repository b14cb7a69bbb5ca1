#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/models/yANOVA1.h"
#include "zelkova/models/yANOVA2.h"

namespace zelkova {
namespace {

constexpr Index n = 1'000'000;

DoubleArray normalColumn() {
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray dy(n);
  for (double& y : dy.elements()) y = normal(random);
  return dy;
}

/// Labels "Level 1" to "Level `levels`", each of `run` rows in turn.
StringArray labelColumn(Index levels, Index run) {
  StringArray dx(n);
  for (Index i = 1; i <= n; ++i) dx(i) = "Level " + std::to_string((i - 1) / run % levels + 1);
  return dx;
}

void oneWay(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray dy = normalColumn();
  const StringArray dx = labelColumn(10, 1);
  const yANOVA1 anova;
  DoubleArray table, levels;
  StringArray labels;
  for (auto _ : state) {
    anova.OneANOVAOutput(dy, dx, 0.95, table, levels, labels);
    benchmark::DoNotOptimize(table);
  }
}
BENCHMARK(oneWay)->Name("one_anova/1e6")->Unit(benchmark::kMillisecond);

void twoWay(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray dy = normalColumn();
  const StringArray dx1 = labelColumn(10, 1);
  const StringArray dx2 = labelColumn(20, 10);
  const yANOVA2 anova;
  DoubleArray table, levels1, levels2;
  StringArray labels1, labels2;
  std::string error;
  for (auto _ : state) {
    anova.TwoANOVAOutput(dy, dx1, dx2, false, 0.95, table, levels1, levels2, labels1, labels2, error);
    benchmark::DoNotOptimize(table);
  }
}
BENCHMARK(twoWay)->Name("two_anova/1e6")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
