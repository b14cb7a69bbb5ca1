#include "zelkova/plots/yMatrix.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/groups.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/sums.h"
#include "zelkova/plots/NestedGroups.h"
#include "zelkova/plots/Series.h"

namespace zelkova {

namespace {

/// A panel is 10 units wide and high, with a margin of 1.
constexpr double panelSize = 10;
constexpr double margin = 1;

double positionOf(double start, double share) { return start + margin + (panelSize - 2 * margin) * share; }

/// Values of one column in one group, as shares of the scale.
struct Shares {
  explicit Shares(std::vector<double> values)
      : smallest(*std::min_element(values.begin(), values.end())),
        largest(*std::max_element(values.begin(), values.end())),
        mean(summaryOf(values).mean()),
        deviations(std::move(values)) {
    for (double& x : deviations) x -= mean;
    squares = laneProduct(deviations, deviations);
  }

  bool hasSpread() const { return squares > 0; }

  double smallest, largest, mean;
  std::vector<double> deviations;
  double squares = 0;
};

/// A column of the data on its scale.
struct Variable {
  Variable(std::span<const double> column, const FactorGroups& groups)
      : ticks(GetAxisScale(DoubleArray(std::vector<double>(column.begin(), column.end())), false)) {
    shares.reserve(column.size());
    for (const double x : column) shares.push_back(shareOf(x));
    for (std::vector<double>& group : gathered(shares, groups.codes, groups.count())) {
      byGroup.emplace_back(std::move(group));
    }
  }

  double lowest() const { return ticks(1); }
  double range() const { return ticks(ticks.rows()) - ticks(1); }
  double shareOf(double x) const { return checked::quotient(x - lowest(), range()); }

  DoubleArray ticks;
  std::vector<double> shares;
  std::vector<Shares> byGroup;
};

/// The line of y on x within one group, both as shares of their scales; x has spread.
struct Line {
  Line(const Shares& xShares, const Shares& yShares) : x(xShares), y(yShares) {
    const double products = laneProduct(x.deviations, y.deviations);
    slope = y.hasSpread() ? checked::quotient(products, x.squares) : 0;
    if (y.hasSpread()) rSquared = std::min(slope * checked::quotient(products, y.squares), 1.0);
  }

  double at(double share) const { return y.mean + slope * (share - x.mean); }

  /// The end of the line at `share`, or before it where it meets the border of the panel.
  std::pair<double, double> endAt(double share) const {
    const double height = at(share);
    const double within = std::clamp(height, 0.0, 1.0);
    if (height == within) return {share, height};
    const double crossing = x.mean + checked::quotient(within - y.mean, slope);
    return {std::clamp(crossing, x.smallest, x.largest), within};
  }

  const Shares& x;
  const Shares& y;
  double slope = 0;
  double rSquared = NoValue;
};

/// Where a panel stands: rows from the top and columns from the left, from 0.
struct Panel {
  std::size_t row, column;
};

class Grid {
 public:
  Grid(std::size_t variables, bool full) : variables_(variables), full_(full) {
    for (std::size_t row = 0; row < variables; ++row) {
      for (std::size_t column = 0; column < (full ? variables : row); ++column) {
        if (row != column) panels.push_back({row, column});
      }
    }
  }

  double left(std::size_t column) const { return panelSize * static_cast<double>(column); }
  double bottom(std::size_t row) const { return panelSize * static_cast<double>(variables_ - 1 - row); }

  /// Whether there is a panel in the row, or in the column.
  bool usesRow(std::size_t row) const { return full_ || row > 0; }
  bool usesColumn(std::size_t column) const { return full_ || column + 1 < variables_; }

  /// The outlines of all panels, the diagonal's included.
  Series borders() const {
    Series lines;
    for (std::size_t row = 0; row < variables_; ++row) {
      for (std::size_t column = 0; column < (full_ ? variables_ : row + 1); ++column) {
        lines.addRectangle(left(column), bottom(row), left(column) + panelSize, bottom(row) + panelSize);
      }
    }
    return lines;
  }

  std::vector<Panel> panels;

