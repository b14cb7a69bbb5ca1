#include "zelkova/reliability/LifeDistribution.h"

#include <cmath>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/modzRSAP.h"

namespace zelkova {

namespace {

/// ln(1 - p), from p itself.
double logComplement(double p) {
  if (!(p < 1)) raise(FailureNumber::InvalidCall);
  return std::log1p(-p);
}

double logit(double p) { return checked::log(p) - logComplement(p); }

bool isNormalFamily(LifeDistribution dist) {
  return dist == LifeDistribution::Normal || dist == LifeDistribution::Lognormal;
}

/// Euler's constant. deliberate: of four decimals, as the tables of this distribution print it.
constexpr double eulers = 0.5772;

}  // namespace

std::optional<LifeDistribution> lifeDistribution(std::string_view dist) {
  using enum LifeDistribution;
  constexpr std::pair<std::string_view, LifeDistribution> names[] = {
      {"Weibull", Weibull},         {"Smallest Extreme Value", SmallestExtremeValue},
      {"Exponential", Exponential}, {"Normal", Normal},
      {"Lognormal", Lognormal},     {"Logistic", Logistic},
      {"Loglogistic", Loglogistic}};
  for (const auto& [name, named] : names) {
    if (name == dist) return named;
  }
  return std::nullopt;
}

double plotScore(WorksheetFunction& host, LifeDistribution dist, double p) {
  switch (dist) {
    case LifeDistribution::Weibull:
    case LifeDistribution::SmallestExtremeValue:
    case LifeDistribution::Exponential:
      return checked::log(-logComplement(p));
    case LifeDistribution::Normal:
    case LifeDistribution::Lognormal:
      return host.NormSInv(p);
    case LifeDistribution::Logistic:
    case LifeDistribution::Loglogistic:
      break;
  }
  return logit(p);
}

double Life::score(double p) const {
  if (dist_ == LifeDistribution::Exponential) return -logComplement(p);
  return plotScore(*host_, dist_, p);
}

double Life::quantile(double p) const {
  const double w = score(p);
  switch (dist_) {
    case LifeDistribution::Weibull:
      return para1_ * checked::exp(checked::quotient(w, para2_));
    case LifeDistribution::Exponential:
      return checked::finite(para1_ * w);
    case LifeDistribution::Lognormal:
    case LifeDistribution::Loglogistic:
      return checked::exp(para1_ + para2_ * w);
    default:
      return checked::finite(para1_ + para2_ * w);
  }
}

double Life::standardised(double t) const {
  if (isNormalFamily(dist_) && !(para2_ > 0)) {
    raise(FailureNumber::InvalidCall, "the standard deviation is not positive");
  }
  switch (dist_) {
    case LifeDistribution::Weibull:
      return para2_ * (logTime(t) - checked::log(para1_));
    case LifeDistribution::Exponential:
      return logTime(t) - checked::log(para1_);
    case LifeDistribution::Lognormal:
    case LifeDistribution::Loglogistic:
      return checked::quotient(logTime(t) - para1_, para2_);
    default:
      return checked::quotient(t - para1_, para2_);
  }
}

double Life::survivalAt(double u) const {
  switch (dist_) {
    case LifeDistribution::Normal:
    case LifeDistribution::Lognormal:
      return host_->NormSDist(-u);
    case LifeDistribution::Logistic:
    case LifeDistribution::Loglogistic:
      return 1 / (1 + std::exp(u));
    default:
      return std::exp(-std::exp(u));
  }
}

double Life::survival(double t) const {
  if (dist_ == LifeDistribution::Exponential) return checked::exp(-checked::quotient(t, para1_));
  return survivalAt(standardised(t));
}

double Life::failure(double t) const {
  if (dist_ == LifeDistribution::Exponential) return -std::expm1(-checked::quotient(t, para1_));
  const double u = standardised(t);
  switch (dist_) {
    case LifeDistribution::Normal:
    case LifeDistribution::Lognormal:
      return host_->NormSDist(u);
    case LifeDistribution::Logistic:
    case LifeDistribution::Loglogistic:
      return 1 / (1 + std::exp(-u));
    default:
      return -std::expm1(-std::exp(u));
  }
}

double Life::density(double t) const {
  if (dist_ == LifeDistribution::Exponential) return checked::quotient(survival(t), para1_);
  const double u = standardised(t);
  // The derivative of the standardised time: 1 / sigma, over t where the scale is logarithmic.
  double slope = dist_ == LifeDistribution::Weibull ? para2_ : checked::quotient(1, para2_);
  if (worksOnLogarithms(dist_)) slope = checked::quotient(slope, t);
  switch (dist_) {
    case LifeDistribution::Normal:
    case LifeDistribution::Lognormal:
      return slope * host_->NormDist(u, 0, 1, false);
    case LifeDistribution::Logistic:
    case LifeDistribution::Loglogistic: {
      const double tail = std::exp(-std::abs(u));
      return slope * tail / RSSqr(1 + tail);
    }
    default:
      return slope * std::exp(u - std::exp(u));
  }
}

double Life::mean() const {
  switch (dist_) {
    case LifeDistribution::Weibull:
      return para1_ * checked::exp(host_->GammaLn(1 + checked::quotient(1, para2_)));
    case LifeDistribution::SmallestExtremeValue:
      return checked::finite(para1_ - eulers * para2_);
    case LifeDistribution::Lognormal:
      return checked::exp(para1_ + para2_ * para2_ / 2);
    case LifeDistribution::Loglogistic:
      if (para2_ >= 1) return NoValue;
      return checked::exp(para1_ + host_->GammaLn(1 + para2_) + host_->GammaLn(1 - para2_));
    default:
      return para1_;
  }
}

double Life::standardDeviation() const {
  switch (dist_) {
    case LifeDistribution::Weibull: {
      const double first = host_->GammaLn(1 + checked::quotient(1, para2_));
      const double second = host_->GammaLn(1 + 2 / para2_);
      // Gamma(1 + 2 / beta) - Gamma(1 + 1 / beta)^2, as a share of the second: it nearly cancels for large
      // shapes.
      return para1_ * checked::exp(first) * checked::root(std::expm1(std::max(0.0, second - 2 * first)));
    }
    case LifeDistribution::Exponential:
      return para1_;
    case LifeDistribution::SmallestExtremeValue:
      return checked::root(RSSqr(RSPi() * para2_) / 6);
    case LifeDistribution::Normal:
      return para2_;
    case LifeDistribution::Lognormal:
      return checked::root(checked::exp(2 * para1_ + para2_ * para2_) *
                           checked::finite(std::expm1(para2_ * para2_)));
    case LifeDistribution::Logistic:
      return checked::root(RSSqr(RSPi() * para2_) / 3);
    case LifeDistribution::Loglogistic:
      break;
  }
  if (para2_ >= 0.5) return NoValue;
  const double first = host_->GammaLn(1 + para2_) + host_->GammaLn(1 - para2_);
  const double second = host_->GammaLn(1 + 2 * para2_) + host_->GammaLn(1 - 2 * para2_);
  return checked::exp(para1_ + first) * checked::root(std::expm1(std::max(0.0, second - 2 * first)));
}

}  // namespace zelkova
