#include <algorithm>
#include <cmath>
#include <string_view>

#include "zelkova/frame/TestType.h"
#include "zelkova/power/planning.h"
#include "zelkova/power/yPASS.h"

namespace zelkova {

using power::agrees;
using power::isAlternative;
using power::numbersOf;
using power::rowForEachPair;
using power::sampleSizesOf;
namespace Find = power::Find;

namespace {

struct Setting {
  WorksheetFunction& host;
  double hypothesised;
  std::string_view testType;
  double alpha;
};

void checkProportion(double p, const char* name) {
  if (!(p >= 0 && p <= 1)) {
    raise(FailureNumber::InvalidCall, std::string(name) + " must be a proportion from 0 to 1");
  }
}

/// Standard deviations of the difference, times the root of the sample size.
struct Spread {
  double underHypothesis, underAlternative;
};

Spread oneProportion(double p, double p0) {
  return {checked::root(p0 * (1 - p0)), checked::root(p * (1 - p))};
}

Spread twoProportions(double p, double p0) {
  const double mean = (p + p0) / 2;
  return {checked::root(2 * mean * (1 - mean)), checked::root(p * (1 - p) + p0 * (1 - p0))};
}

template <Spread spreadOf(double, double)>
class ProportionTest {
 public:
  explicit ProportionTest(const Setting& setting) : s_(setting) {
    checkProportion(s_.hypothesised, "dHp");
    z_ = s_.host.NormSInv(s_.testType == TestType::NotEquals ? s_.alpha / 2 : s_.alpha);
  }

  double difference(double p) const { return p - s_.hypothesised; }

  double power(double p, double n) const {
    checkProportion(p, "aP");
    const Spread spread = spreadOf(p, s_.hypothesised);
    // deliberate: only the near tail counts in the two-sided test too, as the sample size below has it.
    const double shift = std::abs(difference(p)) * checked::root(n) + z_ * spread.underHypothesis;
    return s_.host.NormSDist(checked::quotient(shift, spread.underAlternative));
  }

  double sampleSize(double p, double target) const {
    checkProportion(p, "aP");
    const Spread spread = spreadOf(p, s_.hypothesised);
    const double zp = s_.host.NormSInv(1 - target);
    const double root = zp * spread.underAlternative + z_ * spread.underHypothesis;
    return s_.host.RoundUp(checked::quotient(root * root, difference(p) * difference(p)), 0);
  }

  /// The proportion on one side of the hypothesised one, 1 above and -1 below, at which the power is
  /// `target`: the middle of the first step with the target between the powers of its ends.
  double solution(double n, double target, int side) const {
    constexpr int stepsPerUnit = 10000;
    const auto at = [&](int steps) {
      return s_.hypothesised + side * static_cast<double>(steps) / stepsPerUnit;
    };
    // Of an end of the scale that rounding moved, too.
    const auto isInside = [](double p) { return p > 1e-9 && p < 1 - 1e-9; };

    if (!isInside(at(1))) return NoValue;
    double previous = power(at(1), n);
    for (int round = 1; round <= stepsPerUnit && isInside(at(round + 1)); ++round) {
      const double next = power(at(round + 1), n);
      if (target >= std::min(previous, next) && target <= std::max(previous, next)) {
        return (at(round) + at(round + 1)) / 2;
      }
      previous = next;
    }
    return NoValue;
  }

 private:
  Setting s_;
  double z_;
};

template <class Test>
DoubleArray plan(const std::string& obj, const std::string& SSize, const std::string& aP,
                 const std::string& Power, const Setting& setting) {
  const Test test(setting);
  if (obj == Find::SampleSize) {
    return rowForEachPair(ProportionsSampleSize::size, numbersOf(aP, "aP"), numbersOf(Power, "Power"),
                          [&](DoubleArray& table, Index row, double p, double target) {
                            if (!agrees(test.difference(p), setting.testType) || target <= setting.alpha)
                              return;
                            const double n = test.sampleSize(p, target);
                            table(row, ProportionsSampleSize::P) = p;
                            table(row, ProportionsSampleSize::SampleSize) = n;
                            table(row, ProportionsSampleSize::TargetPower) = target;
                            table(row, ProportionsSampleSize::ActualPower) = test.power(p, n);
                          });
  }
  if (obj == Find::Difference) {
    return rowForEachPair(ProportionsSolution::size, sampleSizesOf(SSize), numbersOf(Power, "Power"),
                          [&](DoubleArray& table, Index row, double n, double target) {
                            if (!isAlternative(setting.testType) || target <= setting.alpha) return;
                            table(row, ProportionsSolution::SampleSize) = n;
                            table(row, ProportionsSolution::TargetPower) = target;
                            if (agrees(-1, setting.testType)) {
                              table(row, ProportionsSolution::LowerP) = test.solution(n, target, -1);
                            }
                            if (agrees(1, setting.testType)) {
                              table(row, ProportionsSolution::UpperP) = test.solution(n, target, 1);
                            }
                          });
  }
  if (obj == Find::Power) {
    return rowForEachPair(ProportionsPower::size, numbersOf(aP, "aP"), sampleSizesOf(SSize),
                          [&](DoubleArray& table, Index row, double p, double n) {
                            if (!agrees(test.difference(p), setting.testType)) return;
                            table(row, ProportionsPower::P) = p;
                            table(row, ProportionsPower::SampleSize) = n;
                            table(row, ProportionsPower::Power) = test.power(p, n);
                          });
  }
  return {};
}

}  // namespace

void yPASS::PASSOnePOutput(const std::string& obj, const std::string& SSize, const std::string& aP,
                           const std::string& Power, double dHp, const std::string& TestType, double dSLevel,
                           DoubleArray& PASSOnePValue) const {
  PASSOnePValue = plan<ProportionTest<oneProportion>>(obj, SSize, aP, Power,
                                                      Setting{worksheetFunction(), dHp, TestType, dSLevel});
}

void yPASS::PASSTwoPOutput(const std::string& obj, const std::string& SSize, const std::string& aP,
                           const std::string& Power, double dHp, const std::string& TestType, double dSLevel,
                           DoubleArray& PASSTwoPValue) const {
  PASSTwoPValue = plan<ProportionTest<twoProportions>>(obj, SSize, aP, Power,
                                                       Setting{worksheetFunction(), dHp, TestType, dSLevel});
}

}  // namespace zelkova