 private:
  std::size_t variables_;
  bool full_;
};

/// Failure 7 where the table of all points would be too large.
void checkSize(Index variables, Index n, Index groups, bool full) {
  constexpr double mostElements = 1E8;
  const double pairs = static_cast<double>(variables) * static_cast<double>(variables - 1) / 2;
  const double slots = (full ? 2 : 1) * pairs * static_cast<double>(n + 1);
  if (slots * static_cast<double>(groups) > mostElements) {
    raise(FailureNumber::OutOfMemory, "there are too many columns, rows and groups for one table of points");
  }
}

struct Points {
  Points(const Grid& grid, const std::vector<Variable>& variables, const FactorGroups& groups) {
    const auto n = static_cast<Index>(groups.codes.size());
    const auto panels = static_cast<Index>(grid.panels.size());
    x = DoubleArray(panels * (n + 1), NoValue);
    y = DoubleArray(x.rows(), groups.count(), NoValue);
    const std::span<double> places = x.vector();
    const std::span<double> heights = y.elements();
    std::size_t slot = 0;
    for (const Panel& panel : grid.panels) {
      const double left = grid.left(panel.column);
      const double bottom = grid.bottom(panel.row);
      const std::vector<double>& shares = variables[panel.column].shares;
      const std::vector<double>& heightShares = variables[panel.row].shares;
      for (std::size_t i = 0; i < shares.size(); ++i, ++slot) {
        places[slot] = positionOf(left, shares[i]);
        const auto group = static_cast<std::size_t>(groups.codes[i]);
        heights[group * places.size() + slot] = positionOf(bottom, heightShares[i]);
      }
      ++slot;
    }
  }

  DoubleArray x, y;
};

struct Lines {
  Lines(const Grid& grid, const std::vector<Variable>& variables, Index groups) {
    const auto panels = static_cast<Index>(grid.panels.size());
    x = DoubleArray(3 * panels, groups, NoValue);
    y = x;
    values = DoubleArray(panels * groups, MatrixLine::size, NoValue);
    Index row = 0;
    for (Index panel = 0; panel < panels; ++panel) {
      for (Index group = 1; group <= groups; ++group) {
        add(grid, variables, panel, group, ++row);
      }
    }
    checked::leaving(values);
  }

  DoubleArray x, y, values;

 private:
  void add(const Grid& grid, const std::vector<Variable>& variables, Index place, Index group, Index row) {
    const Panel panel = grid.panels[static_cast<std::size_t>(place)];
    const Variable& ofX = variables[panel.column];
    const Variable& ofY = variables[panel.row];
    const Shares& xShares = ofX.byGroup[static_cast<std::size_t>(group - 1)];
    values(row, MatrixLine::YColumn) = static_cast<double>(panel.row + 1);
    values(row, MatrixLine::XColumn) = static_cast<double>(panel.column + 1);
    values(row, MatrixLine::Group) = static_cast<double>(group);
    values(row, MatrixLine::N) = static_cast<double>(xShares.deviations.size());
    if (!xShares.hasSpread()) return;

    const Line line(xShares, ofY.byGroup[static_cast<std::size_t>(group - 1)]);
    values(row, MatrixLine::Constant) = ofY.lowest() + ofY.range() * line.at(ofX.shareOf(0));
    values(row, MatrixLine::Slope) = checked::quotient(line.slope * ofY.range(), ofX.range());
    values(row, MatrixLine::RSquared) = line.rSquared;
    Index slot = 3 * place;
    for (const double end : {xShares.smallest, xShares.largest}) {
      const auto [across, up] = line.endAt(end);
      ++slot;
      x(slot, group) = positionOf(grid.left(panel.column), across);
      y(slot, group) = positionOf(grid.bottom(panel.row), up);
    }
  }
};

/// The values of a scale and where they stand.
struct Ticks {
  void add(double x, double y, double value) {
    places.add(x, y);
    values.push_back(value);
  }
  void addGap() {
    places.addGap();
    values.push_back(NoValue);
  }

