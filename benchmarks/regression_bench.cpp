#include <benchmark/benchmark.h>

#include <random>

#include "host/EmbeddedHost.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {
namespace {

struct Data {
  Data(Index n, Index regressors) : Y(n, 1, 0.0), X(n, regressors + 1, 1.0) {
    startEmbeddedHost();
    std::mt19937_64 random(1);
    std::normal_distribution<double> normal(10, 2);
    for (Index j = 2; j <= X.columns(); ++j) {
      for (double& x : X.column(j)) x = normal(random);
    }
    for (Index i = 1; i <= n; ++i) Y(i, 1) = normal(random) + X(i, 2) - 0.5 * X(i, 3);
  }

  DoubleArray Y, X;
};

void regression(benchmark::State& state) {
  const Data data(100'000, 20);
  const yRegression model;
  DoubleArray coef, se, t, p, fitted, residual, main;
  for (auto _ : state) {
    model.RegOutput(data.Y, data.X, coef, se, t, p, fitted, residual, main, true, true);
    benchmark::DoNotOptimize(main);
  }
}
BENCHMARK(regression)->Name("regression/1e5x20")->Unit(benchmark::kMillisecond);

void adjustedSumsOfSquares(benchmark::State& state) {
  const Data data(20'000, 20);
  const yRegression model;
  DoubleArray sums;
  for (auto _ : state) {
    model.GetSSAdj(data.Y, data.X, true, sums);
    benchmark::DoNotOptimize(sums);
  }
}
BENCHMARK(adjustedSumsOfSquares)->Name("ss_adj/2e4x20")->Unit(benchmark::kMillisecond);

void varianceInflation(benchmark::State& state) {
  const Data data(100'000, 50);
  const yRegression model;
  DoubleArray factors;
  for (auto _ : state) {
    model.GetVIF(data.X, true, factors);
    benchmark::DoNotOptimize(factors);
  }
}
BENCHMARK(varianceInflation)->Name("vif/1e5x50")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
