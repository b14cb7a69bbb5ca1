#pragma once

#include <string>

namespace zelkova::cli {

/// The shortest digits that read back as the same double: "5", "0.1", "1e-300"; a whole number in full,
/// "200000".
std::string shortestNumber(double x);

/// `x` to `digits` significant digits, without zeros at its end: "4.60317". A whole number is shown in full,
/// since nothing is gained by rounding a count or a sum of counts.
std::string roundedNumber(double x, int digits);

}  // namespace zelkova::cli
