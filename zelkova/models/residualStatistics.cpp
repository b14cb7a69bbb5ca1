#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/matrixSet.h"
#include "zelkova/models/regressionFit.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

double yRegression::GetDurbinWatson(const DoubleArray& Residual) const {
  const Column e = onlyColumnOf(Residual, "Residual");
  double squares = e[0] * e[0];
  double steps = 0;
  for (std::size_t i = 1; i < e.size(); ++i) {
    const double step = e[i] - e[i - 1];
    squares += e[i] * e[i];
    steps += step * step;
  }
  if (squares == 0) return NoValue;
  return checked::quotient(steps, squares);
}

double predictionSS(Column residual, const std::vector<double>& leverages) {
  // A row with a parameter of its own has leverage 1, which rounding must not push below itself.
  constexpr double rounding = 1E-12;
  double sum = 0;
  for (std::size_t i = 0; i < residual.size(); ++i) {
    const double remainder = 1 - leverages[i];
    if (remainder <= rounding) continue;
    const double deleted = residual[i] / remainder;
    sum += deleted * deleted;
  }
  if (sum == 0) return NoValue;
  return checked::finite(sum);
}

double predictedRSquared(double PRESS, double SST) {
  if (PRESS == NoValue) return NoValue;
  if (SST <= 0) return 1;
  return 1 - checked::quotient(PRESS, SST);
}

double yRegression::GetPRESS(const DoubleArray& Residual, const DoubleArray& M_X,
                             bool /*FitIntercept*/) const {
  const Column e = onlyColumnOf(Residual, "Residual");
  const std::vector<Column> X = columnsOf(M_X);
  if (e.size() != X.front().size()) matrix::raise(MatrixFailure::NotConformable);
  const CrossProducts products(X);
  return predictionSS(e, LeastSquares(products, firstPlaces(X.size())).leverages(X));
}

double yRegression::GetPreRsq(double PRESS, double SST) const { return predictedRSquared(PRESS, SST); }

}  // namespace zelkova
