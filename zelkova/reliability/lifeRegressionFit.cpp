#include "zelkova/reliability/lifeRegressionFit.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/kit/sums.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/modzLBFGS.h"
#include "zelkova/reliability/modzRSAP.h"
#include "zelkova/reliability/modzRSGrad.h"
#include "zelkova/reliability/relationLikelihood.h"

namespace zelkova {

namespace {

/// Where a row stands in the scale of the location, for the start of the search.
double middleOf(Observation kind, double start, double end) {
  switch (kind) {
    case Observation::Exact:
    case Observation::Right:
      return start;
    case Observation::Left:
      return end;
    case Observation::Interval:
      break;
  }
  return start + (end - start) / 2;
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
    if (observationOf(starts[i], ends[i]) == Observation::Interval && starts[i] > ends[i]) {
      raise(FailureNumber::InvalidCall, "an interval ends before it starts");
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

/// The free covariates as orthogonal columns q = x R^-1 of size 1, each row weighed by its frequency, and the
/// least squares fit of the times on them.
class OrthogonalDesign {
 public:
  OrthogonalDesign(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                   const std::vector<Index>& free, const DoubleArray& hold, bool logTimes) {
    const std::vector<std::size_t> order = rowsByKind(SA, EA);
    const auto columnOf = [&](Index j) {
      const auto column = FA.column(j);
      std::vector<double> result;
      result.reserve(order.size());
      for (const std::size_t i : order) result.push_back(column[i]);
      return result;
    };
    frequency_ = columnOf(1);
    total_ = checked::finite(laneSum(frequency_, [](double f) { return f; }));

    rows_ = LocatedRows(SA, EA, order, logTimes);
    for (Index j = 2; j <= FA.columns(); ++j) {
      if (hold(j) != NoValue) subtract(hold(j), columnOf(j), rows_);
    }
    std::vector<double> residual;
    residual.reserve(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
      residual.push_back(middleOf(rows_.kind[i], rows_.start[i], rows_.end[i]));
    }
    for (const Index j : free) append(columnOf(j), residual);
    const double squares = checked::finite(product(residual, residual));
    deviation_ = total_ > 0 ? std::sqrt(squares / total_) : 0;
    for (std::size_t i = 0; i < residual.size(); ++i) {
      if (frequency_[i] > 0) largest_ = std::max(largest_, std::abs(residual[i]));
    }
  }

  /// The coefficients of the free covariates for those of the orthogonal columns.
  std::vector<double> coefficients(std::vector<double> ofColumns) const {
    for (std::size_t k = ofColumns.size(); k-- > 0;) {
      for (std::size_t j = k + 1; j < ofColumns.size(); ++j) ofColumns[k] -= R_[j][k] * ofColumns[j];
      ofColumns[k] = checked::quotient(ofColumns[k], R_[k][k]);
    }
    return ofColumns;
  }

  /// The rows less what held covariates and the orthogonal columns with these coefficients make of them.
  LocatedRows residualRows(const std::vector<double>& ofColumns) const {
    LocatedRows result = rows_;
    for (std::size_t k = 0; k < columns_.size(); ++k) subtract(ofColumns[k], columns_[k], result);
    return result;
  }

  const std::vector<std::vector<double>>& columns() const { return columns_; }
  const std::vector<double>& frequency() const { return frequency_; }
  const std::vector<double>& leastSquares() const { return fitted_; }
  double deviation() const { return deviation_; }
  double largestResidual() const { return largest_; }

 private:
  static void subtract(double coefficient, const std::vector<double>& column, LocatedRows& rows) {
    for (std::size_t i = 0; i < column.size(); ++i) {
      rows.start[i] -= coefficient * column[i];
      rows.end[i] -= coefficient * column[i];
    }
  }

  double product(const std::vector<double>& a, const std::vector<double>& b) const {
    return laneSumOver(a.size(), [&](std::size_t i) { return frequency_[i] * a[i] * b[i]; });
  }

  /// By the modified method of Gram and Schmidt (Bjorck, 1967); R of columns whose mean square is 1.
  void append(std::vector<double> q, std::vector<double>& residual) {
    const double before = std::sqrt(checked::finite(product(q, q)));
    std::vector<double> r;
    for (const std::vector<double>& other : columns_) {
      const double along = product(other, q) / total_;
      for (std::size_t i = 0; i < q.size(); ++i) q[i] -= along * other[i];
      r.push_back(along);
    }
    const double left = std::sqrt(product(q, q));
    constexpr double collinear = 1E-10;
    if (!(left > collinear * before)) {
      raise(FailureNumber::InvalidCall, "a covariate is 0 in every row or a combination of those before it");
    }
    const double size = left / std::sqrt(total_);
    for (double& x : q) x /= size;
    const double along = product(q, residual) / total_;
    for (std::size_t i = 0; i < q.size(); ++i) residual[i] -= along * q[i];
    r.push_back(size);
    fitted_.push_back(along);
    R_.push_back(std::move(r));
    columns_.push_back(std::move(q));
  }

  LocatedRows rows_;  ///< less what held covariates make of them
  std::vector<double> frequency_;
  std::vector<std::vector<double>> columns_;
  std::vector<std::vector<double>> R_;  ///< by columns
  std::vector<double> fitted_;
  double total_ = 0;
  double deviation_ = 0;
  double largest_ = 0;
};

/// A place in the search: the spread and the coefficients of the orthogonal columns.
struct Place {
  double spread;
  std::vector<double> coefficients;
};

/// What is searched: a distribution, its covariates and what is held.
struct Problem {
  LifeDistribution dist;
  const std::string& name;
  const OrthogonalDesign& design;
  const std::vector<Index>& free;
  const DoubleArray& hold;

  bool searchesSpread() const { return hold(1) == NoValue; }

  /// 1 / sigma is the spread of a Weibull distribution.
  double sigma(double spread) const {
    return dist == LifeDistribution::Weibull ? checked::quotient(1, spread) : spread;
  }
};

/// The free parameters as the search has them: all 1 at a base; a step of 1 is the base's own spread, or
/// moves the location by one spread along an orthogonal column. The minimiser's first step and tolerances are
/// absolute and differences take steps relative to a parameter, so both are at their best here. Rows are
/// measured from the base: what lies far from 0 is subtracted once, and not in the differences.
class SearchSpace : public Objective {
 public:
  SearchSpace(const Problem& problem, Place base)
      : problem_(&problem),
        base_(std::move(base)),
        sigma_(problem.sigma(base_.spread)),
        likelihood_(locatedLikelihood(problem.design.residualRows(base_.coefficients),
                                      problem.design.frequency(), problem.name)),
        locations_(problem.design.frequency().size()) {}

  Index size() const { return spreads() + static_cast<Index>(base_.coefficients.size()); }
  DoubleArray start() const { return DoubleArray(size(), 1.0); }

  Place at(const DoubleArray& Q) const {
    Place place = base_;
    if (spreads() == 1) place.spread = std::abs(Q(1)) * base_.spread;
    for (std::size_t k = 0; k < place.coefficients.size(); ++k) place.coefficients[k] += step(Q, k);
    return place;
  }

  /// How the parameters change with the searched ones, by columns.
  DoubleArray directions() const {
    DoubleArray result(problem_->hold.rows(), size(), 0);
    if (spreads() == 1) result(1, 1) = base_.spread;
    for (std::size_t k = 0; k < base_.coefficients.size(); ++k) {
      std::vector<double> unit(base_.coefficients.size(), 0);
      unit[k] = sigma_;
      const std::vector<double> direction = problem_->design.coefficients(std::move(unit));
      const Index column = spreads() + static_cast<Index>(k) + 1;
      for (std::size_t j = 0; j < direction.size(); ++j) result(problem_->free[j], column) = direction[j];
    }
    return result;
  }

  double operator()(DoubleArray& Q) override {
    std::fill(locations_.begin(), locations_.end(), 0);
    for (std::size_t k = 0; k < base_.coefficients.size(); ++k) {
      const double along = step(Q, k);
      if (along == 0) continue;
      const std::vector<double>& column = problem_->design.columns()[k];
      for (std::size_t i = 0; i < locations_.size(); ++i) locations_[i] += along * column[i];
    }
    const double spread = spreads() == 1 ? std::abs(Q(1)) * base_.spread : base_.spread;
    return likelihood_->at(spread, locations_);
  }

 private:
  /// How many of the searched parameters are spreads.
  Index spreads() const { return problem_->searchesSpread() ? 1 : 0; }

  double step(const DoubleArray& Q, std::size_t k) const {
    return (Q(spreads() + static_cast<Index>(k) + 1) - 1) * sigma_;
  }

  const Problem* problem_;
  Place base_;
  double sigma_;
  std::unique_ptr<LocatedLikelihood> likelihood_;
  std::vector<double> locations_;
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
Place startOf(const Problem& problem) {
  const OrthogonalDesign& design = problem.design;
  if (!problem.searchesSpread()) return {problem.hold(1), design.leastSquares()};
  // A hazard grows with the exponential of a standardised time, which must not overflow at the start.
  constexpr double farthest = 10;
  double sigma =
      std::max(design.deviation() / standardDeviationOf(problem.dist), design.largestResidual() / farthest);
  if (sigma == 0) sigma = 1;
  return {problem.sigma(sigma), design.leastSquares()};
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

/// The end of a search, or nothing where the data tell nothing of some parameter: the likelihood has no
/// finite maximum. Failure 5 where the search did not end near one.
std::optional<SearchEnd> endOf(SearchSpace& space, double failures) {
  // Differences do not see less than some 1E-7 of what all failures tell.
  constexpr double nothing = 1E5;
  DoubleArray Q = space.start();
  DoubleArray information;
  RSHessian(Q, information, space);
  for (Index k = 1; k <= Q.rows(); ++k) {
    if (!(information(k, k) * nothing > failures)) return std::nullopt;
  }
  const DoubleArray gradient = gradientAt(space);
  const DoubleArray V = MatInverse(information);
  double distance = 0;
  for (Index k = 1; k <= V.rows(); ++k) {
    if (!(V(k, k) > 0 && V(k, k) * failures < nothing)) return std::nullopt;
    double step = 0;
    for (Index j = 1; j <= V.rows(); ++j) step += V(k, j) * gradient(j);
    distance += gradient(k) * step;
    Q(k) -= step;
  }
  // The distance to the maximum in standard errors, squared.
  constexpr double near = 1E-4;
  if (!(std::abs(distance) < near)) raise(FailureNumber::InvalidCall);
  return SearchEnd{V, Q};
}

/// The fit with the place `at` in the search; `V` is the covariance of the searched parameters.
LifeRegressionFit fitAt(const Problem& problem, SearchSpace& space, DoubleArray Q, DoubleArray V) {
  const Place place = space.at(Q);
  LifeRegressionFit fit{problem.hold, {}, -space(Q), 0, space.directions(), std::move(V)};
  fit.P(1) = place.spread;
  const std::vector<double> coefficients = problem.design.coefficients(place.coefficients);
  for (std::size_t k = 0; k < problem.free.size(); ++k) fit.P(problem.free[k]) = coefficients[k];

  const Index n = fit.P.rows();
  fit.V = DoubleArray(n, n, 0);
  for (Index i = 1; i <= n; ++i) {
    for (Index j = 1; j <= i; ++j) {
      double sum = 0;
      for (Index k = 1; k <= space.size(); ++k) {
        for (Index l = 1; l <= space.size(); ++l) {
          sum += fit.directions(i, k) * fit.searchedV(k, l) * fit.directions(j, l);
        }
      }
      fit.V(i, j) = fit.V(j, i) = checked::finite(sum);
    }
  }
  return fit;
}

/// One search; nothing where the likelihood has no finite maximum, and failures of the arithmetic.
std::optional<LifeRegressionFit> searchOnce(const Problem& problem, const Place& start, double failures) {
  SearchSpace space(problem, start);
  if (space.size() == 0) return fitAt(problem, space, {}, {});
  // Less would be lost in the rounding of a long sum; Newton's step goes the rest of the way.
  constexpr double valueTolerance = 1E-12;
  constexpr int mostIterations = 100;
  const double tolerance = std::sqrt(roundingUnit);
  const int n = static_cast<int>(space.size());
  DoubleArray searched = space.start();
  int info = 0;
  int iterations = 0;
  LBFGSMinimize(n, n, searched, tolerance, valueTolerance, tolerance, mostIterations, info, iterations,
                space);
  SearchSpace atEnd(problem, space.at(searched));
  auto end = endOf(atEnd, failures);
  if (!end) return std::nullopt;
  LifeRegressionFit fit = fitAt(problem, atEnd, std::move(end->Q), std::move(end->V));
  fit.iterations = iterations;
  return fit;
}

}  // namespace

double LifeRegressionFit::location(const DoubleArray& design, Index row, Index first) const {
  double sum = 0;
  for (Index k = 2; k <= P.rows(); ++k) sum += P(k) * design(row, first + k - 2);
  return checked::finite(sum);
}

std::vector<double> LifeRegressionFit::inSearchSpace(const DoubleArray& design, Index row,
                                                     Index first) const {
  if (!directions.filled()) return {};
  std::vector<double> along;
  for (Index k = 1; k <= directions.columns(); ++k) {
    double sum = 0;
    for (Index j = 2; j <= P.rows(); ++j) sum += directions(j, k) * design(row, first + j - 2);
    along.push_back(sum);
  }
  return along;
}

double LifeRegressionFit::locationVariance(const DoubleArray& design, Index row, Index first) const {
  const std::vector<double> along = inSearchSpace(design, row, first);
  double sum = 0;
  for (std::size_t k = 0; k < along.size(); ++k) {
    for (std::size_t l = 0; l < along.size(); ++l) {
      sum += along[k] * searchedV(static_cast<Index>(k + 1), static_cast<Index>(l + 1)) * along[l];
    }
  }
  // Rounding alone may leave less than 0 of a variance that is held at 0.
  return std::max(0.0, checked::finite(sum));
}

double LifeRegressionFit::spreadCovariance(const DoubleArray& design, Index row, Index first) const {
  const std::vector<double> along = inSearchSpace(design, row, first);
  double sum = 0;
  for (std::size_t k = 0; k < along.size(); ++k) {
    for (std::size_t l = 0; l < along.size(); ++l) {
      sum += directions(1, static_cast<Index>(k + 1)) *
             searchedV(static_cast<Index>(k + 1), static_cast<Index>(l + 1)) * along[l];
    }
  }
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

  const Problem problem{*distribution, dist, design, free, hold};
  Place start = startOf(problem);
  const int mostSearches = problem.searchesSpread() ? 5 : 1;
  for (int failed = 0; failed < mostSearches; ++failed) {
    try {
      return searchOnce(problem, start, failures);
    } catch (const Failure&) {
      // A step went where a term overflows: from a wider spread it takes a larger one to get there.
      start.spread = problem.sigma(2 * problem.sigma(start.spread));
    }
  }
  return std::nullopt;
}

}  // namespace zelkova
