#include "zelkova/hypothesis/yRunTest.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzStat.h"

namespace zelkova {

namespace {

/// The number of runs among `count` marks, `isHigh(i)` telling the i-th from 0.
template <class IsHigh>
double runs(std::size_t count, IsHigh isHigh) {
  double result = 1;
  for (std::size_t i = 1; i < count; ++i) {
    if (isHigh(i) != isHigh(i - 1)) ++result;
  }
  return result;
}

}  // namespace

void yRunTest::RunTestOutput(const DoubleArray& dy, DoubleArray& RunTest) const {
  const std::span<const double> values = dy.vector();
  const double median = GetMedian(dy);
  const auto n = static_cast<double>(values.size());
  const auto above =
      static_cast<double>(std::count_if(values.begin(), values.end(), [=](double x) { return x > median; }));
  const double pairs = 2 * above * (n - above);
  const double runsAbout = runs(values.size(), [=](std::size_t i) { return values[i] > median; });
  const double expected = pairs / n + 1;
  const double variance = checked::quotient(pairs * (pairs - n), n * n * (n - 1));

  DoubleArray result(RunsTest::size, NoValue);
  result(RunsTest::N) = n;
  result(RunsTest::K) = median;
  result(RunsTest::Above) = above;
  result(RunsTest::AtOrBelow) = n - above;
  result(RunsTest::Runs) = runsAbout;
  result(RunsTest::ExpectedRuns) = expected;
  result(RunsTest::PClustering) = 1;
  result(RunsTest::PMixtures) = 1;
  if (variance != 0) {
    const double z = (runsAbout - expected) / std::sqrt(variance);
    result(RunsTest::Z) = z;
    result(RunsTest::PClustering) = worksheetFunction().NormSDist(z);
    result(RunsTest::PMixtures) = worksheetFunction().NormSDist(-z);
  }
  if (values.size() >= 3) {
    const double runsUpDown =
        runs(values.size() - 1, [=](std::size_t i) { return values[i + 1] > values[i]; });
    const double expectedUpDown = (2 * n - 1) / 3;
    const double z = (runsUpDown - expectedUpDown) / std::sqrt((16 * n - 29) / 90);
    result(RunsTest::RunsUpDown) = runsUpDown;
    result(RunsTest::ExpectedRunsUpDown) = expectedUpDown;
    result(RunsTest::PTrends) = worksheetFunction().NormSDist(z);
    result(RunsTest::POscillation) = worksheetFunction().NormSDist(-z);
  }
  checked::leaving(result);
  RunTest = std::move(result);
}

}  // namespace zelkova
