#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {
namespace {

struct LifeData {
  DoubleArray SA;
  DoubleArray EA;
  DoubleArray FA;
};

class Lives {
 public:
  /// A life of the distribution by its inverse, or by Box and Muller's method.
  double draw(const std::string& dist) {
    const double p = uniform();
    const double extreme = std::log(-std::log1p(-p));
    const double logistic = std::log(p / (1 - p));
    const double normal = std::sqrt(-2 * std::log(p)) * std::cos(2 * std::numbers::pi * uniform());
    if (dist == "Weibull") return 100 * std::exp(extreme / 1.7);
    if (dist == "Exponential") return -100 * std::log1p(-p);
    if (dist == "Normal") return 100 + 20 * normal;
    if (dist == "Lognormal") return std::exp(4.5 + 0.6 * normal);
    if (dist == "Logistic") return 100 + 12 * logistic;
    return std::exp(4.5 + 0.4 * logistic);
  }

  double uniform() { return (static_cast<double>(random_() >> 11) + 0.5) * 0x1p-53; }

 private:
  std::mt19937_64 random_{7};
};

/// Lives that another life of the same distribution, a fifth longer, cuts short: about 40 percent are
/// censored.
LifeData rightCensored(const std::string& dist, Index n) {
  Lives lives;
  LifeData data{DoubleArray(n), DoubleArray(n), DoubleArray(n, 1.0)};
  for (Index i = 1; i <= n; ++i) {
    const double life = lives.draw(dist);
    const double end = 1.2 * lives.draw(dist);
    data.SA(i) = std::min(life, end);
    data.EA(i) = life <= end ? life : NoValue;
  }
  return data;
}

/// The same as found by inspections every ten hours.
LifeData inspected(Index n) {
  LifeData data = rightCensored("Weibull", n);
  for (Index i = 1; i <= n; ++i) {
    const double visit = std::floor(data.SA(i) / 10) * 10;
    data.SA(i) = data.EA(i) == NoValue ? std::max(10.0, visit) : visit;
    if (data.EA(i) != NoValue) data.EA(i) = data.SA(i) + 10;
  }
  return data;
}

void fit(benchmark::State& state, const std::string& dist, const LifeData& data) {
  startEmbeddedHost();
  const yReliability engine;
  LifeData sorted = data;
  DoubleArray start, PlotX, PlotY, P, MLO, FM;
  double corr = 0;
  engine.Para_LS(sorted.SA, sorted.EA, sorted.FA, "Median rank", dist, start, corr, PlotX, PlotY, NoValue);
  for (double& parameter : start.elements()) {
    if (parameter == NoValue) parameter = 2;
  }
  const DoubleArray hold(start.rows(), NoValue);
  for (auto _ : state) {
    P = start;
    engine.Para_ML(data.SA, data.EA, data.FA, dist, P, MLO, FM, hold);
    benchmark::DoNotOptimize(P);
  }
}

void fitRightCensored(benchmark::State& state, const std::string& dist) {
  fit(state, dist, rightCensored(dist, 100000));
}

BENCHMARK_CAPTURE(fitRightCensored, weibull, "Weibull")
    ->Name("ml_weibull/1e5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fitRightCensored, lognormal, "Lognormal")
    ->Name("ml_lognormal/1e5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fitRightCensored, normal, "Normal")->Name("ml_normal/1e5")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fitRightCensored, logistic, "Logistic")
    ->Name("ml_logistic/1e5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fitRightCensored, loglogistic, "Loglogistic")
    ->Name("ml_loglogistic/1e5")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fitRightCensored, exponential, "Exponential")
    ->Name("ml_exponential/1e5")
    ->Unit(benchmark::kMillisecond);

void fitIntervals(benchmark::State& state) {
  startEmbeddedHost();
  const LifeData data = inspected(100000);
  const yReliability engine;
  DoubleArray P, MLO, FM;
  for (auto _ : state) {
    P = {90, 1.5};
    engine.Para_ML(data.SA, data.EA, data.FA, "Weibull", P, MLO, FM, {NoValue, NoValue});
    benchmark::DoNotOptimize(P);
  }
}
BENCHMARK(fitIntervals)->Name("ml_interval_weibull/1e5")->Unit(benchmark::kMillisecond);

void productLimit(benchmark::State& state) {
  startEmbeddedHost();
  const LifeData data = rightCensored("Weibull", 1000000);
  const yReliability engine;
  DoubleArray table, hazard, summary, SX, SY, SL, SU, FX, FY, FL, FU, HX, HY;
  for (auto _ : state) {
    LifeData sorted = data;
    engine.NonParaR(sorted.SA, sorted.EA, sorted.FA, 0.95, table, hazard, summary, SX, SY, SL, SU, FX, FY, FL,
                    FU, HX, HY);
    benchmark::DoNotOptimize(summary);
  }
}
BENCHMARK(productLimit)->Name("kaplan_meier/1e6")->Unit(benchmark::kMillisecond);

void spans(benchmark::State& state) {
  startEmbeddedHost();
  Lives lives;
  constexpr Index n = 300;
  LifeData data{DoubleArray(n), DoubleArray(n), DoubleArray(n)};
  for (Index i = 1; i <= n; ++i) {
    data.SA(i) = 10.0 * static_cast<double>(i);
    data.EA(i) = data.SA(i) + 10;
    data.FA(i) = 1 + std::floor(9 * lives.uniform());
  }
  const yReliability engine;
  DoubleArray weights, table, kinds, SX, SY, SL, SU, FX, FY, FL, FU;
  for (auto _ : state) {
    engine.NonParaA(data.SA, data.EA, data.FA, 0.95, weights, table, kinds, {}, SX, SY, SL, SU, FX, FY, FL,
                    FU);
    benchmark::DoNotOptimize(table);
  }
}
BENCHMARK(spans)->Name("turnbull/300")->Unit(benchmark::kMillisecond);

void overlap(benchmark::State& state) {
  startEmbeddedHost();
  Lives lives;
  constexpr Index n = 100000;
  LifeData data{DoubleArray(n), DoubleArray(n), DoubleArray(n, 1.0)};
  for (Index i = 1; i <= n; ++i) {
    data.SA(i) = 1e6 * lives.uniform();
    data.EA(i) = data.SA(i) + 10 * lives.uniform();
  }
  const yReliability engine;
  for (auto _ : state) {
    LifeData rows = data;
    engine.HandleOverlap(rows.SA, rows.EA, rows.FA);
    benchmark::DoNotOptimize(rows);
  }
}
BENCHMARK(overlap)->Name("handle_overlap/1e5")->Unit(benchmark::kMillisecond);

void acceleratedLife(benchmark::State& state) {
  startEmbeddedHost();
  Lives lives;
  constexpr Index n = 10000;
  LifeData data{DoubleArray(n), DoubleArray(n), DoubleArray(n, 1.0)};
  DoubleArray stress(n);
  for (Index i = 1; i <= n; ++i) {
    stress(i) = 60 + 20.0 * static_cast<double>(i % 4);
    const double scale = std::exp(-8 + 0.5 * 11604.83 / (stress(i) + 273.16)) / 100;
    const double life = scale * lives.draw("Weibull");
    const double end = 1.2 * scale * lives.draw("Weibull");
    data.SA(i) = std::min(life, end);
    data.EA(i) = life <= end ? life : NoValue;
  }
  const yReliability engine;
  DoubleArray a, b, c, d, e, f, g, h, i, j, k, l, m, o, p, q, r, s, t, u, v, w, x, y, z;
  for (auto _ : state) {
    engine.ALTOutput(data.SA, data.EA, data.FA, stress, 0.95, "Weibull", "Median rank", "Maximum likelihood",
                     "Arrhenius", {10, 50}, 50, {40}, {1000}, {}, a, b, c, d, e, f, g, h, i, j, k, l, m, o, p,
                     q, r, s, t, u, v, w, x, y, z);
    benchmark::DoNotOptimize(b);
  }
}
BENCHMARK(acceleratedLife)->Name("alt/1e4")->Unit(benchmark::kMillisecond);

void lifeRegression(benchmark::State& state) {
  startEmbeddedHost();
  Lives lives;
  constexpr Index n = 100000;
  LifeData data{DoubleArray(n), DoubleArray(n), DoubleArray(n, 5, 1.0)};
  for (Index i = 1; i <= n; ++i) {
    const double age = data.FA(i, 3) = 40 + 40 * lives.uniform();
    const double temperature = data.FA(i, 4) = 60 + 100 * lives.uniform();
    const double group = data.FA(i, 5) = lives.uniform() < 0.5 ? 1 : 0;
    const double scale = std::exp(1 - 0.02 * age + 0.01 * temperature + 0.3 * group);
    const double life = scale * lives.draw("Weibull");
    const double end = 1.2 * scale * lives.draw("Weibull");
    data.SA(i) = std::min(life, end);
    data.EA(i) = life <= end ? life : NoValue;
  }
  const yReliability engine;
  const DoubleArray asked = DoubleArray::table({{1, 50, 80, 0}, {1, 70, 120, 1}});
  DoubleArray a, b, c, d, e, f, g, h, i, j, k, l;
  for (auto _ : state) {
    engine.LDROutput(data.SA, data.EA, data.FA, 0.95, "Weibull", "Median rank", "Maximum likelihood",
                     {10, 50}, asked, {100}, {}, a, b, c, d, e, f, g, h, i, j, k, l);
    benchmark::DoNotOptimize(a);
  }
}
BENCHMARK(lifeRegression)->Name("ldr_weibull/1e5x3")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
