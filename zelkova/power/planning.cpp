#include "zelkova/power/planning.h"

#include <algorithm>

#include "zelkova/frame/TestType.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::power {

std::vector<double> numbersOf(std::string_view list, const char* argument) {
  std::vector<double> numbers;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t end = std::min(list.find(',', start), list.size());
    numbers.push_back(toNumber(list.substr(start, end - start), argument));
    start = end + 1;
  }
  return numbers;
}

std::vector<double> sampleSizesOf(std::string_view list) {
  std::vector<double> sizes = numbersOf(list, "SSize");
  for (const double n : sizes) {
    if (n <= 0) raise(FailureNumber::InvalidCall, "SSize must be above 0");
  }
  return sizes;
}

void checkSigma(double dSigma) {
  if (dSigma < 0) raise(FailureNumber::InvalidCall, "dSigma must not be negative");
}

bool agrees(double difference, std::string_view testType) {
  if (testType == TestType::GreaterThan) return difference >= 0;
  if (testType == TestType::LessThan) return difference <= 0;
  return testType == TestType::NotEquals;
}

// A difference of 0 agrees with each of them.
bool isAlternative(std::string_view testType) { return agrees(0, testType); }

void checkReachable(double difference, double target) {
  if (target >= 1) raise(FailureNumber::InvalidCall, "no sample size reaches a power of 1 or more");
  if (difference == 0) {
    raise(FailureNumber::InvalidCall,
          "no sample size reaches the target: the power at a difference of 0 is the significance level");
  }
}

void refuseWalk(double limit, double target) {
  raise(FailureNumber::InvalidCall,
        "no sample size up to " + numberText(limit) + " reaches a power of " + numberText(target));
}

}  // namespace zelkova::power
