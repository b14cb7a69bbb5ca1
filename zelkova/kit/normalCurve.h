#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"

namespace zelkova {

/// The height of a normal curve over a histogram of `n` values, at the midpoints of its intervals. The curve
/// is scaled by the sum of its own heights, which add up to `n`: with intervals of unequal width it still
/// compares with their counts. `NoValue` where there is one midpoint, or where all heights vanish. Failures:
/// 1004 for an `sd` that is not positive, 6 where a height overflows.
DoubleArray normalCurve(WorksheetFunction& host, const DoubleArray& midpoints, double n, double mean,
                        double sd);

}  // namespace zelkova
