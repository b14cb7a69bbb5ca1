#include <algorithm>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/models/regressionFit.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

std::size_t firstRegressor(bool FitIntercept) { return FitIntercept ? 1 : 0; }

DoubleArray vectorOf(std::vector<double> values) {
  DoubleArray result(std::move(values));
  checked::leaving(result);
  return result;
}

/// The sum of squares of each column from `first` on about its fit on all others.
std::vector<double> unexplainedByOthers(const CrossProducts& products, std::size_t first) {
  const std::vector<std::size_t> all = firstPlaces(products.columns());
  std::vector<double> result;
  try {
    const std::vector<double> inverseDiagonal = LeastSquares(products, all).inverseDiagonal();
    for (std::size_t j = first; j < all.size(); ++j) {
      const double unexplained = checked::quotient(1, inverseDiagonal[j]);
      const double noise = products(j, j).rounded() * explainedShare;
      result.push_back(unexplained <= noise ? 0 : unexplained);
    }
  } catch (const Failure& failure) {
    if (failure.number() != static_cast<int>(MatrixFailure::Singular)) throw;
    // A column may be an exact sum of others that are independent of each other; then each has a fit.
    for (std::size_t j = first; j < all.size(); ++j) {
      std::vector<std::size_t> others = all;
      others.erase(others.begin() + static_cast<std::ptrdiff_t>(j));
      result.push_back(LeastSquares(products, others).project(j).unexplained.rounded());
    }
  }
  return result;
}

/// 1/(1 - R squared) of the fit that leaves `unexplained` of a column's `total`.
double inflation(double total, double unexplained, double dfError) {
  if (isExactFit(unexplained, dfError)) return NoValue;
  const double rSquared = checked::quotient(total - unexplained, total);
  // deliberate: an R squared of exactly 1, out of a fit that is not exact, counts as none.
  if (rSquared == 1) return 1;
  return std::max(1.0, total / unexplained);
}

}  // namespace

void yRegression::GetSSSeq(const DoubleArray& M_Y, const DoubleArray& M_X, bool FitIntercept,
                           DoubleArray& SSSeq) const {
  const RegressionProblem problem(M_Y, M_X);
  const LeastSquares::Projection projection = problem.solved.project(problem.response.place);
  std::vector<double> sums;
  for (std::size_t k = firstRegressor(FitIntercept); k < projection.sequential.size(); ++k) {
    sums.push_back(projection.sequential[k].rounded());
  }
  SSSeq = vectorOf(std::move(sums));
}

void yRegression::GetSSAdj(const DoubleArray& M_Y, const DoubleArray& M_X, bool FitIntercept,
                           DoubleArray& SSAdj) const {
  const RegressionProblem problem(M_Y, M_X);
  const std::vector<double> b = problem.solved.coefficients(problem.solved.project(problem.response.place));
  const std::vector<double> inverseDiagonal = problem.solved.inverseDiagonal();
  std::vector<double> sums;
  for (std::size_t j = firstRegressor(FitIntercept); j < b.size(); ++j) {
    // What the fit loses without regressor j, which needs no second fit and no difference.
    sums.push_back(checked::quotient(b[j] * b[j], inverseDiagonal[j]));
  }
  SSAdj = vectorOf(std::move(sums));
}

void yRegression::GetVIF(const DoubleArray& M_X, bool FitIntercept, DoubleArray& VIF) const {
  const std::vector<Column> X = columnsOf(M_X);
  const std::size_t first = firstRegressor(FitIntercept);
  if (X.size() == first + 1) {
    VIF = DoubleArray{1};
    return;
  }
  const CrossProducts products(X);
  const std::vector<double> unexplained = unexplainedByOthers(products, first);
  const double n = static_cast<double>(products.rows());
  const double dfError = n - static_cast<double>(X.size() - 1);
  std::vector<double> factors;
  for (std::size_t j = first; j < X.size(); ++j) {
    DoubleDouble total = products(j, j);
    if (FitIntercept) {
      const DoubleDouble sum = extendedSum(X[j]);
      total = total - sum * sum / DoubleDouble{n};
    }
    factors.push_back(inflation(total.rounded(), unexplained[j - first], dfError));
  }
  VIF = vectorOf(std::move(factors));
}

}  // namespace zelkova
