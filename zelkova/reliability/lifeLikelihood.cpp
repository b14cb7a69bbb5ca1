#include "zelkova/reliability/lifeLikelihood.h"

#include <algorithm>
#include <limits>

#include "zelkova/frame/RunningObjects.h"
#include "zelkova/kit/sums.h"
#include "zelkova/reliability/families.h"
#include "zelkova/reliability/lifeData.h"

namespace zelkova {

namespace {

using families::hazardGrowth;
using families::logFailure;
using families::logSurvivalDifference;

double sum(const std::vector<double>& values) {
  return laneSum(values, [](double x) { return x; });
}

/// Sums of f exp(k y) for one k after the other, relative to the largest y. Most changes of a search move the
/// other parameter alone, so the last sum is kept.
class ExponentialSum {
 public:
  void add(const std::vector<double>& y, const std::vector<double>& f) {
    for (const double t : y) largest_ = std::max(largest_, t);
    y_.insert(y_.end(), y.begin(), y.end());
    f_.insert(f_.end(), f.begin(), f.end());
  }

  /// The sum of f exp(k (y - m)).
  double at(double k, double m) {
    if (y_.empty()) return 0;
    if (k != k_) {
      relative_ =
          laneSumOver(y_.size(), [&](std::size_t i) { return f_[i] * std::exp(k * (y_[i] - largest_)); });
      k_ = k;
    }
    return checked::finite(relative_ * checked::exp(k * (largest_ - m)));
  }

 private:
  std::vector<double> y_;
  std::vector<double> f_;
  double largest_ = -std::numeric_limits<double>::infinity();
  double k_ = NoValue;
  double relative_ = 0;
};

/// A life distribution over the rows of a data set.
class LifeLikelihood : public Objective {
 public:
  explicit LifeLikelihood(DoubleArray hold) : hold_(std::move(hold)) {}

  double operator()(DoubleArray& P) final { return checked::finite(-logLikelihood(P)); }

 protected:
  double parameter(const DoubleArray& P, Index k) const { return parameterOf(P, hold_, k); }
  double magnitude(const DoubleArray& P, Index k) const { return std::abs(parameter(P, k)); }

 private:
  virtual double logLikelihood(const DoubleArray& P) = 0;

  DoubleArray hold_;
};

/// Sums over the rows of a kind, each row weighted by its frequency.
template <class Term>
double over(const WeightedTimes& rows, Term term) {
  return laneSumOver(rows.time.size(), [&](std::size_t i) { return rows.frequency[i] * term(rows.time[i]); });
}
template <class Term>
double over(const WeightedSpans& rows, Term term) {
  return laneSumOver(rows.start.size(),
                     [&](std::size_t i) { return rows.frequency[i] * term(rows.start[i], rows.end[i]); });
}

std::vector<double> logarithms(const std::vector<double>& times) {
  std::vector<double> result;
  result.reserve(times.size());
  for (const double t : times) result.push_back(logTime(t));
  return result;
}

/// Scale alpha, shape beta.
class WeibullLikelihood : public LifeLikelihood {
 public:
  WeibullLikelihood(LifeRows rows, const DoubleArray& hold) : LifeLikelihood(hold), rows_(std::move(rows)) {
    const std::vector<double> lnExact = logarithms(rows_.exact.time);
    exactFrequency_ = sum(rows_.exact.frequency);
    exactLn_ = laneProduct(rows_.exact.frequency, lnExact);
    hazards_.add(lnExact, rows_.exact.frequency);
    hazards_.add(logarithms(rows_.right.time), rows_.right.frequency);
  }

 private:
  double logLikelihood(const DoubleArray& P) override {
    const double alpha = magnitude(P, 1);
    const double beta = magnitude(P, 2);
    const double lnAlpha = checked::log(alpha);
    const double c = checked::log(beta) - beta * lnAlpha;
    const auto hazard = [&](double t) { return checked::power(checked::quotient(t, alpha), beta); };
    return (beta - 1) * exactLn_ + c * exactFrequency_ - hazards_.at(beta, lnAlpha) +
           over(rows_.left, [&](double e) { return logFailure(hazard(e)); }) +
           over(rows_.interval, [&](double s, double e) {
             const double growth = s == 0 ? hazard(e) : hazardGrowth(hazard(e), beta * logRatio(s, e));
             return logSurvivalDifference(hazard(s), growth);
           });
  }

