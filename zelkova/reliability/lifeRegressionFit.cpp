#include "zelkova/reliability/lifeRegressionFit.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/kit/sums.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/modzDist.h"
#include "zelkova/reliability/modzLBFGS.h"
#include "zelkova/reliability/modzRSAP.h"
#include "zelkova/reliability/modzRSGrad.h"
#include "zelkova/reliability/retry.h"

namespace zelkova {

namespace {

/// Where a row stands in the scale of the location, for the start of the search.
double middleOf(double start, double end, bool logTimes) {
  const auto scaled = [logTimes](double t) { return logTimes ? logTime(t) : t; };
  switch (observationOf(start, end)) {
    case Observation::Exact:
    case Observation::Right:
      return scaled(start);
    case Observation::Left:
      return scaled(end);
    case Observation::Interval:
      break;
  }
  return (scaled(start) + scaled(end)) / 2;
}

void requireRows(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA) {
  const auto starts = SA.vector();
  const auto ends = EA.vector();
  if (ends.size() < starts.size()) raise(FailureNumber::OutOfRange, "there are fewer ends than starts");
  if (FA.columns() < 2) raise(FailureNumber::OutOfRange, "there is no covariate beside the frequencies");
  if (FA.rows() < SA.rows()) raise(FailureNumber::OutOfRange, "there are fewer frequencies than starts");
  for (std::size_t i = 0; i < starts.size(); ++i) {
    if (starts[i] == NoValue && ends[i] == NoValue) {
      raise(FailureNumber::InvalidCall, "a row has neither a start nor an end");
    }
  }
  const auto frequencies = FA.column(1).first(starts.size());
  if (std::any_of(frequencies.begin(), frequencies.end(), [](double f) { return !(f >= 0); })) {
    raise(FailureNumber::InvalidCall, "a frequency is negative");
  }
  for (Index j = 1; j <= FA.columns(); ++j) {
    const auto column = FA.column(j).first(starts.size());
    if (std::find(column.begin(), column.end(), NoValue) != column.end()) {
      raise(FailureNumber::InvalidCall, "a frequency or a covariate has no value");
    }
  }
}

/// How many units are known to have failed.
double failuresIn(std::span<const double> ends, std::span<const double> frequencies) {
  return laneSumOver(frequencies.size(),
                     [=](std::size_t i) { return ends[i] == NoValue ? 0 : frequencies[i]; });
}

/// The free covariates as orthogonal columns q = x R^-1, each row weighed by the root of its frequency, and
/// the least squares fit of the times on them.
class OrthogonalDesign {
 public:
  OrthogonalDesign(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                   const std::vector<Index>& free, const DoubleArray& hold, bool logTimes) {
    const std::size_t n = static_cast<std::size_t>(SA.rows());
    const auto frequencies = FA.column(1).first(n);
    std::vector<double> root(n);
    for (std::size_t i = 0; i < n; ++i) root[i] = std::sqrt(frequencies[i]);
    total_ = checked::finite(laneSum(frequencies, [](double f) { return f; }));

    std::vector<double> residual(n);
    for (std::size_t i = 0; i < n; ++i) residual[i] = middleOf(SA.vector()[i], EA.vector()[i], logTimes);
    for (Index j = 2; j <= FA.columns(); ++j) {
      if (hold(j) == NoValue) continue;
      const auto column = FA.column(j);
      for (std::size_t i = 0; i < n; ++i) residual[i] -= hold(j) * column[i];
    }
    for (std::size_t i = 0; i < n; ++i) residual[i] *= root[i];

    std::vector<std::vector<double>> columns;
    for (const Index j : free) {
      const auto column = FA.column(j).first(n);
      std::vector<double> q(n);
      for (std::size_t i = 0; i < n; ++i) q[i] = root[i] * column[i];
      append(std::move(q), columns, residual);
    }
    const double squares = checked::finite(laneProduct(residual, residual));
    deviation_ = total_ > 0 ? std::sqrt(squares / total_) : 0;
    for (std::size_t i = 0; i < n; ++i) {
      if (root[i] > 0) largest_ = std::max(largest_, std::abs(residual[i] / root[i]));
    }
  }

