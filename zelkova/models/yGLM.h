#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(GLMSources, DF, SeqSS, AdjSS, AdjMS, F, PValue);
ZELKOVA_SLOTS(GLMCoefficients, Coefficient, SE, T, PValue);

/// The general linear model: factors in effect coding, covariates, their interactions and nested factors,
/// fitted by least squares. Binds to the host.
class yGLM : public HostBound {
 public:
  /// The fit of `dy`, a vector of n values; `dyn` is its name and enters no result.
  ///
  /// `df` is a table of n rows with the levels of a factor in each column, `dc` one with a covariate in each
  /// column; either may be left unfilled. `dfn` and `dCn` name their columns. `model` holds the terms: a name
  /// ("A"), names joined by "*" ("A*B") or a factor nested in others ("B(A)", "C(A, B)"); names compare
  /// without regard to case. Powers of a covariate are interactions with itself ("x*x").
  ///
  /// `ANOVAtable` has a row for each term, then "Error" and "Total", named in `ANOVAlabel`; `regtable` a row
  /// for each coefficient, the constant first, named in `Reglabel`: "A|a1" is level a1 of A, against the mean
  /// of all levels; the last level of a factor (in numeric-aware order) has no row, its coefficient is minus
  /// the sum of the others. Sequential sums of squares (Type I) are those of the terms in their order,
  /// adjusted ones (Type III) are each term's after all others. `DS`, `r2` and `R2a` are S, R-squared and
  /// adjusted R-squared. `mterm` gets the terms in canonical form, `model2` as they are shown in tables.
  ///
  /// With `FNANOVA` true, `varcomp` gets the variance components of a fully nested model, one for each term
  /// in its order, and the error mean square: a term's mean square less that of the next term, over the
  /// number of values in a combination of its levels. A negative one stays negative; a term with covariates
  /// has none.
  ///
  /// With `ResidualPlot` true, `FittedV` and `Residual` (to 7 decimals) are filled in place of `ANOVAtable`,
  /// `ANOVAlabel` and `varcomp`.
  ///
  /// A fit with an error sum of squares below 1E-8, or without error degrees of freedom, counts as exact:
  /// what needs an error is `NoValue`.
  ///
  /// `ErrorCode`, checked in this order; no result is assigned then: "Factors must have more than 1 level";
  /// "Illegal terms in model" for unknown names, empty and repeated terms; "Nested terms must be factors";
  /// "Model is not hierarchical" for an interaction or a nested term without the terms it is made of;
  /// "Insufficient data points" for more coefficients than values; "Error: Collinearity" for columns that
  /// depend on each other, empty cells of an interaction included, and for data that overflow; "Rank
  /// deficiency due to colinearity" where a term would explain less than nothing.
  ///
  /// Failure 9 where a table has not a row for each value or not a name for each column, or `model` no term.
  void GLMOutput(const DoubleArray& dy, const std::string& dyn, const StringArray& df, const StringArray& dfn,
                 const DoubleArray& dc, const StringArray& dCn, const StringArray& model,
                 DoubleArray& ANOVAtable, StringArray& ANOVAlabel, DoubleArray& regtable,
                 StringArray& Reglabel, double& DS, double& r2, double& R2a, DoubleArray& FittedV,
                 DoubleArray& Residual, StringArray& mterm, StringArray& model2, DoubleArray& varcomp,
                 bool FNANOVA, std::string& ErrorCode, bool ResidualPlot = false) const;
};

}  // namespace zelkova
