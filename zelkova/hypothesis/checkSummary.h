#pragma once

#include <string>

#include "zelkova/frame/Failure.h"

namespace zelkova::hypothesis {

/// Refuses, with failure 5, a summary that no sample has, given in the arguments of these names; a negative
/// spread would turn a test around.
inline void checkSummary(double n, const char* nameOfN, double sd, const char* nameOfSD) {
  if (n <= 0) raise(FailureNumber::InvalidCall, std::string(nameOfN) + " must be above 0");
  if (sd < 0) raise(FailureNumber::InvalidCall, std::string(nameOfSD) + " must not be negative");
}

}  // namespace zelkova::hypothesis
