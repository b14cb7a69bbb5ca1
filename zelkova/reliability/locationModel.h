#pragma once

#include <string>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/percentiles.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

/// A distribution as models of a location have it: location m in the time or its logarithm, and a spread.
class LocationModel {
 public:
  LocationModel(WorksheetFunction& host, LifeDistribution dist) : host_(&host), dist_(dist) {}

  /// Location and spread of a life distribution with these parameters.
  double location(double para1) const;

  /// The life distribution at a location, with the covariance of its parameters from that of location and
  /// spread.
  LifeFitted lifeAt(double m, double spread, double varM, double varSpread, double covar) const;

  double standardised(double time, double m, double spread) const;

  /// -ln S at a standardised time.
  double coxSnell(double z) const;

  /// What standardised residuals are distributed as.
  const char* residualDistribution() const;

 private:
  bool hasScaleParameter() const {
    return dist_ == LifeDistribution::Weibull || dist_ == LifeDistribution::Exponential;
  }

  WorksheetFunction* host_;
  LifeDistribution dist_;
};

/// Life data of their own: those of a stress level, or residuals.
struct Sample {
  DoubleArray SA;
  DoubleArray EA;
  DoubleArray FA;

  bool hasFailure() const;
};

/// The fit of one sample alone with its probability plot.
struct SingleFit {
  DoubleArray P;
  DoubleArray PlotX;
  DoubleArray PlotY;
  DoubleArray PlotHVLU;
  bool fitted = false;
};

SingleFit fitAlone(const yReliability& engine, const Sample& sample, const std::string& dist,
                   const std::string& pMtd, const std::string& estimate, double CLevel);

/// The table of the parameters, the spread first; a held one has its value alone. `V` is their covariance.
DoubleArray coefficientTable(WorksheetFunction& host, const DoubleArray& P, const DoubleArray& V,
                             const DoubleArray& hold, double z);

/// Residuals of the rows at the start and the end of their spans; no value where there is no time.
struct Residuals {
  DoubleArray start;
  DoubleArray end;

  /// A row for each: what `beside` says of it, its span, its residuals (`RelationResidual`).
  DoubleArray table(const DoubleArray& SA, const DoubleArray& EA, std::span<const double> beside) const;
};

/// The residual `of(i, t)` of each row i at the times t of its span.
template <class Of>
Residuals residualsOf(const DoubleArray& SA, const DoubleArray& EA, Of of) {
  Residuals result{DoubleArray(SA.rows(), NoValue), DoubleArray(SA.rows(), NoValue)};
  for (Index i = 1; i <= SA.rows(); ++i) {
    if (SA(i) != NoValue) result.start(i) = of(i, SA(i));
    if (EA(i) != NoValue) result.end(i) = of(i, EA(i));
  }
  return result;
}

/// A fitted life that is asked for, and how the tables name it: by its stress or by a number.
struct PredictedLife {
  double name;
  LifeFitted fit;
};

/// A row for each share of `Percent`, in percent, of each life (`RelationPercentile`).
DoubleArray percentilesOf(const std::vector<PredictedLife>& lives, const DoubleArray& Percent, double z);

/// A row for each of `times` of each life (`RelationSurvival`).
DoubleArray survivalsOf(const std::vector<PredictedLife>& lives, const DoubleArray& times, double z);

}  // namespace zelkova
