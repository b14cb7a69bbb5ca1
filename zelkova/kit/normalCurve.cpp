#include "zelkova/kit/normalCurve.h"

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

DoubleArray scaledCurve(DoubleArray heights, double n) {
  double sum = 0;
  for (const double height : heights.elements()) sum += height;
  if (heights.rows() == 1 || sum == 0) return DoubleArray(heights.rows(), NoValue);
  for (double& height : heights.elements()) height = checked::quotient(n * height, sum);
  return heights;
}

DoubleArray normalCurve(WorksheetFunction& host, const DoubleArray& midpoints, double n, double mean,
                        double sd) {
  if (midpoints.rows() == 1) return DoubleArray(1, NoValue);
  DoubleArray heights(midpoints.rows());
  for (Index j = 1; j <= midpoints.rows(); ++j) heights(j) = host.NormDist(midpoints(j), mean, sd, false);
  return scaledCurve(std::move(heights), n);
}

}  // namespace zelkova
