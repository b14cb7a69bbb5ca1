#pragma once

#include <string_view>

#include "zelkova/frame/Host.h"

/// From a test statistic to p-value and limits: what the tests on means and on proportions share.
namespace zelkova::hypothesis {

/// A test statistic's two tails and the two factors of its limits.
struct Reference {
  double lowerTail, upperTail;
  double oneSided, twoSided;
};

/// The standard normal reference of `z`. Failure 1004 for a confidence outside (0, 1).
Reference zReference(WorksheetFunction& host, double z, double CLevel);

/// What the alternative decides; 0 where it decides nothing.
struct Verdict {
  double lower = 0, upper = 0, p = 0;
};

/// The p-value, and the limits that lie `se` times the reference's factors about `centre`.
Verdict judge(WorksheetFunction& host, std::string_view testType, double statistic, double centre, double se,
              double CLevel, const Reference& reference);

}  // namespace zelkova::hypothesis
