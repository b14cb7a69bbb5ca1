#include "zelkova/plots/yMatrix.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/groups.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/scales.h"
#include "zelkova/kit/sums.h"
#include "zelkova/plots/NestedGroups.h"
#include "zelkova/plots/Series.h"

namespace zelkova {

namespace {

/// A panel is 10 units wide and high, with a margin of 1.
constexpr double panelSize = 10;
constexpr double margin = 1;

double positionOf(double start, double share) { return start + margin + (panelSize - 2 * margin) * share; }

/// The values of one column in one group, about their mean. They are scaled by a power of two to below 2:
/// exactly, and so that no product of two overflows or vanishes.
struct Sample {
  explicit Sample(std::vector<double> values)
      : smallest(*std::min_element(values.begin(), values.end())),
        largest(*std::max_element(values.begin(), values.end())) {
    const double size = std::max(std::abs(smallest), std::abs(largest));
    if (size > 0) exponent = std::ilogb(size);
    for (double& x : values) x = std::ldexp(x, -exponent);
    scaled = summaryOf(values);
    for (double& x : values) x = fromMean(x);
    deviations = std::move(values);
  }

  bool hasSpread() const { return smallest != largest; }

  double fromMean(double scaledValue) const { return (scaledValue - scaled.centre) - scaled.rest; }

  /// In the units of the data.
  double mean() const { return std::clamp(std::ldexp(scaled.mean(), exponent), smallest, largest); }

  double smallest, largest;
  int exponent = 0;
  GroupSummary scaled;
  std::vector<double> deviations;
};

/// A column of the data on its scale.
struct Variable {
  Variable(std::span<const double> column, const FactorGroups& groups)
      : ticks(GetAxisScale(DoubleArray(std::vector<double>(column.begin(), column.end())), false)) {
    shares.reserve(column.size());
    for (const double x : column) shares.push_back(shareOf(x));
    for (std::vector<double>& group : gathered(column, groups.codes, groups.count())) {
      byGroup.emplace_back(std::move(group));
    }
  }

  double lowest() const { return ticks(1); }
  double range() const { return ticks(ticks.rows()) - ticks(1); }
  double shareOf(double x) const { return checked::quotient(x - lowest(), range()); }

  DoubleArray ticks;
  std::vector<double> shares;
  std::vector<Sample> byGroup;
};

/// The least squares line of y on x within one group; x has spread.
class Line {
 public:
  Line(const Sample& x, const Sample& y) : x_(x), y_(y) {
    if (!y.hasSpread()) return;
    const double products = laneProduct(x.deviations, y.deviations);
    slope_ = checked::quotient(products, x.scaled.squares);
    rSquared_ = std::min(slope_ * checked::quotient(products, y.scaled.squares), 1.0);
  }

  double slope() const { return checked::finite(std::ldexp(slope_, y_.exponent - x_.exponent)); }

  double constant() const {
    const double scaled =
        (y_.scaled.centre - slope_ * x_.scaled.centre) + (y_.scaled.rest - slope_ * x_.scaled.rest);
    return checked::finite(std::ldexp(scaled, y_.exponent));
  }

  double rSquared() const { return rSquared_; }

  /// The end of the line at `end`, one of its x, or before it where it meets the border of the panel; in
  /// shares of the scales.
  std::pair<double, double> endAt(double end, const Variable& ofX, const Variable& ofY) const {
    const double across = ofX.shareOf(end);
    const double middle = ofY.shareOf(y_.mean());
    const double rise = slope_ * x_.fromMean(std::ldexp(end, -x_.exponent));
    const double height = middle + checked::quotient(std::ldexp(1, y_.exponent), ofY.range()) * rise;
    const double within = std::clamp(height, 0.0, 1.0);
    if (height == within) return {across, height};
    const double centre = ofX.shareOf(x_.mean());
    return {centre + (across - centre) * checked::quotient(within - middle, height - middle), within};
  }

