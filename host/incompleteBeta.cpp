#include "host/incompleteBeta.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/gammaFunction.h"
#include "host/incompleteGamma.h"

namespace zelkova {

using tails::Tails;

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

/// From this smaller shape on, quadrature of the tail is faster than the continued fraction, whose steps grow
/// with the root of the shape.
constexpr double quadratureBound = 1000;

/// From this larger shape on, the distribution is that of a gamma variate over it, to the last bit.
constexpr double gammaLimitBound = 1e25;

/// a (ln(x / mean) - (x - mean) / mean), where the mean is a / (a + b) and `excess` (a + b) (x - mean).
double deviation(double a, double b, double x, double excess) {
  const double relative = excess / a;
  if (relative > -0.9 && relative <= std::numeric_limits<double>::max()) {
    return a * gammaFunction::logDeviation(relative);
  }
  return a * (std::log(x) - std::log(a) + std::log(a + b)) - excess;
}

/// The lower tail over the density by the even part of the continued fraction (Didonato and Morris 1992,
/// equation 9), for x up to about the mean.
double continuedFraction(double a, double b, const IncompleteBeta::Point& point) {
  const double x = point.x;
  // Numerators and denominators of the approximants, each pair in units of its own.
  double reciprocal = 1 / (a + 1);
  double numerator = 1;
  double previousNumerator = 0;
  double denominator = a * (1 - point.excess) * reciprocal;
  double previousDenominator = 1;
  double value = numerator / denominator;
  for (double n = 1; n < 100000; n += 1) {
    const double common = n * (b - n) * x * reciprocal;  // reciprocal is 1 / (a + 2 n - 1)
    const double alpha = (a + (n - 1)) * (a + b + (n - 1)) * x * reciprocal * common;
    reciprocal = 1 / (a + 2 * n + 1);
    const double beta = n + common + (a + n) * (1 - point.excess + n * (1 + point.y)) * reciprocal;
    const double nextNumerator = beta * numerator + alpha * previousNumerator;
    const double nextDenominator = beta * denominator + alpha * previousDenominator;
    // In units of the new denominator: no power of anything builds up.
    const double unit = 1 / nextDenominator;
    const double next = nextNumerator * unit;
    // A not-a-number ends it too.
    if (!(std::fabs(next - value) > epsilon / 2 * std::fabs(next))) return next;
    value = next;
    previousNumerator = numerator * unit;
    previousDenominator = denominator * unit;
    numerator = next;
    denominator = 1;
  }
  return value;
}

/// exp(t) - 1 - t without the cancellation.
double expDeviation(double t) {
  if (std::fabs(t) > 0.5) return std::expm1(t) - t;
  double sum = 1.0 / 2;
  double term = sum;
  for (int n = 3; std::fabs(term) > epsilon / 4 * sum; ++n) {
    term *= t / n;
    sum += term;
  }
  return t * t * sum;
}

/// The lower tail over the density for two large shapes and x up to about the mean, by Gauss-Legendre
/// quadrature over s, the distance below ln(x / y): there the density falls like half of a normal one.
double quadrature(double a, double b, const IncompleteBeta::Point& point) {
  struct Node {
    double place, weight;
  };
  // The 28 nodes on (0, 1), of which these are the lower half (values from mpmath).
  static constexpr Node nodes[] = {
      {0.00177875121302277502, 0.00456214129654725887}, {0.00934841731456362315, 0.0105660562963856299},
      {0.0228703596855309014, 0.01645071389115219},     {0.0421834868039339631, 0.0221364673795021139},
      {0.0670537387128024755, 0.0275536728378583727},   {0.0971793145414104143, 0.0326364619834997979},
      {0.132194560993184114, 0.0373231071172843895},    {0.171674452980567519, 0.0415567086144506092},
      {0.21513976409429914, 0.0452858721965164205},     {0.262062887522440869, 0.0484653289989649579},
      {0.311874241955460645, 0.0510564837890303849},    {0.363969186182410961, 0.053027882961423209},
      {0.417715358933309614, 0.0543555961291470676},    {0.472460355057982865, 0.0550235065082375981}};
  constexpr double drop = 45;  // e^-45 is far below the last bit
  const double curvature = (a + b) * point.x * point.y;
  const double reach =
      2 * drop / (std::sqrt(point.excess * point.excess + 2 * drop * curvature) - point.excess);
  // Of x and y the smaller one keeps the digits.
  const double z = std::min(point.x, point.y);
  const double sign = point.x <= point.y ? -1 : 1;
  const auto fall = [&](double s) {
    const double rest = expDeviation(sign * s);
    const double w = z * (sign * s + rest);
    return std::exp(point.excess * s - (a + b) * (gammaFunction::logDeviation(w) + z * rest));
  };
  double sum = 0;
  for (const Node& node : nodes) {
    sum += node.weight * (fall(reach * node.place) + fall(reach * (1 - node.place)));
  }
  return reach * sum;
}

/// The upper tail where a small `a` puts nearly everything below x: the lower tail is exp(l) (1 + a s).
double complementForSmallShape(double a, double b, double x) {
  const double l = a * std::log(x) + gammaFunction::logGammaRise(b, a) - gammaFunction::logGammaOnePlus(a);
  double s = 0;
  double power = 1;
  for (int n = 1; n < 1000; ++n) {
    power *= (n - b) / n * x;
    const double term = power / (a + n);
    s += term;
    if (std::fabs(term) <= epsilon / 4 * std::fabs(s)) break;
  }
  return -std::expm1(l) - a * std::exp(l) * s;
}

/// Both tails for x up to about the mean.
Tails below(double a, double b, const IncompleteBeta::Point& point, double density) {
  if (density == 0) return {0, 1};
  const bool bothLarge = std::min(a, b) >= quadratureBound;
  const double lower = density * (bothLarge ? quadrature(a, b, point) : continuedFraction(a, b, point));
  if (a >= 1 || lower < 0.7) return {lower, 1 - lower};
  const double upper = complementForSmallShape(a, b, point.x);
  return {1 - upper, upper};
}

}  // namespace

