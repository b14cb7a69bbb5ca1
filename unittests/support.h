#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "zelkova/frame/Array.h"
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

/// The same for all elements.
inline testing::AssertionResult areClose(const DoubleArray& actual, const DoubleArray& expected,
                                         double tolerance = 1e-12) {
  if (actual.size() != expected.size() || actual.rows() != expected.rows()) {
    return testing::AssertionFailure() << actual.size() << " elements in " << actual.rows() << " rows";
  }
  for (Index i = 0; i < actual.size(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    const auto result = isClose(actual.elements()[at], expected.elements()[at], tolerance);
    if (!result) return testing::AssertionFailure() << "element " << i + 1 << ": " << result.message();
  }
  return testing::AssertionSuccess();
}

}  // namespace zelkova
