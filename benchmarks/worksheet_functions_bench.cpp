#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <vector>

#include "host/EmbeddedWorksheetFunction.h"

namespace zelkova {
namespace {

/// Probabilities as studies ask for them, some far out.
constexpr std::array<double, 16> probabilities = {0.001, 0.005, 0.01, 0.025, 0.05, 0.1,  0.2,   0.35,
                                                  0.5,   0.65,  0.8,  0.9,   0.95, 0.99, 1e-12, 1e-40};
constexpr std::array<double, 12> degrees = {1, 2, 3, 4, 5, 8, 12, 19, 30, 60, 120, 1000};
constexpr std::array<double, 8> shapes = {0.5, 1, 1.5, 3, 7.5, 20, 64, 400};

struct Arguments {
  double x, a, b;
};

/// Every probability with every pair of parameters, in an order that jumps about.
template <std::size_t N>
std::vector<Arguments> mix(const std::array<double, N>& parameters) {
  std::vector<Arguments> all;
  for (const double p : probabilities) {
    for (const double a : parameters) {
      for (const double b : parameters) all.push_back({p, a, b});
    }
  }
  std::vector<Arguments> mixed;
  for (std::size_t i = 0; i < all.size(); ++i) mixed.push_back(all[i * 677 % all.size()]);
  return mixed;
}

/// Times one call after the other over the mix.
template <class Call>
void over(benchmark::State& state, const std::vector<Arguments>& arguments, Call call) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(call(arguments[i]));
    if (++i == arguments.size()) i = 0;
  }
}

EmbeddedWorksheetFunction functions;

void norm_s_inv(benchmark::State& state) {
  over(state, mix(degrees), [](const Arguments& v) { return functions.NormSInv(v.x); });
}
BENCHMARK(norm_s_inv);

void t_inv(benchmark::State& state) {
  over(state, mix(degrees), [](const Arguments& v) { return functions.TInv(v.x, v.a); });
}
BENCHMARK(t_inv);

void chi_inv(benchmark::State& state) {
  over(state, mix(degrees), [](const Arguments& v) { return functions.ChiInv(v.x, v.a); });
}
BENCHMARK(chi_inv);

void f_inv(benchmark::State& state) {
  over(state, mix(degrees), [](const Arguments& v) { return functions.FInv(v.x, v.a, v.b); });
}
BENCHMARK(f_inv);

void beta_inv(benchmark::State& state) {
  over(state, mix(shapes), [](const Arguments& v) { return functions.BetaInv(v.x, v.a, v.b); });
}
BENCHMARK(beta_inv);

void norm_s_dist(benchmark::State& state) {
  over(state, mix(degrees), [](const Arguments& v) { return functions.NormSDist(8 * v.x - 4); });
}
BENCHMARK(norm_s_dist);

void t_dist(benchmark::State& state) {
  over(state, mix(degrees), [](const Arguments& v) { return functions.TDist(4 * v.x, v.a, 2); });
}
BENCHMARK(t_dist);

void chi_dist(benchmark::State& state) {
  over(state, mix(degrees), [](const Arguments& v) { return functions.ChiDist(2 * v.a * v.x, v.a); });
}
BENCHMARK(chi_dist);

void f_dist(benchmark::State& state) {
  over(state, mix(degrees), [](const Arguments& v) { return functions.FDist(4 * v.x, v.a, v.b); });
}
BENCHMARK(f_dist);

void gamma_ln(benchmark::State& state) {
  over(state, mix(shapes), [](const Arguments& v) { return functions.GammaLn(v.a + v.x); });
}
BENCHMARK(gamma_ln);

}  // namespace
}  // namespace zelkova
