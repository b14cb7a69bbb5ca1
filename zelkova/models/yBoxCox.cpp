#include "zelkova/models/yBoxCox.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "zelkova/charts/modzControl.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

/// The spread of the scaled transform of a column, as a function of the power.
class ScaledSpread {
 public:
  ScaledSpread(std::span<const double> y, std::span<const std::string> labels)
      : subgroups_(labels.first(y.size())), sums_(static_cast<std::size_t>(subgroups_.count())) {
    df_ = static_cast<double>(y.size()) - (isSubgrouped() ? static_cast<double>(subgroups_.count()) : 1);
    if (df_ == 0) raise(FailureNumber::DivisionByZero, "a single value has no spread");
    logs_.reserve(y.size());
    for (const double value : y) {
      if (value <= 0) raise(FailureNumber::InvalidCall, "a value is not positive");
      logs_.push_back(checked::log(value));
    }
    const double centre = laneSum(logs_, [](double log) { return log; }) / static_cast<double>(y.size());
    geometricMean_ = checked::exp(centre);
    for (double& log : logs_) log -= centre;
    sizes_.resize(sums_.size());
    for (const Index code : subgroups_.codes()) ++sizes_[static_cast<std::size_t>(code)];
    transformed_.resize(y.size());
  }

  double df() const { return df_; }

  /// Infinite where it overflows.
  double operator()(double lambda) {
    // In units of the geometric mean over lambda, and less a constant, which no spread feels: what is left
    // neither overflows early nor cancels next to a lambda of 0.
    std::transform(logs_.begin(), logs_.end(), transformed_.begin(),
                   [lambda](double log) { return lambda == 0 ? log : std::expm1(lambda * log); });
    const double unit = lambda == 0 ? geometricMean_ : geometricMean_ / std::fabs(lambda);
    const double spread = unit * (isSubgrouped() ? pooled() : movingRange());
    return std::isfinite(spread) ? spread : std::numeric_limits<double>::infinity();
  }

 private:
  bool isSubgrouped() const {
    return static_cast<std::size_t>(subgroups_.count()) < subgroups_.codes().size();
  }

  double movingRange() const {
    const std::vector<double>& w = transformed_;
    const double sum = laneSumOver(w.size() - 1, [&w](std::size_t i) { return std::fabs(w[i + 1] - w[i]); });
    return sum / df_ / UnbiasD2(2);
  }

  double pooled() {
    const std::vector<Index>& codes = subgroups_.codes();
    std::fill(sums_.begin(), sums_.end(), 0.0);
    for (std::size_t i = 0; i < codes.size(); ++i) {
      sums_[static_cast<std::size_t>(codes[i])] += transformed_[i];
    }
    for (std::size_t group = 0; group < sums_.size(); ++group) sums_[group] /= sizes_[group];
    const double squares = laneSumOver(codes.size(), [&](std::size_t i) {
      const double deviation = transformed_[i] - sums_[static_cast<std::size_t>(codes[i])];
      return deviation * deviation;
    });
    return std::sqrt(squares / df_) / UnbiasC4(df_ + 1);
  }

  Levels subgroups_;
  double df_;
  std::vector<double> logs_;  ///< less their mean
  double geometricMean_;
  std::vector<double> sizes_;
  std::vector<double> sums_;
  std::vector<double> transformed_;
};

using Curve = std::map<double, double>;

/// The spread at all powers on the way from 5 to the smallest, in three points that walk downhill and close
/// in. Deliberate: the bound of the differences is in the units of the data.
Curve searchedCurve(ScaledSpread& spread) {
  constexpr int mostRounds = 1000;
  const auto isLevel = [](double a, double b) { return std::fabs(a - b) / 20000 <= 1E-7; };

  Curve curve;
  const auto at = [&](double lambda) {
    const auto [point, isNew] = curve.try_emplace(lambda);
    if (isNew) point->second = spread(lambda);
    return point->second;
  };
  double middle = 4;
  double h = 1;
  for (int round = 0; round < mostRounds; ++round) {
    const double above = at(middle + h);
    const double centre = at(middle);
    const double below = at(middle - h);
    if (isLevel(above, centre) && isLevel(centre, below)) break;
    if (std::isfinite(centre) && centre <= above && centre <= below) {
      h /= 2;
    } else {
      middle += above < below ? h : -h;
    }
  }
  std::erase_if(curve, [](const auto& point) { return !std::isfinite(point.second); });
  if (curve.empty()) raise(FailureNumber::Overflow);
  return curve;
}

/// Where a curve that begins at its lowest point first passes `level`; its last power where it never does.
template <class Point>
double powerAtLevel(Point point, Point end, double level) {
  for (Point inner = point++; point != end; inner = point++) {
    if (point->second <= level) continue;
    const double share = checked::quotient(level - inner->second, point->second - inner->second);
    return inner->first + share * (point->first - inner->first);
  }
  return std::prev(end)->first;
}

DoubleArray powers(const DoubleArray& y, double power) {
  DoubleArray result(y.rows());
  std::transform(y.vector().begin(), y.vector().end(), result.vector().begin(), [power](double value) {
    return power == 0 ? checked::log(value) : checked::power(value, power);
  });
  return result;
}

}  // namespace

void yBoxCox::BoxcoxOutput(const DoubleArray& dy, const StringArray& dx, bool Transform,
                           const std::string& SpecifyLamda, double& lambda, double& MinimumSD, double& CISD,
                           double& LambdaLower, double& LambdaUpper, DoubleArray& DataX, DoubleArray& DataY,
                           DoubleArray& Transformed) const {
  if (dx.vector().size() < dy.vector().size()) {
    raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  }
  ScaledSpread spread(dy.vector(), dx.vector());
  const Curve curve = searchedCurve(spread);
  const auto best = std::min_element(curve.begin(), curve.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  // Deliberate: over m, not over its root.
  const double limit =
      checked::finite(best->second + worksheetFunction().TInv(0.05, spread.df()) / spread.df());
  const double lower = powerAtLevel(std::make_reverse_iterator(std::next(best)), curve.rend(), limit);
  const double upper = powerAtLevel(best, curve.end(), limit);
  DoubleArray curvePowers(static_cast<Index>(curve.size()));
  DoubleArray curveSpreads(static_cast<Index>(curve.size()));
  std::transform(curve.begin(), curve.end(), curvePowers.vector().begin(),
                 [](const auto& point) { return point.first; });
  std::transform(curve.begin(), curve.end(), curveSpreads.vector().begin(),
                 [](const auto& point) { return point.second; });
  DoubleArray transformed;
  if (Transform) {
    transformed = powers(dy, givenNumber(SpecifyLamda, "SpecifyLamda").value_or(best->first));
  }

  lambda = best->first;
  MinimumSD = best->second;
  CISD = limit;
  LambdaLower = lower;
  LambdaUpper = upper;
  DataX = std::move(curvePowers);
  DataY = std::move(curveSpreads);
  Transformed = std::move(transformed);
}

}  // namespace zelkova