  /// The coefficients of the free covariates for those of the columns of size 1.
  std::vector<double> coefficients(std::vector<double> ofColumns) const {
    for (std::size_t k = ofColumns.size(); k-- > 0;) {
      for (std::size_t j = k + 1; j < ofColumns.size(); ++j) ofColumns[k] -= R_[j][k] * ofColumns[j];
      ofColumns[k] = checked::quotient(ofColumns[k], R_[k][k]);
    }
    return ofColumns;
  }

  const std::vector<double>& leastSquares() const { return fitted_; }
  double deviation() const { return deviation_; }
  double largestResidual() const { return largest_; }

 private:
  /// By the modified method of Gram and Schmidt (Bjorck, 1967); R of columns whose mean square is 1.
  void append(std::vector<double> q, std::vector<std::vector<double>>& columns,
              std::vector<double>& residual) {
    const double before = std::sqrt(checked::finite(laneProduct(q, q)));
    std::vector<double> r;
    const double size = std::sqrt(total_);
    for (const std::vector<double>& other : columns) {
      const double along = laneProduct(other, q);
      for (std::size_t i = 0; i < q.size(); ++i) q[i] -= along * other[i];
      r.push_back(along / size);
    }
    const double left = std::sqrt(laneProduct(q, q));
    constexpr double collinear = 1E-10;
    if (!(left > collinear * before)) {
      raise(FailureNumber::InvalidCall, "a covariate is 0 in every row or a combination of those before it");
    }
    for (double& x : q) x /= left;
    const double along = laneProduct(q, residual);
    for (std::size_t i = 0; i < q.size(); ++i) residual[i] -= along * q[i];
    r.push_back(left / size);
    fitted_.push_back(along / size);
    R_.push_back(std::move(r));
    columns.push_back(std::move(q));
  }

  std::vector<std::vector<double>> R_;  ///< by columns
  std::vector<double> fitted_;
  double total_ = 0;
  double deviation_ = 0;
  double largest_ = 0;
};

/// The free parameters as the search has them: all 1 at a base; a step of 1 is the base's own spread, or
/// moves the location by one spread along an orthogonal column. The minimiser's first step and tolerances are
/// absolute and differences take steps relative to a parameter, so both are at their best here.
class SearchSpace : public Objective {
 public:
  SearchSpace(Objective& objective, LifeDistribution dist, const OrthogonalDesign& design,
              const std::vector<Index>& free, const DoubleArray& hold, DoubleArray base)
      : objective_(&objective), base_(std::move(base)) {
    const double spread = base_(1);
    const double sigma = dist == LifeDistribution::Weibull ? checked::quotient(1, spread) : spread;
    const Index rows = base_.rows();
    if (hold(1) == NoValue) {
      std::vector<double> direction(static_cast<std::size_t>(rows), 0);
      direction[0] = spread;
      directions_.push_back(std::move(direction));
    }
    for (std::size_t k = 0; k < free.size(); ++k) {
      std::vector<double> unit(free.size(), 0);
      unit[k] = sigma;
      const std::vector<double> coefficients = design.coefficients(std::move(unit));
      std::vector<double> direction(static_cast<std::size_t>(rows), 0);
      for (std::size_t j = 0; j < free.size(); ++j) {
        direction[static_cast<std::size_t>(free[j] - 1)] = coefficients[j];
      }
      directions_.push_back(std::move(direction));
    }
  }

  Index size() const { return static_cast<Index>(directions_.size()); }
  DoubleArray start() const { return DoubleArray(size(), 1.0); }

