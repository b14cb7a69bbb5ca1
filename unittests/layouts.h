#pragma once

#include <string>
#include <vector>

#include "zelkova/frame/Array.h"

/// Data of R that several analyses of one and two factors are tested with.
namespace zelkova {

/// Each label, as often as that, in order.
inline StringArray runsOf(const std::vector<std::string>& labels, std::size_t length) {
  std::vector<std::string> result;
  for (const std::string& label : labels) result.insert(result.end(), length, label);
  return StringArray(result);
}

// R's data set `PlantGrowth`: dried weight of plants under a control and two treatments, ten each.
inline const DoubleArray weight{4.17, 5.58, 5.18, 6.11, 4.50, 4.61, 5.17, 4.53, 5.33, 5.14,  // ctrl
                                4.81, 4.17, 4.41, 3.59, 5.87, 3.83, 6.03, 4.89, 4.32, 4.69,  // trt1
                                6.31, 5.12, 5.54, 5.50, 5.37, 5.29, 4.92, 6.15, 5.80, 5.26};
inline const StringArray group = runsOf({"ctrl", "trt1", "trt2"}, 10);

// R's data set `warpbreaks`: breaks of yarn on a loom, for two wools and three tensions, nine looms each.
inline const DoubleArray breaks{26, 30, 54, 25, 70, 52, 51, 26, 67, 18, 21, 29, 17, 12, 18, 35, 30, 36,
                                36, 21, 24, 18, 10, 43, 28, 15, 26, 27, 14, 29, 19, 29, 31, 41, 20, 44,
                                42, 26, 19, 16, 39, 28, 21, 39, 29, 20, 21, 24, 17, 13, 15, 15, 16, 28};
inline const StringArray wool = runsOf({"A", "B"}, 27);
inline const StringArray tension = runsOf({"L", "M", "H", "L", "M", "H"}, 9);

}  // namespace zelkova
