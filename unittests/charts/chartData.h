#pragma once

#include <string>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// Inside diameters of forged piston rings in mm, 25 samples of 5 (Montgomery, Introduction to Statistical
/// Quality Control, table of the chapter on X-bar and R charts; grand mean 74.001176, mean range 0.02324).
inline const DoubleArray pistonRings{
    74.030, 74.002, 74.019, 73.992, 74.008, 73.995, 73.992, 74.001, 74.011, 74.004, 73.988, 74.024, 74.021,
    74.005, 74.002, 74.002, 73.996, 73.993, 74.015, 74.009, 73.992, 74.007, 74.015, 73.989, 74.014, 74.009,
    73.994, 73.997, 73.985, 73.993, 73.995, 74.006, 73.994, 74.000, 74.005, 73.985, 74.003, 73.993, 74.015,
    73.988, 74.008, 73.995, 74.009, 74.005, 74.004, 73.998, 74.000, 73.990, 74.007, 73.995, 73.994, 73.998,
    73.994, 73.995, 73.990, 74.004, 74.000, 74.007, 74.000, 73.996, 73.983, 74.002, 73.998, 73.997, 74.012,
    74.006, 73.967, 73.994, 74.000, 73.984, 74.012, 74.014, 73.998, 73.999, 74.007, 74.000, 73.984, 74.005,
    73.998, 73.996, 73.994, 74.012, 73.986, 74.005, 74.007, 74.006, 74.010, 74.018, 74.003, 74.000, 73.984,
    74.002, 74.003, 74.005, 73.997, 74.000, 74.010, 74.013, 74.020, 74.003, 73.982, 74.001, 74.015, 74.005,
    73.996, 74.004, 73.999, 73.990, 74.006, 74.009, 74.010, 73.989, 73.990, 74.009, 74.014, 74.015, 74.008,
    73.993, 74.000, 74.010, 73.982, 73.984, 73.995, 74.017, 74.013};

/// The labels of `samples` samples of `size` rows each: "1", "1", ..., "2", ...
inline StringArray inSamples(Index samples, Index size) {
  StringArray labels(samples * size);
  for (Index i = 1; i <= labels.rows(); ++i) labels(i) = std::to_string((i - 1) / size + 1);
  return labels;
}

/// Piston rings of which some were lost: subgroups 1, 5, 8 and 17 have 4, 2, 1 and 4 values.
struct LostRings {
  DoubleArray y = DoubleArray(116);
  StringArray sample = StringArray(116);
  LostRings() {
    const StringArray samples = inSamples(25, 5);
    Index rows = 0;
    for (Index i = 1; i <= 125; ++i) {
      if (i == 5 || (i >= 23 && i <= 25) || (i >= 36 && i <= 39) || i == 81) continue;
      ++rows;
      y(rows) = pistonRings(i);
      sample(rows) = samples(i);
    }
  }
};

/// R's data set Nile, the first 30 years: annual flow in 10^8 m^3.
inline const DoubleArray nile{1120, 1160, 963,  1210, 1160, 1160, 813,  1230, 1370, 1140,
                              995,  935,  1110, 994,  1020, 960,  1180, 799,  958,  1140,
                              1100, 1210, 1150, 1250, 1260, 1220, 1030, 1100, 774,  840};

}  // namespace zelkova
