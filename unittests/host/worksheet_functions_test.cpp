#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "host/EmbeddedWorksheetFunction.h"
#include "unittests/support.h"

namespace zelkova {
namespace {

using Arguments = std::vector<double>;

struct Function {
  std::size_t arguments;
  std::function<double(const Arguments&)> call;
  bool probability;  ///< every result lies within 0 and 1
};

const std::map<std::string, Function>& functions() {
  static EmbeddedWorksheetFunction f;
  static const std::map<std::string, Function> table = {
      {"NormSDist", {1, [](const Arguments& a) { return f.NormSDist(a[0]); }, true}},
      {"NormSInv", {1, [](const Arguments& a) { return f.NormSInv(a[0]); }, false}},
      {"NormDist", {4, [](const Arguments& a) { return f.NormDist(a[0], a[1], a[2], a[3] != 0); }, false}},
      {"NormInv", {3, [](const Arguments& a) { return f.NormInv(a[0], a[1], a[2]); }, false}},
      {"LogNormDist", {3, [](const Arguments& a) { return f.LogNormDist(a[0], a[1], a[2]); }, true}},
      {"LogInv", {3, [](const Arguments& a) { return f.LogInv(a[0], a[1], a[2]); }, false}},
      {"TDist", {3, [](const Arguments& a) { return f.TDist(a[0], a[1], a[2]); }, true}},
      {"TInv", {2, [](const Arguments& a) { return f.TInv(a[0], a[1]); }, false}},
      {"ChiDist", {2, [](const Arguments& a) { return f.ChiDist(a[0], a[1]); }, true}},
      {"ChiInv", {2, [](const Arguments& a) { return f.ChiInv(a[0], a[1]); }, false}},
      {"FDist", {3, [](const Arguments& a) { return f.FDist(a[0], a[1], a[2]); }, true}},
      {"FInv", {3, [](const Arguments& a) { return f.FInv(a[0], a[1], a[2]); }, false}},
      {"BetaDist", {3, [](const Arguments& a) { return f.BetaDist(a[0], a[1], a[2]); }, true}},
      {"BetaInv", {3, [](const Arguments& a) { return f.BetaInv(a[0], a[1], a[2]); }, true}},
      {"GammaInv", {3, [](const Arguments& a) { return f.GammaInv(a[0], a[1], a[2]); }, false}},
      {"GammaLn", {1, [](const Arguments& a) { return f.GammaLn(a[0]); }, false}},
      {"BinomDist", {4, [](const Arguments& a) { return f.BinomDist(a[0], a[1], a[2], a[3] != 0); }, true}},
      {"Poisson", {3, [](const Arguments& a) { return f.Poisson(a[0], a[1], a[2] != 0); }, true}},
      {"HypGeomDist", {4, [](const Arguments& a) { return f.HypGeomDist(a[0], a[1], a[2], a[3]); }, true}},
      {"ExponDist", {3, [](const Arguments& a) { return f.ExponDist(a[0], a[1], a[2] != 0); }, false}},
      {"Weibull", {4, [](const Arguments& a) { return f.Weibull(a[0], a[1], a[2], a[3] != 0); }, false}},
      {"Ceiling", {2, [](const Arguments& a) { return f.Ceiling(a[0], a[1]); }, false}},
      {"RoundUp", {2, [](const Arguments& a) { return f.RoundUp(a[0], a[1]); }, false}},
      {"Gcd", {2, [](const Arguments& a) { return f.Gcd(a[0], a[1]); }, false}},
      {"Max", {2, [](const Arguments& a) { return f.Max(a[0], a[1]); }, false}},
      {"Min", {2, [](const Arguments& a) { return f.Min(a[0], a[1]); }, false}},
  };
  return table;
}

double call(const std::string& name, const Arguments& arguments) {
  return functions().at(name).call(arguments);
}

// Fault: a tail that comes from a difference, a series cut short, a wrong branch, a mistyped coefficient.
TEST(WorksheetFunctions, AgreeWithTheReferenceTable) {
  std::ifstream table(ZELKOVA_SOURCE_DIR "/unittests/host/worksheet_functions_reference.csv");
  std::string line;
  int rows = 0;
  while (std::getline(table, line)) {
    if (line.starts_with('#')) continue;
    std::istringstream cells(line);
    std::string name, cell;
    std::getline(cells, name, ',');
    Arguments arguments;
    while (std::getline(cells, cell, ',')) arguments.push_back(std::stod(cell));
    const double expected = arguments.back();
    arguments.pop_back();
    // Tails and what inverts them lose digits to the exponent, as does a quantile of 1E-200.
    const auto remote = [](double x) { return x != 0 && (std::fabs(x) < 1e-12 || std::fabs(x) > 1e12); };
    const double tolerance = remote(expected) || remote(arguments[0]) ? 1e-11 : 1e-13;
    EXPECT_NEAR(call(name, arguments), expected, tolerance * std::fabs(expected)) << line;
    ++rows;
  }
  EXPECT_GT(rows, 1000);
}

// Fault: an inverse that is not the inverse of its own distribution to the last bits.
TEST(WorksheetFunctions, NormalQuantileUndoesTheNormalProbability) {
  EmbeddedWorksheetFunction f;
  const auto ulp = [](double x) { return std::nextafter(x, std::numeric_limits<double>::infinity()) - x; };
  double worst = 0;
  double place = 0;
  for (double z = -37.4; z < 7; z += 0.000137) {
    const double p = f.NormSDist(z);
    const double density = std::exp(-z * z / 2) * 0.3989422804014327;
    const double excess = (std::fabs(f.NormSInv(p) - z) - 0.5 * ulp(p) / density) / ulp(std::fabs(z));
    if (excess <= worst) continue;
    worst = excess;
    place = z;
  }
  EXPECT_LE(worst, 4) << "units in the last place at " << place;
}

// Fault: a finite answer that is refused because a step on the way to it leaves the range of a double.
TEST(WorksheetFunctions, ReachTheEndsOfTheirRange) {
  // mpmath: sqrt(2 / (2 - p)) / sqrt(p), and the square of the root of erfc(z / sqrt(2)) = 5e-324.
  EXPECT_NEAR(call("TInv", {1e-310, 2}), 1.0000000000000015e155, 1e141);
  EXPECT_NEAR(call("ChiInv", {5e-324, 1}), 1481.1266547553563, 1e-10);
  // By hand: all lies at the two ends, in the ratio of the shapes.
  EXPECT_NEAR(call("BetaDist", {0.3, 5e-324, 5e-324}), 0.5, 1e-13);
  EmbeddedWorksheetFunction f;
  EXPECT_EQ(f.Average(DoubleArray{1.5e308, 1.5e308}), 1.5e308);
}

// Fault: a value outside a published domain that gets a number, an end with a finite result that gets none, a
// failure whose text does not tell what was wrong.
TEST(WorksheetFunctions, RefuseWhatIsOutsideTheirDomains) {
  struct Case {
    std::string name;
    Arguments arguments;
    std::string argument;
  };
  const double nan = std::nan("");
  const double inf = std::numeric_limits<double>::infinity();
  const Case cases[] = {{"NormSDist", {nan}, "z"},
                        {"NormSDist", {inf}, "z"},
                        {"NormSInv", {0}, "p"},
                        {"NormSInv", {1}, "p"},
                        {"NormDist", {0, 0, 0, 1}, "sd"},
                        {"NormDist", {0, 0, -1, 0}, "sd"},
                        {"NormInv", {0.5, nan, 1}, "mean"},
                        {"LogNormDist", {0, 0, 1}, "x"},
                        {"LogInv", {1, 0, 1}, "p"},
                        {"TDist", {-1e-9, 3, 2}, "x"},
                        {"TDist", {1, 0.99, 2}, "df"},
                        {"TDist", {1, 1e11, 2}, "df"},
                        {"TDist", {1, 3, 3}, "tails"},
                        {"TDist", {1, 3, 0.9}, "tails"},
                        {"TInv", {0, 3}, "p"},
                        {"TInv", {1.0001, 3}, "p"},
                        {"TInv", {0.5, 0.9}, "df"},
                        {"ChiDist", {-1, 3}, "x"},
                        {"ChiDist", {1, 0}, "df"},
                        {"ChiInv", {0, 3}, "p"},
                        {"ChiInv", {-0.1, 3}, "p"},
                        {"ChiInv", {0.5, nan}, "df"},
                        {"FDist", {-1, 3, 3}, "x"},
                        {"FDist", {1, 3, 0.5}, "df2"},
                        {"FInv", {0, 3, 3}, "p"},
                        {"FInv", {0.5, 0, 3}, "df1"},
                        {"BetaDist", {-0.1, 1, 1}, "x"},
                        {"BetaDist", {1.1, 1, 1}, "x"},
                        {"BetaDist", {0.5, 0, 1}, "alpha"},
                        {"BetaInv", {0.5, 1, -1}, "beta"},
                        {"BetaInv", {1.1, 1, 1}, "p"},
                        {"GammaInv", {1, 1, 1}, "p"},
                        {"GammaInv", {0.5, 0, 1}, "alpha"},
                        {"GammaInv", {0.5, 1, 0}, "beta"},
                        {"GammaLn", {0}, "x"},
                        {"GammaLn", {-1.5}, "x"},
                        {"BinomDist", {4, 3, 0.5, 1}, "successes"},
                        {"BinomDist", {-1, 3, 0.5, 0}, "successes"},
                        {"BinomDist", {1, 3, 1.5, 1}, "probability"},
                        {"Poisson", {-1, 3, 1}, "x"},
                        {"Poisson", {1, -0.1, 1}, "mean"},
                        {"HypGeomDist", {5, 4, 8, 20}, "sampleSuccesses"},
                        {"HypGeomDist", {1, 15, 8, 20}, "sampleSuccesses"},
                        {"HypGeomDist", {1, 21, 8, 20}, "sampleSize"},
                        {"ExponDist", {-1, 1, 1}, "x"},
                        {"ExponDist", {1, 0, 1}, "lambda"},
                        {"Weibull", {-1, 1, 1, 1}, "x"},
                        {"Weibull", {1, 0, 1, 1}, "shape"},
                        {"Weibull", {1, 1, 0, 1}, "scale"},
                        {"Weibull", {0, 0.5, 1, 0}, "x"},
                        {"Ceiling", {1, -1}, "x and significance"},
                        {"Ceiling", {-1, 1}, "x and significance"},
                        {"Gcd", {-1, 2}, "a"},
                        {"Gcd", {1e16, 2}, "a"},
                        {"Max", {1, nan}, "values"},
                        {"RoundUp", {1e308, -309}, ""}};
  for (const Case& c : cases) {
    const auto attempt = [&] { call(c.name, c.arguments); };
    EXPECT_EQ(failureNumber(attempt), 1004) << c.name << " " << c.argument;
    EXPECT_NE(failureText(attempt).find(c.name + ": " + c.argument), std::string::npos)
        << failureText(attempt);
  }
}

// Fault: rounding where the published functions cut off, a step at the wrong place, an end that is refused,
// and the whole-number rules of Ceiling and RoundUp. Values by hand.
TEST(WorksheetFunctions, StepCutOffAndEndWherePublished) {
  struct Case {
    std::string name;
    Arguments arguments;
    double expected;
  };
  const Case cases[] = {{"TInv", {1, 7}, 0},
                        {"ChiInv", {1, 7}, 0},
                        {"FInv", {1, 7, 2}, 0},
                        {"GammaInv", {0, 2, 3}, 0},
                        {"BetaInv", {0, 2, 3}, 0},
                        {"BetaInv", {1, 2, 3}, 1},
                        {"BetaDist", {0, 2, 3}, 0},
                        {"BetaDist", {1, 2, 3}, 1},
                        {"TDist", {0, 7, 1}, 0.5},
                        {"TDist", {0, 7, 2}, 1},
                        {"ChiDist", {0, 7}, 1},
                        {"FDist", {0, 7, 2}, 1},
                        {"NormSDist", {-40}, 0},
                        {"NormSDist", {40}, 1},
                        {"ChiDist", {1e5, 3}, 0},
                        {"GammaLn", {1}, 0},
                        {"GammaLn", {2}, 0},
                        {"BinomDist", {0.9, 2.9, 0.5, 1}, 0.25},
                        {"BinomDist", {1, 2, 0.5, 1}, 0.75},
                        {"BinomDist", {2, 2, 0.5, 1}, 1},
                        {"BinomDist", {0, 0, 0.5, 0}, 1},
                        {"BinomDist", {0, 3, 0, 0}, 1},
                        {"BinomDist", {3, 3, 1, 0}, 1},
                        {"BinomDist", {2, 3, 1, 1}, 0},
                        {"Poisson", {0, 0, 0}, 1},
                        {"Poisson", {2, 0, 0}, 0},
                        {"Poisson", {2.9, 0, 1}, 1},
                        {"HypGeomDist", {1.9, 1.9, 1.9, 1.9}, 1},
                        {"Weibull", {0, 1, 4, 0}, 0.25},
                        {"Weibull", {0, 2, 4, 0}, 0},
                        {"Weibull", {1e200, 3, 1e-200, 0}, 0},
                        {"ExponDist", {0, 2.5, 0}, 2.5},
                        {"Ceiling", {0.07, 0.01}, 0.07},
                        {"Ceiling", {0.57, 0.01}, 0.57},
                        {"Ceiling", {0.565, 0.01}, 0.57},
                        {"Ceiling", {2.5, 1}, 3},
                        {"Ceiling", {-2.5, -2}, -4},
                        {"Ceiling", {0, -2}, 0},
                        {"Ceiling", {3, 0}, 0},
                        {"Ceiling", {1.5, 0.1}, 1.5},
                        {"Ceiling", {1e300, 1e-300}, 1e300},
                        {"Ceiling", {1e-300, 1e300}, 1e300},
                        {"Ceiling", {25.000000000000004, 1}, 25},
                        {"Ceiling", {3 * 0.1, 0.1}, 0.3},
                        {"Ceiling", {0.35000000000000003, 0.01}, 0.35},
                        {"Ceiling", {0.9, 0.3}, 0.9},
                        {"Ceiling", {1e16, 1}, 1e16},
                        {"RoundUp", {33000000, 15}, 33000000},
                        {"RoundUp", {123, 22}, 123},
                        {"RoundUp", {123456.789, 15}, 123456.789},
                        {"RoundUp", {0.1, 23}, 0.1},
                        {"RoundUp", {25.000000000000004, 0}, 25},
                        {"RoundUp", {25.0000001, 0}, 26},
                        {"RoundUp", {-25.3, 0}, -26},
                        {"RoundUp", {1.21, 2}, 1.21},
                        {"RoundUp", {1.2101, 2}, 1.22},
                        {"RoundUp", {31415.92654, -2}, 31500},
                        {"RoundUp", {3.2, 0.9}, 4},
                        {"RoundUp", {76.9, -0.5}, 77},
                        {"RoundUp", {0, 3}, 0},
                        {"RoundUp", {1.5, 400}, 1.5},
                        {"RoundUp", {1e-320, -5}, 1e5},
                        {"Gcd", {24.9, 36.2}, 12},
                        {"Gcd", {5, 0}, 5},
                        {"Gcd", {0, 0}, 0},
                        {"Gcd", {7, 1}, 1}};
  for (const Case& c : cases) {
    EXPECT_EQ(call(c.name, c.arguments), c.expected) << c.name << " " << testing::PrintToString(c.arguments);
  }
  EXPECT_EQ(call("TDist", {2, 9.7, 2.9}), call("TDist", {2, 9, 2}));
  EXPECT_EQ(call("TInv", {0.05, 9.7}), call("TInv", {0.05, 9}));
  EXPECT_EQ(call("FInv", {0.05, 4.9, 9.7}), call("FInv", {0.05, 4, 9}));
  EXPECT_EQ(call("ChiInv", {0.05, 9.7}), call("ChiInv", {0.05, 9}));
}

// Fault: a loop without an end, an infinity, a not-a-number or a probability beyond 1 for arguments that no
// study has but a caller may pass.
TEST(WorksheetFunctions, EndForEveryArgument) {
  const double most = std::numeric_limits<double>::max();
  const double values[] = {0,   5e-324, 1e-300, 1e-5, 0.3,   1 - 1e-16, 1,    2,    7,     1000.5,
                           1e6, 1e10,   1e15,   1e30, 1e160, 1e300,     most, -0.5, -1e300};
  for (const auto& [name, function] : functions()) {
    std::vector<std::size_t> place(function.arguments, 0);
    Arguments arguments(function.arguments, values[0]);
    while (place.back() < std::size(values)) {
      double result = 0;
      int number = 0;
      try {
        result = function.call(arguments);
      } catch (const Failure& failure) {
        number = failure.number();
      }
      EXPECT_TRUE(number == 0 || number == 1004) << name << testing::PrintToString(arguments);
      const bool sound = function.probability ? result >= 0 && result <= 1 : std::isfinite(result);
      EXPECT_TRUE(sound) << name << testing::PrintToString(arguments) << " is " << result;
      for (std::size_t i = 0; i < place.size(); ++i) {
        const bool wraps = ++place[i] == std::size(values) && i + 1 < place.size();
        if (wraps) place[i] = 0;
        if (place[i] < std::size(values)) arguments[i] = values[place[i]];
        if (!wraps) break;
      }
    }
  }
}

}  // namespace
}  // namespace zelkova
