#pragma once

#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/logistic/CovariatePatterns.h"

namespace zelkova {

/// What a model knows at a point: the log-likelihood, its gradient, and the information, of which the lower
/// triangle is read. The log-likelihood is not finite where the point is no model at all; elsewhere it is
/// summed beyond a double's digits, since a fit of millions of rows ends by its last ones.
struct Evaluation {
  explicit Evaluation(std::size_t coefficients)
      : score(coefficients),
        information(static_cast<Index>(coefficients), static_cast<Index>(coefficients), 0.0) {}

  double logLikelihood = 0;
  std::vector<double> score;
  DoubleArray information;
};

/// Adds, over a block of patterns, the weighted products of the columns from `fromColumn` on to the part of
/// `information` that begins behind `row` and `column`: on the diagonal its lower triangle, else all of it.
void addProducts(const CovariatePatterns& patterns, const Block& block, std::span<const double> weights,
                 std::size_t fromColumn, std::size_t row, std::size_t column, DoubleArray& information);

/// An information matrix that is known to be regular.
class Information {
 public:
  /// Failure 5012 where a pivot of the matrix, brought to a unit diagonal, has lost all its digits: what is
  /// left of it is rounding, and so would be everything computed from it.
  explicit Information(const DoubleArray& information);

  std::vector<double> solve(std::vector<double> score) const;

  DoubleArray inverse() const;

 private:
  DoubleArray scaled_;
  DoubleArray factor_;
  std::vector<double> scales_;
};

/// Where the likelihood has its maximum.
struct Maximum {
  std::vector<double> coefficients;
  double logLikelihood;
  DoubleArray covariance;  ///< the inverse of the information there
};

namespace newton {

inline constexpr int mostIterations = 100;
inline constexpr double enough = 1E-8;

/// Failure 5012 where a model can separate the data perfectly: the coefficients would grow without end
/// (Albert and Anderson, Biometrika 71, 1984). Where none can, weights of the observations exist under which
/// the conditions of separation sum to 0, and by the concavity of each log-probability no log-likelihood
/// comes above -ln 2.
void refusePerfectSeparation(double logLikelihood);

std::vector<double> along(std::vector<double> b, const std::vector<double>& step, double length);

}  // namespace newton

/// Climbs from `b` by the steps inverse information times score until the log-likelihood changes by less
/// than 1E-8. Further steps settle the last digits of the coefficients, as long as each promises less than a
/// quarter of the gain of the one before: those of data that are separated in part do not, and would only
/// lead further out. A step that gains less than half of what it promises is halved, which counts as another:
/// beside an outlier the expected information is so far below the observed that whole steps swing from side
/// to side. After 100 steps, of which `taken` led to `b`, the point reached is the answer.
/// `model.evaluate(b)` answers an `Evaluation`.
template <class Model>
Maximum maximise(const Model& model, std::vector<double> b, int taken) {
  constexpr double worthwhileGain = 1E-20;
  Evaluation here = model.evaluate(b);
  checked::finite(here.logLikelihood);
  bool standsStill = false;
  double lastGain = 0;
  for (int iteration = taken + 1; iteration <= newton::mostIterations; ++iteration) {
    newton::refusePerfectSeparation(here.logLikelihood);
    const std::vector<double> step = Information(here.information).solve(here.score);
    double gain = 0;
    for (std::size_t i = 0; i < step.size(); ++i) gain += step[i] * here.score[i] / 2;
    if (standsStill && (gain < worthwhileGain || gain > lastGain / 4)) break;
    lastGain = gain;

    double length = 1;
    const auto fallsShort = [&](const Evaluation& there) {
      return !(there.logLikelihood >= here.logLikelihood + length * gain / 2 - newton::enough);
    };
    Evaluation next = model.evaluate(newton::along(b, step, length));
    for (; fallsShort(next) && iteration < newton::mostIterations; ++iteration) {
      length /= 2;
      next = model.evaluate(newton::along(b, step, length));
    }
    if (fallsShort(next)) break;
    b = newton::along(std::move(b), step, length);
    standsStill = standsStill || std::abs(next.logLikelihood - here.logLikelihood) < newton::enough;
    here = std::move(next);
  }
  newton::refusePerfectSeparation(here.logLikelihood);
  return {std::move(b), here.logLikelihood, Information(here.information).inverse()};
}

}  // namespace zelkova
