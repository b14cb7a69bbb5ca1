#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "host/EmbeddedHost.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {
namespace {

/// Predictors that are drawn, and a response that follows them in `levels` steps from 0 on.
struct Data {
  Data(Index n, Index predictors, int levels) : Y(n, 1, Variant()), x(n, predictors, Variant()) {
    startEmbeddedHost();
    std::mt19937_64 random(1);
    std::normal_distribution<double> normal(0, 1);
    std::vector<double> score(static_cast<std::size_t>(n));
    for (Index j = 1; j <= predictors; ++j) {
      const double slope = j % 2 == 0 ? -0.4 : 0.5;
      for (Index i = 1; i <= n; ++i) {
        const double value = normal(random);
        x(i, j) = value;
        score[static_cast<std::size_t>(i - 1)] += slope * value;
      }
    }
    std::uniform_real_distribution<double> uniform(0, 1);
    for (Index i = 1; i <= n; ++i) {
      const double u = uniform(random);
      const double latent = score[static_cast<std::size_t>(i - 1)] + std::log(u / (1 - u));
      Y(i, 1) = std::clamp(std::floor(latent + levels / 2.0), 0.0, levels - 1.0);
    }
  }

  VariantArray Y, x;
  StringArray names;
};

void binary(benchmark::State& state) {
  const Data data(100'000, 10, 2);
  const yLogistic model;
  DoubleArray coefficients, goodness, pairs, measures, leverage, probability, cs, dev, betas, beta;
  double logLikelihood = 0;
  for (auto _ : state) {
    model.Binary_regression(data.Y, data.x, data.names, "Logit", coefficients, logLikelihood, goodness, pairs,
                            measures, leverage, probability, cs, dev, betas, beta);
    benchmark::DoNotOptimize(logLikelihood);
  }
}
BENCHMARK(binary)->Name("binary_logit/1e5x10")->Unit(benchmark::kMillisecond);

void ordinal(benchmark::State& state) {
  const Data data(20'000, 5, 4);
  const yLogistic model;
  DoubleArray coefficients, goodness, pairs, measures;
  double logLikelihood = 0;
  std::int16_t levels = 0;
  for (auto _ : state) {
    model.Ordinal_regression(data.Y, data.x, data.names, "Logit", coefficients, logLikelihood, goodness,
                             pairs, measures, levels);
    benchmark::DoNotOptimize(logLikelihood);
  }
}
BENCHMARK(ordinal)->Name("ordinal/2e4x5")->Unit(benchmark::kMillisecond);

void nominal(benchmark::State& state) {
  const Data data(20'000, 5, 4);
  const yLogistic model;
  DoubleArray coefficients, goodness;
  StringArray levels;
  double logLikelihood = 0;
  for (auto _ : state) {
    model.Nominal_regression(data.Y, data.x, data.names, "0", coefficients, logLikelihood, goodness, levels);
    benchmark::DoNotOptimize(logLikelihood);
  }
}
BENCHMARK(nominal)->Name("nominal/2e4x5")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
