#include "zelkova/reliability/relationLikelihood.h"

#include "zelkova/frame/RunningObjects.h"
#include "zelkova/reliability/families.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/lifeLikelihood.h"

namespace zelkova {

namespace {

enum class Family { ExtremeValue, Normal, Logistic };

/// A distribution of location and scale: its family, the scale of the times, and how the spread parameter
/// reads.
struct Model {
  std::string_view dist;
  Family family;
  bool logTimes;
  bool spreadIsShape;  ///< the spread is 1 / sigma
};

constexpr Model models[] = {
    {"Weibull", Family::ExtremeValue, true, true},
    {"Exponential", Family::ExtremeValue, true, false},
    {"Smallest Extreme Value", Family::ExtremeValue, false, false},
    {"Logistic", Family::Logistic, false, false},
    {"Loglogistic", Family::Logistic, true, false},
    {"Normal", Family::Normal, false, false},
    {"Lognormal", Family::Normal, true, false},
};

const Model* modelNamed(std::string_view dist) {
  for (const Model& model : models) {
    if (model.dist == dist) return &model;
  }
  return nullptr;
}

/// The rows in the scale of the model, in their order.
struct ScaledRows {
  ScaledRows(const DoubleArray& SA, const DoubleArray& EA, bool logTimes) {
    const auto starts = SA.vector();
    const auto ends = EA.vector();
    if (ends.size() < starts.size()) raise(FailureNumber::OutOfRange, "there are fewer ends than starts");
    const auto scaled = [logTimes](double t) { return logTimes ? logTime(t) : t; };
    for (std::size_t i = 0; i < starts.size(); ++i) {
      start.push_back(scaled(starts[i]));
      end.push_back(scaled(ends[i]));
      kind.push_back(observationOf(starts[i], ends[i]));
    }
  }

  std::vector<Observation> kind;
  std::vector<double> start;
  std::vector<double> end;
};

/// A location for each row and one spread.
class LocationLikelihood : public Objective {
 public:
  LocationLikelihood(const DoubleArray& SA, const DoubleArray& EA, const Model& model)
      : host_(runningHost()), model_(model), rows_(SA, EA, model.logTimes) {}

 protected:
  /// The log-likelihood for the locations m(i), with weight(i) on the row's own terms.
  template <class Location, class Terms>
  double over(double perSigma, Location location, Terms terms) const {
    double result = 0;
    for (std::size_t i = 0; i < rows_.kind.size(); ++i) {
      const double m = location(i);
      result += terms(i, rows_.kind[i], (rows_.start[i] - m) * perSigma, (rows_.end[i] - m) * perSigma);
    }
    return checked::finite(result);
  }

  /// 1 / sigma for a spread of the model.
  double perSigma(double spread) const {
    return model_.spreadIsShape ? spread : checked::quotient(1, spread);
  }

  /// Calls `with` with the model's family at a spread.
  template <class With>
  double withFamily(double spread, With with) const {
    const double lnSigma = model_.spreadIsShape ? -checked::log(spread) : checked::log(spread);
    switch (model_.family) {
      case Family::ExtremeValue:
        return with(families::ExtremeValue(lnSigma));
      case Family::Normal:
        return with(families::NormalFamily(host_->worksheetFunction(), lnSigma));
      case Family::Logistic:
        break;
    }
    return with(families::LogisticFamily(lnSigma));
  }

  const Model& model() const { return model_; }
  std::size_t count() const { return rows_.kind.size(); }

 private:
  std::shared_ptr<Host> host_;
  Model model_;
  ScaledRows rows_;
};

template <class Terms>
double term(const Terms& family, Observation kind, double zStart, double zEnd) {
  switch (kind) {
    case Observation::Exact:
      return family.exact(zStart);
    case Observation::Right:
      return family.right(zStart);
    case Observation::Left:
      return family.left(zEnd);
    case Observation::Interval:
      break;
  }
  return family.interval(zStart, zEnd);
}

/// Location b0 + b1 x in the transformed stress x. deliberate: every row counts once.
class AccelerationLikelihood : public LocationLikelihood {
 public:
  AccelerationLikelihood(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& AA,
                         const Model& model, std::string_view accf, DoubleArray hold)
      : LocationLikelihood(SA, EA, model), hold_(std::move(hold)) {
    for (Index i = 1; i <= SA.rows(); ++i) x_.push_back(transformedStress(accf, AA(i)));
  }

  double operator()(DoubleArray& P) override {
    const double spread = std::abs(parameterOf(P, hold_, 1));
    const double b0 = parameterOf(P, hold_, 2);
    const double b1 = parameterOf(P, hold_, 3);
    return -withFamily(spread, [&](const auto& family) {
      return over(
          perSigma(spread), [&](std::size_t i) { return b0 + b1 * x_[i]; },
          [&](std::size_t, Observation kind, double zStart, double zEnd) {
            return term(family, kind, zStart, zEnd);
          });
    });
  }

 private:
  std::vector<double> x_;
  DoubleArray hold_;
};

/// Life data with the rows of each kind together, which the processor then foresees.
struct RowsByKind {
  RowsByKind(const DoubleArray& starts, const DoubleArray& ends, const DoubleArray& table)
      : SA(starts.rows()), EA(starts.rows()), FA(starts.rows(), table.columns(), 0.0) {
    if (ends.rows() < starts.rows()) raise(FailureNumber::OutOfRange, "there are fewer ends than starts");
    if (table.rows() < starts.rows()) raise(FailureNumber::OutOfRange);
    std::vector<Index> order;
    for (const auto kind :
         {Observation::Exact, Observation::Right, Observation::Left, Observation::Interval}) {
      for (Index i = 1; i <= starts.rows(); ++i) {
        if (observationOf(starts(i), ends(i)) == kind) order.push_back(i);
      }
    }
    for (Index i = 1; i <= starts.rows(); ++i) {
      const Index from = order[static_cast<std::size_t>(i - 1)];
      SA(i) = starts(from);
      EA(i) = ends(from);
      for (Index j = 1; j <= FA.columns(); ++j) FA(i, j) = table(from, j);
    }
  }

