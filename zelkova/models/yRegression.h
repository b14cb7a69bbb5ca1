#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(Reg, DFRegression, DFError, DFTotal, SSR, SSE, SST, MSR, MSE, F, PValue, S, RSquared,
              AdjustedRSquared);

/// Least squares regression by the normal equations, and its diagnostics. Binds to the host.
///
/// `M_Y`, the response, is a vector or a table of one column, of n values. `M_X` is a table of n rows. With
/// `FitIntercept` true its first column holds the constant 1 and the other columns are the p regressors; with
/// `FitIntercept` false all columns are regressors, and sums of squares are taken about 0.
///
/// A fit whose error sum of squares is below 1E-8, in the units of the response, or that has no error degrees
/// of freedom, counts as exact: what needs an error is `NoValue`.
///
/// Failures: 5012 where X'X is singular, 5009 for columns of different lengths, 5022 for an array that was
/// never filled, 5 for a response of several columns, 6 where the squares of the data overflow.
class yRegression : public HostBound {
 public:
  /// The fit: coefficients with standard errors, t and p-values, and the analysis of variance in `RegMain`.
  /// With `CalculateResidual`, fitted values and residuals, the latter to 7 decimals; zeros without. Failure
  /// 11 for a constant without regressors.
  void RegOutput(const DoubleArray& M_Y, const DoubleArray& M_X, DoubleArray& coef, DoubleArray& SECoef,
                 DoubleArray& tStat, DoubleArray& PV, DoubleArray& FittedV, DoubleArray& Residual,
                 DoubleArray& RegMain, bool FitIntercept, bool CalculateResidual = false) const;

  /// The coefficients, fitted values and unrounded residuals alone, with 1 to n in `order`.
  void RegResiOutput(const DoubleArray& M_Y, const DoubleArray& M_X, bool FitIntercept, DoubleArray& coef,
                     DoubleArray& FittedV, DoubleArray& Residual, DoubleArray& order) const;

  /// The sum of squares that each regressor adds to those before it. Unfilled where there is no regressor.
  void GetSSSeq(const DoubleArray& M_Y, const DoubleArray& M_X, bool FitIntercept, DoubleArray& SSSeq) const;

  /// The sum of squares that each regressor adds to all others. Unfilled where there is no regressor.
  void GetSSAdj(const DoubleArray& M_Y, const DoubleArray& M_X, bool FitIntercept, DoubleArray& SSAdj) const;

  /// The variance inflation factor of each regressor (Marquardt, 1970): 1/(1 - R squared) of its regression
  /// on the others; `NoValue` where that fit is exact. Unfilled where there is no regressor.
  void GetVIF(const DoubleArray& M_X, bool FitIntercept, DoubleArray& VIF) const;

  /// The statistic of Durbin and Watson (1950) for serial correlation of residuals; `NoValue` where all are
  /// 0.
  double GetDurbinWatson(const DoubleArray& Residual) const;

  /// The prediction sum of squares (Allen, 1974) of a fit with these residuals. Rows that determine their own
  /// fit, leverage 1, are left out; a total of 0 is `NoValue`.
  double GetPRESS(const DoubleArray& Residual, const DoubleArray& M_X, bool FitIntercept) const;

  /// The predicted R squared, 1 - PRESS/SST; 1 where `SST` is not above 0, `NoValue` where `PRESS` is.
  double GetPreRsq(double PRESS, double SST) const;

  /// Fits, standard errors, confidence and prediction limits at the rows of `M_X_new`, which has the columns
  /// of `M_X`; `coef` and the numbers `dDoFR`, `dDoFT` and `dMSE` (slots 1, 3 and 8 of `RegMain`) are those
  /// of the fit to `M_X`, and `CLevel` is a fraction. With a `dMSE` of `NoValue` errors and limits are
  /// `NoValue`. Failure 1004 without error degrees of freedom, and for a `CLevel` below 0 or not below 1.
  void GetPredictNew(const DoubleArray& M_X, const DoubleArray& M_X_new, const DoubleArray& coef,
                     double dDoFR, double dDoFT, double dMSE, bool FitIntercept, double CLevel,
                     DoubleArray& NewFit, DoubleArray& NewSEFit, DoubleArray& NewLCL, DoubleArray& NewUCL,
                     DoubleArray& NewLPL, DoubleArray& NewUPL) const;

  /// Removes the columns of `M_X` that are constant (but for the constant of the fit) or explained by the
  /// columns before them, and their names in `M_Xname`; failure 9 unless that has one for each column.
  void RegressionCheck(DoubleArray& M_X, StringArray& M_Xname, bool FitIntercept) const;

  /// The straight line: `M_X` has two columns, the constant and x. Fits, unrounded residuals, 1 to n in
  /// `order`, and the limits of confidence and prediction at each row, as `GetPredictNew`.
  void RegSOutput(const DoubleArray& M_Y, const DoubleArray& M_X, double CLevel, DoubleArray& FV,
                  DoubleArray& Resi, DoubleArray& order, DoubleArray& LCL, DoubleArray& UCL, DoubleArray& LPL,
                  DoubleArray& UPL) const;

  /// The columns of a polynomial in `dataarrayX`, a vector or a table of one column: the constant, x, and for
  /// the `modeltype` "Quadratic" its square, for "Cubic" its square and cube; `dxN` gets their names. Another
  /// `modeltype` adds no power.
  void GetNonLinear(const DoubleArray& dataarrayX, const std::string& XName, const std::string& modeltype,
                    DoubleArray& dx, StringArray& dxN) const;
};

}  // namespace zelkova
