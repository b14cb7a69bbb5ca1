#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "zelkova/frame/Failure.h"

namespace zelkova {

/// The number of the failure that `call` ends in, 0 where it ends well.
template <class Call>
int failureNumber(Call call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure.number();
  }
  return 0;
}

/// The text of the failure that `call` ends in, empty where it ends well.
template <class Call>
std::string failureText(Call call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure.text();
  }
  return {};
}

/// Whether `actual` is within `tolerance` of `expected`, relative to it.
inline testing::AssertionResult isClose(double actual, double expected, double tolerance = 1e-12) {
  const double error = std::abs(actual - expected);
  if (error <= tolerance * std::abs(expected)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << actual << " is not " << expected << ", off by " << error;
}

}  // namespace zelkova
