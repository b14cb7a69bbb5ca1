#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"

namespace zelkova {

/// The power transformation (Box and Cox, 1964) that comes closest to a constant spread. Binds to the host.
class yBoxCox : public HostBound {
 public:
  /// `dy` holds n positive values and `dx` the subgroup label of each. The spread at a power lambda is that
  /// of the scaled transform y^lambda / (lambda g^(lambda - 1)), or g ln y for 0, with g the geometric mean,
  /// in the units of `dy`: within subgroups of equal labels, wherever they stand, it is the pooled standard
  /// deviation over c4; where no label occurs twice, the mean moving range over d2.
  ///
  /// `lambda` is the power of the smallest spread, `MinimumSD`, that the search tried; ties go to the smaller
  /// power. `CISD` is the limit of the spread and `LambdaLower` and `LambdaUpper` are the powers at that
  /// limit, linear between the points of the curve, or the end of the curve where it stays below. `DataX` and
  /// `DataY` are the curve: powers, ascending, and spreads. With `Transform`, `Transformed` gets the values
  /// to the power `SpecifyLamda`, blank for `lambda`, or their logarithms for 0; otherwise nothing.
  ///
  /// Failures: 5 for a value that is not positive, 13 for a power that is no number (read only with
  /// `Transform`), 11 for a single value, 9 for fewer labels than values, 6 where a result leaves the range
  /// of a double.
  void BoxcoxOutput(const DoubleArray& dy, const StringArray& dx, bool Transform,
                    const std::string& SpecifyLamda, double& lambda, double& MinimumSD, double& CISD,
                    double& LambdaLower, double& LambdaUpper, DoubleArray& DataX, DoubleArray& DataY,
                    DoubleArray& Transformed) const;
};

}  // namespace zelkova
