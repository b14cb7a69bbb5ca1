#include "host/quantiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

#include "host/gammaFunction.h"
#include "host/incompleteBeta.h"
#include "host/incompleteGamma.h"
#include "host/tails.h"

namespace zelkova::quantiles {

namespace {

using tails::Tails;

constexpr double epsilon = std::numeric_limits<double>::epsilon();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// The polynomial whose coefficients are given from the constant on.
template <std::size_t N>
double polynomial(const std::array<double, N>& coefficients, double x) {
  double sum = 0;
  for (std::size_t i = coefficients.size(); i-- > 0;) sum = sum * x + coefficients[i];
  return sum;
}

/// The standard normal score whose upper tail holds exp(-level), at most 0.075: the root of 2 level less a
/// rest, by the same approximation as `normal`.
double normalFarOut(double level) {
  constexpr std::array tailRest = {0.839304589047268501,   1.42971802748374114,     0.92738008324522839,
                                   0.283683149867847467,   0.0401411109337098753,   0.00206058354248148236,
                                   9.37874002621554045e-6, -1.28046050761141527e-7, 1.48598500198403559e-9};
  constexpr std::array tailDivisor = {1.0,
                                      2.05319162663775882187,
                                      1.6763848301838038494,
                                      0.68976733498510000455,
                                      0.14810397642748007459,
                                      0.0151986665636164571966,
                                      5.475938084995344946e-4,
                                      1.05075007164441684324e-9};
  constexpr std::array farRest = {0.413163168364371467,   0.191882859506562973,     0.0317047752175546761,
                                  0.00227221128016446782, 0.0000687531415388658178, 6.94469944811087368e-7,
                                  4.8896721303200102e-10, -1.30470571147767218e-12, 2.89102460587296546e-15};
  constexpr std::array farDivisor = {1.0,
                                     0.59983220655588793769,
                                     0.13692988092273580531,
                                     0.0148753612908506148525,
                                     7.868691311456132591e-4,
                                     1.8463183175100546818e-5,
                                     1.4215117583164458887e-7,
                                     2.04426310338993978564e-15};
  const double root = std::sqrt(2 * level);
  const double r = root * (std::numbers::sqrt2 / 2);
  return root - (r <= 5 ? polynomial(tailRest, r - 1.6) / polynomial(tailDivisor, r - 1.6)
                        : polynomial(farRest, r - 5) / polynomial(farDivisor, r - 5));
}

/// What the search sees at one place: the tails, the density of the logarithm of the place, and the first two
/// derivatives of the logarithm of that density.
struct View {
  Tails tails;
  double density, slope, bend;
};

View viewOf(const IncompleteGamma& gamma, double x) {
  const double density = gamma.density(x);
  return {gamma.at(x, density), density, gamma.shape() - x, -x};
}

View viewOf(const IncompleteBeta& beta, double odds) {
  const auto point = beta.atOdds(odds);
  const double density = beta.density(point);
  return {beta.tails(point, density), density, -point.excess, -(beta.a() + beta.b()) * point.x * point.y};
}

/// A tail of a distribution on the positive numbers that is to hold a probability of at most about 1/2.
struct Target {
  double p;
  bool lower;

  /// The same place, told by its smaller tail.
  static Target fromLower(double p) { return p <= 0.5 ? Target{p, true} : Target{1 - p, false}; }
  static Target fromUpper(double p) { return p <= 0.5 ? Target{p, false} : Target{1 - p, true}; }

