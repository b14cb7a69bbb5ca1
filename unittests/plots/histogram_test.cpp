#include <gtest/gtest.h>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/plots/yHistogram.h"

namespace zelkova {
namespace {

class Histogram : public WithHost {
 protected:
  void run(const DoubleArray& data) { bars.HistogramOutput(data, midpoints, interval, frequency, normal); }

  yHistogram bars;
  DoubleArray midpoints, interval, frequency, normal;
};

// Faults: bars cut at the wrong places where widths differ; a curve scaled by bar width, or not to the number
// of values; one interval or a vanishing curve taken for a failure. Expected: R for v = trees$Volume and
// gi = c(10, 20, 30, 50, 80), table(findInterval(v, c(15, 25, 40, 65))) and 31 d / sum(d) with
// d = dnorm(gi, mean(v), sd(v)).
TEST_F(Histogram, CountsAndFitsAtGivenMidpoints) {
  midpoints = {10, 20, 30, 50, 80};
  run({10.3, 10.3, 10.2, 16.4, 18.8, 19.7, 15.6, 18.2, 22.6, 19.9, 24.2, 21,   21.4, 21.3, 19.1, 22.2,
       33.8, 27.4, 25.7, 24.9, 34.5, 31.7, 36.3, 38.3, 42.6, 55.4, 55.7, 58.3, 51.5, 51,   77});
  EXPECT_EQ(interval, midpoints);
  EXPECT_EQ(frequency, (DoubleArray{3, 14, 7, 6, 1}));
  EXPECT_TRUE(areClose(normal, {5.233524192654060, 9.175628314212547, 11.110876091994001, 5.367672764721645,
                                0.112298636417744}));
  midpoints = {-3e8, -2e8};
  run({1, 2, 3});
  EXPECT_EQ(frequency, (DoubleArray{0, 3}));
  EXPECT_EQ(normal, (DoubleArray{NoValue, NoValue}));
}

// Faults: chosen midpoints that do not come back to the caller, by success or failure; a half-assigned
// result.
TEST_F(Histogram, ChoosesMidpointsAndKeepsThem) {
  // The spread of these overflows, the midpoints do not.
  EXPECT_EQ(failureNumber([&] { run({-8e307, 8e307}); }), 1004);
  EXPECT_EQ(midpoints, GetHistogramBins({-8e307, 8e307}));
  midpoints = {2, 1};
  EXPECT_EQ(failureNumber([&] { run({7, 8}); }), 5);
  EXPECT_FALSE(interval.filled() || frequency.filled() || normal.filled());
  midpoints = {};
  run({7, 7, 7});
  EXPECT_EQ(midpoints, DoubleArray{7});
  EXPECT_EQ(frequency, DoubleArray{3});
  EXPECT_EQ(normal, DoubleArray{NoValue});
}

}  // namespace
}  // namespace zelkova
