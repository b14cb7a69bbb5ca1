#include <numeric>
#include <utility>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/models/regressionFit.h"
#include "zelkova/models/residuals.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

/// M_X and M_Y read and multiplied out: the response's column is the last.
struct Problem {
  Problem(const DoubleArray& M_Y, const DoubleArray& M_X)
      : X(columnsOf(M_X, "M_X")),
        y(responseColumn(M_Y)),
        products(withResponse()),
        response{X.size(), extendedSum(y)},
        solved(products, firstPlaces(X.size())) {}

  std::vector<Column> X;
  Column y;
  CrossProducts products;
  ResponseSummary response;
  LeastSquares solved;

 private:
  std::vector<Column> withResponse() const {
    std::vector<Column> columns = X;
    columns.push_back(y);
    return columns;
  }
};

DoubleArray countingUp(Index n) {
  DoubleArray order(n);
  std::iota(order.elements().begin(), order.elements().end(), 1.0);
  return order;
}

}  // namespace

void yRegression::RegOutput(const DoubleArray& M_Y, const DoubleArray& M_X, DoubleArray& coef,
                            DoubleArray& SECoef, DoubleArray& tStat, DoubleArray& PV, DoubleArray& FittedV,
                            DoubleArray& Residual, DoubleArray& RegMain, bool FitIntercept,
                            bool CalculateResidual) const {
  const Problem problem(M_Y, M_X);
  RegressionFit fit =
      fitRegression(worksheetFunction(), problem.products, problem.solved, problem.response, FitIntercept);
  const auto n = static_cast<Index>(problem.y.size());
  DoubleArray fitted(n);
  DoubleArray residual(n);
  if (CalculateResidual) {
    fitted = fittedValues(problem.X, fit.coef);
    residual = residuals(problem.y, fitted);
    roundForDisplay(residual);
  }
  checked::leaving(fit.RegMain, fitted, residual);
  coef = std::move(fit.coef);
  SECoef = std::move(fit.SECoef);
  tStat = std::move(fit.tStat);
  PV = std::move(fit.PV);
  FittedV = std::move(fitted);
  Residual = std::move(residual);
  RegMain = std::move(fit.RegMain);
}

void yRegression::RegResiOutput(const DoubleArray& M_Y, const DoubleArray& M_X, bool /*FitIntercept*/,
                                DoubleArray& coef, DoubleArray& FittedV, DoubleArray& Residual,
                                DoubleArray& order) const {
  const Problem problem(M_Y, M_X);
  DoubleArray b(problem.solved.coefficients(problem.solved.project(problem.response.place)));
  DoubleArray fitted = fittedValues(problem.X, b);
  DoubleArray residual = residuals(problem.y, fitted);
  checked::leaving(fitted, residual);
  coef = std::move(b);
  order = countingUp(fitted.rows());
  FittedV = std::move(fitted);
  Residual = std::move(residual);
}

}  // namespace zelkova