  DoubleArray SA;
  DoubleArray EA;
  DoubleArray FA;
};

/// Location linear in the covariates, which stand in the columns of the table after the frequency.
class RegressionLikelihood : public LocationLikelihood {
 public:
  RegressionLikelihood(RowsByKind rows, const Model& model)
      : LocationLikelihood(rows.SA, rows.EA, model), FA_(std::move(rows.FA)) {}

  double operator()(DoubleArray& P) override {
    const double spread = P(1) = std::abs(P(1));
    const auto frequency = FA_.column(1);
    locations_.assign(count(), 0);
    for (Index j = 2; j <= FA_.columns(); ++j) {
      const auto covariate = FA_.column(j);
      const double coefficient = P(j);
      for (std::size_t i = 0; i < locations_.size(); ++i) locations_[i] += coefficient * covariate[i];
    }
    const auto location = [this](std::size_t i) { return locations_[i]; };
    if (model().family == Family::Logistic) return -logistic(spread, location, frequency);
    return -withFamily(spread, [&](const auto& family) {
      return over(perSigma(spread), location,
                  [&](std::size_t i, Observation kind, double zStart, double zEnd) {
                    return frequency[i] * term(family, kind, zStart, zEnd);
                  });
    });
  }

 private:
  /// deliberate: the frequency of an exact row multiplies -z alone, and a row that is known by its end is
  /// read at its start, where it has no value and tells nothing.
  template <class Location>
  double logistic(double spread, Location location, std::span<const double> frequency) const {
    const double lnSigma = checked::log(spread);
    const families::LogisticFamily family(lnSigma);
    return over(perSigma(spread), location, [&](std::size_t i, Observation kind, double zStart, double zEnd) {
      if (kind == Observation::Exact)
        return -frequency[i] * zStart - lnSigma - 2 * families::softplus(-zStart);
      if (kind == Observation::Left) return frequency[i] * family.left(zStart);
      return frequency[i] * term(family, kind, zStart, zEnd);
    });
  }

  DoubleArray FA_;
  std::vector<double> locations_;
};

enum class StressRelation { None, Linear, Arrhenius, InverseTemp, LnPower };

StressRelation relationIn(std::string_view text) {
  const auto names = [text](std::string_view relation) {
    return text.find(relation) != std::string_view::npos;
  };
  if (names("|Linear")) return StressRelation::Linear;
  if (names("|Arrhenius")) return StressRelation::Arrhenius;
  if (names("|Inverse Temp")) return StressRelation::InverseTemp;
  if (names("|Ln(Power)")) return StressRelation::LnPower;
  return StressRelation::None;
}

constexpr double zeroCelsius = 273.16;
/// The inverse of Boltzmann's constant, in kelvin an electronvolt.
constexpr double electronvoltKelvin = 11604.83;

}  // namespace

double transformedStress(std::string_view accf, double a) {
  const auto kelvin = [a] {
    if (a == -zeroCelsius) raise(FailureNumber::DivisionByZero, "a stress is the absolute zero");
    return a + zeroCelsius;
  };
  switch (relationIn(accf)) {
    case StressRelation::Linear:
      return a;
    case StressRelation::Arrhenius:
      return checked::quotient(electronvoltKelvin, kelvin());
    case StressRelation::InverseTemp:
      return checked::quotient(1, kelvin());
    case StressRelation::LnPower:
      if (!(a > 0)) raise(FailureNumber::InvalidCall, "a stress of 0 or below has no logarithm");
      return checked::log(a);
    case StressRelation::None:
      break;
  }
  return 0;
}

double stressAt(std::string_view accf, double x) {
  switch (relationIn(accf)) {
    case StressRelation::Arrhenius:
      return checked::quotient(electronvoltKelvin, x) - zeroCelsius;
    case StressRelation::InverseTemp:
      return checked::quotient(1, x) - zeroCelsius;
    case StressRelation::LnPower:
      return checked::exp(x);
    default:
      return x;
  }
}

std::unique_ptr<Objective> accelerationLikelihood(const DoubleArray& SA, const DoubleArray& EA,
                                                  const DoubleArray& AA, std::string_view model,
                                                  const DoubleArray& hold) {
  const std::size_t bar = model.find('|');
  const Model* known = bar == std::string_view::npos ? nullptr : modelNamed(model.substr(0, bar));
  if (!known) return nullptr;
  return std::make_unique<AccelerationLikelihood>(SA, EA, AA, *known, model, hold);
}

std::unique_ptr<Objective> regressionLikelihood(const DoubleArray& SA, const DoubleArray& EA,
                                                const DoubleArray& FA, std::string_view model) {
  constexpr std::string_view prefix = "LDR";
  const Model* known = model.starts_with(prefix) ? modelNamed(model.substr(prefix.size())) : nullptr;
  if (!known) return nullptr;
  return std::make_unique<RegressionLikelihood>(RowsByKind(SA, EA, FA), *known);
}

}  // namespace zelkova
