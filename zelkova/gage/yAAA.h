#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

// Percentages and their limits are from 0 to 100.
ZELKOVA_SLOTS(AgreementAmong, Inspected, Matched, Percent, Lower, Upper, KendallW, ChiSquare, DF, PValue);
ZELKOVA_SLOTS(AgreementWithStandard, Inspected, Matched, Percent, Lower, Upper, KendallTau, SE, Z, PValue);
ZELKOVA_SLOTS(AgreementKappa, Appraiser, Category, FleissKappa, FleissSE, FleissZ, FleissPValue, CohenKappa,
              CohenSE, CohenZ, CohenPValue);
ZELKOVA_SLOTS(AgreementErrors, SecondAsFirst, SecondAsFirstPercent, FirstAsSecond, FirstAsSecondPercent,
              Mixed, MixedPercent, RatingsSecondAsFirst, RatingsSecondAsFirstPercent, RatingsFirstAsSecond,
              RatingsFirstAsSecondPercent);

/// Attribute agreement analysis: do appraisers who put parts into categories agree with themselves, with each
/// other and with a standard (AIAG, Measurement Systems Analysis; ISO 14468)? Binds to the host.
class yAAA : public HostBound {
 public:
  /// `dy` holds the n ratings, `dpart` and `dop` the part and the appraiser of each. `dtrial` holds the
  /// trial; where it was never filled, the trials of a part by an appraiser are in the order of the rows.
  /// `dstd` holds the standard of the row's part, or was never filled. All are texts, compared exactly; rows
  /// beyond those of `dy` are not read. Blank are texts without a character to see, and those of `NoValue`:
  /// `dtrial` and `dstd` of blanks only count as never filled, and so do blanks in `CategoryOrder`.
  /// `CLevel` is the confidence of the limits as a fraction.
  ///
  /// `Category` gets the k categories of ratings and standards: those of `CategoryOrder`, which then must
  /// list all of them, or in numeric-aware order where that was never filled: labels that tie there or
  /// compare in circles come in an order of their own, the same for any order of the rows. `Ordinal` takes
  /// this order for a scale and adds Kendall's statistics. `Appraiser` gets the b appraisers in numeric-aware
  /// order.
  ///
  /// Four questions have a pair of results each, `NoValue` where they do not apply. `...Value` has the parts
  /// on which all ratings concerned match, with exact limits (Clopper and Pearson, 1934); `...Kappa` has a
  /// row for each category and one over all. `WithinValue` and `StandardValue` have a row an appraiser,
  /// `WithinKappa` and `StandardKappa` k + 1 rows an appraiser.
  ///
  /// - `Within...`: does an appraiser agree with their own other trials? Two or more.
  /// - `Between...`: do the appraisers agree with each other, all trials of each? Where `Between` asks for
  /// it.
  /// - `Standard...`: does an appraiser agree with the standard, in all trials?
  /// - `All...`: do all appraisers agree with the standard, in all trials?
  ///
  /// Fleiss' kappa (1971) has the standard errors of Fleiss, Nee and Landis (1979); Cohen's (1960), that of
  /// two ratings of each part, those of Fleiss, Cohen and Everitt (1969). Both are under chance alone, and
  /// p-values are P(Z > z). Against a standard each trial makes one comparison of two ratings: kappas and
  /// tau-b are their means, with standard errors as if these were independent. A kappa of 0 over 0 is
  /// `NoValue`, and so is a mean with one. Kendall's coefficient of concordance and tau-b are corrected for
  /// ties; the p-value of the former is that of the chi-square approximation, the p-value of tau-b has both
  /// tails (Kendall, 1970).
  ///
  /// `Disagreement` has values for two categories and a standard, a row an appraiser: parts of the second
  /// category rated as the first in every trial, the reverse, and parts rated both ways; then single ratings.
  /// Percentages are of the parts or ratings of that standard, `NoValue` where it has none, for `Mixed` of
  /// all parts.
  ///
  /// `ErrorCode`, checked in this order; no result is assigned then: "Ratings must not be blank"; "Standards
  /// must not be blank", some being given; "Design must be balanced", each
  /// appraiser having rated each part equally often; "Trials of a part by an appraiser must differ"; "At
  /// least 2 appraiser values required" where `Between` asks for it; "At least 2 trials or a standard
  /// required" where nothing is left to compare; "Rating or standard not in CategoryOrder";
  /// "Standard for the same part must be the same"; "At least 2 categories required", in the ratings and
  /// standards.
  ///
  /// Failures: 5 for a `CLevel` that is not between 0 and 1 and for a category listed twice, 7 for more than
  /// 1E6 rows of kappas, 9 for columns of fewer rows than `dy`.
  void GageAAAOutput(const StringArray& dy, const StringArray& dpart, const StringArray& dop,
                     const StringArray& dtrial, const StringArray& dstd, const StringArray& CategoryOrder,
                     bool Ordinal, bool Between, double CLevel, StringArray& Appraiser, StringArray& Category,
                     DoubleArray& WithinValue, DoubleArray& WithinKappa, DoubleArray& BetweenValue,
                     DoubleArray& BetweenKappa, DoubleArray& StandardValue, DoubleArray& StandardKappa,
                     DoubleArray& AllValue, DoubleArray& AllKappa, DoubleArray& Disagreement,
                     std::string& ErrorCode) const;
};

}  // namespace zelkova
