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

/// What `yRegression::RegOutput` reports, residuals aside.
struct RegressionFit {
  DoubleArray coef, SECoef, tStat, PV, RegMain;
};

/// The regression of one column on others that `solved` has made ready.
RegressionFit fitRegression(WorksheetFunction& host, const CrossProducts& products,
                            const LeastSquares& solved, const ResponseSummary& response, bool FitIntercept);

/// X b, row by row.
DoubleArray fittedValues(const std::vector<Column>& X, const DoubleArray& coef);

/// The response's only column; failure 5 where it has more.
Column responseColumn(const DoubleArray& M_Y);

}  // namespace zelkova
