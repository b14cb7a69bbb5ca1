#include <array>
#include <string>
#include <utility>
#include <vector>

#include "zelkova/doe/PlottedRuns.h"
#include "zelkova/doe/yFactorial.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

namespace {

constexpr Index fewestFactors = 2;
constexpr Index mostFactors = 5;

struct Point {
  double x, y;
};

Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
Point operator*(double share, Point a) { return {share * a.x, share * a.y}; }

/// The way from the low to the high level of each factor: right, up and into the depth inside a cube, then
/// from cube to cube.
constexpr std::array<Point, mostFactors> edges = {{{6, 0}, {0, 6}, {3, 2}, {14, 0}, {0, 12}}};

/// Where the low end of each factor's labels stands.
constexpr std::array<Point, mostFactors> labelStarts = {
    {{0, -0.8}, {-0.8, 0}, {6.8, -0.3}, {4.5, -2}, {-3, 4}}};

/// A vertex is numbered by its levels in standard order: bit 0 is set where the first factor is high.
Point positionOf(unsigned vertex) {
  Point position{0, 0};
  for (std::size_t j = 0; j < edges.size(); ++j) {
    if ((vertex >> j & 1U) != 0) position = position + edges[j];
  }
  return position;
}

/// One line along all edges. Every corner of a cube has three edges, so three of the twelve are drawn twice.
/// The cubes are walked forth and back in turn, so that the steps between them join corners that differ in
/// one factor.
std::vector<unsigned> walk(Index factors) {
  if (factors == 2) return {0, 1, 3, 2, 0};
  constexpr std::array<unsigned, 16> forth = {2, 6, 7, 3, 1, 5, 4, 6, 7, 5, 4, 0, 2, 3, 1, 0};
  const std::vector<unsigned> cubes = {0, 8, 24, 16};
  const std::size_t count = std::size_t{1} << (factors - 3);
  std::vector<unsigned> vertices;
  for (std::size_t c = 0; c < count; ++c) {
    for (std::size_t i = 0; i < forth.size(); ++i) {
      const std::size_t place = c % 2 == 0 ? i : forth.size() - 1 - i;
      vertices.push_back(cubes[c] + forth[place]);
    }
  }
  return vertices;
}

/// Points with labels, as texts.
struct Labelled {
  void add(Point at, std::string label) {
    x.push_back(numberText(at.x));
    y.push_back(numberText(at.y));
    labels.push_back(std::move(label));
  }

  std::vector<std::string> x, y, labels;
};

std::string meanText(const doe::RunMean& mean) {
  const double value = mean.value();
  return value == NoValue ? "" : numberText(value);
}

/// The corners in standard order with their means, and the centre where there are centre runs.
Labelled labelledCorners(const doe::PlottedRuns& runs) {
  std::vector<doe::RunMean> corners(std::size_t{1} << runs.factors());
  doe::RunMean centre;
  for (Index i = 1; i <= runs.runs(); ++i) {
    if (!runs.isCorner(i)) {
      centre.add(runs.response(i));
      continue;
    }
    std::size_t vertex = 0;
    bool isAtCorner = true;
    for (Index j = 1; j <= runs.factors(); ++j) {
      const double setting = runs.coded(i, j);
      isAtCorner = isAtCorner && setting != 0;
      if (setting > 0) vertex |= std::size_t{1} << (j - 1);
    }
    if (isAtCorner) corners[vertex].add(runs.response(i));
  }
  Labelled points;
  for (std::size_t vertex = 0; vertex < corners.size(); ++vertex) {
    points.add(positionOf(static_cast<unsigned>(vertex)), meanText(corners[vertex]));
  }
  if (centre.value() != NoValue) {
    points.add(0.5 * positionOf(static_cast<unsigned>(corners.size() - 1)), meanText(centre));
  }
  return points;
}

}  // namespace

void yFactorial::CubeOutput(const DoubleArray& dy, const StringArray& dx, const DoubleArray& dc,
                            const StringArray& FName, const StringArray& FLow, const StringArray& FHigh,
                            StringArray& CubeCageX, StringArray& CubeCageY, StringArray& CubePointX,
                            StringArray& CubePointY, StringArray& CubePointL, StringArray& CubeLabelX,
                            StringArray& CubeLabelY, StringArray& CubeLabelL) const {
  const doe::PlottedRuns runs(dy, dx, dc, FName, FLow, FHigh);
  const Index factors = runs.factors();
  if (factors < fewestFactors || factors > mostFactors) {
    raise(FailureNumber::InvalidCall, "a cube plot has 2 to 5 factors");
  }
  Labelled cage;
  for (const unsigned vertex : walk(factors)) cage.add(positionOf(vertex), "");
  Labelled points = labelledCorners(runs);
  Labelled labels;
  for (Index j = 1; j <= factors; ++j) {
    const auto place = static_cast<std::size_t>(j - 1);
    labels.add(labelStarts[place], FLow(j));
    labels.add(labelStarts[place] + 0.5 * edges[place], FName(j));
    labels.add(labelStarts[place] + edges[place], FHigh(j));
  }
  CubeCageX = StringArray(std::move(cage.x));
  CubeCageY = StringArray(std::move(cage.y));
  CubePointX = StringArray(std::move(points.x));
  CubePointY = StringArray(std::move(points.y));
  CubePointL = StringArray(std::move(points.labels));
  CubeLabelX = StringArray(std::move(labels.x));
  CubeLabelY = StringArray(std::move(labels.y));
  CubeLabelL = StringArray(std::move(labels.labels));
}

}  // namespace zelkova
