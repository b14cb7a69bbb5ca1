#pragma once

#include <memory>
#include <string_view>

#include "zelkova/reliability/Objective.h"

namespace zelkova {

/// The stress `a` on the scale in which a life's location is a line, by the relation that `accf` names
/// anywhere, after a bar: "|Linear", "|Arrhenius", "|Inverse Temp" or "|Ln(Power)"; 0 where it names none.
/// Temperatures are degrees Celsius. Failures 5 and 11 where the scale has no such stress.
double transformedStress(std::string_view accf, double a);

/// The stress whose transformed value is `x`.
double stressAt(std::string_view accf, double x);

/// The negated log-likelihood of a distribution whose location is a line in the stress (`NegLogLik` with a
/// bar in the text); null where `model` names none.
std::unique_ptr<Objective> accelerationLikelihood(const DoubleArray& SA, const DoubleArray& EA,
                                                  const DoubleArray& AA, std::string_view model,
                                                  const DoubleArray& hold);

/// The negated log-likelihood of a distribution whose location is linear in covariates (`NegLogLik` with
/// "LDR" before the text); null where `model` names none.
std::unique_ptr<Objective> regressionLikelihood(const DoubleArray& SA, const DoubleArray& EA,
                                                const DoubleArray& FA, std::string_view model);

}  // namespace zelkova