  double normalScore() const { return lower ? normal(p) : -normal(p); }
};

/// The change of ln x that brings the logarithm of the tail to that of its target by the first three terms of
/// the reversed Taylor series, which Halley's form replaces far away; and what the next terms may amount to.
struct Step {
  double change, error;
};

Step stepFrom(const View& view, const Target& target) {
  const double tail = target.lower ? view.tails.lower : view.tails.upper;
  const double difference = (tail - target.p) / target.p;
  const double logRatio =
      std::fabs(difference) < 0.5 ? std::log1p(difference) : std::log(tail) - std::log(target.p);
  const double first = (target.lower ? view.density : -view.density) / tail;
  const double newton = -logRatio / first;
  const double relative = view.slope - first;  // second derivative over the first
  const double c2 = relative / 2;
  const double c3 = (relative * relative + view.bend - first * relative) / 6;
  const double unit = std::fabs(c2) + std::sqrt(std::fabs(c3));
  const double size = std::fabs(newton) * unit;
  if (size < 0.3) {
    return {newton * (1 + newton * (-c2 + newton * (2 * c2 * c2 - c3))),
            std::fabs(newton) * size * size * size};
  }
  return {newton / std::max(1 + c2 * newton, 0.5), infinity};
}

/// The place where the tail of `distribution` is the target's. Each place tells on which side of it the
/// answer lies. Where the steps do not converge by themselves, every other one halves the bracket so known
/// (on the scale of ln x; until it has both ends, it is widened in growing strides), so that the search ends.
template <class Distribution>
double search(const Distribution& distribution, double start, const Target& target) {
  constexpr double smallest = 1e-307;
  constexpr double largest = 1e307;
  double low = 0;
  double high = infinity;
  double stride = 1;
  double x = std::isnan(start) ? 1 : std::clamp(start, smallest, largest);
  for (int i = 0; i < 100; ++i) {
    const View view = viewOf(distribution, x);
    const double tail = target.lower ? view.tails.lower : view.tails.upper;
    if (tail == target.p) return x;
    ((tail > target.p) == target.lower ? high : low) = x;
    if (high <= smallest) return 0;
    if (low >= largest) return infinity;
    const Step step = stepFrom(view, target);
    const double next = x * std::exp(step.change);
    // A long step may look exact, as tails are powers of x near their ends, and end where they no longer are.
    if (step.error < epsilon / 8 && std::fabs(step.change) < 1) return next;
    if (next > low && next < high && (step.error < infinity || i < 6 || i % 2 == 0)) {
      x = next;
    } else if (low == 0 || high == infinity) {
      x *= std::exp(low == 0 ? -stride : stride);
      stride *= 2;
    } else {
      x = std::sqrt(low) * std::sqrt(high);
      if (x <= low || x >= high) return x;
    }
    x = std::clamp(x, smallest, largest);
  }
  return x;
}

/// Where a gamma variate of shape `a` lies when its lower tail is p and small: P is nearly
/// x^a exp(-a x / (a + 1)) / Gamma(a + 1).
double gammaNearZero(double a, double p) {
  const double power = std::exp((std::log(p) + gammaFunction::logGamma(a + 1)) / a);
  const double once = power * std::exp(std::min(power / (a + 1), 1.0));
  return power * std::exp(std::min(once / (a + 1), 1.0));
}

/// Where Q is p and small: from x = -ln(p Gamma(a)) + (a - 1) ln x.
double gammaFarOut(double a, double p) {
  const double level = -std::log(p) - gammaFunction::logGamma(a);
  double x = std::max(level, a) + 1;
  for (int i = 0; i < 3; ++i)
    x = std::max(level + (a - 1) * std::log(x) + std::log1p((a - 1) / (x + 1)), 0.1);
  return x;
}

double gammaStart(double a, const Target& target) {
  if (a < 1) {
    if (target.lower) return gammaNearZero(a, target.p);
    const double x = gammaNearZero(a, 1 - target.p);
    return x < 0.3 ? x : gammaFarOut(a, target.p);
  }
  const double eta0 = target.normalScore() / std::sqrt(a);
  if (eta0 > 1.2) return gammaFarOut(a, target.p);
  if (eta0 < -1.2) return gammaNearZero(a, target.p);
  // Temme 1992, sections 3 and 5: the place on the scale of the uniform expansion, and back to x.
  const double e1 = -1.0 / 3 + eta0 * (1.0 / 36 + eta0 * (1.0 / 1620 - eta0 * (7.0 / 6480)));
  const double e2 = -7.0 / 405 + eta0 * (-7.0 / 2592 + eta0 * (533.0 / 204120));
  const double eta = eta0 + (e1 + e2 / a) / a;
  const double mu =
      eta * (1 + eta * (1.0 / 3 + eta * (1.0 / 36 + eta * (-1.0 / 270 + eta * (1.0 / 4320 + eta / 17010)))));
  return a * std::max(1 + mu, 1e-3);
}

double gammaQuantile(double a, const Target& target) {
  if (a == 0.5) {
    if (!target.lower && target.p < 2 * std::numeric_limits<double>::min()) {
      const double z = normalFarOut(std::numbers::ln2 - std::log(target.p));  // half of p may be no double
      return z * z / 2;
    }
    const double z = target.lower ? normal(0.5 + target.p / 2) : normal(target.p / 2);
    if (!target.lower || target.p > 0.1) return z * z / 2;
  }
  if (a == 1) return target.lower ? -std::log1p(-target.p) : -std::log(target.p);
  return search(IncompleteGamma(a), gammaStart(a, target), target);
}

/// t^2 / df for Student's t whose two tails hold p (Hill 1970).
double studentStart(double p, double df) {
  const double a = 1 / (df - 0.5);
  const double b = 48 / (a * a);
  double c = ((20700 * a / b - 98) * a - 16) * a + 96.36;
  const double d = ((94.5 / (b + c) - 3) / b + 1) * std::sqrt(a * std::numbers::pi / 2) * df;
  double y = std::pow(d * p, 2 / df);
  if (y <= 0.05 + a) {
    return ((1 / (((df + 6) / (df * y) - 0.089 * d - 0.822) * (df + 2) * 3) + 0.5 / (df + 4)) * y - 1) *
               (df + 1) / (df + 2) +
           1 / y;
  }
  const double x = normal(p / 2);
  y = x * x;
  if (df < 5) c += 0.3 * (df - 4.5) * (x + 0.6);
  c += (((0.05 * d * x - 5) * x - 7) * x - 2) * x + b;
  y = (((((0.4 * y + 6.3) * y + 36) * y + 94.5) / c - y - 3) / b + 1) * x;
  return std::expm1(a * y * y);
}

/// The odds at which the lower tail is p, p at most about 1/2.
double betaStart(double a, double b, double p) {
  if (b == 0.5 && a >= 1) return 1 / studentStart(p, 2 * a);
  if (a == 0.5 && b >= 1) return studentStart(1 - p, 2 * b);
  const double logBeta =
      gammaFunction::logGamma(a) + gammaFunction::logGamma(b) - gammaFunction::logGamma(a + b);
  const double power = std::exp((std::log(p) + std::log(a) + logBeta) / a);
  if (power * (a + b) < 0.2 * (a + 1) || a < 0.6 || b < 0.6) {
    const double x = std::min(power * std::exp(std::min((b - 1) * power / (a + 1), 1.0)), 0.999);
    return x / (1 - x);
  }
  // Abramowitz and Stegun 26.5.22.
  const double z = -normal(p);
  const double ra = 1 / (2 * a - 1);
  const double rb = 1 / (2 * b - 1);
  const double lambda = (z * z - 3) / 6;
  const double h = 2 / (ra + rb);
  const double w =
      z * std::sqrt(std::max(h + lambda, 0.0)) / h - (rb - ra) * (lambda + 5.0 / 6 - 2 / (3 * h));
  return a / b * std::exp(-2 * w);
}

/// x / (1 - x) for the quantile x of a beta distribution.
double betaOdds(double a, double b, const Target& target) {
  const double start = target.lower ? betaStart(a, b, target.p) : 1 / betaStart(b, a, target.p);
  return search(IncompleteBeta(a, b), start, target);
}

}  // namespace

/// Wichura 1988, algorithm AS 241, PPND16: three ratios of polynomials. Each is taken as a leading part,
/// exact to its own rounding, and a smaller rest (numerators of the rests from mpmath), so that the digits
/// that a ratio loses hardly show.
double normal(double p) {
  constexpr double centre = 3.387132872796366608;
  constexpr std::array centreRest = {-10.1792054851118157, -356.002752528360964, -4539.16490096568721,
                                     -25931.9861040943266, -65875.2950979395555, -63878.6551172608531,
                                     -15193.7530397873938};
  constexpr std::array centreDivisor = {1.0,
                                        42.313330701600911252,
                                        687.1870074920579083,
                                        5394.1960214247511077,
                                        21213.794301586595867,
                                        39307.89580009271061,
                                        28729.085735721942674,
                                        5226.495278852854561};
  const double q = p - 0.5;
  if (std::fabs(q) <= 0.425) {
    const double r = 0.180625 - q * q;
    return q * centre + q * (r * polynomial(centreRest, r) / polynomial(centreDivisor, r));
  }
  const double z = normalFarOut(-std::log(q < 0 ? p : 1 - p));
  return q < 0 ? -z : z;
}

double studentBothTails(double p, double df) {
  if (p == 1) return 0;
  if (df == 1)
    return p < 0.5 ? 1 / std::tan(p * (std::numbers::pi / 2)) : std::tan((1 - p) * (std::numbers::pi / 2));
  if (df == 2) return (1 - p) * std::sqrt(2 / (2 - p)) / std::sqrt(p);
  return std::sqrt(df * betaOdds(0.5, df / 2, Target::fromUpper(p)));
}

double gammaLower(double p, double shape, double scale) {
  if (p == 0) return 0;
  const double x = gammaQuantile(shape, Target::fromLower(p));
  if (x > std::numeric_limits<double>::min()) return scale * x;
  // Too small for a double before the scale brings it back: P is the leading power of x there.
  return std::exp((std::log(p) + gammaFunction::logGamma(shape + 1)) / shape + std::log(scale));
}

double gammaUpper(double p, double shape) { return p == 1 ? 0 : gammaQuantile(shape, Target::fromUpper(p)); }

double varianceRatioUpper(double p, double df1, double df2) {
  if (p == 1) return 0;
  return df2 / df1 * betaOdds(df1 / 2, df2 / 2, Target::fromUpper(p));
}

double betaLower(double p, double a, double b) {
  if (p == 0 || p == 1) return p;
  const double odds = betaOdds(a, b, Target::fromLower(p));
  return odds < 1 ? odds / (1 + odds) : 1 / (1 + 1 / odds);
}

}  // namespace zelkova::quantiles
