#include "zelkova/logistic/links.h"

#include "zelkova/frame/arithmetic.h"

namespace zelkova {

Link::Kind Link::kindOf(const std::string& link_f) {
  if (link_f == "Logit") return Kind::Logit;
  if (link_f == "Normit") return Kind::Normit;
  if (link_f == "Gompit") return Kind::Gompit;
  // deliberate: such a link is 0 everywhere, and the first step of its fit divides by it.
  raise(FailureNumber::DivisionByZero, "link_f must be Logit, Normit or Gompit");
}

Link::Link(WorksheetFunction& host, const std::string& link_f)
    : host_(host), kind_(kindOf(link_f)), normalPeak_(1 / std::sqrt(2 * host.Pi())) {}

Probability Link::LinkCDF(double eta) const {
  switch (kind_) {
    case Kind::Logit: {
      const double odds = std::exp(-std::abs(eta));
      const double larger = 1 / (1 + odds);
      const double smaller = odds * larger;
      return eta < 0 ? Probability{smaller, larger} : Probability{larger, smaller};
    }
    case Kind::Normit:
      return {host_.NormSDist(eta), host_.NormSDist(-eta)};
    case Kind::Gompit: {
      const double hazard = std::exp(eta);
      return {-std::expm1(-hazard), std::exp(-hazard)};
    }
  }
  return {};
}

double Link::density(double eta, const Probability& fitted) const {
  switch (kind_) {
    case Kind::Logit:
      return fitted.p * fitted.complement;
    case Kind::Normit:
      return normalPeak_ * std::exp(-eta * eta / 2);
    case Kind::Gompit:
      return std::exp(eta - std::exp(eta));
  }
  return 0;
}

double Link::LinkInverse(double p) const {
  p = std::clamp(p, probabilityGuard, 1 - probabilityGuard);
  switch (kind_) {
    case Kind::Logit:
      return checked::log(p / (1 - p));
    case Kind::Normit:
      return host_.NormSInv(p);
    case Kind::Gompit:
      return checked::log(-std::log1p(-p));
  }
  return 0;
}

}  // namespace zelkova
