#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/doe/yFactorial.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {
namespace {

class FactorialPlots : public WithHost {
 protected:
  /// A factorial in standard order without its last run, and two centre runs for each level of the last
  /// factor, a text; responses are 1, 2, 3, ...
  void prepare(Index factors) {
    const Index corners = (Index{1} << factors) - 1;
    const Index runs = corners + 4;
    dx = StringArray(runs, factors, "middle");
    dy = dc = DoubleArray(runs);
    name = low = high = StringArray(factors);
    for (Index j = 1; j <= factors; ++j) {
      name(j) = "factor " + std::to_string(j);
      low(j) = "-" + std::to_string(j);
      high(j) = std::to_string(j);
      for (Index i = 1; i <= corners; ++i) dx(i, j) = ((i - 1) >> (j - 1) & 1) != 0 ? high(j) : low(j);
    }
    for (Index i = 1; i <= runs; ++i) {
      dy(i) = static_cast<double>(i);
      dc(i) = i <= corners ? 1 : 0;
      if (i > corners) dx(i, factors) = i <= corners + 2 ? low(factors) : high(factors);
    }
  }

  yFactorial plots;
  DoubleArray dy, dc;
  StringArray dx, name, low, high;
};

// Faults: a mean of other runs, a centre run at a level left out, a middle that joins the line. By hand, of
// corners 1 2 3 (low low, high low, low high) and centres 4 5 at low, 6 7 at high of the second factor.
TEST_F(FactorialPlots, MainEffectsAreMeans) {
  prepare(2);
  StringArray labels, names;
  DoubleArray corner, centre, mean;
  const DoubleArray table(7, 1, std::vector<double>(dy.elements().begin(), dy.elements().end()));
  for (const DoubleArray& responses : {dy, table}) {
    plots.MainEffectsOutput(responses, dx, dc, name, low, high, labels, corner, centre, names, mean);
    EXPECT_EQ(labels, (StringArray{"-1", "", "1", "-2", "", "2"}));
    EXPECT_EQ(corner, (DoubleArray{2, NoValue, 2, 1.5, NoValue, 3}));
    EXPECT_EQ(centre, (DoubleArray{NoValue, 5.5, NoValue, 4.5, NoValue, 6.5}));
    EXPECT_EQ(names, (StringArray{"factor 1", "factor 2"}));
    EXPECT_EQ(mean, (DoubleArray{4, 4}));
  }
  dc = {1, 1, 1};
  EXPECT_EQ(failureNumber([&] {
              plots.MainEffectsOutput(dy, dx, dc, name, low, high, labels, corner, centre, names, mean);
            }),
            9);
}

// Faults: a panel in another's place, lines joined between panels, a scale of its own for a panel, centre
// runs on the wrong line. By hand, three factors: runs 1 to 11, so that the scale goes from 0 or 1 to at
// least 11 and its ticks tell the heights.
TEST_F(FactorialPlots, InteractionsStandInTheirPanels) {
  prepare(3);
  DoubleArray x, y1, y2, c1, c2, gridY, gridX, tickX, tickY, ticks, levelX, levelY;
  StringArray levels;
  const auto draw = [&] {
    plots.InteractionsOutput(dy, dx, dc, name, low, high, x, y1, y2, c1, c2, gridY, gridX, tickX, tickY,
                             ticks, levelX, levelY, levels);
  };
  draw();
  const Index count = ticks.rows() / 3 - 1;
  ASSERT_EQ(ticks.rows(), 3 * (count + 1));
  const double lowest = ticks(count + 2);
  const double step = ticks(count + 3) - lowest;
  const auto height = [&](Index row, double value) {
    return 10 * static_cast<double>(row - 1) + 1 +
           8 * (value - lowest) / (step * static_cast<double>(count - 1));
  };
  EXPECT_LE(lowest, 1);
  EXPECT_GE(ticks(2 * count + 1), 11);
  for (Index t = 1; t <= count; ++t) {
    EXPECT_EQ(ticks(t), NoValue);
    EXPECT_EQ(tickX(count + 1 + t), 0);
    EXPECT_TRUE(isClose(tickY(count + 1 + t), height(2, ticks(count + 1 + t))));
    EXPECT_TRUE(isClose(tickY(2 * count + 2 + t), height(3, ticks(count + 1 + t))));
  }
  EXPECT_EQ(ticks(2 * count + 2), NoValue);

  ASSERT_EQ(x.rows(), 363);
  // Corners 1 to 7 in standard order, without 8; centres 8 9 low and 10 11 high in factor 3. For each of the
  // pairs 12, 13, 23 at low, high and middle of its first factor.
  const std::vector<double> atX = {1, 9, 5, 1, 9, 5, 11, 19, 15};
  const std::vector<double> lower = {3, 4, NoValue, 2, 3, NoValue, 1.5, 3.5, NoValue};
  const std::vector<double> upper = {5, 4, NoValue, 6, 6, NoValue, 5.5, 7, NoValue};
  const std::vector<double> lowCentre = {NoValue, NoValue, 9.5, NoValue, NoValue, 8.5, NoValue, NoValue, 8.5};
  const std::vector<double> highCentre = {NoValue, NoValue, NoValue, NoValue, NoValue,
                                          10.5,    NoValue, NoValue, 10.5};
  for (Index slot = 1; slot <= 9; ++slot) {
    const auto at = static_cast<std::size_t>(slot - 1);
    const Index row = slot <= 3 ? 2 : 3;
    const auto expected = [&](double value) { return value == NoValue ? NoValue : height(row, value); };
    EXPECT_EQ(x(slot), atX[at]);
    EXPECT_TRUE(isClose(y1(slot), expected(lower[at]))) << slot;
    EXPECT_TRUE(isClose(y2(slot), expected(upper[at]))) << slot;
    EXPECT_TRUE(isClose(c1(slot), expected(lowCentre[at]))) << slot;
    EXPECT_TRUE(isClose(c2(slot), expected(highCentre[at]))) << slot;
  }
  EXPECT_EQ(x(10), NoValue);
  EXPECT_EQ(gridX, (DoubleArray{0, 10, 10, 0, 0, NoValue, 0, 20, 20, 0, 0, NoValue, NoValue}));
  EXPECT_EQ(gridY, (DoubleArray{10, 10, 30, 30, 10, NoValue, 20, 20, 30, 30, 20, NoValue, NoValue}));
  EXPECT_EQ(levels, (StringArray{"-1", "", "1", "-2", "", "2", "-3", "", "3"}));
  EXPECT_EQ(levelX, (DoubleArray{1, 5, 9, 11, 15, 19, NoValue, NoValue, NoValue}));
  EXPECT_EQ(levelY, (DoubleArray{10, 10, 10, 20, 20, 20, NoValue, NoValue, NoValue}));

  // A text factor first: its centre runs stand at its levels.
  std::vector<std::string> turned;
  for (Index j = 3; j >= 1; --j) turned.insert(turned.end(), dx.column(j).begin(), dx.column(j).end());
  dx = StringArray(11, 3, turned);
  low = {low(3), low(2), low(1)};
  high = {high(3), high(2), high(1)};
  draw();
  EXPECT_TRUE(isClose(c1(1), height(2, 8.5)));
  EXPECT_TRUE(isClose(c1(2), height(2, 10.5)));
  EXPECT_EQ(c1(3), NoValue);

  for (const auto& [factors, failure] : std::vector<std::pair<Index, int>>{{1, 5}, {16, 0}, {17, 5}}) {
    dx = StringArray(11, factors, "1");
    name = low = high = StringArray(factors, "1");
    EXPECT_EQ(failureNumber(draw), failure) << factors;
  }
}

// Faults: a cube with an edge that is missing or none, corners labelled with another's mean, a lost centre.
TEST_F(FactorialPlots, CubesHaveAllTheirEdges) {
  StringArray cageX, cageY, x, y, label, labelX, labelY, labels;
  const auto draw = [&] {
    plots.CubeOutput(dy, dx, dc, name, low, high, cageX, cageY, x, y, label, labelX, labelY, labels);
  };
  struct Case {
    Index factors, points;
    std::size_t edges;  // 12 a cube, and those from cube to cube
  };
  for (const Case& c : {Case{2, 5, 4}, Case{3, 16, 12}, Case{4, 32, 25}, Case{5, 64, 51}}) {
    prepare(c.factors);
    draw();
    const Index corners = Index{1} << c.factors;
    ASSERT_EQ(cageX.rows(), c.points);
    ASSERT_EQ(x.rows(), corners + 1);
    const auto vertexAt = [&](Index i) {
      for (Index v = 1; v <= corners; ++v) {
        if (x(v) == cageX(i) && y(v) == cageY(i)) return v - 1;
      }
      return Index{-1};
    };
    std::set<std::pair<Index, Index>> edges;
    for (Index i = 2; i <= c.points; ++i) {
      const Index a = vertexAt(i - 1);
      const Index b = vertexAt(i);
      ASSERT_GE(std::min(a, b), 0);
      ASSERT_EQ(std::popcount(static_cast<unsigned>(a ^ b)), 1) << "a line that is no edge";
      edges.insert(std::minmax(a, b));
    }
    EXPECT_EQ(edges.size(), c.edges);

    for (Index v = 1; v < corners; ++v) EXPECT_EQ(label(v), std::to_string(v));
    EXPECT_EQ(label(corners), "");
    EXPECT_EQ(label(corners + 1), numberText(static_cast<double>(corners) + 1.5));
    EXPECT_EQ(2 * toNumber(x(corners + 1)), toNumber(x(1)) + toNumber(x(corners)));
    ASSERT_EQ(labels.rows(), 3 * c.factors);
    EXPECT_EQ(labels(4), "-2");
    EXPECT_EQ(labels(5), "factor 2");
    EXPECT_EQ(labels(6), "2");
  }
  // Without centre runs there is no point for them; a run at no corner is at none.
  dc = DoubleArray(dy.rows(), 1);
  draw();
  EXPECT_EQ(x.rows(), 32);
  EXPECT_EQ(label(1), "1");
  prepare(6);
  EXPECT_EQ(failureNumber(draw), 5);
}

}  // namespace
}  // namespace zelkova
