#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/doe/yDOEAnalyse.h"
#include "zelkova/doe/yDOEGenerate.h"

namespace zelkova {
namespace {

constexpr Index factors = 15;
constexpr Index runs = 128;
constexpr const char* letters = "ABCDEFGHJKLMNOP";

void generate(benchmark::State& state) {
  startEmbeddedHost();
  const yDOEGenerate generator;
  const StringArray type(factors, "Numeric");
  const StringArray low(factors, "10");
  const StringArray high(factors, "20");
  const StringArray name(factors, "factor");
  StringArray sheet, headings;
  for (auto _ : state) {
    generator.DOEGenOutput(factors, 4, 1, 8, 2, true, type, low, high, name, sheet, headings);
    benchmark::DoNotOptimize(sheet);
  }
}
BENCHMARK(generate)->Name("doe_generate/15x128")->Unit(benchmark::kMillisecond);

// All main effects and pairs, of which some are aliases, in real units.
void analyse(benchmark::State& state) {
  startEmbeddedHost();
  StringArray sheet, headings, selected;
  const StringArray type(factors, "Numeric");
  const StringArray low(factors, "10");
  const StringArray high(factors, "20");
  const StringArray name(factors, "factor");
  yDOEGenerate().DOEGenOutput(factors, 4, 1, 1, 0, false, type, low, high, name, sheet, headings);
  StringArray dx(runs, factors, "");
  DoubleArray dy(runs);
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(50, 5);
  for (Index i = 1; i <= runs; ++i) {
    dy(i) = normal(random);
    for (Index j = 1; j <= factors; ++j) dx(i, j) = sheet(i, j + 4);
  }
  std::vector<std::string> terms;
  for (Index j = 0; j < factors; ++j) terms.emplace_back(1, letters[j]);
  for (Index j = 0; j < factors; ++j) {
    for (Index k = j + 1; k < factors; ++k) terms.push_back({letters[j], letters[k]});
  }
  const DoubleArray corner(runs, 1);
  const yDOEAnalyse analysis;
  StringArray labels, sources;
  DoubleArray effect, coef, se, t, p, df, seq, adj, F, pF, uncoded, others, fit, residual;
  for (auto _ : state) {
    Variant centre = 0.0;
    Variant block = 1.0;
    Variant curvature = Variant::flag(false);
    analysis.DOEAnaOutput(dy, dx, corner, corner, StringArray(terms), name, type, low, high, 1.0, 15.0, 4.0,
                          centre, 1.0, block, Variant::flag(false), curvature, labels, effect, coef, se, t, p,
                          sources, df, seq, adj, F, pF, uncoded, others, fit, residual);
    benchmark::DoNotOptimize(others);
  }
  state.counters["terms"] = static_cast<double>(labels.rows());
}
BENCHMARK(analyse)->Name("doe_analyse/15x128")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
