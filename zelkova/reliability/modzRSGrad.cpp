#include "zelkova/reliability/modzRSGrad.h"

#include <cmath>

#include "zelkova/reliability/modzDist.h"
#include "zelkova/reliability/modzRSAP.h"

namespace zelkova {

namespace {

double step(double value, double relative) {
  const double h = std::abs(value) * relative;
  return h == 0 ? relative : h;
}

/// The objective with the elements i and j of x, which may be the same, moved by the steps.
double moved(DoubleArray& x, Index i, double stepI, Index j, double stepJ, Objective& objective) {
  const double atI = x(i);
  const double atJ = x(j);
  x(i) = atI + stepI;
  if (j != i) x(j) = atJ + stepJ;
  const double f = objective(x);
  x(j) = atJ;
  x(i) = atI;
  return f;
}

}  // namespace

void RSGradient(DoubleArray& x, double& f, DoubleArray& g, Objective& objective) {
  const double relative = std::sqrt(roundingUnit);
  f = objective(x);
  DoubleArray gradient(x.rows());
  for (Index i = 1; i <= x.rows(); ++i) {
    const double h = step(x(i), relative);
    const double above = moved(x, i, h, i, h, objective);
    const double below = moved(x, i, -h, i, -h, objective);
    gradient(i) = checked::quotient((above - below) * 0.5, h);
  }
  g = std::move(gradient);
}

void RSHessian(DoubleArray& x, DoubleArray& H, Objective& objective) {
  const double relative = std::sqrt(std::sqrt(roundingUnit));
  const double here = objective(x);
  const Index n = x.rows();
  DoubleArray hessian(n, n, 0);
  for (Index i = 1; i <= n; ++i) {
    const double hi = step(x(i), relative);
    const double above = moved(x, i, hi, i, hi, objective);
    const double below = moved(x, i, -hi, i, -hi, objective);
    hessian(i, i) = checked::quotient(checked::quotient(above + below - 2 * here, hi), hi);
    for (Index j = 1; j < i; ++j) {
      const double hj = step(x(j), relative);
      const double f1 = moved(x, i, hi, j, hj, objective);
      const double f2 = moved(x, i, -hi, j, hj, objective);
      const double f3 = moved(x, i, hi, j, -hj, objective);
      const double f4 = moved(x, i, -hi, j, -hj, objective);
      hessian(i, j) = hessian(j, i) = checked::quotient(checked::quotient((f1 - f2 - f3 + f4) / 4, hi), hj);
    }
  }
  H = std::move(hessian);
}

void RSGradient(DoubleArray& x, double& f, DoubleArray& g, const DoubleArray& SA, const DoubleArray& EA,
                const DoubleArray& FA, std::string_view dist, const DoubleArray& hold) {
  RSGradient(x, f, g, *negLogLik(SA, EA, FA, dist, hold));
}

void RSHessian(DoubleArray& x, DoubleArray& H, const DoubleArray& SA, const DoubleArray& EA,
               const DoubleArray& FA, std::string_view dist, const DoubleArray& hold) {
  RSHessian(x, H, *negLogLik(SA, EA, FA, dist, hold));
}

}  // namespace zelkova
