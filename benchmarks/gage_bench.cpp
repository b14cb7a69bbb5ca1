#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/gage/yAAA.h"
#include "zelkova/gage/yGage.h"

namespace zelkova {
namespace {

constexpr Index n = 100'000;

/// Labels of `levels` levels, each of `run` rows in turn.
StringArray labelColumn(const std::string& name, Index levels, Index run, Index rows = n) {
  StringArray labels(rows);
  for (Index i = 1; i <= rows; ++i) labels(i) = name + " " + std::to_string((i - 1) / run % levels + 1);
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

void agreement(benchmark::State& state, Index rows) {
  startEmbeddedHost();
  constexpr Index parts = 500;
  std::mt19937_64 random(1);
  StringArray dy(rows), dstd(rows);
  for (Index i = 1; i <= rows; ++i) {
    const Index grade = (i - 1) % parts % 5;
    dstd(i) = "Grade " + std::to_string(grade);
    dy(i) = random() % 4 == 0 ? "Grade " + std::to_string(random() % 5) : dstd(i);
  }
  const StringArray dpart = labelColumn("Part number", parts, 1, rows);
  const StringArray dop = labelColumn("Appraiser", 10, parts, rows);
  const StringArray dtrial = labelColumn("Trial", rows / parts / 10, 10 * parts, rows);
  const yAAA aaa;
  StringArray appraisers, categories;
  DoubleArray within, withinKappa, between, betweenKappa, standard, standardKappa, all, allKappa,
      disagreement;
  std::string error;
  for (auto _ : state) {
    aaa.GageAAAOutput(dy, dpart, dop, dtrial, dstd, StringArray(), true, true, 0.95, appraisers, categories,
                      within, withinKappa, between, betweenKappa, standard, standardKappa, all, allKappa,
                      disagreement, error);
    benchmark::DoNotOptimize(disagreement);
  }
  if (!error.empty()) state.SkipWithError(error.c_str());
}
BENCHMARK_CAPTURE(agreement, of1e4Ratings, 10'000)->Name("aaa/1e4")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(agreement, of1e6Ratings, 1'000'000)->Name("aaa/1e6")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
