#include "zelkova/plots/yBoxplot.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/groups.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/order.h"
#include "zelkova/kit/summary.h"
#include "zelkova/plots/NestedGroups.h"
#include "zelkova/plots/Series.h"

namespace zelkova {

namespace {

using Slot = BoxplotGroup;

/// How far a box and the mark of its median limits reach to either side of its place.
constexpr double halfBox = 0.35;
constexpr double halfLimits = 0.2;

/// Values outside are outliers.
struct Fences {
  double lower, upper;
};

struct Box {
  DoubleArray values = DoubleArray(Slot::size, NoValue);
  Fences fences{};

  double operator()(Slot::Slot slot) const { return values(slot); }
};

/// A value on a fence is inside even where the rounding of decimals put it a little beyond.
Fences fencesOf(double q1, double q3) {
  const double range = checked::finite(q3 - q1);
  const double rounding = 1E-12 * range + 0x1p-48 * std::max(std::abs(q1), std::abs(q3));
  const double reach = 1.5 * range + rounding;
  return {q1 - reach, q3 + reach};
}

Box boxOf(std::vector<double> group, double CLevel) {
  Box box;
  box.values(Slot::N) = static_cast<double>(group.size());
  box.values(Slot::Mean) = summaryOf(group).mean();
  order::sortValues(group);
  const double q1 = summary::lowerQuartile(group);
  const double q3 = summary::upperQuartile(group);
  box.fences = fencesOf(q1, q3);
  const auto inside = std::lower_bound(group.begin(), group.end(), box.fences.lower);
  const auto beyond = std::upper_bound(inside, group.end(), box.fences.upper);
  box.values(Slot::Minimum) = group.front();
  // Quartiles lie between values: the last one within a fence may belong to the inside of the box.
  box.values(Slot::LowerWhisker) = std::min(*inside, q1);
  box.values(Slot::Q1) = q1;
  box.values(Slot::Median) = summary::median(group);
  box.values(Slot::Q3) = q3;
  box.values(Slot::UpperWhisker) = std::max(*std::prev(beyond), q3);
  box.values(Slot::Maximum) = group.back();
  if (group.size() > 1) {
    const summary::Limits limits = summary::medianLimits(group, 100 * CLevel);
    box.values(Slot::MedianLower) = limits.lower;
    box.values(Slot::MedianUpper) = limits.upper;
  }
  box.values(Slot::Outliers) = static_cast<double>((inside - group.begin()) + (group.end() - beyond));
  return box;
}

std::vector<FactorGroups> groupsOf(Index n, const StringArray& dx1, const StringArray& dx2) {
  if (!dx1.filled()) {
    if (dx2.filled()) raise(FailureNumber::InvalidCall, "dx2 is given without dx1");
    return singleGroup(n);
  }
  std::vector<std::span<const std::string>> factors{firstRows(dx1, n, "dx1")};
  if (dx2.filled()) factors.push_back(firstRows(dx2, n, "dx2"));
  return nestedGroups(factors);
}

DoubleArray tableOf(const std::vector<Box>& boxes) {
  DoubleArray table(static_cast<Index>(boxes.size()), Slot::size, NoValue);
  for (Index slot = 1; slot <= Slot::size; ++slot) {
    std::transform(boxes.begin(), boxes.end(), table.column(slot).begin(),
                   [slot](const Box& box) { return box.values(slot); });
  }
  return table;
}

/// The lines of all boxes.
struct Drawing {
  void add(const Box& box, double place) {
    outlines.addRectangle(place - halfBox, box(Slot::Q1), place + halfBox, box(Slot::Q3));
    medians.addLine(place - halfBox, box(Slot::Median), place + halfBox, box(Slot::Median));
    whiskers.addLine(place, box(Slot::Q1), place, box(Slot::LowerWhisker));
    whiskers.addLine(place, box(Slot::Q3), place, box(Slot::UpperWhisker));
    if (box(Slot::MedianLower) == NoValue) {
      for (int slot = 0; slot < 6; ++slot) limits.addGap();
    } else {
      limits.addRectangle(place - halfLimits, box(Slot::MedianLower), place + halfLimits,
                          box(Slot::MedianUpper));
    }
  }

  Series outlines, medians, limits, whiskers;
};

struct Outliers {
  void add(double x, double y, Index box, Index row) {
    points.add(x, y);
    boxes.push_back(static_cast<double>(box));
    rows.push_back(static_cast<double>(row));
  }

