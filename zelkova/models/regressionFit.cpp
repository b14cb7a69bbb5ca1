#include "zelkova/models/regressionFit.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

constexpr double largestDegreesOfFreedom = 1E+10;

double pValueOfF(WorksheetFunction& host, double F, double dfRegression, double dfError) {
  const auto outside = [](double df) { return df < 1 || df > largestDegreesOfFreedom; };
  if (F < 0 || outside(dfRegression) || outside(dfError)) return NoValue;
  return host.FDist(F, dfRegression, dfError);
}

std::vector<Column> joined(std::vector<Column> columns, Column last) {
  columns.push_back(last);
  return columns;
}

double share(double ratio) { return std::clamp(checked::finite(ratio), 0.0, 1.0); }

DoubleArray analysisOfVariance(WorksheetFunction& host, double n, double columns, DoubleDouble ssr,
                               DoubleDouble sse, bool FitIntercept) {
  const double constants = FitIntercept ? 1 : 0;
  DoubleArray main(Reg::size, NoValue);
  main(Reg::DFRegression) = columns - constants;
  main(Reg::DFError) = n - columns;
  main(Reg::DFTotal) = n - constants;
  main(Reg::SSR) = ssr.rounded();
  main(Reg::SSE) = sse.rounded();
  main(Reg::SST) = (ssr + sse).rounded();
  if (main(Reg::DFRegression) == 0) {
    raise(FailureNumber::DivisionByZero, "the constant alone has no regression mean square");
  }
  main(Reg::MSR) = main(Reg::SSR) / main(Reg::DFRegression);

  if (isExactFit(main(Reg::SSE), main(Reg::DFError))) return main;

  const double mse = main(Reg::SSE) / main(Reg::DFError);
  main(Reg::MSE) = mse;
  main(Reg::F) = checked::quotient(main(Reg::MSR), mse);
  main(Reg::PValue) = pValueOfF(host, main(Reg::F), main(Reg::DFRegression), main(Reg::DFError));
  main(Reg::S) = checked::root(mse);
  // Without spread about the mean there is nothing to explain: a response that is constant, and a model that
  // cannot follow it.
  if (main(Reg::SST) <= 0) return main;
  main(Reg::RSquared) = share(main(Reg::SSR) / main(Reg::SST));
  main(Reg::AdjustedRSquared) = share(1 - mse / (main(Reg::SST) / main(Reg::DFTotal)));
  return main;
}

}  // namespace

RegressionProblem::RegressionProblem(const DoubleArray& M_Y, const DoubleArray& M_X)
    : X(columnsOf(M_X)),
      y(onlyColumnOf(M_Y, "M_Y")),
      products(joined(X, y)),
      response{X.size(), extendedSum(y)},
      solved(products, firstPlaces(X.size())) {}

DoubleDouble regressionSS(const CrossProducts& products, const ResponseSummary& response,
                          const LeastSquares::Projection& projection, bool FitIntercept) {
  if (!FitIntercept) return projection.explained;
  const DoubleDouble n{static_cast<double>(products.rows())};
  const DoubleDouble sum = projection.explained - response.sum * response.sum / n;
  // Rounding must not turn the sign of what is 0: a balanced design often explains nothing of a response.
  const double noise = products(response.place, response.place).rounded() * products.noise();
  return std::abs(sum.rounded()) <= noise ? DoubleDouble{} : sum;
}

bool isExactFit(double SSE, double dfError) {
  // deliberate: the limit is absolute, in the squared units of the response.
  return SSE < 1E-8 || dfError <= 0;
}

RegressionFit fitRegression(WorksheetFunction& host, const CrossProducts& products,
                            const LeastSquares& solved, const ResponseSummary& response, bool FitIntercept) {
  const LeastSquares::Projection projection = solved.project(response.place);
  RegressionFit fit;
  fit.coef = DoubleArray(solved.coefficients(projection));
  const Index c = fit.coef.rows();
  fit.RegMain = analysisOfVariance(host, static_cast<double>(products.rows()), static_cast<double>(c),
                                   regressionSS(products, response, projection, FitIntercept),
                                   projection.unexplained, FitIntercept);
  fit.SECoef = DoubleArray(c, NoValue);
  fit.tStat = DoubleArray(c, NoValue);
  fit.PV = DoubleArray(c, NoValue);
  const double mse = fit.RegMain(Reg::MSE);
  if (mse == NoValue) return fit;

  const std::vector<double> diagonal = solved.inverseDiagonal();
  for (Index i = 1; i <= c; ++i) {
    const double variance = mse * diagonal[static_cast<std::size_t>(i - 1)];
    fit.SECoef(i) = checked::root(std::max(0.0, variance));
    if (fit.SECoef(i) == 0) continue;
    fit.tStat(i) = checked::quotient(fit.coef(i), fit.SECoef(i));
    fit.PV(i) = host.TDist(std::abs(fit.tStat(i)), fit.RegMain(Reg::DFError), 2);
  }
  return fit;
}

DoubleArray fittedValues(const std::vector<Column>& X, const DoubleArray& coef) {
  DoubleArray result(static_cast<Index>(X.front().size()));
  const std::span<double> fitted = result.vector();
  for (std::size_t j = 0; j < X.size(); ++j) {
    const double b = coef(static_cast<Index>(j + 1));
    for (std::size_t i = 0; i < fitted.size(); ++i) fitted[i] += b * X[j][i];
  }
  return result;
}

DoubleArray residualsOf(Column y, const DoubleArray& fitted) {
  DoubleArray result(fitted.rows());
  const std::span<double> residual = result.vector();
  const std::span<const double> fit = fitted.vector();
  for (std::size_t i = 0; i < residual.size(); ++i) residual[i] = y[i] - fit[i];
  return result;
}

void roundForDisplay(DoubleArray& values) {
  // Adding 0 takes the sign off a residual that rounds to nothing.
  for (double& x : values.elements()) x = roundHalfEven(x, 7) + 0.0;
}

DoubleArray countingUp(Index n) {
  DoubleArray order(n);
  std::iota(order.elements().begin(), order.elements().end(), 1.0);
  return order;
}

}  // namespace zelkova
