#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "zelkova/reliability/Objective.h"
#include "zelkova/reliability/lifeData.h"

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

/// Life data in the scale of a location: times, or their logarithms.
struct LocatedRows {
  LocatedRows() = default;

  /// The rows of `SA` and `EA` in this order, by their numbers from 0.
  LocatedRows(const DoubleArray& SA, const DoubleArray& EA, std::span<const std::size_t> order,
              bool logTimes);

  std::vector<Observation> kind;
  std::vector<double> start;
  std::vector<double> end;
  std::vector<double> width;  ///< of the intervals; 0 for other rows
};

/// The numbers of the rows from 0, those of each kind together, which the processor then foresees.
std::vector<std::size_t> rowsByKind(const DoubleArray& SA, const DoubleArray& EA);

/// The regression likelihood of rows whose locations are given one by one, so that neither times nor
/// covariates far from 0 need to pass through it: a search measures both from where it stands.
class LocatedLikelihood {
 public:
  virtual ~LocatedLikelihood() = default;

  /// The negated log-likelihood.
  virtual double at(double spread, std::span<const double> locations) const = 0;
};

/// The likelihood of "LDR" and `dist`; null where `dist` names none.
std::unique_ptr<LocatedLikelihood> locatedLikelihood(LocatedRows rows, std::vector<double> frequency,
                                                     std::string_view dist);

}  // namespace zelkova
