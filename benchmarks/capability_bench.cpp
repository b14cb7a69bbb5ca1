#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/capability/yCapability.h"
#include "zelkova/capability/yCapabilityB.h"
#include "zelkova/capability/yCapabilityW.h"

namespace zelkova {
namespace {

constexpr Index million = 1'000'000;

/// Normal measurements in subgroups of 5.
struct Process {
  DoubleArray y = DoubleArray(million);
  StringArray subgroup = StringArray(million);

  Process() {
    std::mt19937_64 random(1);
    std::normal_distribution<double> normal(10, 2);
    for (Index i = 1; i <= million; ++i) {
      y(i) = normal(random);
      subgroup(i) = std::to_string((i - 1) / 5 + 1);
    }
  }
};

void study(benchmark::State& state, const char* movingRange, bool bw) {
  startEmbeddedHost();
  const Process process;
  const yCapability capability;
  DoubleArray result;
  for (auto _ : state) {
    capability.CapabilityOutput(process.y, process.subgroup, movingRange, "Pooled Std Dev", "2", "16", "4",
                                "10", "6", "", "", "", "", "", "", result, bw);
    benchmark::DoNotOptimize(result);
  }
}

void normalCapability(benchmark::State& state) { study(state, "Average Moving Range", false); }
BENCHMARK(normalCapability)->Name("capability/1e6")->Unit(benchmark::kMillisecond);

void betweenWithin(benchmark::State& state) { study(state, "Median Moving Range", true); }
BENCHMARK(betweenWithin)->Name("capability_bw/1e6")->Unit(benchmark::kMillisecond);

void histogram(benchmark::State& state) {
  startEmbeddedHost();
  const Process process;
  const yCapability capability;
  DoubleArray x, y, within, overall, limitY, lower, upper, target;
  for (auto _ : state) {
    capability.CapabilityChartoutput(process.y, process.subgroup, "16", "4", "10", 10, 2, 2, x, y, within,
                                     overall, limitY, lower, upper, target);
    benchmark::DoNotOptimize(y);
  }
}
BENCHMARK(histogram)->Name("capability_chart/1e6")->Unit(benchmark::kMillisecond);

void defectives(benchmark::State& state) {
  startEmbeddedHost();
  std::mt19937_64 random(1);
  constexpr Index samples = 10'000;
  DoubleArray counts(samples), sizes(samples);
  for (Index i = 1; i <= samples; ++i) {
    sizes(i) = static_cast<double>(100 + random() % 100);
    counts(i) = static_cast<double>(random() % 10);
  }
  const yCapabilityB capability;
  DoubleArray x, y, average, lower, upper, rate, size, ascending, low, high, plotX, observed, expected;
  StringArray label;
  for (auto _ : state) {
    capability.CapabilityBPlotOutput(counts, sizes, "", "", x, y, average, lower, upper, rate, size,
                                     ascending, low, high, plotX, observed, expected, label);
    benchmark::DoNotOptimize(high);
  }
}
BENCHMARK(defectives)->Name("capability_defectives/1e4")->Unit(benchmark::kMillisecond);

DoubleArray strengths() {
  std::mt19937_64 random(2);
  std::weibull_distribution<double> weibull(2.5, 40);
  DoubleArray y(million);
  for (double& x : y.elements()) x = weibull(random);
  return y;
}

void weibullCapability(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray y = strengths();
  const yCapabilityW capability;
  DoubleArray result;
  for (auto _ : state) {
    capability.CapabilityWOutput(y, "100", "3", "", "", "", 0.95, "", result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(weibullCapability)->Name("capability_w/1e6")->Unit(benchmark::kMillisecond);

void weibullHistogram(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray y = strengths();
  const yCapabilityW capability;
  DoubleArray x, counts, curve, limitY, lower, upper, target;
  for (auto _ : state) {
    capability.CapabilityWChartOutput(y, "100", "3", "", 2.5, 40, x, counts, curve, limitY, lower, upper,
                                      target);
    benchmark::DoNotOptimize(counts);
  }
}
BENCHMARK(weibullHistogram)->Name("capability_w_chart/1e6")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
