#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unittests/support.h"
#include "zelkova/gage/yGageRun.h"

namespace zelkova {
namespace {

class GageRun : public testing::Test {
 protected:
  void run(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop, const StringArray& dtrial,
           const std::string& mean = "") {
    gage.GageRunOutput(dy, dpart, dop, dtrial, mean, x, y, meanLine, parts, operators, error);
  }

  yGageRun gage;
  DoubleArray x, y, meanLine;
  StringArray parts, operators;
  std::string error;
};

// Faults: slots of their own for each operator; labels or trials in the order of texts ("10" before "2"); a
// panel without margins; a mean line that must be a number; labels below the last reading that unbalance the
// study. By hand; no host runs.
TEST_F(GageRun, SharesTheSlotsOfAPart) {
  run({5, 6, 1, 2, 8, 7, 3, 4}, {"10", "10", "2", "2", "10", "10", "2", "2"},
      {"B", "B", "B", "B", "A", "A", "A", "A"}, {"1", "2", "10", "9", "2", "1", "9", "10"}, " abc");
  EXPECT_EQ(parts, (StringArray{"2", "10"}));
  EXPECT_EQ(operators, (StringArray{"A", "B"}));
  EXPECT_TRUE(areClose(x, {1.0 / 6, 2.0 / 6, 4.0 / 6, 5.0 / 6}));
  EXPECT_EQ(y, DoubleArray::table({{3, 2}, {4, 1}, {7, 5}, {8, 6}}));
  EXPECT_EQ(meanLine, DoubleArray(4, 4.5));

  run({5, 6}, {"1", "2", "3"}, {"A", "A", "A"}, {"1", "1", "1"}, " 4.25 ");
  EXPECT_EQ(meanLine, DoubleArray(2, 4.25));
  EXPECT_TRUE(error.empty());
}

// Fault: the first ten rows in place of the first ten trials; positions that leave room for all twelve.
TEST_F(GageRun, ShowsTenTrials) {
  DoubleArray dy(12);
  StringArray trials(12);
  for (Index i = 1; i <= 12; ++i) {
    dy(i) = static_cast<double>(13 - i);
    trials(i) = std::to_string(13 - i);
  }
  run(dy, StringArray(12, "p"), StringArray(12, "A"), trials);
  ASSERT_EQ(y.rows(), 10);
  for (Index i = 1; i <= 10; ++i) EXPECT_EQ(y(i, 1), i);
  EXPECT_TRUE(isClose(x(10), 10.0 / 11));
  EXPECT_EQ(meanLine, DoubleArray(10, 6.5));
}

// Fault: a limit at the wrong number, in the wrong order, or before the balance; results in spite of it.
TEST_F(GageRun, RefusesWhatDoesNotFit) {
  const auto labels = [](int levels, int run, int repeats) {
    std::vector<std::string> result;
    for (int k = 0; k < repeats; ++k) {
      for (int i = 0; i < levels; ++i)
        result.insert(result.end(), static_cast<std::size_t>(run), std::to_string(i));
    }
    return StringArray(result);
  };
  const struct {
    int parts;
    int operators;
    const char* text;
  } cases[] = {{11, 11, "Limited to 10 parts"}, {10, 11, "Limited to 10 operators"}, {10, 10, ""}};
  for (const auto& test : cases) {
    error.clear();
    const Index n = Index{test.parts} * test.operators;
    run(DoubleArray(n, 1.0), labels(test.parts, 1, test.operators), labels(test.operators, test.parts, 1),
        StringArray(n, "1"));
    EXPECT_EQ(error, test.text);
    EXPECT_EQ(y.filled(), error.empty());
  }
  run(DoubleArray(12, 1.0), labels(12, 1, 1), labels(2, 6, 1), StringArray(12, "1"));
  EXPECT_EQ(error, "Design unbalanced");
  EXPECT_EQ(failureNumber([&] { run({1, 2}, {"a", "b"}, {"1", "1"}, {"1"}); }), 9);
}

}  // namespace
}  // namespace zelkova
