#include "zelkova/gage/yGageAtt.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/SortedLevels.h"

namespace zelkova {

namespace {

constexpr std::string_view aiagMethod = "AIAG method";

/// A reference value and the share of its trials that were accepted.
struct Point {
  double reference;
  double probability;

  bool isExtreme() const { return probability == 0 || probability == 1; }
};

/// The points of all reference values, ascending.
std::vector<Point> pointsOf(std::span<const double> references, std::span<const double> acceptances,
                            std::span<const double> trials) {
  const SortedLevels<double> levels = sortedLevels(references);
  const auto count = static_cast<std::size_t>(levels.count());
  std::vector<double> accepted(count, 0.0);
  std::vector<double> tried(count, 0.0);
  for (std::size_t i = 0; i < acceptances.size(); ++i) {
    if (acceptances[i] < 0) raise(FailureNumber::InvalidCall, "acceptances must not be negative");
    const auto level = static_cast<std::size_t>(levels.codes[i]);
    accepted[level] += acceptances[i];
    tried[level] += trials[i];
  }
  std::vector<Point> points;
  points.reserve(count);
  for (std::size_t k = 0; k < count; ++k) {
    if (tried[k] == 0) raise(FailureNumber::DivisionByZero, "a reference value was never tried");
    points.push_back({levels.values(static_cast<Index>(k) + 1), checked::quotient(accepted[k], tried[k])});
  }
  return points;
}

/// Whether each probability comes `before` the next; neighbours may share one where it is 0 or 1.
template <class Order>
bool isMonotone(const std::vector<Point>& points, Order before) {
  const auto breaks = [before](const Point& a, const Point& b) {
    if (a.probability == b.probability) return !a.isExtreme();
    return !before(a.probability, b.probability);
  };
  return std::adjacent_find(points.begin(), points.end(), breaks) == points.end();
}

/// What is wrong with the direction of the probabilities; empty where nothing is.
std::string faultOfDirection(const std::vector<Point>& points, const std::string& toleranceType) {
  if (toleranceType == "Upper limit") {
    if (isMonotone(points, std::greater<>())) return {};
    return "To use the upper limit, the probability of acceptance should decrease as reference value "
           "increases.";
  }
  if (isMonotone(points, std::less<>())) return {};
  return "To use the lower limit, the probability of acceptance should increase as reference value "
         "increases.";
}

/// What is wrong with the design; empty where nothing is.
std::string faultOf(const std::vector<Point>& points, const std::string& toleranceType,
                    const std::string& method) {
  const auto countOf = [&](double probability) {
    return std::count_if(points.begin(), points.end(),
                         [=](const Point& point) { return point.probability == probability; });
  };
  const Index never = countOf(0);
  const Index always = countOf(1);
  if (never < 1 || always < 1) {
    return "Requires 2 extreme probabilities of acceptance (0 and 1) at the smallest and largest reference "
           "values";
  }
  const auto distinct = static_cast<Index>(points.size());
  if (distinct < 8) return "Requires at least 8 distinct reference values";
  const Index between = distinct - never - always;
  if (method == aiagMethod) {
    if (between != 6) {
      return "Requires at exactly 6 other distinct probabilities of acceptance in between the extremes";
    }
  } else if (between < 6) {
    return "Requires at least 6 other distinct probabilities of acceptance in between the extremes";
  }
  return faultOfDirection(points, toleranceType);
}

/// The correction for continuity of the AIAG method, half of one acceptance in twenty trials. Deliberate: the
/// same whatever the number of trials.
double towardsHalf(double probability) {
  constexpr double step = 0.025;
  if (probability < 0.5) return probability + step;
  if (probability > 0.5) return probability - step;
  return probability;
}

/// A straight line by least squares, about the mean of x so that references far from 0 keep their digits.
struct Line {
  Line(std::span<const double> x, std::span<const double> y) : n(static_cast<double>(x.size())) {
    for (const double value : x) meanX += value / n;
    for (const double value : y) meanY += value / n;
    double products = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      squaresX += (x[i] - meanX) * (x[i] - meanX);
      products += (x[i] - meanX) * (y[i] - meanY);
    }
    slope = checked::quotient(products, squaresX);
    for (std::size_t i = 0; i < x.size(); ++i) {
      const double residual = y[i] - at(x[i]);
      sse += residual * residual;
    }
  }

