#include <algorithm>
#include <numeric>
#include <utility>

#include "zelkova/charts/ChartLines.h"
#include "zelkova/charts/Subgroups.h"
#include "zelkova/charts/modzControl.h"
#include "zelkova/charts/moving.h"
#include "zelkova/charts/yControlChart.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

/// Rows that share a mean: those of a part, or of one run of it.
struct Group {
  std::size_t part;
  std::vector<std::size_t> rows;
  std::vector<double> values;
};

/// The number of its run for each of `rows` rows.
std::vector<Index> runCodes(const std::vector<Index>& runStarts, std::size_t rows) {
  std::vector<Index> codes(rows);
  for (const Index start : runStarts) codes[static_cast<std::size_t>(start)] = 1;
  // The first run has number 0.
  codes.front() = 0;
  std::partial_sum(codes.begin(), codes.end(), codes.begin());
  return codes;
}

/// The groups that `codes` number, from 0 on; each lies within a part.
std::vector<Group> groupsOf(std::span<const double> y, const std::vector<Index>& codes, const Levels& parts) {
  std::vector<Group> groups(static_cast<std::size_t>(*std::max_element(codes.begin(), codes.end())) + 1);
  for (std::size_t row = 0; row < y.size(); ++row) {
    Group& group = groups[static_cast<std::size_t>(codes[row])];
    group.part = static_cast<std::size_t>(parts.codes()[row]);
    group.rows.push_back(row);
    group.values.push_back(y[row]);
  }
  return groups;
}

/// The mean of the moving ranges that were added, over d2 of their length; `NoValue` without any.
class MovingRangeSigma {
 public:
  void add(const Group& group, double length) {
    const Index w = control::movingLength(length, static_cast<Index>(group.values.size()));
    const std::vector<double> ranges = control::movingRanges(group.values, w);
    sum_ += laneSum(ranges, [](double x) { return x; });
    count_ += static_cast<double>(ranges.size());
  }

  double sigma(double length) const {
    return count_ == 0 ? NoValue : checked::finite(sum_) / count_ / UnbiasD2(length);
  }

 private:
  double sum_ = 0;
  double count_ = 0;
};

/// A historical value for each part where there is one, else `NoValue`.
std::vector<double> historical(const DoubleArray& values, std::size_t parts) {
  std::vector<double> result(parts, NoValue);
  if (!values.filled()) return result;
  const std::span<const double> given = values.vector();
  if (given.size() < parts) raise(FailureNumber::OutOfRange, "there are fewer historical values than parts");
  std::copy_n(given.begin(), parts, result.begin());
  return result;
}

std::vector<double> constantSigmas(const std::vector<Group>& groups, std::size_t parts, double length) {
  MovingRangeSigma pooled;
  for (const Group& group : groups) pooled.add(group, length);
  std::vector<double> sigmas(parts, pooled.sigma(length));
  return sigmas;
}

std::vector<double> sigmasOfParts(const std::vector<Group>& groups, std::size_t parts, double length) {
  std::vector<MovingRangeSigma> ofParts(parts);
  for (const Group& group : groups) ofParts[group.part].add(group, length);
  std::vector<double> sigmas;
  sigmas.reserve(parts);
  for (const MovingRangeSigma& part : ofParts) sigmas.push_back(part.sigma(length));
  return sigmas;
}

struct StandardisedPoints {
  std::vector<double> z, movingRanges;
};

void addGroup(const Group& group, double mean, double sigma, double length, StandardisedPoints& points) {
  // Values at their mean stand at 0 whether there is a sigma or not: a single row, or rows all alike.
  const bool level =
      std::all_of(group.values.begin(), group.values.end(), [mean](double x) { return x == mean; });
  if (!level && sigma == NoValue) return;
  std::vector<double> z;
  z.reserve(group.values.size());
  for (const double x : group.values) z.push_back(level ? 0 : checked::quotient(x - mean, sigma));
  for (std::size_t i = 0; i < z.size(); ++i) points.z[group.rows[i]] = z[i];

  const Index w = control::movingLength(length, static_cast<Index>(z.size()));
  const std::vector<double> ranges = control::movingRanges(z, w);
  const std::size_t first = z.size() - ranges.size();
  for (std::size_t i = 0; i < ranges.size(); ++i) points.movingRanges[group.rows[first + i]] = ranges[i];
}

