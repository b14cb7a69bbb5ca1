#include "zelkova/kit/normalCurve.h"

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

DoubleArray normalCurve(WorksheetFunction& host, const DoubleArray& midpoints, double n, double mean,
                        double sd) {
  const DoubleArray none(midpoints.rows(), NoValue);
  if (midpoints.rows() == 1) return none;
  DoubleArray heights(midpoints.rows());
  double sum = 0;
  for (Index j = 1; j <= midpoints.rows(); ++j) {
    heights(j) = host.NormDist(midpoints(j), mean, sd, false);
    sum += heights(j);
  }
  if (sum == 0) return none;
  for (double& height : heights.elements()) height = checked::quotient(n * height, sum);
  return heights;
}

}  // namespace zelkova