  Series points;
  std::vector<double> boxes, rows;
};

/// In the order of the rows.
Outliers outliersOf(std::span<const double> values, const std::vector<Index>& codes,
                    const std::vector<Box>& boxes, const std::vector<double>& places) {
  Outliers outliers;
  for (std::size_t row = 0; row < values.size(); ++row) {
    const auto box = static_cast<std::size_t>(codes[row]);
    const Fences& fences = boxes[box].fences;
    if (values[row] >= fences.lower && values[row] <= fences.upper) continue;
    outliers.add(places[box], values[row], codes[row] + 1, static_cast<Index>(row) + 1);
  }
  return outliers;
}

/// The labels of the boxes by `dx1` and, where there are two factors, by `dx2`.
struct BoxLabels {
  StringArray first, second;
};

BoxLabels labelsOf(const std::vector<FactorGroups>& nested) {
  const FactorGroups& groups = nested.back();
  if (nested.size() == 1) return {StringArray(groups.labels), {}};
  StringArray outer(groups.count());
  for (Index box = 1; box <= groups.count(); ++box) {
    const Index parent = groups.parents[static_cast<std::size_t>(box - 1)];
    outer(box) = nested.front().labels[static_cast<std::size_t>(parent)];
  }
  return {std::move(outer), StringArray(groups.labels)};
}

}  // namespace

void yBoxplot::BoxplotOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2,
                             double CLevel, DoubleArray& BoxValue, DoubleArray& BoxX, DoubleArray& BoxY,
                             DoubleArray& MedianX, DoubleArray& MedianY, DoubleArray& LimitX,
                             DoubleArray& LimitY, DoubleArray& WhiskerX, DoubleArray& WhiskerY,
                             DoubleArray& OutlierX, DoubleArray& OutlierY, DoubleArray& OutlierBox,
                             DoubleArray& OutlierRow, DoubleArray& MeanY, DoubleArray& XAxisX,
                             StringArray& XAxis1, StringArray& XAxis2, DoubleArray& XGroupX,
                             StringArray& XGroup, DoubleArray& YAxis) const {
  if (!(CLevel > 0 && CLevel < 1)) {
    raise(FailureNumber::InvalidCall, "CLevel must be above 0 and below 1");
  }
  checked::leaving(dy);
  const std::span<const double> values = dy.vector();
  std::vector<FactorGroups> nested = groupsOf(dy.rows(), dx1, dx2);
  std::vector<std::vector<double>> places = placesOf(nested);
  const FactorGroups& groups = nested.back();
  std::vector<double>& place = places.back();

  std::vector<Box> boxes;
  boxes.reserve(place.size());
  Drawing drawing;
  for (std::vector<double>& group : gathered(values, groups.codes, groups.count())) {
    boxes.push_back(boxOf(std::move(group), CLevel));
    drawing.add(boxes.back(), place[boxes.size() - 1]);
  }
  Outliers outliers = outliersOf(values, groups.codes, boxes, place);
  DoubleArray table = tableOf(boxes);
  DoubleArray axis = GetAxisScale(dy, false);
  checked::leaving(table);

  const bool twoFactors = nested.size() == 2;
  BoxLabels labels = labelsOf(nested);
  const std::span<const double> means = table.column(Slot::Mean);
  MeanY = DoubleArray(std::vector<double>(means.begin(), means.end()));
  BoxValue = std::move(table);
  BoxX = drawing.outlines.takeX();
  BoxY = drawing.outlines.takeY();
  MedianX = drawing.medians.takeX();
  MedianY = drawing.medians.takeY();
  LimitX = drawing.limits.takeX();
  LimitY = drawing.limits.takeY();
  WhiskerX = drawing.whiskers.takeX();
  WhiskerY = drawing.whiskers.takeY();
  OutlierX = outliers.points.takeX();
  OutlierY = outliers.points.takeY();
  OutlierBox = DoubleArray(std::move(outliers.boxes));
  OutlierRow = DoubleArray(std::move(outliers.rows));
  XAxisX = DoubleArray(std::move(place));
  XAxis1 = std::move(labels.first);
  XAxis2 = std::move(labels.second);
  XGroupX = twoFactors ? DoubleArray(std::move(places.front())) : DoubleArray();
  XGroup = twoFactors ? StringArray(std::move(nested.front().labels)) : StringArray();
  YAxis = std::move(axis);
}

}  // namespace zelkova
