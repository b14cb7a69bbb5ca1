#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/models/yBoxCox.h"

namespace zelkova {
namespace {

// R's data set `trees`: volume of timber.
const DoubleArray volume{10.3, 10.3, 10.2, 16.4, 18.8, 19.7, 15.6, 18.2, 22.6, 19.9, 24.2,
                         21,   21.4, 21.3, 19.1, 22.2, 33.8, 27.4, 25.7, 24.9, 34.5, 31.7,
                         36.3, 38.3, 42.6, 55.4, 55.7, 58.3, 51.5, 51,   77};

/// "1", ..., then again from "1" after `levels`.
StringArray labelled(Index n, Index levels) {
  StringArray labels(n);
  for (Index i = 0; i < n; ++i) labels(i + 1) = std::to_string(i % levels + 1);
  return labels;
}

struct BoxCox : WithHost {
  void run(const DoubleArray& dy, const StringArray& dx, bool transform = false,
           const std::string& power = "") {
    double lambda = 0, minimum = 0, limit = 0, lower = 0, upper = 0;
    yBoxCox().BoxcoxOutput(dy, dx, transform, power, lambda, minimum, limit, lower, upper, powers, spreads,
                           transformed);
    results = {lambda, minimum, limit, lower, upper};
  }
  DoubleArray results, powers, spreads, transformed;
};

// Faults: a point of the walk left out, doubled or unsorted; a walk that knows only the way down, or does not
// outlast an overflow; subgroups taken as runs; the wrong m; limits between the wrong points, or beyond the
// end of the curve. Expected: R, by the definitions in plain powers: w = y^l / (l g^(l - 1)) or g log(y), its
// sum(abs(diff(w))) / (n - 1) / 1.128 or sqrt(sum((w - ave(w, dx))^2) / m) / c4(m + 1), and the same steps.
TEST_F(BoxCox, WalksTheCurveOfSpreads) {
  run(volume, labelled(31, 31));
  EXPECT_TRUE(areClose(
      results, {-0.0625, 3.360357435079219, 3.428433183622594, -0.472835554797565, 0.345375788131396}));
  EXPECT_EQ(powers,
            (DoubleArray{-1, -0.5, -0.25, -0.125, -0.0625, 0, 0.0625, 0.125, 0.25, 0.5, 1, 2, 3, 4, 5}));
  EXPECT_TRUE(isClose(spreads(1), 3.69681722438866));
  EXPECT_TRUE(isClose(spreads(6), 3.36139267136404));
  EXPECT_TRUE(isClose(spreads(15), 42.55114797944255));
  run(volume, labelled(31, 6));
  EXPECT_TRUE(areClose(results, {-0.140625, 14.9730915629107351, 15.0554731050208677, -0.3125379271484243,
                                 0.0339877052653434}));
  run({2, 8, 4, 16, 32}, {"a", "b", "c", "a", "d"});
  EXPECT_TRUE(areClose(results, {1.03125, 12.40514872877531, 25.11135346495001, 0, 3.65823684170033}));

  DoubleArray roots(12);
  for (Index i = 1; i <= 12; ++i) roots(i) = 100 * std::pow(static_cast<double>(i), 1.0 / 7);
  run(roots, labelled(12, 12));
  EXPECT_TRUE(areClose(results, {6.25, 3.03004728528896, 3.23013684529729, 3, 7}));

  // By hand: a spread at 3 would be 1E+450; the logarithms are equally spaced and their mean is 0.
  run({1e-150, 1e-50, 1e50, 1e150}, labelled(4, 4));
  EXPECT_EQ(results(1), 0);
  EXPECT_TRUE(isClose(results(2), 100 * std::log(10) / 1.128));
  EXPECT_EQ(powers(powers.rows()), 2);
}

// Faults: a power that is not trimmed; a 0 that is not the logarithm; a text read that nobody asked for; an
// earlier result left standing; data without a logarithm or a spread that give a number; a walk over constant
// data without end. Expected: by hand.
TEST_F(BoxCox, TransformsOrRefuses) {
  const DoubleArray y{1, 4, 9, 100};
  const StringArray x = labelled(4, 4);
  run(y, x, true, " 0.5 ");
  EXPECT_TRUE(areClose(transformed, {1, 2, 3, 10}));
  run(y, x, true, "0");
  EXPECT_TRUE(isClose(transformed(3), std::log(9)));
  run(y, x, true, " ");
  EXPECT_TRUE(isClose(transformed(3), std::pow(9, results(1))));
  EXPECT_EQ(failureNumber([&] { run(y, x, true, "half"); }), 13);
  EXPECT_EQ(failureNumber([&] { run(y, x, true, "1000"); }), 6);
  EXPECT_EQ(failureNumber([&] { run({1, 0, 2}, x); }), 5);
  EXPECT_EQ(failureNumber([&] { run({3}, x); }), 11);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 3, 4, 5}, x); }), 9);
  EXPECT_TRUE(transformed.filled());
  run({5, 5, 5, 5}, x, false, "half");
  EXPECT_FALSE(transformed.filled());
  EXPECT_EQ(results(2), 0);
}

}  // namespace
}  // namespace zelkova