  DoubleArray parameters(const DoubleArray& Q) const {
    DoubleArray P = base_;
    for (Index k = 1; k <= size(); ++k) {
      const std::vector<double>& direction = directions_[static_cast<std::size_t>(k - 1)];
      for (Index j = 1; j <= P.rows(); ++j) P(j) += (Q(k) - 1) * direction[static_cast<std::size_t>(j - 1)];
    }
    return P;
  }

  /// The covariance of all parameters from that of the searched ones.
  DoubleArray covariance(const DoubleArray& V) const {
    DoubleArray result(base_.rows(), base_.rows(), 0);
    const auto along = [this](Index k, Index j) {
      return directions_[static_cast<std::size_t>(k - 1)][static_cast<std::size_t>(j - 1)];
    };
    for (Index i = 1; i <= result.rows(); ++i) {
      for (Index j = 1; j <= i; ++j) {
        double sum = 0;
        for (Index k = 1; k <= size(); ++k) {
          for (Index l = 1; l <= size(); ++l) sum += along(k, i) * V(k, l) * along(l, j);
        }
        result(i, j) = result(j, i) = checked::finite(sum);
      }
    }
    return result;
  }

  double operator()(DoubleArray& Q) override {
    DoubleArray P = parameters(Q);
    return (*objective_)(P);
  }

