#pragma once

#include <utility>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {

/// A series of a chart that comes point by point; a gap keeps lines apart.
class Series {
 public:
  void add(double x, double y) {
    x_.push_back(x);
    y_.push_back(y);
  }
  void addGap() { add(NoValue, NoValue); }

  /// A line between two points, and a gap.
  void addLine(double x1, double y1, double x2, double y2) {
    add(x1, y1);
    add(x2, y2);
    addGap();
  }

  /// The outline of a rectangle, five points and a gap.
  void addRectangle(double left, double bottom, double right, double top) {
    add(left, bottom);
    add(right, bottom);
    add(right, top);
    add(left, top);
    add(left, bottom);
    addGap();
  }

  /// The coordinates, handed over.
  DoubleArray takeX() { return DoubleArray(std::move(x_)); }
  DoubleArray takeY() { return DoubleArray(std::move(y_)); }

 private:
  std::vector<double> x_, y_;
};

}  // namespace zelkova
