#include <cmath>
#include <string_view>

#include "zelkova/frame/TestType.h"
#include "zelkova/power/noncentral.h"
#include "zelkova/power/planning.h"
#include "zelkova/power/yPASS.h"

namespace zelkova {

using power::agrees;
using power::Bracketing;
using power::GetNCTDist;
using power::isAlternative;
using power::numbersOf;
using power::rowForEachPair;
using power::sampleSizesOf;
namespace Find = power::Find;

namespace {

/// The arguments that do not vary from row to row.
struct Setting {
  WorksheetFunction& host;
  double sigma;
  std::string_view testType;
  double alpha;
};

/// The z test, in closed form.
class ZTest {
 public:
  explicit ZTest(const Setting& setting) : s_(setting) {
    const double tail = s_.testType == TestType::NotEquals ? s_.alpha / 2 : s_.alpha;
    z_ = s_.host.NormSInv(1 - tail);
  }

  double power(double difference, double n) const {
    // deliberate: only the near tail counts in the two-sided test too, as the sample size below has it.
    const double shift = checked::quotient(checked::root(n), s_.sigma) * std::abs(difference);
    return s_.host.NormSDist(shift - z_);
  }

  double difference(double n, double target) const {
    const double size = (s_.host.NormSInv(target) + z_) * checked::quotient(s_.sigma, checked::root(n));
    return s_.testType == TestType::LessThan ? -size : size;
  }

  std::optional<double> sampleSize(double difference, double target) const {
    const double root = checked::quotient((s_.host.NormSInv(target) + z_) * s_.sigma, difference);
    return std::fmax(s_.host.RoundUp(checked::finite(root * root), 0), 2);
  }

 private:
  Setting s_;
  double z_;
};

struct OneSample {
  static double df(double n) { return n - 1; }
  static double noncentrality(double effect, double n) { return checked::root(n) * effect; }
};

struct TwoSamples {
  static double df(double n) { return 2 * n - 2; }
  static double noncentrality(double effect, double n) {
    return checked::quotient(effect, checked::root(2 / n));
  }
};

/// A t test, by searches.
template <class Samples>
class TTest {
 public:
  explicit TTest(const Setting& setting) : s_(setting) {}

  double power(double difference, double n) const {
    const double df = Samples::df(n);
    const double t = criticalValue(df);
    const double delta = Samples::noncentrality(checked::quotient(difference, s_.sigma), n);
    if (difference == 0) return s_.alpha;
    if (s_.testType == TestType::GreaterThan) return 1 - GetNCTDist(s_.host, t, df, delta);
    if (s_.testType == TestType::LessThan) return GetNCTDist(s_.host, -t, df, delta);
    return GetNCTDist(s_.host, -t, df, delta) + (1 - GetNCTDist(s_.host, t, df, delta));
  }

  double difference(double n, double target) const {
    // deliberate: the start is the square of sigma; it only decides how many rounds there are.
    const double direction = s_.testType == TestType::LessThan ? -1 : 1;
    const Bracketing search{checked::finite(s_.sigma * s_.sigma), direction, 1e-5, 100};
    return power::differenceFor(target, search, [&](double d) { return power(d, n); });
  }

  std::optional<double> sampleSize(double difference, double target) const {
    power::checkReachable(difference, target);
    return power::smallestSampleSize(target, power::largestSampleSize,
                                     [&](double n) { return power(difference, n); });
  }

 private:
  double criticalValue(double df) const {
    if (s_.testType == TestType::NotEquals) return s_.host.TInv(s_.alpha, df);
    // Both tails together, so that one of them is alpha.
    return s_.host.TInv(2 * s_.alpha <= 1 ? 2 * s_.alpha : 2 * (1 - s_.alpha), df);
  }

  Setting s_;
};

template <class Test>
DoubleArray plan(const std::string& obj, const std::string& SSize, const std::string& Diff,
                 const std::string& Power, const Setting& setting) {
  power::checkSigma(setting.sigma);
  const Test test(setting);
  if (obj == Find::SampleSize) {
    return rowForEachPair(MeansSampleSize::size, numbersOf(Diff, "Diff"), numbersOf(Power, "Power"),
                          [&](DoubleArray& table, Index row, double difference, double target) {
                            if (!agrees(difference, setting.testType) || target <= setting.alpha) return;
                            const std::optional<double> n = test.sampleSize(difference, target);
                            if (!n) return;
                            table(row, MeansSampleSize::Diff) = difference;
                            table(row, MeansSampleSize::SampleSize) = *n;
                            table(row, MeansSampleSize::TargetPower) = target;
                            table(row, MeansSampleSize::ActualPower) = test.power(difference, *n);
                          });
  }
  if (obj == Find::Difference) {
    return rowForEachPair(MeansDifference::size, sampleSizesOf(SSize), numbersOf(Power, "Power"),
                          [&](DoubleArray& table, Index row, double n, double target) {
                            if (!isAlternative(setting.testType) || target <= setting.alpha) return;
                            table(row, MeansDifference::SampleSize) = n;
                            table(row, MeansDifference::TargetPower) = target;
                            table(row, MeansDifference::Difference) = test.difference(n, target);
                          });
  }
  if (obj == Find::Power) {
    return rowForEachPair(MeansPower::size, numbersOf(Diff, "Diff"), sampleSizesOf(SSize),
                          [&](DoubleArray& table, Index row, double difference, double n) {
                            if (!agrees(difference, setting.testType)) return;
                            table(row, MeansPower::Diff) = difference;
                            table(row, MeansPower::SampleSize) = n;
                            table(row, MeansPower::Power) = test.power(difference, n);
                          });
  }
  return {};
}

}  // namespace

void yPASS::PASSOneZOutput(const std::string& obj, const std::string& SSize, const std::string& Diff,
                           const std::string& Power, double dSigma, const std::string& TestType,
                           double dSLevel, DoubleArray& PASSOneZValue) const {
  PASSOneZValue =
      plan<ZTest>(obj, SSize, Diff, Power, Setting{worksheetFunction(), dSigma, TestType, dSLevel});
}

void yPASS::PASSOneTOutput(const std::string& obj, const std::string& SSize, const std::string& Diff,
                           const std::string& Power, double dSigma, const std::string& TestType,
                           double dSLevel, DoubleArray& PASSOneTValue) const {
  PASSOneTValue = plan<TTest<OneSample>>(obj, SSize, Diff, Power,
                                         Setting{worksheetFunction(), dSigma, TestType, dSLevel});
}

void yPASS::PASSTwoTOutput(const std::string& obj, const std::string& SSize, const std::string& Diff,
                           const std::string& Power, double dSigma, const std::string& TestType,
                           double dSLevel, DoubleArray& PASSTwoTValue) const {
  PASSTwoTValue = plan<TTest<TwoSamples>>(obj, SSize, Diff, Power,
                                          Setting{worksheetFunction(), dSigma, TestType, dSLevel});
}

}  // namespace zelkova
