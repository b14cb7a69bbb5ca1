#include <benchmark/benchmark.h>

#include <random>

#include "host/EmbeddedHost.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/yDStat.h"

namespace {

using zelkova::DoubleArray;
using zelkova::Index;
using zelkova::StringArray;

constexpr Index million = 1'000'000;

/// Roughly normal values with few ties.
DoubleArray normalValues(Index n) {
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(50, 4);
  DoubleArray values(n);
  for (double& x : values.elements()) x = normal(random);
  return values;
}

DoubleArray normalMatrix(Index n) {
  const DoubleArray values = normalValues(n * n);
  DoubleArray matrix(n, n, 0.0);
  std::copy(values.elements().begin(), values.elements().end(), matrix.elements().begin());
  return matrix;
}

void desStat(benchmark::State& state) {
  const auto host = zelkova::startEmbeddedHost();
  const DoubleArray values = normalValues(million);
  DoubleArray result;
  for (auto _ : state) {
    zelkova::yDStat().DesStatOutput(values, result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(desStat)->Name("des_stat/1e6")->Unit(benchmark::kMillisecond);

void ranks(benchmark::State& state) {
  const DoubleArray values = normalValues(million);
  DoubleArray result;
  for (auto _ : state) {
    zelkova::GetRanks(values, result, true);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(ranks)->Name("ranks/1e6")->Unit(benchmark::kMillisecond);

void uniqueLabels(benchmark::State& state) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<int> level(1, 1000);
  StringArray labels(million);
  for (std::string& label : labels.elements()) label = "Level " + std::to_string(level(random));
  StringArray result;
  for (auto _ : state) {
    zelkova::GetUniqueS(labels, result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(uniqueLabels)->Name("unique_s/1e6")->Unit(benchmark::kMillisecond);

void matMultiply(benchmark::State& state) {
  const DoubleArray a = normalMatrix(500);
  for (auto _ : state) benchmark::DoNotOptimize(zelkova::MatMultiply(a, a));
}
BENCHMARK(matMultiply)->Name("mat_multiply/500")->Unit(benchmark::kMillisecond);

void matInverse(benchmark::State& state) {
  const DoubleArray a = normalMatrix(200);
  for (auto _ : state) benchmark::DoNotOptimize(zelkova::MatInverse(a));
}
BENCHMARK(matInverse)->Name("mat_inverse/200")->Unit(benchmark::kMillisecond);

}  // namespace