 private:
  Objective* objective_;
  DoubleArray base_;
  std::vector<std::vector<double>> directions_;
};

/// The standard deviation of a distribution of spread 1.
double standardDeviationOf(LifeDistribution dist) {
  switch (dist) {
    case LifeDistribution::Normal:
    case LifeDistribution::Lognormal:
      return 1;
    case LifeDistribution::Logistic:
    case LifeDistribution::Loglogistic:
      return std::numbers::pi / std::sqrt(3.0);
    default:
      return std::numbers::pi / std::sqrt(6.0);
  }
}

/// Least squares through the times as they stand, with the moment estimate of the spread.
DoubleArray startOf(LifeDistribution dist, const OrthogonalDesign& design, const std::vector<Index>& free,
                    const DoubleArray& hold) {
  // A hazard grows with the exponential of a standardised time, which must not overflow at the start.
  constexpr double farthest = 10;
  double sigma =
      std::max(design.deviation() / standardDeviationOf(dist), design.largestResidual() / farthest);
  if (sigma == 0) sigma = 1;
  DoubleArray start = hold;
  if (hold(1) == NoValue) start(1) = dist == LifeDistribution::Weibull ? checked::quotient(1, sigma) : sigma;
  const std::vector<double> coefficients = design.coefficients(design.leastSquares());
  for (std::size_t k = 0; k < free.size(); ++k) start(free[k]) = coefficients[k];
  return start;
}

/// The end of a search: the covariance of the searched parameters there, and what Newton's step from there
/// comes to.
struct SearchEnd {
  DoubleArray V;
  DoubleArray Q;
};

/// The gradient where all parameters are 1, by differences wide enough for the rounding of a long sum.
DoubleArray gradientAt(SearchSpace& space) {
  constexpr double step = 1E-4;
  DoubleArray Q = space.start();
  DoubleArray gradient(Q.rows());
  for (Index k = 1; k <= Q.rows(); ++k) {
    Q(k) = 1 + step;
    const double above = space(Q);
    Q(k) = 1 - step;
    gradient(k) = (above - space(Q)) / (2 * step);
    Q(k) = 1;
  }
  return gradient;
}

/// Failure 5 where a search did not end near a maximum, or where the data tell nothing of some parameter.
SearchEnd endOf(SearchSpace& space, double failures) {
  DoubleArray Q = space.start();
  DoubleArray information;
  RSHessian(Q, information, space);
  const DoubleArray gradient = gradientAt(space);
  const DoubleArray V = MatInverse(information);
  // Differences do not see less than some 1E-7 of what all failures tell.
  constexpr double nothing = 1E5;
  double distance = 0;
  for (Index k = 1; k <= V.rows(); ++k) {
    if (!(V(k, k) > 0 && V(k, k) * failures < nothing)) raise(FailureNumber::InvalidCall);
    double step = 0;
    for (Index j = 1; j <= V.rows(); ++j) step += V(k, j) * gradient(j);
    distance += gradient(k) * step;
    Q(k) -= step;
  }
  // The distance to the maximum in standard errors, squared.
  constexpr double near = 1E-4;
  if (!(std::abs(distance) < near)) raise(FailureNumber::InvalidCall);
  return {V, Q};
}

}  // namespace

double LifeRegressionFit::location(const DoubleArray& design, Index row, Index first) const {
  double sum = 0;
  for (Index k = 2; k <= P.rows(); ++k) sum += P(k) * design(row, first + k - 2);
  return checked::finite(sum);
}

double LifeRegressionFit::locationVariance(const DoubleArray& design, Index row, Index first) const {
  double sum = 0;
  for (Index k = 2; k <= P.rows(); ++k) {
    for (Index j = 2; j <= P.rows(); ++j) {
      sum += design(row, first + k - 2) * V(k, j) * design(row, first + j - 2);
    }
  }
  // Far from the data rounding alone may leave less than 0 of a variance that is held at 0.
  return std::max(0.0, checked::finite(sum));
}

double LifeRegressionFit::spreadCovariance(const DoubleArray& design, Index row, Index first) const {
  double sum = 0;
  for (Index k = 2; k <= P.rows(); ++k) sum += V(1, k) * design(row, first + k - 2);
  return checked::finite(sum);
}

std::optional<LifeRegressionFit> fitLifeRegression(const DoubleArray& SA, const DoubleArray& EA,
                                                   const DoubleArray& FA, const std::string& dist,
                                                   const DoubleArray& hold) {
  const auto distribution = lifeDistribution(dist);
  if (!distribution) return std::nullopt;
  requireRows(SA, EA, FA);
  std::vector<Index> free;
  for (Index j = 2; j <= FA.columns(); ++j) {
    if (hold(j) == NoValue) free.push_back(j);
  }
  const OrthogonalDesign design(SA, EA, FA, free, hold, worksOnLogarithms(*distribution));
  // Without a failure the likelihood has no maximum.
  const double failures = failuresIn(EA.vector(), FA.column(1).first(static_cast<std::size_t>(SA.rows())));
  if (failures == 0) return std::nullopt;

  const auto objective = negLogLik(SA, EA, FA, "LDR" + dist, {});
  const DoubleArray first = startOf(*distribution, design, free, hold);
  LifeRegressionFit fit{{}, {}, 0, 0};
  const bool found = searchFrom(first, hold, [&](const DoubleArray& start) {
    const auto spaceAt = [&](const DoubleArray& base) {
      return SearchSpace(*objective, *distribution, design, free, hold, base);
    };
    SearchSpace space = spaceAt(start);
    fit.P = start;
    fit.V = DoubleArray(start.rows(), start.rows(), 0);
    if (space.size() > 0) {
      // Less would be lost in the rounding of a long sum; Newton's step goes the rest of the way.
      constexpr double valueTolerance = 1E-12;
      constexpr int mostIterations = 100;
      const double tolerance = std::sqrt(roundingUnit);
      const int n = static_cast<int>(space.size());
      DoubleArray searched = space.start();
      int info = 0;
      LBFGSMinimize(n, n, searched, tolerance, valueTolerance, tolerance, mostIterations, info,
                    fit.iterations, space);
      DoubleArray last = space.parameters(searched);
      last(1) = std::abs(last(1));
      SearchSpace atEnd = spaceAt(last);
      const SearchEnd end = endOf(atEnd, failures);
      fit.P = atEnd.parameters(end.Q);
      fit.V = atEnd.covariance(end.V);
    }
    fit.logLikelihood = -(*objective)(fit.P);
  });
  if (!found) return std::nullopt;
  return fit;
}

}  // namespace zelkova
