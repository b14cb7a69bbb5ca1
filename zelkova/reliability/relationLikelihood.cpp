#include "zelkova/reliability/relationLikelihood.h"

#include <algorithm>
#include <cmath>
#include <numeric>

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

/// A row in standardised values.
struct Standardised {
  Observation kind;
  double start;
  double end;
  double width;
};

/// A location for each row and one spread.
class LocationLikelihood {
 protected:
  LocationLikelihood(LocatedRows rows, const Model& model)
      : host_(runningHost()), model_(model), rows_(std::move(rows)) {}

  /// The log-likelihood for the locations m(i), with weight(i) on the row's own terms.
  template <class Location, class Terms>
  double over(double perSigma, Location location, Terms terms) const {
    double result = 0;
    for (std::size_t i = 0; i < rows_.kind.size(); ++i) {
      const double m = location(i);
      const Standardised z{rows_.kind[i], (rows_.start[i] - m) * perSigma, (rows_.end[i] - m) * perSigma,
                           rows_.width[i] * perSigma};
      result += terms(i, z);
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

 private:
  std::shared_ptr<Host> host_;
  Model model_;
  LocatedRows rows_;
};

template <class Terms>
double term(const Terms& family, const Standardised& z) {
  switch (z.kind) {
    case Observation::Exact:
      return family.exact(z.start);
    case Observation::Right:
      return family.right(z.start);
    case Observation::Left:
      return family.left(z.end);
    case Observation::Interval:
      break;
  }
  return family.interval(z.start, z.end, z.width);
}

std::vector<std::size_t> rowsInOrder(const DoubleArray& SA) {
  std::vector<std::size_t> order(SA.vector().size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  return order;
}

/// Location b0 + b1 x in the transformed stress x. deliberate: every row counts once.
class AccelerationLikelihood : public Objective, private LocationLikelihood {
 public:
  AccelerationLikelihood(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& AA,
                         const Model& model, std::string_view accf, DoubleArray hold)
      : LocationLikelihood(LocatedRows(SA, EA, rowsInOrder(SA), model.logTimes), model),
        hold_(std::move(hold)) {
    for (Index i = 1; i <= SA.rows(); ++i) x_.push_back(transformedStress(accf, AA(i)));
  }

  double operator()(DoubleArray& P) override {
    const double spread = std::abs(parameterOf(P, hold_, 1));
    const double b0 = parameterOf(P, hold_, 2);
    const double b1 = parameterOf(P, hold_, 3);
    return -withFamily(spread, [&](const auto& family) {
      return over(
          perSigma(spread), [&](std::size_t i) { return b0 + b1 * x_[i]; },
          [&](std::size_t, const Standardised& z) { return term(family, z); });
    });
  }

 private:
  std::vector<double> x_;
  DoubleArray hold_;
};

/// Rows with frequencies and given locations.
class FrequencyLikelihood : public LocatedLikelihood, private LocationLikelihood {
 public:
  FrequencyLikelihood(LocatedRows rows, std::vector<double> frequency, const Model& model)
      : LocationLikelihood(std::move(rows), model), frequency_(std::move(frequency)) {}

  double at(double spread, std::span<const double> locations) const override {
    const auto location = [locations](std::size_t i) { return locations[i]; };
    if (model().family == Family::Logistic) return -logistic(spread, location);
    return -withFamily(spread, [&](const auto& family) {
      return over(perSigma(spread), location,
                  [&](std::size_t i, const Standardised& z) { return frequency_[i] * term(family, z); });
    });
  }

 private:
  /// deliberate: the frequency of an exact row multiplies -z alone, and a row that is known by its end is
  /// read at its start, where it has no value and tells nothing.
  template <class Location>
  double logistic(double spread, Location location) const {
    const double lnSigma = checked::log(spread);
    const families::LogisticFamily family(lnSigma);
    return over(perSigma(spread), location, [&](std::size_t i, const Standardised& z) {
      if (z.kind == Observation::Exact)
        return -frequency_[i] * z.start - lnSigma - 2 * families::softplus(-z.start);
      if (z.kind == Observation::Left) return frequency_[i] * family.left(z.start);
      return frequency_[i] * term(family, z);
    });
  }

  std::vector<double> frequency_;
};

/// A column of a table in another order of its rows.
std::vector<double> columnIn(const DoubleArray& table, Index j, std::span<const std::size_t> order) {
  const auto column = table.column(j);
  if (column.size() < order.size()) raise(FailureNumber::OutOfRange);
  std::vector<double> result;
  result.reserve(order.size());
  for (const std::size_t i : order) result.push_back(column[i]);
  return result;
}

/// Location linear in the covariates, which stand in the columns of the table after the frequency.
class RegressionLikelihood : public Objective {
 public:
  RegressionLikelihood(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                       std::span<const std::size_t> order, const Model& model)
      : likelihood_(LocatedRows(SA, EA, order, model.logTimes), columnIn(FA, 1, order), model),
        locations_(order.size()) {
    for (Index j = 2; j <= FA.columns(); ++j) covariates_.push_back(columnIn(FA, j, order));
  }

  double operator()(DoubleArray& P) override {
    const double spread = P(1) = std::abs(P(1));
    std::fill(locations_.begin(), locations_.end(), 0);
    Index k = 1;
    for (const std::vector<double>& covariate : covariates_) {
      const double coefficient = P(++k);
      for (std::size_t i = 0; i < locations_.size(); ++i) locations_[i] += coefficient * covariate[i];
    }
    return likelihood_.at(spread, locations_);
  }

 private:
  FrequencyLikelihood likelihood_;
  std::vector<std::vector<double>> covariates_;
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

LocatedRows::LocatedRows(const DoubleArray& SA, const DoubleArray& EA, std::span<const std::size_t> order,
                         bool logTimes) {
  const auto starts = SA.vector();
  const auto ends = EA.vector();
  if (ends.size() < starts.size()) raise(FailureNumber::OutOfRange, "there are fewer ends than starts");
  const auto scaled = [logTimes](double t) { return logTimes ? logTime(t) : t; };
  for (const std::size_t i : order) {
    kind.push_back(observationOf(starts[i], ends[i]));
    start.push_back(scaled(starts[i]));
    end.push_back(scaled(ends[i]));
    const bool interval = kind.back() == Observation::Interval;
    const double span = logTimes ? logRatio(starts[i], ends[i]) : ends[i] - starts[i];
    width.push_back(interval ? span : 0);
  }
}

std::vector<std::size_t> rowsByKind(const DoubleArray& SA, const DoubleArray& EA) {
  const auto starts = SA.vector();
  const auto ends = EA.vector();
  if (ends.size() < starts.size()) raise(FailureNumber::OutOfRange, "there are fewer ends than starts");
  std::vector<std::size_t> order;
  order.reserve(starts.size());
  for (const auto kind : {Observation::Exact, Observation::Right, Observation::Left, Observation::Interval}) {
    for (std::size_t i = 0; i < starts.size(); ++i) {
      if (observationOf(starts[i], ends[i]) == kind) order.push_back(i);
    }
  }
  return order;
}

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
  return std::make_unique<RegressionLikelihood>(SA, EA, FA, rowsByKind(SA, EA), *known);
}

std::unique_ptr<LocatedLikelihood> locatedLikelihood(LocatedRows rows, std::vector<double> frequency,
                                                     std::string_view dist) {
  const Model* known = modelNamed(dist);
  if (!known) return nullptr;
  return std::make_unique<FrequencyLikelihood>(std::move(rows), std::move(frequency), *known);
}

}  // namespace zelkova
