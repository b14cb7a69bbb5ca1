#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "unittests/support.h"
#include "zelkova/charts/yControlTest.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

constexpr double none = NoValue;

StringArray failed(const DoubleArray& y, const StringArray& phases, const std::array<std::string, 8>& k,
                   const DoubleArray& centre, const DoubleArray& lower, const DoubleArray& upper) {
  StringArray marks;
  yControlTest().CCTest(centre, lower, upper, y, phases, marks, k[0], k[1], k[2], k[3], k[4], k[5], k[6],
                        k[7]);
  return marks;
}

/// On points in sigma units: the centre line at 0, one sigma at 1 above and below.
StringArray failed(const DoubleArray& y, const StringArray& phases, const std::array<std::string, 8>& k) {
  const Index n = y.rows();
  return failed(y, phases, k, DoubleArray(n, 0), DoubleArray(n, -1), DoubleArray(n, 1));
}

struct Case {
  std::size_t test;
  const char* k;
  std::vector<double> y;
  std::vector<Index> signals;
  const char* phases = "";  ///< one letter a position; empty for one phase
};

// Faults: a boundary point that signals; a pattern one point too long or too short; a mark at all points of a
// pattern or at its first; a window across phases, or one step too strict about them; NoValue taken for a
// large number. Expected: each case by hand.
TEST(SpecialCauses, SignalAtTheLastPointOfTheirPattern) {
  const std::vector<Case> cases{
      {1, "3", {3, 3.01, -3, -3.5, 0, none}, {2, 4}},
      {1, "0", {0, 0.1, -0.1}, {2, 3}},
      {1, " 2.5 ", {2.1, 2}, {1}},  // half to even: 2
      {2, "4", {1, 0, 1, 1, 1, -1}, {4, 5}},
      {2, "9", {1, 1, 1, 1, 0, 1, 1, 1, 1}, {9}},
      {2, "3", {1, 1, 1, 1, 1, 1}, {3, 6}, "AAABBB"},
      {2, "3", {-1, -1, none, -1, -1, -1}, {6}},
      {2, "4", {1, 1, 1}, {}},
      {3, "3", {1, 2, 3, 4, 4, 3, 2, 1}, {4, 8}},
      {3, "3", {1, 2, 3, 2, 3, 4, 5}, {7}},
      {3, "3", {1, 2, 3, 4}, {4}, "ABBB"},
      {3, "3", {1, 2, 3, 4}, {}, "AABB"},
      {3, "3", {none, 3, 2, 1, none}, {4}},
      {4, "3", {1, 2, 1, 2, 1, 1, 2, 1, 2}, {4, 5, 9}},
      {4, "3", {1, 2, 1, 2, 3, 2}, {4}},
      {4, "3", {1, 2, 1, 2}, {4}, "ABBB"},
      {4, "3", {1, 2, 1, 2}, {}, "AABB"},
      {4, "3", {none, 2, 1, 2, 1, 2}, {5, 6}},
      {5, "2", {2.5, -0.1, 2.5}, {}},
      {5, "2", {2.5, 2.5, 0.5}, {}},
      {5, "2", {-2.1, -0.1, -2.1}, {3}},
      {5, "2", {2, 2.5, 2.5, 2, 2.5}, {3, 5}},
      {5, "2", {2.5, 2, 2, 0, 2.5, 2.5}, {}},
      {5, "2", {2.5, 2.5, 2.5, 2.5, 2.5}, {5}, "AABBB"},
      {5, "2", {2.5, none, 2.5, 2.5, 2.5}, {5}},
      {5, "0", {2.1, -2.1, 2, -2}, {1, 2}},
      {6, "4", {1.1, 1.1, 0.5, 1.1, 1.1}, {5}},
      {6, "4", {-1.1, -1, -1.1, -1.1, -1.1, 1.1}, {5}},
      {7, "3", {1, -1, 0, 1.01, 0, 0, 0}, {3, 7}},
      {7, "3", {0, 0, none, 0, 0, 0}, {6}},
      {7, "2", {0, 0, 0, 0}, {2, 4}, "AABB"},
      {8, "3", {1.1, -1.1, 1.5, 1, 2, 2, -2}, {3, 7}},
      {8, "2", {1.1, 0, 1.1, -1.1}, {4}},
      {8, "2", {1.1, 1.1, 1.1, 1.1}, {2, 4}, "AABB"},
  };
  for (const Case& c : cases) {
    const auto n = static_cast<Index>(c.y.size());
    StringArray phases(n);
    for (Index i = 1; *c.phases != '\0' && i <= n; ++i) phases(i) = c.phases[i - 1];
    std::array<std::string, 8> k;
    k[c.test - 1] = c.k;
    StringArray expected(n);
    for (const Index i : c.signals) expected(i) = "#" + std::to_string(c.test) + "#";
    EXPECT_EQ(failed(DoubleArray(c.y), phases, k), expected)
        << "test " << c.test << ", case " << &c - cases.data() + 1;
  }
}