 private:
  const Sample& x_;
  const Sample& y_;
  double slope_ = 0;
  double rSquared_ = NoValue;
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

/// Failure 7 where points, lines and borders would be too many.
void checkSize(Index variables, Index n, Index groups, bool full, bool withLines) {
  constexpr double mostElements = 1E8;
  const auto k = static_cast<double>(variables);
  const auto g = static_cast<double>(groups);
  const double panels = full ? k * (k - 1) : k * (k - 1) / 2;
  const double points = (static_cast<double>(n) + 1) * (1 + g);
  constexpr double ofLine = 6;
  constexpr double ofBorder = 12;
  const double lines = withLines ? (ofLine + MatrixLine::size) * g : 0;
  const double borders = ofBorder * (panels + k);
  if (panels * (points + lines) + borders > mostElements) {
    raise(FailureNumber::OutOfMemory, "there are too many columns, rows and groups for one chart");
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
    const Sample& xValues = ofX.byGroup[static_cast<std::size_t>(group - 1)];
    values(row, MatrixLine::YColumn) = static_cast<double>(panel.row + 1);
    values(row, MatrixLine::XColumn) = static_cast<double>(panel.column + 1);
    values(row, MatrixLine::Group) = static_cast<double>(group);
    values(row, MatrixLine::N) = xValues.scaled.n;
    if (!xValues.hasSpread()) return;

    const Line line(xValues, ofY.byGroup[static_cast<std::size_t>(group - 1)]);
    values(row, MatrixLine::Constant) = line.constant();
    values(row, MatrixLine::Slope) = line.slope();
    values(row, MatrixLine::RSquared) = line.rSquared();
    Index slot = 3 * place;
    for (const double end : {xValues.smallest, xValues.largest}) {
      const auto [across, up] = line.endAt(end, ofX, ofY);
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

/// The step of a scale. Its values may be so large that only the first digits of their difference hold.
double stepOf(const DoubleArray& ticks) {
  const double rough = (ticks(ticks.rows()) - ticks(1)) / static_cast<double>(ticks.rows() - 1);
  const auto exponent = static_cast<Index>(std::floor(std::log10(rough))) - 1;
  return std::round(rough / powerOfTen(exponent)) * powerOfTen(exponent);
}

/// The values shown beside a scale: all, or, where the panel has no room for all, the multiples of twice the
/// step.
std::vector<double> shownOf(const DoubleArray& ticks) {
  constexpr Index mostShown = 6;
  if (ticks.rows() <= mostShown) return {ticks.elements().begin(), ticks.elements().end()};
  const bool startsOdd = std::fmod(std::round(ticks(1) / stepOf(ticks)), 2) != 0;
  std::vector<double> shown;
  for (Index tick = startsOdd ? 2 : 1; tick <= ticks.rows(); tick += 2) shown.push_back(ticks(tick));
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
                           DoubleArray& PlotX, DoubleArray& PlotY, StringArray& GroupLabel,
                           DoubleArray& LineX, DoubleArray& LineY, DoubleArray& LineValue, DoubleArray& GridX,
                           DoubleArray& GridY, DoubleArray& LabelX, DoubleArray& LabelY, StringArray& Label,
                           DoubleArray& XAxisX, DoubleArray& XAxisY, DoubleArray& XAxis, DoubleArray& YAxisX,
                           DoubleArray& YAxisY, DoubleArray& YAxis, const std::string& MatrixType,
                           bool FitLine) const {
  const Index n = M_X.rows();
  if (M_X.dimensions() != 2 || M_X.columns() < 2) {
    raise(FailureNumber::InvalidCall, "M_X must have two columns or more");
  }
  StringArray names = namesOf(XName, M_X.columns());
  FactorGroups groups = (dx.filled() ? nestedGroups({firstRows(dx, n, "dx")}) : singleGroup(n)).front();
  const bool full = MatrixType != "Lower left";
  checkSize(M_X.columns(), n, groups.count(), full, FitLine);
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
