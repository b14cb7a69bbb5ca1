#include "zelkova/kit/pairs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "unittests/support.h"

namespace zelkova {
namespace {

/// Columns of many kinds: with ties, around 0, far from it, of all magnitudes.
std::vector<std::vector<double>> columns(std::mt19937_64& random) {
  const auto draw = [&](std::size_t n, auto value) {
    std::vector<double> column(n);
    for (double& x : column) x = value();
    std::sort(column.begin(), column.end());
    return column;
  };
  std::normal_distribution<double> normal;
  std::vector<std::vector<double>> result;
  for (const std::size_t n : {1, 2, 3, 7, 30, 61}) {
    result.push_back(draw(n, [&] { return normal(random); }));
    result.push_back(draw(n, [&] { return 1e6 + normal(random) / 1e3; }));
    result.push_back(draw(n, [&] { return std::round(normal(random)); }));
    result.push_back(draw(n, [&] { return normal(random) * std::exp(100 * normal(random)); }));
    result.emplace_back(n, -0.1);
  }
  return result;
}

double sortedMedian(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

// Fault: a selected value that is a neighbour of the one asked for, or differs from it in a last bit.
// Expected: the pairs themselves, formed and sorted.
TEST(Pairs, AreSelectedAsSortingAllWouldGiveThem) {
  std::mt19937_64 random(4);
  const auto all = columns(random);
  for (const auto& x : all) {
    std::vector<double> averages;
    for (std::size_t i = 0; i < x.size(); ++i) {
      for (std::size_t j = i; j < x.size(); ++j) averages.push_back((x[i] + x[j]) / 2);
    }
    std::sort(averages.begin(), averages.end());
    ASSERT_EQ(pairs::walshCount(static_cast<Index>(x.size())), static_cast<Index>(averages.size()));
    for (std::size_t k = 1; k <= averages.size(); ++k) {
      EXPECT_EQ(pairs::walshAverage(x, static_cast<Index>(k)), averages[k - 1]);
    }
    EXPECT_EQ(pairs::walshMedian(x), sortedMedian(averages));
    for (const auto& y : all) {
      std::vector<double> differences;
      for (const double a : x) {
        for (const double b : y) differences.push_back(a - b);
      }
      EXPECT_EQ(pairs::medianDifference(x, y), sortedMedian(differences));
    }
  }
  const std::vector<double> huge{1.5e308, 1.6e308};
  EXPECT_EQ(failureNumber([&] { pairs::walshMedian(huge); }), 6);
}

}  // namespace
}  // namespace zelkova