// Shapes below the smallest normal double have no reciprocal; at that one the distribution is that of the two
// ends already.
IncompleteBeta::IncompleteBeta(double a, double b)
    : a_(std::max(a, std::numeric_limits<double>::min())),
      b_(std::max(b, std::numeric_limits<double>::min())) {
  using gammaFunction::stirlingError;
  const double size = std::max(a_, b_) / (a_ + b_) * std::min(a_, b_);
  scale_ = std::sqrt(size) * std::numbers::inv_sqrtpi / std::numbers::sqrt2 *
           std::exp(stirlingError(a_ + b_) - stirlingError(a_) - stirlingError(b_));
}

IncompleteBeta::Point IncompleteBeta::at(double x) const {
  const double sum = a_ + b_;
  const double large = std::max(a_, b_);
  const double lost = std::min(a_, b_) - (sum - large);
  // b x - a y is the difference of large numbers near the mean: one rounding only.
  return {x, 1 - x, std::fma(x, sum, -a_) + x * lost};
}

IncompleteBeta::Point IncompleteBeta::atOdds(double odds) const {
  if (odds > 1) {
    const double inverse = 1 / odds;
    const double x = 1 / (1 + inverse);
    return {x, inverse * x, (b_ - a_ * inverse) * x};
  }
  const double y = 1 / (1 + odds);
  return {odds * y, y, (b_ * odds - a_) * y};
}

IncompleteBeta::Point IncompleteBeta::atRatio(double ratio) const {
  if (ratio > b_ / a_) {
    const double inverse = b_ / a_ / ratio;
    const double x = 1 / (1 + inverse);
    const double y = inverse * x;
    return {x, y, (ratio - 1) * y * a_};
  }
  const double odds = a_ / b_ * ratio;
  const double y = 1 / (1 + odds);
  return {odds * y, y, (ratio - 1) * y * a_};
}

double IncompleteBeta::density(const Point& point) const {
  if (point.x <= 0 || point.y <= 0) return 0;
  return scale_ *
         std::exp(deviation(a_, b_, point.x, point.excess) + deviation(b_, a_, point.y, -point.excess));
}

Tails IncompleteBeta::tails(const Point& point, double density) const {
  if (point.x <= 0) return {0, 1};
  if (point.y <= 0) return {1, 0};
  if (a_ < quadratureBound && b_ > gammaLimitBound) return IncompleteGamma(a_).at(b_ * point.x);
  if (b_ < quadratureBound && a_ > gammaLimitBound) {
    const Tails mirrored = IncompleteGamma(b_).at(a_ * point.y);
    return {mirrored.upper, mirrored.lower};
  }
  if (point.excess + (point.x - point.y) <= 0) return below(a_, b_, point, density);
  const Tails mirrored = below(b_, a_, {point.y, point.x, -point.excess}, density);
  return {mirrored.upper, mirrored.lower};
}

}  // namespace zelkova
