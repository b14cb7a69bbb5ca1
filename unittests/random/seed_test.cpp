#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unittests/cli/runProgram.h"

namespace zelkova::cli {
namespace {

const char* const request =
    R"({"call": "yRandom.RandomOutput", "args": ["Normal", 2, 3, 10, 2, "", null, null]})";

// Faults: a seed that does not repeat a run, that starts every call of it anew, or that outlives it.
TEST(Seed, RepeatsARun) {
  const std::string twoRequests = std::string(request) + "\n" + request + "\n";
  const Outcome first = run({"batch", "--seed", "7"}, twoRequests);
  EXPECT_EQ(run({"batch", "--seed=7"}, twoRequests).out, first.out);
  EXPECT_NE(run({"batch", "--seed=8"}, twoRequests).out, first.out);
  EXPECT_NE(run({"batch"}, twoRequests).out, first.out);
  const std::size_t end = first.out.find('\n');
  EXPECT_NE(first.out.substr(0, end), first.out.substr(end + 1, end));
  EXPECT_EQ(run({"call", "yRandom.RandomOutput", "-", "--json", "--seed", "7"}, request).out,
            first.out.substr(0, end + 1));
}

// Fault: a seed that is none, taken for another.
TEST(Seed, IsAWholeNumberOf64Bits) {
  EXPECT_EQ(run({"batch", "--seed=18446744073709551615"}, request).code, 0);
  for (const char* seed : {"--seed=-5", "--seed=1.5", "--seed=18446744073709551616", "--seed=x", "--seed="}) {
    const Outcome outcome = run({"batch", seed}, request);
    EXPECT_EQ(outcome.code, 2) << seed;
    EXPECT_EQ(outcome.out, "") << seed;
    EXPECT_NE(outcome.err.find("--seed"), std::string::npos) << outcome.err;
  }
  // As from a script whose variable is not set: a run that cannot be repeated, though it was asked for.
  EXPECT_EQ(run({"batch", "--seed", ""}, request).code, 2);
}

}  // namespace
}  // namespace zelkova::cli