  Series places;
  std::vector<double> values;
};

/// The values shown beside a scale: all, or every second one where the panel has no room for all.
std::vector<double> shownOf(const DoubleArray& ticks) {
  constexpr Index mostShown = 6;
  const Index step = ticks.rows() > mostShown ? 2 : 1;
  std::vector<double> shown;
  for (Index tick = 1; tick <= ticks.rows(); tick += step) shown.push_back(ticks(tick));
  return shown;
}

Ticks ticksBelow(const Grid& grid, const std::vector<Variable>& variables) {
  Ticks ticks;
  for (std::size_t column = 0; column < variables.size(); ++column) {
    if (!grid.usesColumn(column)) continue;
    const Variable& variable = variables[column];
    for (const double tick : shownOf(variable.ticks)) {
      ticks.add(positionOf(grid.left(column), variable.shareOf(tick)), 0, tick);
    }
    ticks.addGap();
  }
  return ticks;
}

Ticks ticksToTheLeft(const Grid& grid, const std::vector<Variable>& variables) {
  Ticks ticks;
  for (std::size_t row = 0; row < variables.size(); ++row) {
    if (!grid.usesRow(row)) continue;
    const Variable& variable = variables[row];
    for (const double tick : shownOf(variable.ticks)) {
      ticks.add(0, positionOf(grid.bottom(row), variable.shareOf(tick)), tick);
    }
    ticks.addGap();
  }
  return ticks;
}

StringArray namesOf(const StringArray& XName, Index variables) {
  StringArray names(variables);
  if (XName.filled()) {
    const std::span<const std::string> given = firstRows(XName, variables, "XName");
    std::copy(given.begin(), given.end(), names.elements().begin());
  } else {
    for (Index i = 1; i <= variables; ++i) names(i) = std::to_string(i);
  }
  return names;
}

}  // namespace

void yMatrix::MatrixOutput(const DoubleArray& M_X, const StringArray& XName, const StringArray& dx,
                           const std::string& MatrixType, bool FitLine, DoubleArray& PlotX,
                           DoubleArray& PlotY, StringArray& GroupLabel, DoubleArray& LineX,
                           DoubleArray& LineY, DoubleArray& LineValue, DoubleArray& GridX, DoubleArray& GridY,
                           DoubleArray& LabelX, DoubleArray& LabelY, StringArray& Label, DoubleArray& XAxisX,
                           DoubleArray& XAxisY, DoubleArray& XAxis, DoubleArray& YAxisX, DoubleArray& YAxisY,
                           DoubleArray& YAxis) const {
  const Index n = M_X.rows();
  if (M_X.dimensions() != 2 || M_X.columns() < 2) {
    raise(FailureNumber::InvalidCall, "M_X must have two columns or more");
  }
  StringArray names = namesOf(XName, M_X.columns());
  FactorGroups groups = (dx.filled() ? nestedGroups({firstRows(dx, n, "dx")}) : singleGroup(n)).front();
  const bool full = MatrixType != "Lower left";
  checkSize(M_X.columns(), n, groups.count(), full);
  std::vector<Variable> variables;
  for (Index column = 1; column <= M_X.columns(); ++column) {
    variables.emplace_back(M_X.column(column), groups);
  }
  const Grid grid(variables.size(), full);
  Points points(grid, variables, groups);
  std::optional<Lines> lines;
  if (FitLine) lines.emplace(grid, variables, groups.count());
  Series borders = grid.borders();
  Series middles;
  for (std::size_t i = 0; i < variables.size(); ++i) {
    middles.add(grid.left(i) + panelSize / 2, grid.bottom(i) + panelSize / 2);
  }
  Ticks below = ticksBelow(grid, variables);
  Ticks toTheLeft = ticksToTheLeft(grid, variables);

  PlotX = std::move(points.x);
  PlotY = std::move(points.y);
  GroupLabel = StringArray(std::move(groups.labels));
  LineX = lines ? std::move(lines->x) : DoubleArray();
  LineY = lines ? std::move(lines->y) : DoubleArray();
  LineValue = lines ? std::move(lines->values) : DoubleArray();
  GridX = borders.takeX();
  GridY = borders.takeY();
  LabelX = middles.takeX();
  LabelY = middles.takeY();
  Label = std::move(names);
  XAxisX = below.places.takeX();
  XAxisY = below.places.takeY();
  XAxis = DoubleArray(std::move(below.values));
  YAxisX = toTheLeft.places.takeX();
  YAxisY = toTheLeft.places.takeY();
  YAxis = DoubleArray(std::move(toTheLeft.values));
}

}  // namespace zelkova