  double at(double x) const { return meanY + slope * (x - meanX); }

  /// Where the line is 0.
  double root() const { return meanX - checked::quotient(meanY, slope); }

  /// The standard error of the line at `x`.
  double standardError(double x) const {
    const double s = checked::root(sse / (n - 2));
    return s * checked::root(1 / n + checked::quotient((x - meanX) * (x - meanX), squaresX));
  }

  double n;
  double meanX = 0;
  double meanY = 0;
  double squaresX = 0;
  double slope = 0;
  double sse = 0;
};

/// What the curve tells about the gage.
DoubleArray assess(WorksheetFunction& host, const Line& line, double limit, const std::string& method) {
  const double half = line.root();
  const double bias = half - limit;
  DoubleArray result(GageAttribute::size, NoValue);
  result(GageAttribute::N) = line.n;
  result(GageAttribute::Intercept) = line.at(0);
  result(GageAttribute::Slope) = line.slope;
  result(GageAttribute::Tolerance) = limit;
  result(GageAttribute::ReferenceAtHalf) = half;
  result(GageAttribute::Bias) = bias;
  if (method == aiagMethod) {
    const double spread =
        checked::quotient(host.NormSInv(0.995) - host.NormSInv(0.005), std::abs(line.slope));
    result(GageAttribute::Repeatability) = spread / 1.08;
    result(GageAttribute::T) = 31.3 * checked::quotient(std::abs(bias), result(GageAttribute::Repeatability));
  } else if (method == "Regression method") {
    result(GageAttribute::Repeatability) = checked::quotient(1, std::abs(line.slope));
    const double se = checked::quotient(line.standardError(half), std::abs(line.slope));
    result(GageAttribute::T) = checked::quotient(bias, se);
  }
  if (result(GageAttribute::T) != NoValue) {
    result(GageAttribute::PValue) = host.TDist(std::abs(result(GageAttribute::T)), line.n - 2, 2);
  }
  return result;
}

}  // namespace

void yGageAtt::GageAttributeOutput(const StringArray& /*dpart*/, const DoubleArray& dstd,
                                   const DoubleArray& dy, const DoubleArray& dtrial,
                                   const std::string& Tolerance_Type, const std::string& Tolerance,
                                   const std::string& Method, DoubleArray& AttributeValue,
                                   DoubleArray& Refarray, DoubleArray& Zarray, DoubleArray& Fittedarray,
                                   DoubleArray& Probarray, std::string& ErrorCode) const {
  if (trimmed(Tolerance).empty() || trimmed(Tolerance_Type).empty()) {
    ErrorCode = "Tolerance limit not provided";
    return;
  }
  const std::span<const double> acceptances = dy.vector();
  const std::span<const double> references = firstRows(dstd, dy.rows(), "dstd");
  const std::span<const double> trials = firstRows(dtrial, dy.rows(), "dtrial");
  for (std::size_t i = 0; i < acceptances.size(); ++i) {
    if (acceptances[i] > trials[i]) {
      ErrorCode = "No. of trials must be >= no. of acceptances";
      return;
    }
  }
  const std::vector<Point> points = pointsOf(references, acceptances, trials);
  if (std::string fault = faultOf(points, Tolerance_Type, Method); !fault.empty()) {
    ErrorCode = std::move(fault);
    return;
  }

  WorksheetFunction& host = worksheetFunction();
  std::vector<double> x, z, p;
  for (const Point& point : points) {
    if (point.isExtreme()) continue;
    x.push_back(point.reference);
    p.push_back(point.probability);
    z.push_back(host.NormSInv(Method == aiagMethod ? towardsHalf(point.probability) : point.probability));
  }
  const Line line(x, z);
  std::vector<double> fitted;
  fitted.reserve(x.size());
  for (const double reference : x) fitted.push_back(line.at(reference));

  DoubleArray result = assess(host, line, toNumber(Tolerance, "Tolerance"), Method);
  checked::leaving(result);
  checked::allFinite(fitted);

  AttributeValue = std::move(result);
  Refarray = DoubleArray(std::move(x));
  Zarray = DoubleArray(std::move(z));
  Fittedarray = DoubleArray(std::move(fitted));
  Probarray = DoubleArray(std::move(p));
}

}  // namespace zelkova
