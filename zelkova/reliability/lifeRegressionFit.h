#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// A life regression: the spread, then the coefficient of each covariate, with their covariance (0 for held
/// ones).
struct LifeRegressionFit {
  DoubleArray P;
  DoubleArray V;
  double logLikelihood;
  int iterations;
  DoubleArray directions;  ///< how `P` changes with the searched parameters, by columns
  DoubleArray searchedV;   ///< the covariance of the searched parameters

  /// The covariates of a row of `design`, from its column `first` on, times the coefficients.
  double location(const DoubleArray& design, Index row, Index first) const;
  double locationVariance(const DoubleArray& design, Index row, Index first) const;
  double spreadCovariance(const DoubleArray& design, Index row, Index first) const;

 private:
  /// How the location of a row changes with the searched parameters: unlike in `V`, the digits of a covariate
  /// far from 0 are not squared before they cancel.
  std::vector<double> inSearchSpace(const DoubleArray& design, Index row, Index first) const;
};

/// The maximum of the likelihood of "LDR" and `dist` (see `NegLogLik`) by `LBFGSMinimize`, with the observed
/// information by differences at it. `hold` has an element for the spread and one for each covariate,
/// `NoValue` for a free one. Nothing where there is no finite maximum: no failure, a covariate of which the
/// failures tell nothing, fewer failures than parameters.
///
/// The search starts from the least squares line through the times as they stand and goes on in the
/// coefficients of orthogonal covariates of size 1, in units of the spread and on residual times: the
/// estimate does not depend on the units of lives and covariates, nor on how far these lie from 0. A search
/// in which a term overflows starts again from twice the spread, up to four times.
///
/// Failures: 9 without covariates, for fewer rows than starts and fewer ends than starts; 5 for a frequency
/// below 0, for a row or a covariate without any value, for an interval that ends before it starts, for
/// collinear covariates and for a time that has no logarithm.
std::optional<LifeRegressionFit> fitLifeRegression(const DoubleArray& SA, const DoubleArray& EA,
                                                   const DoubleArray& FA, const std::string& dist,
                                                   const DoubleArray& hold);

}  // namespace zelkova
