#pragma once

#include "zelkova/frame/arithmetic.h"

namespace zelkova::hypothesis {

/// What a cell or a category adds to chi-square; failure 11 where nothing is expected.
inline double chiSquareTerm(double observed, double expected) {
  return checked::quotient((observed - expected) * (observed - expected), expected);
}

}  // namespace zelkova::hypothesis
