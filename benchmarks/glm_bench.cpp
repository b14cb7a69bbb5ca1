#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/models/yGLM.h"

namespace zelkova {
namespace {

void twoWayWithCovariate(benchmark::State& state) {
  startEmbeddedHost();
  constexpr Index n = 100'000;
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray dy(n);
  DoubleArray dc(n, 1, 0.0);
  StringArray df(n, 2, "");
  for (Index i = 1; i <= n; ++i) {
    dy(i) = normal(random);
    dc(i, 1) = normal(random);
    df(i, 1) = "A" + std::to_string(random() % 20);
    df(i, 2) = "B" + std::to_string(random() % 10);
  }
  const yGLM glm;
  DoubleArray table, coefficients, fitted, residual, components;
  StringArray sources, columns, terms, shown;
  double s = 0;
  double r2 = 0;
  double adjusted = 0;
  std::string error;
  for (auto _ : state) {
    glm.GLMOutput(dy, "y", df, {"A", "B"}, dc, {"x"}, {"A", "B", "A*B", "x"}, table, sources, coefficients,
                  columns, s, r2, adjusted, fitted, residual, terms, shown, components, false, error);
    benchmark::DoNotOptimize(table);
  }
  if (!error.empty()) state.SkipWithError(error.c_str());
}
BENCHMARK(twoWayWithCovariate)->Name("glm_2way_cov/1e5")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
