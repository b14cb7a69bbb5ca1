#include <cmath>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/matrixSet.h"
#include "zelkova/models/regressionFit.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

struct LimitColumns {
  DoubleArray se, lowerConfidence, upperConfidence, lowerPrediction, upperPrediction;
};

/// Standard errors and limits of fits at these leverages; `NoValue` all where there is no `mse`.
LimitColumns limitsOf(const DoubleArray& fit, const std::vector<double>& leverage, double mse, double t) {
  const DoubleArray none(fit.rows(), NoValue);
  LimitColumns limits{none, none, none, none, none};
  if (mse == NoValue) return limits;
  for (Index i = 1; i <= fit.rows(); ++i) {
    const double h = leverage[static_cast<std::size_t>(i - 1)];
    const double se = checked::root(mse * h);
    const double sePrediction = checked::root(mse * (1 + h));
    limits.se(i) = se;
    limits.lowerConfidence(i) = fit(i) - t * se;
    limits.upperConfidence(i) = fit(i) + t * se;
    limits.lowerPrediction(i) = fit(i) - t * sePrediction;
    limits.upperPrediction(i) = fit(i) + t * sePrediction;
  }
  checked::leaving(limits.lowerConfidence, limits.upperConfidence, limits.lowerPrediction,
                   limits.upperPrediction);
  return limits;
}

}  // namespace

void yRegression::GetPredictNew(const DoubleArray& M_X, const DoubleArray& M_X_new, const DoubleArray& coef,
                                double dDoFR, double dDoFT, double dMSE, bool /*FitIntercept*/, double CLevel,
                                DoubleArray& NewFit, DoubleArray& NewSEFit, DoubleArray& NewLCL,
                                DoubleArray& NewUCL, DoubleArray& NewLPL, DoubleArray& NewUPL) const {
  const double t = worksheetFunction().TInv(1 - CLevel, dDoFT - dDoFR);
  const std::vector<Column> X = columnsOf(M_X);
  const std::vector<Column> newX = columnsOf(M_X_new);
  if (newX.size() != X.size() || coef.vector().size() != X.size()) {
    matrix::raise(MatrixFailure::NotConformable);
  }
  const CrossProducts products(X);
  const LeastSquares solved(products, firstPlaces(X.size()));
  DoubleArray fit = fittedValues(newX, coef);
  checked::leaving(fit);
  LimitColumns limits = limitsOf(fit, solved.leverages(newX), dMSE, t);
  NewFit = std::move(fit);
  NewSEFit = std::move(limits.se);
  NewLCL = std::move(limits.lowerConfidence);
  NewUCL = std::move(limits.upperConfidence);
  NewLPL = std::move(limits.lowerPrediction);
  NewUPL = std::move(limits.upperPrediction);
}

void yRegression::RegSOutput(const DoubleArray& M_Y, const DoubleArray& M_X, double CLevel, DoubleArray& FV,
                             DoubleArray& Resi, DoubleArray& order, DoubleArray& LCL, DoubleArray& UCL,
                             DoubleArray& LPL, DoubleArray& UPL) const {
  const RegressionProblem problem(M_Y, M_X);
  if (problem.X.size() != 2) {
    raise(FailureNumber::InvalidCall, "M_X must have two columns, the constant and x");
  }
  const double t = worksheetFunction().TInv(1 - CLevel, static_cast<double>(problem.y.size()) - 2);
  const RegressionFit line =
      fitRegression(worksheetFunction(), problem.products, problem.solved, problem.response, true);
  DoubleArray fit = fittedValues(problem.X, line.coef);
  DoubleArray residual = residualsOf(problem.y, fit);
  checked::leaving(fit, residual);
  LimitColumns limits = limitsOf(fit, problem.solved.leverages(problem.X), line.RegMain(Reg::MSE), t);
  order = countingUp(fit.rows());
  FV = std::move(fit);
  Resi = std::move(residual);
  LCL = std::move(limits.lowerConfidence);
  UCL = std::move(limits.upperConfidence);
  LPL = std::move(limits.lowerPrediction);
  UPL = std::move(limits.upperPrediction);
}

}  // namespace zelkova
