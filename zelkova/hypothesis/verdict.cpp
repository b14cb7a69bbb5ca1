#include "zelkova/hypothesis/verdict.h"

#include <cmath>

#include "zelkova/frame/TestType.h"

namespace zelkova::hypothesis {

Reference zReference(WorksheetFunction& host, double z, double CLevel) {
  const double lowerTail = host.NormSDist(std::abs(z));
  const double oneSided = std::abs(host.NormSInv(1 - CLevel));
  const double twoSided = std::abs(host.NormSInv((1 - CLevel) / 2));
  return {lowerTail, 1 - lowerTail, oneSided, twoSided};
}

Verdict judge(WorksheetFunction& host, std::string_view testType, double statistic, double centre, double se,
              double CLevel, const Reference& reference) {
  const auto [l, u, oneSided, twoSided] = reference;
  const double reach = CLevel >= 0.5 ? se * oneSided : -se * oneSided;
  Verdict verdict;
  if (testType == TestType::LessThan) {
    verdict.p = statistic >= 0 ? host.Max(l, u) : host.Min(l, u);
    verdict.upper = centre + reach;
  } else if (testType == TestType::GreaterThan) {
    verdict.p = statistic >= 0 ? host.Min(l, u) : host.Max(l, u);
    verdict.lower = centre - reach;
  } else if (testType == TestType::NotEquals) {
    verdict.p = 2 * host.Min(l, u);
    verdict.lower = centre - se * twoSided;
    verdict.upper = centre + se * twoSided;
  }
  return verdict;
}

}  // namespace zelkova::hypothesis
