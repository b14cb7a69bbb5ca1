#include <utility>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/models/regressionFit.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

void yRegression::RegOutput(const DoubleArray& M_Y, const DoubleArray& M_X, DoubleArray& coef,
                            DoubleArray& SECoef, DoubleArray& tStat, DoubleArray& PV, DoubleArray& FittedV,
                            DoubleArray& Residual, DoubleArray& RegMain, bool FitIntercept,
                            bool CalculateResidual) const {
  const RegressionProblem problem(M_Y, M_X);
  RegressionFit fit =
      fitRegression(worksheetFunction(), problem.products, problem.solved, problem.response, FitIntercept);
  const auto n = static_cast<Index>(problem.y.size());
  DoubleArray fitted(n);
  DoubleArray residual(n);
  if (CalculateResidual) {
    fitted = fittedValues(problem.X, fit.coef);
    residual = residualsOf(problem.y, fitted);
    // deliberate: callers show these as they come.
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
  const RegressionProblem problem(M_Y, M_X);
  DoubleArray b(problem.solved.coefficients(problem.solved.project(problem.response.place)));
  DoubleArray fitted = fittedValues(problem.X, b);
  DoubleArray residual = residualsOf(problem.y, fitted);
  checked::leaving(fitted, residual);
  coef = std::move(b);
  order = countingUp(fitted.rows());
  FittedV = std::move(fitted);
  Residual = std::move(residual);
}

}  // namespace zelkova