/// One of the two charts: the same lines at all points, `sigma` apart.
struct DrawnChart {
  DoubleArray points, centre;
  control::DrawnLimits limits;
};

DrawnChart draw(std::span<const double> points, control::LineAt line, const std::vector<double>& multipliers,
                std::string_view lowerBound, std::string_view upperBound) {
  control::LineCollector chart(points.size());
  constexpr double inSigma = 1;
  chart.add(points, inSigma, [line](std::size_t) { return line; });
  control::DrawnLimits limits = control::drawn(chart.lines(), multipliers, lowerBound, upperBound);
  DrawnChart result{chart.takePlotted(), chart.takeCentre(), std::move(limits)};
  checked::leaving(result.points);
  return result;
}

bool isOneOf(std::string_view text, std::string_view first, std::string_view second) {
  return text == first || text == second;
}

}  // namespace

void yControlChart::ZMROutput(const DoubleArray& dy, const StringArray& dx, const std::string& GroupType,
                              const std::string& SigmaType, double MRLength, DoubleArray& DataY1,
                              DoubleArray& CCL1, DoubleArray& LCL1, DoubleArray& UCL1, DoubleArray& DataY2,
                              DoubleArray& CCL2, DoubleArray& LCL2, DoubleArray& UCL2, DoubleArray& DataX,
                              DoubleArray& PhaseX, DoubleArray& PhaseY, const std::string& LimitPos,
                              const std::string& LCLBound, const std::string& UCLBound,
                              const DoubleArray& HistMean, const DoubleArray& HistSD) const {
  constexpr std::string_view byRuns = "By runs";
  constexpr std::string_view relative = "Relative to size";
  if (!isOneOf(GroupType, byRuns, "By parts")) {
    raise(FailureNumber::InvalidCall, "there is no such way to group");
  }
  if (!isOneOf(SigmaType, "Constant", relative)) {
    raise(FailureNumber::InvalidCall, "there is no such estimate of sigma");
  }

  std::vector<double> y(dy.vector().begin(), dy.vector().end());
  if (SigmaType == relative) {
    for (double& x : y) x = checked::log(x);
  }
  const std::vector<Index> runStarts = control::runStarts(dx.vector(), y.size());
  const Levels parts(dx.vector().first(y.size()));
  const auto partCount = static_cast<std::size_t>(parts.count());
  const std::vector<Group> groups =
      groupsOf(y, GroupType == byRuns ? runCodes(runStarts, y.size()) : parts.codes(), parts);

  const std::vector<double> givenMeans = historical(HistMean, partCount);
  const std::vector<double> givenSigmas = historical(HistSD, partCount);
  const std::vector<double> sigmas = SigmaType == relative ? sigmasOfParts(groups, partCount, MRLength)
                                                           : constantSigmas(groups, partCount, MRLength);
  StandardisedPoints points{std::vector<double>(y.size(), NoValue), std::vector<double>(y.size(), NoValue)};
  for (const Group& group : groups) {
    const double given = givenMeans[group.part];
    const double mean = given == NoValue ? control::meanOf(group.values) : given;
    const double sigma = givenSigmas[group.part] == NoValue ? sigmas[group.part] : givenSigmas[group.part];
    if (sigma < 0) raise(FailureNumber::InvalidCall, "a standard deviation must not be negative");
    addGroup(group, mean, sigma, MRLength, points);
  }

  const std::vector<double> multipliers = control::multipliersOf(LimitPos);
  DrawnChart z = draw(points.z, {0, 1}, multipliers, LCLBound, UCLBound);
  DrawnChart ranges =
      draw(points.movingRanges, {UnbiasD2(MRLength), UnbiasD3(MRLength)}, multipliers, LCLBound, UCLBound);
  control::PhaseDividers phases = control::dividers(runStarts, dy.rows());

  DataX = control::positions(dy.rows());
  DataY1 = std::move(z.points);
  CCL1 = std::move(z.centre);
  LCL1 = std::move(z.limits.lower);
  UCL1 = std::move(z.limits.upper);
  DataY2 = std::move(ranges.points);
  CCL2 = std::move(ranges.centre);
  LCL2 = std::move(ranges.limits.lower);
  UCL2 = std::move(ranges.limits.upper);
  if (phases.x.filled()) {
    PhaseX = std::move(phases.x);
    PhaseY = std::move(phases.y);
  }
}

}  // namespace zelkova
