#pragma once

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "zelkova/frame/Array.h"

/// The tests for special causes on charts whose phases are known already.
namespace zelkova::control {

/// The lines and points of a chart, position by position; `lower` and `upper` lie one sigma from `centre`.
struct ChartLines {
  std::span<const double> centre, lower, upper, plotted;
};

/// The texts of the parameters of tests 1 to 8.
using TestParameters = std::array<std::string_view, 8>;

/// Gives `FailedTest` for each position the marks of the tests that signal there; see `yControlTest::CCTest`.
/// A phase begins at each of `phaseStarts`, counted from 0 in rising order, the first at 0. A failure leaves
/// `FailedTest` as it came.
void markFailedTests(const ChartLines& chart, const std::vector<Index>& phaseStarts,
                     const TestParameters& parameters, StringArray& FailedTest);

}  // namespace zelkova::control
