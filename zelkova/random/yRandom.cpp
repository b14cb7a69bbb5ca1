#include "zelkova/random/yRandom.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/random/UniformStream.h"
#include "zelkova/random/countDraws.h"

namespace zelkova {

using random::UniformStream;

namespace {

Index sizeOf(std::string_view text, const char* name) {
  const auto size = toInteger<std::int16_t>(toNumber(text, name));
  if (size < 1) raise(FailureNumber::OutOfRange, std::string(name) + " must be at least 1");
  return size;
}

/// The arguments of a call, and the cells that it fills.
struct Request {
  WorksheetFunction& host;
  UniformStream& stream;
  std::array<std::string_view, 3> parameters;
  const DoubleArray& values;
  const DoubleArray& weights;
  std::span<double> cells;

  /// Parameter `i` from 1; an empty one is 0.
  double parameter(std::size_t i) const {
    constexpr std::array names = {"Para1", "Para2", "Para3"};
    const std::string_view text = parameters[i - 1];
    return trimmed(text).empty() ? 0 : toNumber(text, names[i - 1]);
  }

  /// Puts `value(u)`, u a fresh uniform draw, into every cell.
  template <class Value>
  void fill(Value value) const {
    for (double& cell : cells) cell = value(stream.next());
  }
};

void require(bool holds, const char* text) {
  if (!holds) raise(FailureNumber::InvalidCall, text);
}

void chiSquare(const Request& request) {
  const double df = request.parameter(1);
  request.fill([&](double u) { return request.host.ChiInv(u, df); });
}

void normal(const Request& request) {
  const double mean = request.parameter(1);
  const double sd = request.parameter(2);
  require(sd >= 0, "Para2, the standard deviation, must not be negative");
  request.fill([&](double u) { return mean + sd * request.host.NormSInv(u); });
}

void varianceRatio(const Request& request) {
  const double df1 = request.parameter(1);
  const double df2 = request.parameter(2);
  request.fill([&](double u) { return request.host.FInv(u, df1, df2); });
}

void student(const Request& request) {
  const double df = request.parameter(1);
  request.fill([&](double u1) {
    const double size = request.host.TInv(request.stream.next(), df);
    return u1 < 0.5 ? size : u1 > 0.5 ? -size : 0;
  });
}

void uniform(const Request& request) {
  const double lower = request.parameter(1);
  const double upper = request.parameter(2);
  request.fill([&](double u) { return u * (upper - lower) + lower; });
}

void bernoulli(const Request& request) {
  random::bernoulliDraws(request.parameter(2), request.stream, request.cells);
}

void binomial(const Request& request) {
  random::binomialDraws(request.host, request.parameter(1), request.parameter(2), request.stream,
                        request.cells);
}

void hypergeometric(const Request& request) {
  random::GetHyperRandom(request.host, request.parameter(1), request.parameter(2), request.parameter(3),
                         request.stream, request.cells);
}

void discrete(const Request& request) {
  const double total = GetSum(request.weights);
  std::vector<double> upperEnds;
  double upperEnd = 0;
  for (const double weight : request.weights.vector()) {
    require(weight >= 0, "dProb must not be negative");
    upperEnd += checked::quotient(weight, total);
    upperEnds.push_back(upperEnd);
  }
  const std::span<const double> values = request.values.vector();
  if (values.size() < upperEnds.size()) raise(FailureNumber::OutOfRange, "dValue is shorter than dProb");
  request.fill([&](double u) {
    const auto row = std::lower_bound(upperEnds.begin(), upperEnds.end(), u);
    if (u == 0 || row == upperEnds.end()) return 0.0;
    return values[static_cast<std::size_t>(row - upperEnds.begin())];
  });
}

void integer(const Request& request) {
  const double lower = request.parameter(1);
  const double upper = request.parameter(2);
  require(lower <= upper, "Para2, the upper end, must not be below Para1");
  request.fill([&](double u) { return std::trunc(u * (upper - lower + 1)) + lower; });
}

void poisson(const Request& request) {
  random::GetPoissonRandom(request.host, request.parameter(1), request.stream, request.cells);
}

void beta(const Request& request) {
  const double alpha = request.parameter(1);
  const double shapeBeta = request.parameter(2);
  request.fill([&](double u) { return request.host.BetaInv(u, alpha, shapeBeta); });
}

void exponential(const Request& request) {
  const double mean = request.parameter(1);
  require(mean >= 0, "Para1, the mean, must not be negative");
  request.fill([&](double u) { return -mean * std::log1p(-u); });
}

void gamma(const Request& request) {
  const double shape = request.parameter(1);
  const double scale = request.parameter(2);
  request.fill([&](double u) { return request.host.GammaInv(u, shape, scale); });
}

void lognormal(const Request& request) {
  const double mean = request.parameter(1);
  const double sd = request.parameter(2);
  request.fill([&](double u) { return request.host.LogInv(u, mean, sd); });
}

void triangular(const Request& request) {
  const double a = request.parameter(1);
  const double mode = request.parameter(2);
  const double b = request.parameter(3);
  require(a <= mode && mode <= b, "the mode, Para2, must lie from Para1 to Para3");
  request.fill([&](double u) {
    const double rising = a + checked::root(u * (b - a) * (mode - a));
    if (a <= rising && rising < mode) return rising;
    return b - checked::root((1 - u) * (b - a) * (b - mode));
  });
}

void weibull(const Request& request) {
  const double shape = request.parameter(1);
  const double scale = request.parameter(2);
  require(shape > 0 && scale > 0, "Para1 and Para2, shape and scale, must be above 0");
  const double exponent = checked::quotient(1, shape);
  request.fill([&](double u) { return scale * checked::power(-std::log1p(-u), exponent); });
}

struct NamedDraw {
  std::string_view name;
  void (*draw)(const Request&);
};

constexpr std::array distributions = {
    NamedDraw{"Chi-square", chiSquare},    NamedDraw{"Normal", normal},
    NamedDraw{"F", varianceRatio},         NamedDraw{"t", student},
    NamedDraw{"Uniform", uniform},         NamedDraw{"Bernoulli", bernoulli},
    NamedDraw{"Binomial", binomial},       NamedDraw{"Hypergeometric", hypergeometric},
    NamedDraw{"Discrete", discrete},       NamedDraw{"Integer", integer},
    NamedDraw{"Poisson", poisson},         NamedDraw{"Beta", beta},
    NamedDraw{"Exponential", exponential}, NamedDraw{"Gamma", gamma},
    NamedDraw{"Lognormal", lognormal},     NamedDraw{"Triangular", triangular},
    NamedDraw{"Weibull", weibull}};

}  // namespace

void yRandom::RandomOutput(const std::string& Distribution, const std::string& NumCol,
                           const std::string& NumRow, const std::string& Para1, const std::string& Para2,
                           const std::string& Para3, const DoubleArray& dValue, const DoubleArray& dProb,
                           DoubleArray& RandomValue) const {
  UniformStream& stream = UniformStream::get();
  stream.randomize();
  const Index columns = sizeOf(NumCol, "NumCol");
  const Index rows = sizeOf(NumRow, "NumRow");
  DoubleArray result(rows, columns, 0.0);
  const auto* const chosen = std::find_if(distributions.begin(), distributions.end(),
                                          [&](const auto& d) { return d.name == Distribution; });
  if (chosen != distributions.end()) {
    chosen->draw({worksheetFunction(), stream, {Para1, Para2, Para3}, dValue, dProb, result.elements()});
  }
  checked::leaving(result);
  RandomValue = std::move(result);
}

}  // namespace zelkova
