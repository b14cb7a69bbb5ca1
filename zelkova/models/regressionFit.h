#pragma once

#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"
#include "zelkova/models/CrossProducts.h"
#include "zelkova/models/LeastSquares.h"

namespace zelkova {

/// What a regression is judged by besides its cross products.
struct ResponseSummary {
  std::size_t place;  ///< the response's column in the `CrossProducts`
  DoubleDouble sum;   ///< its sum
};

/// The sum of squares of `response` that a projection on the regressors explains: about the mean where the
/// fit has an intercept, else about 0.
DoubleDouble regressionSS(const CrossProducts& products, const ResponseSummary& response,
                          const LeastSquares::Projection& projection, bool FitIntercept);

/// Whether a fit leaves no error to judge it by.
bool isExactFit(double SSE, double dfError);

/// What `yRegression::RegOutput` reports, residuals aside.
struct RegressionFit {
  DoubleArray coef, SECoef, tStat, PV, RegMain;
};

/// The regression of one column on others that `solved` has made ready.
RegressionFit fitRegression(WorksheetFunction& host, const CrossProducts& products,
                            const LeastSquares& solved, const ResponseSummary& response, bool FitIntercept);

/// `M_X` and `M_Y` read, multiplied out and solved; the response's column stands behind those of `M_X`.
struct RegressionProblem {
  RegressionProblem(const DoubleArray& M_Y, const DoubleArray& M_X);
  RegressionProblem(const RegressionProblem&) = delete;
  RegressionProblem& operator=(const RegressionProblem&) = delete;

  std::vector<Column> X;
  Column y;
  CrossProducts products;
  ResponseSummary response;
  LeastSquares solved;
};

/// X b, row by row.
DoubleArray fittedValues(const std::vector<Column>& X, const DoubleArray& coef);

/// y less its fit.
DoubleArray residualsOf(Column y, const DoubleArray& fitted);

/// To 7 decimals; numbers too large to have as many are left as they are.
void roundForDisplay(DoubleArray& values);

/// As `yRegression::GetPRESS`, of a fit that left these residuals at rows of these leverages.
double predictionSS(Column residual, const std::vector<double>& leverages);

/// As `yRegression::GetPreRsq`.
double predictedRSquared(double PRESS, double SST);

/// 1, 2, ..., n.
DoubleArray countingUp(Index n);

}  // namespace zelkova
