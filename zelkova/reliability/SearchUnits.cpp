#include "zelkova/reliability/SearchUnits.h"

#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/relationLikelihood.h"

namespace zelkova {

namespace {

/// The power of two nearest below |x|, so that a change of units costs no digit; 1 for 0.
double magnitude(double x) {
  if (x == 0) return 1;
  int exponent = 0;
  std::frexp(x, &exponent);
  return std::ldexp(1.0, exponent - 1);
}

bool isPositive(LifeDistribution dist) {
  return dist == LifeDistribution::Weibull || dist == LifeDistribution::Exponential;
}

}  // namespace

SearchUnits::SearchUnits(const std::string& model, const DoubleArray& P, const DoubleArray& AA,
                         const DoubleArray& hold)
    : unit_(P.rows(), 1) {
  const auto dist = lifeDistribution(std::string_view(model).substr(0, model.find('|')));
  if (!dist) return;
  const auto valueOf = [&](Index k) { return hold.filled() && hold(k) != NoValue ? hold(k) : P(k); };
  const bool accelerated = model.find('|') != std::string::npos;
  if (!accelerated) {
    for (Index k = 1; k <= P.rows(); ++k) unit_(k) = magnitude(valueOf(k));
    if (isPositive(*dist)) return;
    // A location has no magnitude of its own: what moves it is measured in scales, and from one below the
    // start, since differences cannot tell apart what lies close to 0.
    unit_(1) = unit_(2);
    origin_ = valueOf(1) - unit_(1);
    return;
  }
  unit_(1) = magnitude(valueOf(1));
  unit_(2) = *dist == LifeDistribution::Weibull ? 1 / unit_(1) : unit_(1);
  unit_(3) = unit_(2);
  // The location at the mean stress cannot stand for a held one.
  const bool holdsLine = hold.filled() && (hold(2) != NoValue || hold(3) != NoValue);
  if (!holdsLine) centre(model, AA);
}

void SearchUnits::centre(const std::string& model, const DoubleArray& AA) {
  const double n = static_cast<double>(AA.rows());
  double sum = 0;
  for (const double a : AA.vector()) sum += transformedStress(model, a);
  const double mean = checked::finite(sum) / n;
  double squares = 0;
  for (const double a : AA.vector()) {
    const double distance = transformedStress(model, a) - mean;
    squares += distance * distance;
  }
  centre_ = mean;
  unit_(3) = unit_(2) / magnitude(checked::root(checked::finite(squares) / n));
}

DoubleArray SearchUnits::to(const DoubleArray& P) const {
  DoubleArray Q = P;
  Q(1) -= origin_;
  if (centre_ != 0) Q(2) = P(2) + centre_ * P(3);
  for (Index k = 1; k <= Q.rows(); ++k) Q(k) /= unit_(k);
  return Q;
}

DoubleArray SearchUnits::from(const DoubleArray& Q) const {
  DoubleArray P = Q;
  for (Index k = 1; k <= P.rows(); ++k) P(k) *= unit_(k);
  P(1) += origin_;
  if (centre_ != 0) P(2) -= centre_ * P(3);
  return P;
}

DoubleArray SearchUnits::secondDerivatives(const DoubleArray& H) const {
  DoubleArray result = H;
  for (Index i = 1; i <= H.rows(); ++i) {
    for (Index j = 1; j <= H.rows(); ++j) result(i, j) /= unit_(i) * unit_(j);
  }
  if (centre_ == 0) return result;
  // The second of these parameters is P(2) + centre P(3).
  for (Index i = 1; i <= 3; ++i) result(i, 3) += centre_ * result(i, 2);
  for (Index j = 1; j <= 3; ++j) result(3, j) += centre_ * result(2, j);
  return result;
}

}  // namespace zelkova
