#include "zelkova/plots/yMultiVari.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/groups.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/plots/NestedGroups.h"
#include "zelkova/plots/Series.h"

namespace zelkova {

namespace {

std::vector<std::span<const std::string>> factorsOf(Index n, const StringArray& dx1, const StringArray& dx2,
                                                    const StringArray& dx3, const StringArray& dx4) {
  std::vector<std::span<const std::string>> factors{firstRows(dx1, n, "dx1"), firstRows(dx2, n, "dx2")};
  if (dx3.filled()) factors.push_back(firstRows(dx3, n, "dx3"));
  if (!dx4.filled()) return factors;
  if (!dx3.filled()) raise(FailureNumber::InvalidCall, "dx4 is given without dx3");
  factors.push_back(firstRows(dx4, n, "dx4"));
  return factors;
}

/// The groups of one factor, and the slots that they take in their column: a gap follows each line.
struct FactorColumn {
  const FactorGroups& groups;
  const std::vector<double>& places;
  std::vector<GroupSummary> summaries;

  /// Whether the line that goes through `group` ends before it.
  bool startsLine(std::size_t group) const {
    return group > 0 && groups.parents[group] != groups.parents[group - 1];
  }

  Index slots() const {
    Index count = groups.count();
    for (std::size_t group = 1; group < places.size(); ++group) count += startsLine(group) ? 1 : 0;
    return count;
  }
};

struct Tables {
  explicit Tables(const std::vector<FactorColumn>& columns) {
    Index rows = 0;
    for (const FactorColumn& column : columns) rows = std::max(rows, column.slots());
    x = DoubleArray(rows, static_cast<Index>(columns.size()), NoValue);
    mean = x;
    n = x;
    label = StringArray(rows, x.columns(), "");
    for (const FactorColumn& column : columns) add(column);
    checked::leaving(mean);
  }

  void add(const FactorColumn& column) {
    ++added;
    Index slot = 0;
    for (std::size_t group = 0; group < column.places.size(); ++group) {
      slot += column.startsLine(group) ? 2 : 1;
      x(slot, added) = column.places[group];
      mean(slot, added) = column.summaries[group].mean();
      n(slot, added) = column.summaries[group].n;
      label(slot, added) = column.groups.labels[group];
    }
  }

  DoubleArray x, mean, n;
  StringArray label;
  Index added = 0;
};

/// From bottom to top of the axis, halfway between the last place of a level of the first factor and the
/// first one of the next. `outermost` is the number of that level for each of the innermost `places`.
Series dividers(const std::vector<double>& places, const std::vector<Index>& outermost,
                const DoubleArray& axis) {
  Series lines;
  for (std::size_t group = 1; group < places.size(); ++group) {
    if (outermost[group] == outermost[group - 1]) continue;
    const double x = (places[group - 1] + places[group]) / 2;
    lines.addLine(x, axis(1), x, axis(axis.rows()));
  }
  return lines;
}

/// For each of the innermost groups, the number of the level of the first factor that holds it.
std::vector<Index> outermostOf(const std::vector<FactorGroups>& nested) {
  std::vector<Index> codes = nested.back().parents;
  for (std::size_t factor = nested.size() - 2; factor > 0; --factor) {
    for (Index& code : codes) code = nested[factor].parents[static_cast<std::size_t>(code)];
  }
  return codes;
}

}  // namespace

void yMultiVari::MultiVariOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2,
                                 const StringArray& dx3, const StringArray& dx4, DoubleArray& PlotX,
                                 DoubleArray& PlotY, DoubleArray& PlotN, StringArray& PlotLabel,
                                 DoubleArray& GrandMeanX, DoubleArray& GrandMeanY, DoubleArray& DividerX,
                                 DoubleArray& DividerY, DoubleArray& ValueX, DoubleArray& ValueY,
                                 DoubleArray& YAxis, bool ShowValues) const {
  const std::vector<FactorGroups> nested = nestedGroups(factorsOf(dy.rows(), dx1, dx2, dx3, dx4));
  const std::vector<std::vector<double>> places = placesOf(nested);
  const std::span<const double> values = dy.vector();
  std::vector<FactorColumn> columns;
  for (std::size_t factor = 0; factor < nested.size(); ++factor) {
    const FactorGroups& groups = nested[factor];
    columns.push_back({groups, places[factor], summariesOf(values, groups.codes, groups.count())});
  }
  Tables tables(columns);
  const double mean = GetMean(dy);

  DoubleArray axis;
  DoubleArray valueX;
  if (ShowValues) {
    axis = GetAxisScale(dy, false);
    valueX = DoubleArray(dy.rows());
    std::transform(nested.back().codes.begin(), nested.back().codes.end(), valueX.elements().begin(),
                   [&](Index group) { return places.back()[static_cast<std::size_t>(group)]; });
  } else {
    std::vector<double> means;
    for (const FactorColumn& column : columns) {
      for (const GroupSummary& group : column.summaries) means.push_back(group.mean());
    }
    axis = GetAxisScale(DoubleArray(std::move(means)), false);
  }
  Series lines = dividers(places.back(), outermostOf(nested), axis);

  PlotX = std::move(tables.x);
  PlotY = std::move(tables.mean);
  PlotN = std::move(tables.n);
  PlotLabel = std::move(tables.label);
  GrandMeanX = {places.back().front() - 0.5, places.back().back() + 0.5};
  GrandMeanY = {mean, mean};
  DividerX = lines.takeX();
  DividerY = lines.takeY();
  ValueX = std::move(valueX);
  ValueY = ShowValues ? DoubleArray(std::vector<double>(values.begin(), values.end())) : DoubleArray();
  YAxis = std::move(axis);
}

}  // namespace zelkova
