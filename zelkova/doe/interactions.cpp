#include <array>
#include <utility>

#include "zelkova/doe/PlottedRuns.h"
#include "zelkova/doe/yFactorial.h"
#include "zelkova/kit/modzSupport.h"

namespace zelkova {

namespace {

constexpr Index mostSlots = 363;
constexpr Index mostFactors = 16;

/// A panel is 10 units wide and high, with a margin of 1.
constexpr double panel = 10;
constexpr double margin = 1;

/// Where a panel begins: the left end of column `place`, the lower end of row `place`.
double startOf(Index place) { return panel * static_cast<double>(place - 1); }

/// Low, middle and high in a panel, as a setting of -1, 0 and 1.
double positionOf(Index place, double setting) {
  return startOf(place) + panel / 2 + (panel / 2 - margin) * setting;
}

/// The common scale of all panels.
class Scale {
 public:
  explicit Scale(const DoubleArray& responses) : ticks(GetAxisScale(responses, false)) {}

  /// The height of a value in row `row`; `NoValue` of none.
  double heightOf(Index row, double value) const {
    if (value == NoValue) return NoValue;
    const double lowest = ticks(1);
    const double share = checked::quotient(value - lowest, ticks(ticks.rows()) - lowest);
    return positionOf(row, 2 * share - 1);
  }

  DoubleArray ticks;
};

/// The means of a pair by the settings of its first and its second factor.
class PairMeans {
 public:
  void add(double first, double second, double y) { means_[placeOf(first, second)].add(y); }
  double at(double first, double second) const { return means_[placeOf(first, second)].value(); }

 private:
  static std::size_t placeOf(double first, double second) {
    return static_cast<std::size_t>(3 * (first + 1) + second + 1);
  }

  std::array<doe::RunMean, 9> means_;
};

/// A line or points that come one by one, in slots that start empty.
struct Series {
  explicit Series(Index slots) : x(slots, NoValue), y(slots, NoValue) {}

  void add(double atX, double atY) {
    ++last;
    x(last) = atX;
    y(last) = atY;
  }
  void leaveSlot() { ++last; }

  DoubleArray x, y;
  Index last = 0;
};

/// Rectangles from each place on the diagonal to the upper left corner: together they border every panel.
Series borders(Index factors) {
  Series lines(6 * (factors - 1) + 1);
  const double top = startOf(factors + 1);
  for (Index i = 2; i <= factors; ++i) {
    const double corner = startOf(i);
    lines.add(0, corner);
    lines.add(corner, corner);
    lines.add(corner, top);
    lines.add(0, top);
    lines.add(0, corner);
    lines.leaveSlot();
  }
  return lines;
}

/// Corner and centre runs of a pair of factors, j and k.
struct PairOfFactors {
  PairOfFactors(const doe::PlottedRuns& runs, Index j, Index k) {
    for (Index i = 1; i <= runs.runs(); ++i) {
      (runs.isCorner(i) ? corner : centre).add(runs.coded(i, j), runs.coded(i, k), runs.response(i));
    }
  }

  PairMeans corner, centre;
};

/// What stands in the panels, three slots each.
struct PanelLines {
  PanelLines(const doe::PlottedRuns& runs, const Scale& scale) {
    Index slot = 0;
    for (Index j = 1; j < runs.factors(); ++j) {
      for (Index k = j + 1; k <= runs.factors(); ++k) {
        const PairOfFactors pair(runs, j, k);
        // The middle comes last: its empty slot ends the lines of the panel.
        for (const double first : {-1.0, 1.0, 0.0}) {
          ++slot;
          x(slot) = positionOf(j, first);
          if (first != 0) {
            low(slot) = scale.heightOf(k, pair.corner.at(first, -1));
            high(slot) = scale.heightOf(k, pair.corner.at(first, 1));
          }
          const double atLow = pair.centre.at(first, -1);
          lowCentre(slot) = scale.heightOf(k, atLow != NoValue ? atLow : pair.centre.at(first, 0));
          highCentre(slot) = scale.heightOf(k, pair.centre.at(first, 1));
        }
      }
    }
  }

  DoubleArray x = DoubleArray(mostSlots, NoValue);
  DoubleArray low = x, high = x, lowCentre = x, highCentre = x;
};

/// The ticks of the scale left of each row. The lowest row holds no panel, so its slots stay empty.
struct RowTicks {
  RowTicks(const Scale& scale, Index factors)
      : at(factors * (scale.ticks.rows() + 1)), values(at.x.rows(), NoValue) {
    for (Index row = 2; row <= factors; ++row) {
      at.last = (row - 1) * (scale.ticks.rows() + 1);
      for (const double tick : scale.ticks.elements()) {
        at.add(0, scale.heightOf(row, tick));
        values(at.last) = tick;
      }
    }
  }

  Series at;
  DoubleArray values;
};

/// Where the levels stand under each column; the last column holds no panel, so its slots stay empty.
Series levelPlaces(Index factors) {
  Series places(3 * factors);
  for (Index column = 1; column < factors; ++column) {
    for (const double setting : {-1.0, 0.0, 1.0}) {
      places.add(positionOf(column, setting), startOf(column + 1));
    }
  }
  return places;
}

}  // namespace

void yFactorial::InteractionsOutput(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc,
                                    const StringArray& FName, const StringArray& FLow,
                                    const StringArray& FHigh, DoubleArray& PlotX, DoubleArray& PlotY1,
                                    DoubleArray& PlotY2, DoubleArray& PlotY1C, DoubleArray& PlotY2C,
                                    DoubleArray& GridY, DoubleArray& GridX, DoubleArray& YAxisX,
                                    DoubleArray& YAxisY, DoubleArray& YAxis, DoubleArray& XAxisX,
                                    DoubleArray& XAxisY, StringArray& XAxis) const {
  const doe::PlottedRuns runs(dy, dx, dc, FName, FLow, FHigh);
  const Index factors = runs.factors();
  if (factors < 2 || factors > mostFactors) {
    raise(FailureNumber::InvalidCall, "interactions are plotted of 2 to 16 factors");
  }
  const Scale scale(runs.responses());
  PanelLines lines(runs, scale);
  Series grid = borders(factors);
  RowTicks rowTicks(scale, factors);
  Series places = levelPlaces(factors);
  StringArray levels = doe::levelLabels(FLow, FHigh, factors);

  PlotX = std::move(lines.x);
  PlotY1 = std::move(lines.low);
  PlotY2 = std::move(lines.high);
  PlotY1C = std::move(lines.lowCentre);
  PlotY2C = std::move(lines.highCentre);
  GridY = std::move(grid.y);
  GridX = std::move(grid.x);
  YAxisX = std::move(rowTicks.at.x);
  YAxisY = std::move(rowTicks.at.y);
  YAxis = std::move(rowTicks.values);
  XAxisX = std::move(places.x);
  XAxisY = std::move(places.y);
  XAxis = std::move(levels);
}

}  // namespace zelkova
