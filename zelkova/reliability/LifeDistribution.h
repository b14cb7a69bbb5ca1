#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "zelkova/frame/Host.h"

namespace zelkova {

/// One of the seven life distributions, by its exact name.
enum class LifeDistribution {
  Weibull,
  SmallestExtremeValue,
  Exponential,
  Normal,
  Lognormal,
  Logistic,
  Loglogistic
};

std::optional<LifeDistribution> lifeDistribution(std::string_view dist);

/// Whether the distribution is one of location and scale in ln t.
inline bool worksOnLogarithms(LifeDistribution dist) {
  return dist == LifeDistribution::Weibull || dist == LifeDistribution::Exponential ||
         dist == LifeDistribution::Lognormal || dist == LifeDistribution::Loglogistic;
}

/// Whether life is described by one parameter.
inline bool hasOneParameter(LifeDistribution dist) { return dist == LifeDistribution::Exponential; }

/// A life distribution with its parameters: scale and shape ("Weibull"), mean ("Exponential"), mean and
/// standard deviation of t or ln t ("Normal", "Lognormal"), location and scale of t or ln t (the others).
/// Probabilities of the normal family come from the host. Failures are those of the arithmetic and of the
/// host.
class Life {
 public:
  Life(WorksheetFunction& host, LifeDistribution dist, double para1, double para2)
      : host_(&host), dist_(dist), para1_(para1), para2_(para2) {}

  /// The standardised quantile of `p`: ln(-ln(1 - p)), -ln(1 - p) for "Exponential", NormSInv(p) or ln(p / (1
  /// - p)).
  double score(double p) const;

  /// The time by which the share `p` has failed.
  double quantile(double p) const;

  /// The share that has failed by `t`, and the share that has not, each from its own tail.
  double failure(double t) const;
  double survival(double t) const;

  double density(double t) const;

  /// Mean and standard deviation of the time; `NoValue` where the distribution has none.
  double mean() const;
  double standardDeviation() const;

  /// The working quantity u of a time: its standardised logarithm or value, in which limits of a survival are
  /// formed; for "Exponential" ln t - ln theta.
  double standardised(double t) const;

  /// The survival at a standardised time.
  double survivalAt(double u) const;

 private:
  WorksheetFunction* host_;
  LifeDistribution dist_;
  double para1_;
  double para2_;
};

/// What the vertical axis of a probability plot shows for the failed share `p`: ln(-ln(1 - p)) for
/// "Exponential" too, and the score for the others.
double plotScore(WorksheetFunction& host, LifeDistribution dist, double p);

}  // namespace zelkova