  LifeRows rows_;
  double exactFrequency_ = 0;
  double exactLn_ = 0;
  ExponentialSum hazards_;
};

/// Mean theta.
class ExponentialLikelihood : public LifeLikelihood {
 public:
  ExponentialLikelihood(LifeRows rows, const DoubleArray& hold)
      : LifeLikelihood(hold), rows_(std::move(rows)) {
    exactFrequency_ = sum(rows_.exact.frequency);
    lived_ = laneProduct(rows_.exact.frequency, rows_.exact.time) +
             laneProduct(rows_.right.frequency, rows_.right.time);
  }

 private:
  double logLikelihood(const DoubleArray& P) override {
    const double theta = parameter(P, 1);
    return -checked::log(theta) * exactFrequency_ - lived_ / theta +
           over(rows_.left, [&](double e) { return logFailure(e / theta); }) +
           over(rows_.interval,
                [&](double s, double e) { return logSurvivalDifference(s / theta, (e - s) / theta); });
  }

  LifeRows rows_;
  double exactFrequency_ = 0;
  double lived_ = 0;
};

/// Location mu, scale sigma.
class ExtremeValueLikelihood : public LifeLikelihood {
 public:
  ExtremeValueLikelihood(LifeRows rows, const DoubleArray& hold)
      : LifeLikelihood(hold), rows_(std::move(rows)) {
    exactFrequency_ = sum(rows_.exact.frequency);
    exactSum_ = laneProduct(rows_.exact.frequency, rows_.exact.time);
    hazards_.add(rows_.exact.time, rows_.exact.frequency);
    hazards_.add(rows_.right.time, rows_.right.frequency);
  }

 private:
  double logLikelihood(const DoubleArray& P) override {
    const double mu = parameter(P, 1);
    const double sigma = magnitude(P, 2);
    const double perSigma = checked::quotient(1, sigma);
    const families::ExtremeValue family(checked::log(sigma));
    // A hazard of 0 in doubles has no logarithm; the earliest failure has the least.
    if (!rows_.exact.time.empty()) checked::log(checked::exp((rows_.exact.time.front() - mu) * perSigma));
    return (exactSum_ - mu * exactFrequency_) * perSigma - checked::log(sigma) * exactFrequency_ -
           hazards_.at(perSigma, mu) +
           over(rows_.left, [&](double e) { return family.left((e - mu) / sigma); }) +
           over(rows_.interval, [&](double s, double e) {
             return family.interval((s - mu) / sigma, (e - mu) / sigma, (e - s) / sigma);
           });
  }

  LifeRows rows_;
  double exactFrequency_ = 0;
  double exactSum_ = 0;
  ExponentialSum hazards_;
};

/// Times on the logarithmic scale, where the model has it. A time of 0 tells nothing there: its row is left
/// out, and a span that starts at 0 is one that is known by its end.
LifeRows onLogScale(LifeRows rows) {
  const auto takeLogarithms = [](WeightedTimes& kind) {
    WeightedTimes kept;
    for (std::size_t i = 0; i < kind.time.size(); ++i) {
      if (kind.time[i] == 0) continue;
      kept.time.push_back(logTime(kind.time[i]));
      kept.frequency.push_back(kind.frequency[i]);
    }
    kind = std::move(kept);
  };
  WeightedSpans spans;
  for (std::size_t i = 0; i < rows.interval.start.size(); ++i) {
    if (rows.interval.start[i] == 0) {
      rows.left.time.push_back(rows.interval.end[i]);
      rows.left.frequency.push_back(rows.interval.frequency[i]);
      continue;
    }
    spans.start.push_back(logTime(rows.interval.start[i]));
    spans.end.push_back(logTime(rows.interval.end[i]));
    spans.frequency.push_back(rows.interval.frequency[i]);
  }
  rows.interval = std::move(spans);
  takeLogarithms(rows.exact);
  takeLogarithms(rows.right);
  takeLogarithms(rows.left);
  return rows;
}

/// Mean and standard deviation of the time, or of its logarithm.
class NormalLikelihood : public LifeLikelihood {
 public:
  NormalLikelihood(LifeRows rows, const DoubleArray& hold, bool logScale)
      : LifeLikelihood(hold), host_(runningHost()), rows_(std::move(rows)), logScale_(logScale) {
    const auto& [time, frequency] = rows_.exact;
    exactFrequency_ = sum(frequency);
    if (exactFrequency_ == 0) return;
    exactMean_ = laneProduct(frequency, time) / exactFrequency_;
    squares_ = over(rows_.exact, [this](double y) { return RSSqr(y - exactMean_); });
  }

