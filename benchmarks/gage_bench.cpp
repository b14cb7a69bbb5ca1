#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/gage/yGage.h"

namespace zelkova {
namespace {

constexpr Index n = 100'000;

/// Labels of `levels` levels, each of `run` rows in turn.
StringArray labelColumn(const std::string& name, Index levels, Index run) {
  StringArray labels(n);
  for (Index i = 1; i <= n; ++i) labels(i) = name + " " + std::to_string((i - 1) / run % levels + 1);
  return labels;
}

void crossed(benchmark::State& state, Index parts) {
  startEmbeddedHost();
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray dy(n);
  for (double& y : dy.elements()) y = normal(random);
  const StringArray dpart = labelColumn("Part number", parts, 1);
  const StringArray dop = labelColumn("Operator", 10, parts);
  const yGage gage;
  DoubleArray anova, components;
  std::string error;
  for (auto _ : state) {
    gage.GageCrossedOutput(dy, dpart, dop, "", "12", "ANOVA", anova, components, error);
    benchmark::DoNotOptimize(components);
  }
  if (!error.empty()) state.SkipWithError(error.c_str());
}
BENCHMARK_CAPTURE(crossed, of100Parts, 100)->Name("gage_crossed/1e5")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(crossed, of5000Parts, 5000)
    ->Name("gage_crossed_small_cells/1e5")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