// Faults: marks out of order; lines of one point used for another; a sigma taken from the wrong side; a line
// without value that signals. Expected: by hand.
TEST(SpecialCauses, FollowTheLinesOfEachPoint) {
  EXPECT_EQ(failed({0.1, 4, 4}, StringArray(3), {"3", "", "", "", "2", "", "", "2"}),
            (StringArray{"", "#1#", "#1##5##8#"}));
  const DoubleArray centre{10, 10, 10, 10, 0, none};
  const DoubleArray lower{9, 9, 9, 9, none, none};
  const DoubleArray upper{12, 12, 12, 12, none, none};
  EXPECT_EQ(failed({16.1, 6.9, 15.9, 7.1, 50, 50}, StringArray(6), {"3"}, centre, lower, upper),
            (StringArray{"#1#", "#1#", "", "", "", ""}));
  // A point on its line, where the centre and the distance add up to less: 0.2 + (0.9 - 0.2) < 0.9.
  EXPECT_EQ(failed({0.9}, StringArray(1), {"", "", "", "", "", "", "", "1"}, {0.2}, {-0.5}, {0.9}),
            StringArray(1));
  // Points in a row on one side do not signal where their lines have no value, rising ones do.
  EXPECT_EQ(failed({1, 2, 3}, StringArray(3), {"", "2", "2"}, DoubleArray(3, none), DoubleArray(3, none),
                   DoubleArray(3, none)),
            (StringArray{"", "", "#3#"}));
}

// Faults: a parameter that makes no window and marks every point, or none; a short array read beyond its end.
TEST(SpecialCauses, RefuseWhatMakesNoWindow) {
  const DoubleArray y{1, 2};
  const StringArray phases(2);
  EXPECT_EQ(failureNumber([&] { failed(y, phases, {"x"}); }), 13);
  EXPECT_EQ(failureNumber([&] { failed(y, phases, {"40000"}); }), 6);
  EXPECT_EQ(failureNumber([&] { failed(y, phases, {"", "0"}); }), 9);
  EXPECT_EQ(failureNumber([&] { failed(y, phases, {"", "", "", "", "-1"}); }), 9);
  EXPECT_EQ(failureNumber([&] { failed(y, {"a"}, {}); }), 9);
  EXPECT_EQ(failureNumber([&] { failed(y, phases, {}, {0}, {-1, -1}, {1, 1}); }), 9);
}

// Fault: marks of an earlier chart that show through in the array of the same size. Expected: by hand.
TEST(SpecialCauses, WriteOverEarlierMarks) {
  const DoubleArray centre(3, 0), lower(3, -1), upper(3, 1);
  StringArray marks;
  const auto mark = [&](const DoubleArray& y, const char* k) {
    yControlTest().CCTest(centre, lower, upper, y, {}, marks, k, "", "", "", "", "", "", "");
  };
  mark({4, 0, 4}, "3");
  EXPECT_EQ(marks, (StringArray{"#1#", "", "#1#"}));
  mark({0, 4, 0}, "3");
  EXPECT_EQ(marks, (StringArray{"", "#1#", ""}));
  EXPECT_EQ(failureNumber([&] { mark({4, 4, 4}, "x"); }), 13);
  EXPECT_EQ(marks, (StringArray{"", "#1#", ""}));
}

}  // namespace
}  // namespace zelkova