 private:
  double logLikelihood(const DoubleArray& P) override {
    const double mu = parameter(P, 1);
    double sigma = magnitude(P, 2);
    if (logScale_ && sigma == 0) sigma = roundingUnit;
    const families::NormalFamily family(host_->worksheetFunction(), checked::log(sigma));
    const double perSigma = checked::quotient(1, sigma);
    const auto z = [&](double y) { return (y - mu) * perSigma; };
    double result = exactFrequency_ * family.exact(z(exactMean_)) - squares_ / 2 * RSSqr(perSigma);
    if (logScale_) result -= exactMean_ * exactFrequency_;
    return result + over(rows_.right, [&](double s) { return family.right(z(s)); }) +
           over(rows_.left, [&](double e) { return family.left(z(e)); }) +
           over(rows_.interval,
                [&](double s, double e) { return family.interval(z(s), z(e), (e - s) * perSigma); });
  }

  std::shared_ptr<Host> host_;
  LifeRows rows_;
  bool logScale_;
  double exactFrequency_ = 0;
  double exactMean_ = 0;
  double squares_ = 0;
};

/// Sums of f ln(1 + exp(z)). A unit that stands alone costs no logarithm of its own: the factors 1 +
/// exp(-|z|), none above 2, are multiplied for many units before one is taken.
class SoftplusSum {
 public:
  explicit SoftplusSum(const WeightedTimes& rows) {
    for (std::size_t i = 0; i < rows.time.size(); ++i) {
      WeightedTimes& kind = rows.frequency[i] == 1 ? single_ : several_;
      kind.time.push_back(rows.time[i]);
      kind.frequency.push_back(rows.frequency[i]);
    }
  }

  template <class Standardised>
  double at(Standardised z) const {
    constexpr std::size_t block = 512;
    double result = over(several_, [&](double y) { return families::softplus(z(y)); });
    for (std::size_t from = 0; from < single_.time.size(); from += block) {
      const std::size_t to = std::min(from + block, single_.time.size());
      double positive = 0;
      double factors = 1;
      for (std::size_t i = from; i < to; ++i) {
        const double at = z(single_.time[i]);
        positive += std::max(at, 0.0);
        factors *= 1 + std::exp(-std::abs(at));
      }
      result += positive + std::log(factors);
    }
    return result;
  }

 private:
  WeightedTimes single_;
  WeightedTimes several_;
};

/// Location and scale of the time, or of its logarithm.
class LogisticLikelihood : public LifeLikelihood {
 public:
  LogisticLikelihood(LifeRows rows, const DoubleArray& hold, bool logScale)
      : LifeLikelihood(hold),
        rows_(std::move(rows)),
        exact_(rows_.exact),
        right_(rows_.right),
        logScale_(logScale) {
    exactFrequency_ = sum(rows_.exact.frequency);
    exactSum_ = laneProduct(rows_.exact.frequency, rows_.exact.time);
  }

 private:
  double logLikelihood(const DoubleArray& P) override {
    const double mu = parameter(P, 1);
    double sigma = magnitude(P, 2);
    if (logScale_ && sigma == 0) sigma = roundingUnit;
    const double perSigma = checked::quotient(1, sigma);
    const double lnSigma = checked::log(sigma);
    const families::LogisticFamily family(lnSigma);
    const auto z = [&](double y) { return (y - mu) * perSigma; };
    return (exactSum_ - mu * exactFrequency_) * perSigma - lnSigma * exactFrequency_ - 2 * exact_.at(z) -
           right_.at(z) + over(rows_.left, [&](double e) { return family.left(z(e)); }) +
           over(rows_.interval,
                [&](double s, double e) { return family.interval(z(s), z(e), (e - s) * perSigma); });
  }

  LifeRows rows_;
  SoftplusSum exact_;
  SoftplusSum right_;
  bool logScale_;
  double exactFrequency_ = 0;
  double exactSum_ = 0;
};

}  // namespace

std::unique_ptr<Objective> lifeLikelihood(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                                          std::string_view dist, const DoubleArray& hold) {
  const auto rows = [&] { return lifeRows(SA, EA, FA); };
  if (dist == "Weibull") return std::make_unique<WeibullLikelihood>(rows(), hold);
  if (dist == "Smallest Extreme Value") return std::make_unique<ExtremeValueLikelihood>(rows(), hold);
  if (dist == "Exponential") return std::make_unique<ExponentialLikelihood>(rows(), hold);
  if (dist == "Normal") return std::make_unique<NormalLikelihood>(rows(), hold, false);
  if (dist == "Lognormal") return std::make_unique<NormalLikelihood>(onLogScale(rows()), hold, true);
  if (dist == "Logistic") return std::make_unique<LogisticLikelihood>(rows(), hold, false);
  if (dist == "Loglogistic") return std::make_unique<LogisticLikelihood>(onLogScale(rows()), hold, true);
  return nullptr;
}

}  // namespace zelkova
