#pragma once

#include <memory>
#include <string_view>

#include "zelkova/reliability/Objective.h"

namespace zelkova {

/// The negated log-likelihood of the n rows of life data `SA`, `EA` under the parameters `P`: what a fit
/// minimises.
///
/// `dist` names the model, exactly as written:
/// - a life distribution ("Weibull", "Smallest Extreme Value", "Exponential", "Normal", "Lognormal",
///   "Logistic", "Loglogistic"): `FA` holds frequencies and `P` parameters 1 and 2;
/// - a distribution, a bar and an acceleration relation ("Linear", "Arrhenius", "Inverse Temp", "Ln(Power)"),
///   such as "Weibull|Arrhenius": `FA` holds stresses, each row counts once, and `P` is (spread, b0, b1);
/// - "LDR" and a distribution: `FA` is a table of the frequency and then the covariates, and `P` is (spread,
///   coefficients); the spread is left in `P` as its absolute value, `hold` is not looked at;
/// - "ArbTurnbull": `FA` holds frequencies of n spans and `P` their probabilities, which are left in `P` as
///   the relative frequencies;
/// - any other text gives 0.
///
/// Where `hold` is filled, an element other than `NoValue` stands in the place of that parameter. The
/// lognormal model has the term -ln t of an exact time and the loglogistic has not: their values are not
/// comparable.
///
/// Failures are those of the arithmetic: a logarithm of 0 (5), an overflow (6), a division by 0 (11), a time
/// outside the distribution (5 or 1004), arrays that do not match (9).
double NegLogLik(DoubleArray& P, const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                 std::string_view dist, const DoubleArray& hold);

/// The same as a function of `P` alone, with the data read once. It keeps what it needs of the data and of
/// `hold`, and the host that runs when it is made.
std::unique_ptr<Objective> negLogLik(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                                     std::string_view dist, const DoubleArray& hold);

}  // namespace zelkova
