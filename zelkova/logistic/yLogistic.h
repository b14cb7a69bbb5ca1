#pragma once

#include <cstdint>
#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/Variant.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(LogisticCoefficients, Coefficient, SECoefficient, Z, PValue, OddsRatio, LowerLimit, UpperLimit);
ZELKOVA_SLOTS(GoodnessOfFit, ChiSquare, DF, PValue);
ZELKOVA_SLOTS(PairColumns, Number, Percent);
ZELKOVA_SLOTS(PairRows, Concordant, Discordant, Tied, Total);
ZELKOVA_SLOTS(PairMeasures, SomersD, Gamma, TauA);

/// Regression of a response of two, of several ordered or of several unordered levels, by maximum likelihood
/// (McCullagh and Nelder, Generalized Linear Models, 2nd ed. 1989). Binds to the host.
///
/// `Y` is the response of n observations, a table of one column or a vector. `x` is a table of n rows, a
/// column for each of the p predictors, without a column for the constant. `X_nom` names the predictors and
/// enters no result; it may be left unfilled. Rows with the same predictors form a covariate pattern; results
/// for each pattern stand in order of first appearance.
///
/// A fit ends when the log-likelihood changes by less than 1E-8, and after 100 iterations at the latest.
/// `GOFtable` rows have the chi-square, its degrees of freedom and its p-value, which is `NoValue` where a
/// model leaves no degree of freedom.
///
/// Failures: 5012 for predictors that are constant or explain each other, and for data that a model separates
/// perfectly, which have no finite maximum; 9 for arrays of different lengths; 13 for empty cells and for
/// texts that are no numbers; 11 for a link of another name; 5 for a model of more than 1000 coefficients.
class yLogistic : public HostBound {
 public:
  /// Two levels: `Y` is 1 for an event and 0 for none. `link_f` is "Logit", "Normit" or "Gompit".
  ///
  /// `regtable` has the constant's row, then one for each predictor; odds ratios with their 95 percent limits
  /// for predictors under "Logit". `GOFtable` rows: Pearson, deviance, Hosmer-Lemeshow (1980), and under
  /// "Logit" Brown's (1982) general and symmetric alternative. `Associationtable` and `SumMeasure` count the
  /// pairs of an event and a non-event of different patterns. The other results have an element for each
  /// pattern: leverage, fitted probability, and what the pattern's removal changes (Pregibon 1981): the
  /// Pearson chi-square, the deviance, the coefficients, standardised and not; `NoValue` at leverage 1.
  ///
  /// Failure 5 for a `Y` that is not 0 or 1 and where all are alike.
  void Binary_regression(const VariantArray& Y, const VariantArray& x, const StringArray& X_nom,
                         const std::string& link_f, DoubleArray& regtable, double& loglikelihood,
                         DoubleArray& GOFtable, DoubleArray& Associationtable, DoubleArray& SumMeasure,
                         DoubleArray& leverage, DoubleArray& probability, DoubleArray& deltacs,
                         DoubleArray& deltadev, DoubleArray& deltabetas, DoubleArray& deltabeta) const;

  /// Three or more ordered levels, whole numbers without a gap: the cumulative model P(Y <= j) =
  /// F(a(j) + x'b), with the proportional odds model (McCullagh 1980) under "Logit".
  ///
  /// `regtable` has the rows of the cut points a(1) to a(k - 1), then those of the predictors. `GOFtable`
  /// rows: Pearson, deviance. Pairs are of observations of different levels, concordant where the higher
  /// level has the higher mean level number under the fitted probabilities. `numresponseorder` returns k.
  ///
  /// Fewer than three levels show a message box, and nothing is filled. Failure 5 for a `Y` with fractions
  /// and for a level without an observation between the lowest and the highest.
  void Ordinal_regression(const VariantArray& Y, const VariantArray& x, const StringArray& X_nom,
                          const std::string& link_f, DoubleArray& regtable, double& loglikelihood,
                          DoubleArray& GOFtable, DoubleArray& Associationtable, DoubleArray& SumMeasure,
                          std::int16_t& numresponseorder) const;

  /// Unordered levels: the multinomial logit model against the level `refevent`; levels are told apart by
  /// their texts.
  ///
  /// `regtable` has a block for each other level, in order of first appearance, which `Yname` returns: its
  /// constant, then the predictors, with odds ratios. `GOFtable` rows: Pearson, deviance.
  ///
  /// Failure 5012 for a `refevent` that is no level, 5 for a single level.
  void Nominal_regression(const VariantArray& Y, const VariantArray& x, const StringArray& X_nom,
                          const std::string& refevent, DoubleArray& regtable, double& loglikelihood,
                          DoubleArray& GOFtable, StringArray& Yname) const;
};

}  // namespace zelkova
