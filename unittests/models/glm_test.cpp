#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/models/yGLM.h"

namespace zelkova {
namespace {

StringArray textTable(const std::vector<std::vector<std::string>>& columns) {
  StringArray table(static_cast<Index>(columns.front().size()), static_cast<Index>(columns.size()), "");
  for (Index j = 1; j <= table.columns(); ++j) {
    const std::vector<std::string>& column = columns[static_cast<std::size_t>(j - 1)];
    for (Index i = 1; i <= table.rows(); ++i) table(i, j) = column[static_cast<std::size_t>(i - 1)];
  }
  return table;
}

/// `labels` in turn, each `run` times, over and over until there are `n`.
std::vector<std::string> inTurn(const std::vector<std::string>& labels, std::size_t run, std::size_t n) {
  std::vector<std::string> result;
  for (std::size_t i = 0; i < n; ++i) result.push_back(labels[i / run % labels.size()]);
  return result;
}

DoubleArray tableOf(const std::vector<double>& column) {
  DoubleArray table(static_cast<Index>(column.size()), 1, 0.0);
  for (Index i = 1; i <= table.rows(); ++i) table(i, 1) = column[static_cast<std::size_t>(i - 1)];
  return table;
}

struct Data {
  DoubleArray dy;
  StringArray df, dfn;
  DoubleArray dc;
  StringArray dCn;
};

// R's data set `npk` (Yates, 1937): yield of peas in six blocks of four plots, with and without three
// fertilizers.
const Data npk{{49.5, 62.8, 46.8, 57.0, 59.8, 58.5, 55.5, 56.0, 62.8, 55.8, 69.5, 55.0,
                62.0, 48.8, 45.5, 44.2, 52.0, 51.5, 49.8, 48.8, 57.2, 59.0, 53.2, 56.0},
               textTable({inTurn({"1", "2", "3", "4", "5", "6"}, 4, 24),
                          {"0", "1", "0", "1", "1", "1", "0", "0", "0", "1", "1", "0",
                           "1", "1", "0", "0", "1", "0", "1", "0", "1", "1", "0", "0"},
                          {"1", "1", "0", "0", "0", "1", "0", "1", "1", "1", "0", "0",
                           "0", "1", "0", "1", "1", "0", "0", "1", "0", "1", "1", "0"},
                          {"1", "0", "0", "1", "0", "1", "1", "0", "0", "1", "0", "1",
                           "0", "1", "1", "0", "0", "0", "1", "1", "1", "0", "1", "0"}}),
               {"block", "N", "P", "K"},
               {},
               {}};

// R's data set `ToothGrowth` (Crampton, 1947): length of odontoblasts of guinea pigs under three doses of
// vitamin C, as orange juice or as ascorbic acid. `litter` numbers the ten animals of a dose in pairs.
const std::vector<double> length{4.2,  11.5, 7.3,  5.8,  6.4,  10,   11.2, 11.2, 5.2,  7,    16.5, 16.5,
                                 15.2, 17.3, 22.5, 17.3, 13.6, 14.5, 18.8, 15.5, 23.6, 18.5, 33.9, 25.5,
                                 26.4, 32.5, 26.7, 21.5, 23.3, 29.5, 15.2, 21.5, 17.6, 9.7,  14.5, 10,
                                 8.2,  9.4,  16.5, 9.7,  19.7, 23.3, 23.6, 26.4, 20,   25.2, 25.8, 21.2,
                                 14.5, 27.3, 25.5, 26.4, 22.4, 24.5, 24.8, 30.9, 26.4, 27.3, 29.4, 23};
const std::vector<std::string> supplement = inTurn({"VC", "OJ"}, 30, 60);
const std::vector<std::string> dose = inTurn({"0.5", "1", "2"}, 10, 60);
const std::vector<std::string> litter = inTurn({"1", "2", "3", "4", "5"}, 2, 60);

Data toothGrowth() {
  std::vector<double> amounts;
  amounts.reserve(dose.size());
  for (const std::string& text : dose) amounts.push_back(std::stod(text));
  return {DoubleArray(length), textTable({supplement}), {"supp"}, tableOf(amounts), {"dose"}};
}

/// Three factors, with the first pair of animals left out, so that one litter is missing from its cell.
Data litters() {
  const auto rest = [](const std::vector<std::string>& column) {
    return std::vector<std::string>(column.begin() + 2, column.end());
  };
  return {DoubleArray(std::vector<double>(length.begin() + 2, length.end())),
          textTable({rest(litter), rest(dose), rest(supplement)}),
          {"litter", "dose", "supp"},
          {},
          {}};
}

// R's data set `warpbreaks` without rows 1, 5, 20, 33 and 50: breaks of yarn for two wools, three tensions.
Data unbalancedBreaks() {
  const std::vector<double> breaks{26, 30, 54, 25, 70, 52, 51, 26, 67, 18, 21, 29, 17, 12, 18, 35, 30, 36,
                                   36, 21, 24, 18, 10, 43, 28, 15, 26, 27, 14, 29, 19, 29, 31, 41, 20, 44,
                                   42, 26, 19, 16, 39, 28, 21, 39, 29, 20, 21, 24, 17, 13, 15, 15, 16, 28};
  Data data{{}, {}, {"wool", "tension"}, {}, {}};
  std::vector<double> kept;
  std::vector<std::string> wool, tension;
  for (std::size_t i = 0; i < breaks.size(); ++i) {
    if (i == 0 || i == 4 || i == 19 || i == 32 || i == 49) continue;
    kept.push_back(breaks[i]);
    wool.emplace_back(i < 27 ? "A" : "B");
    tension.emplace_back(i / 9 % 3 == 0 ? "L" : i / 9 % 3 == 1 ? "M" : "H");
  }
  data.dy = DoubleArray(kept);
  data.df = textTable({wool, tension});
  return data;
}

// Change in growth rate of fourteen children under growth hormone, by sex and by the depression of their bone
// development: the unbalanced two-factor example of Kutner, Nachtsheim, Neter and Li, Applied Linear
// Statistical Models, 5th edition, section 23.2.
const Data growth{{1.4, 2.4, 2.2, 2.1, 1.7, .7, 1.1, 2.4, 2.5, 1.8, 2.0, .5, .9, 1.3},
                  textTable({inTurn({"male", "female"}, 7, 14),
                             {"severe", "severe", "severe", "moderate", "moderate", "mild", "mild", "severe",
                              "moderate", "moderate", "moderate", "mild", "mild", "mild"}}),
                  {"sex", "bone"},
                  {},
                  {}};

// Calcium in turnip greens: two determinations of each of three leaves of four plants (Snedecor and Cochran,
// Statistical Methods, 6th edition, section 10.17).
const Data turnips{{3.28, 3.09, 3.52, 3.48, 2.88, 2.80, 2.46, 2.44, 1.87, 1.92, 2.19, 2.19,
                    2.77, 2.66, 3.74, 3.44, 2.55, 2.55, 3.78, 3.87, 4.07, 4.12, 3.31, 3.31},
                   textTable({inTurn({"1", "2", "3", "4"}, 6, 24), inTurn({"1", "2", "3"}, 2, 24)}),
                   {"plant", "leaf"},
                   {},
                   {}};

class GLM : public WithHost {
 protected:
  void run(const Data& data, const StringArray& model, bool fullyNested = false, bool plot = false) {
    glm.GLMOutput(data.dy, "y", data.df, data.dfn, data.dc, data.dCn, model, table, sources, coefficients,
                  columns, s, r2, adjusted, fitted, residual, terms, shown, components, fullyNested, error,
                  plot);
  }

  /// The `ErrorCode` of a run that must assign nothing else.
  std::string errorOf(const Data& data, const StringArray& model) {
    table = coefficients = DoubleArray();
    sources = columns = terms = shown = StringArray();
    run(data, model);
    EXPECT_FALSE(table.filled() || sources.filled() || coefficients.filled() || columns.filled() ||
                 terms.filled() || shown.filled());
    return std::exchange(error, "");
  }

  yGLM glm;
  DoubleArray table, coefficients, fitted, residual, components;
  StringArray sources, columns, terms, shown;
  double s = -1, r2 = -1, adjusted = -1;
  std::string error;
};

// Faults: sums of squares in another order than the model's; adjusted ones of a term without its own columns
// alone; an F from the sequential mean square; columns that do not code what they say. Expected: R, with sum
// contrasts, anova(lm()) and drop1(lm(), . ~ ., test = "F"); for a nested term drop1 on its coded columns
// written out; summary(lm()). The bone growth table is also the published one: 0.1200, 4.1897,
// 0.0754, 1.3000.
TEST_F(GLM, AgreesWithRAndAPublishedExample) {
  struct Row {
    double df, seq, adj, F, p;
  };
  const struct {
    const char* name;
    Data data;
    StringArray model;
    std::vector<Row> rows;
    double dfE, sse, s, r2, adjusted;
  } cases[] = {{"growth",
                growth,
                {"sex", "bone", "sex*bone"},
                {{1, 0.00285714285714286, 0.12, 0.738461538461539, 0.415160447884724},
                 {2, 4.396, 4.18971428571428, 12.8914285714286, 0.00314466539210028},
                 {2, 0.0754285714285714, 0.0754285714285714, 0.232087912087912, 0.798033720952765}},
                8,
                1.3,
                0.403112887414928,
                0.774863928748144,
                0.634153884215735},
               {"npk",
                npk,
                {"block", "N", "P", "K", "N*P", "N*K", "P*K"},
                {{5, 343.295, 343.295, 4.44666642679812, 0.0159387902081939},
                 {1, 189.281666666667, 189.281666666667, 12.2587342136509, 0.00437181182579936},
                 {1, 8.40166666666667, 8.40166666666667, 0.54412981686036, 0.474904092674435},
                 {1, 95.2016666666667, 95.2016666666667, 6.16568920231713, 0.0287950535002326},
                 {1, 21.2816666666667, 21.2816666666667, 1.378296693412, 0.263165282877166},
                 {1, 33.135, 33.135, 2.14597200733998, 0.168647878500492},
                 {1, 0.481666666666667, 0.481666666666667, 0.0311949051919543, 0.862752085685407}},
                12,
                185.286666666667,
                3.92944723282494,
                0.78857363465375,
                0.594766133086353},
               {"a covariate crossed with a factor",
                toothGrowth(),
                {"supp", "dose", "supp*dose"},
                {{1, 205.35, 227.150083333333, 13.6246023765739, 0.000507339303179279},
                 {1, 2224.30429761905, 2224.30429761905, 133.415146386243, 1.90798546064616e-16},
                 {1, 88.9201071428571, 88.9201071428571, 5.33348297885475, 0.0246313581344882}},
                56,
                933.634928571429,
                4.08314245354217,
                0.729554369847571,
                0.715066211089405},
               {"unbalanced",
                unbalancedBreaks(),
                {"wool", "tension", "tension * wool"},
                {{1, 250.352687074829, 364.24754776799, 3.34233044102396, 0.0744617307001327},
                 {2, 1385.03635937027, 1465.81004822456, 6.72512632543559, 0.00287577669389909},
                 {2, 858.017132693222, 858.017132693221, 3.93657664834479, 0.0269194174539688}},
                43,
                4686.14484126984,
                10.4393540311492,
                0.347292772493811,
                0.271396583248905},
               {"nested in two factors",
                litters(),
                {"supp", "dose", "supp*dose", "litter(supp, dose)"},
                {{1, 134.64173727422, 195.98329, 15.1979875389408, 0.000526707854869368},
                 {2, 2250.35401007326, 2266.02780769231, 87.8622416844851, 4.9295707499471e-13},
                 {2, 106.471192307692, 106.471192307692, 4.1282801557941, 0.0264442345818686},
                 {23, 311.45375, 311.45375, 1.05010510167483, 0.445119216656649}},
                29,
                373.965,
                3.59100888714943,
                0.882285660696658,
                0.768630436541707}};
  for (const auto& c : cases) {
    run(c.data, c.model);
    ASSERT_EQ(error, "") << c.name;
    const auto rows = static_cast<Index>(c.rows.size());
    ASSERT_EQ(table.rows(), rows + 2);
    ASSERT_EQ(table.columns(), 6);
    double total = c.sse;
    for (Index i = 1; i <= rows; ++i) {
      const Row& row = c.rows[static_cast<std::size_t>(i - 1)];
      EXPECT_EQ(sources(i), c.model(i)) << c.name;
      EXPECT_EQ(table(i, GLMSources::DF), row.df) << c.name << i;
      EXPECT_TRUE(isClose(table(i, GLMSources::SeqSS), row.seq)) << c.name << i;
      EXPECT_TRUE(isClose(table(i, GLMSources::AdjSS), row.adj)) << c.name << i;
      EXPECT_TRUE(isClose(table(i, GLMSources::AdjMS), row.adj / row.df)) << c.name << i;
      EXPECT_TRUE(isClose(table(i, GLMSources::F), row.F, 1e-11)) << c.name << i;
      EXPECT_TRUE(isClose(table(i, GLMSources::PValue), row.p, 1e-10)) << c.name << i;
      total += row.seq;
    }
    const double n = static_cast<double>(c.data.dy.size());
    EXPECT_EQ(sources(rows + 1), "Error");
    EXPECT_EQ(sources(rows + 2), "Total");
    const double last[2][6] = {{c.dfE, c.sse, c.sse, c.sse / c.dfE, NoValue, NoValue},
                               {n - 1, total, NoValue, NoValue, NoValue, NoValue}};
    for (Index j = 1; j <= 6; ++j) {
      EXPECT_TRUE(isClose(table(rows + 1, j), last[0][j - 1])) << c.name << j;
      EXPECT_TRUE(isClose(table(rows + 2, j), last[1][j - 1])) << c.name << j;
    }
    EXPECT_TRUE(isClose(s, c.s)) << c.name;
    EXPECT_TRUE(isClose(r2, c.r2)) << c.name;
    EXPECT_TRUE(isClose(adjusted, c.adjusted)) << c.name;
    EXPECT_FALSE(components.filled() || fitted.filled() || residual.filled());
  }
}

// Faults: a level in another's column, the wrong level left out, labels beside other coefficients than their
// own. Expected: R, summary(lm()) with sum contrasts, its first levels being these.
TEST_F(GLM, NamesCoefficients) {
  const auto expectRow = [&](Index i, const char* label, double b, double se, double t, double p) {
    EXPECT_EQ(columns(i), label);
    EXPECT_TRUE(isClose(coefficients(i, GLMCoefficients::Coefficient), b)) << label;
    EXPECT_TRUE(isClose(coefficients(i, GLMCoefficients::SE), se)) << label;
    EXPECT_TRUE(isClose(coefficients(i, GLMCoefficients::T), t, 1e-11)) << label;
    EXPECT_TRUE(isClose(coefficients(i, GLMCoefficients::PValue), p, 1e-10)) << label;
  };
  run(npk, {"block", "N", "P", "K", "N*P"});
  ASSERT_EQ(coefficients.rows(), 10);
  EXPECT_EQ(coefficients.columns(), 4);
  // lm(yield ~ block + N + P + K + N:P)
  expectRow(1, "Constant", 54.875, 0.807154270181987, 67.9857643417131, 4.80343681227864e-19);

  run(toothGrowth(), {"supp", "dose", "supp*dose"});
  // OJ comes first by letters, as in R.
  expectRow(1, "Constant", 7.4225, 1.11821461365602, 6.63781344775315, 1.37042431982911e-08);
  expectRow(2, "supp|OJ", 4.1275, 1.11821461365602, 3.69115190375225, 0.000507339303179275);
  expectRow(3, "dose", 9.76357142857143, 0.845290794323427, 11.5505474496338, 1.90798546064619e-16);
  expectRow(4, "supp|OJ*dose", -1.95214285714286, 0.845290794323427, -2.30943347573702, 0.0246313581344881);

  run(turnips, {"plant", "leaf(plant)"});
  ASSERT_EQ(coefficients.rows(), 12);
  expectRow(4, "plant|3", -0.0604166666666667, 0.0288404374677869, -2.09485957812355, 0.0580724495058828);
  expectRow(8, "leaf(plant)|2(2)", -0.283333333333333, 0.0470962371698158, -6.01605033352692,
            6.06560980063714e-05);
  run(litters(), {"supp", "dose", "supp*dose", "litter(dose supp)"});
  EXPECT_EQ(columns(7), "litter(dose supp)|1(0.5,OJ)");
  EXPECT_EQ(columns(11), "litter(dose supp)|2(0.5,VC)");  // 1 does not occur there
}

// Faults: a component over the wrong number of values, or from the wrong neighbour; a negative one cut off.
// Expected: the published 0.3652, 0.1611 and 0.0067; by hand the same from the mean squares 2.52011527777778,
// 0.328775 and 0.00665416666666667, six and two values a unit.
TEST_F(GLM, GivesVarianceComponents) {
  run(turnips, {"plant", "leaf(plant)"}, true);
  ASSERT_EQ(components.size(), 3);
  EXPECT_TRUE(isClose(components(1), (2.52011527777778 - 0.328775) / 6));
  EXPECT_TRUE(isClose(components(2), (0.328775 - 0.00665416666666667) / 2));
  EXPECT_TRUE(isClose(components(3), 0.00665416666666667));
  EXPECT_NEAR(components(1), 0.3652, 5e-5);
  EXPECT_NEAR(components(2), 0.1611, 1e-4);

  // By hand: the mean squares are 0, 8 and 1/2.
  const Data data{{1, 2, 5, 6, 1, 2, 5, 6},
                  textTable({inTurn({"a", "b"}, 4, 8), inTurn({"1", "2"}, 2, 8)}),
                  {"A", "B"},
                  {},
                  {}};
  run(data, {"A", "B(A)"}, true);
  EXPECT_TRUE(isClose(components(1), -16 / 4.0));
  EXPECT_TRUE(isClose(components(2), 15.5 / 2));

  run(toothGrowth(), {"dose"}, true);
  EXPECT_EQ(components(1), NoValue);
}

// Faults: a covariate's power refused or coded as the covariate; fitted values of other columns than those
// that were fitted; residuals with more decimals than are shown. Expected: R, lm(dist ~ speed + I(speed^2))
// on the first ten rows of `cars`.
TEST_F(GLM, FitsPowersAndPlotsResiduals) {
  const Data cars{
      {2, 10, 4, 22, 16, 10, 18, 26, 34, 17}, {}, {}, tableOf({4, 4, 7, 7, 8, 9, 10, 10, 10, 11}), {"speed"}};
  run(cars, {"Speed", "speed*SPEED"}, false, true);
  ASSERT_EQ(error, "");
  EXPECT_TRUE(isClose(coefficients(2, 1), 2.43641692971721, 1e-11));
  EXPECT_TRUE(isClose(coefficients(3, 1), 0.00802035688977523, 1e-11));
  EXPECT_TRUE(isClose(fitted(10), 23.6214971332861));
  EXPECT_EQ(residual(10), -6.6214971);
  EXPECT_EQ(terms, (StringArray{"speed", "speed*speed"}));
  EXPECT_EQ(shown, (StringArray{"Speed", "speed*SPEED"}));
  EXPECT_FALSE(table.filled() || sources.filled() || components.filled());

  // The mean of each cell, by hand from the data.
  run(growth, {"sex", "bone", "sex*bone"}, false, true);
  EXPECT_TRUE(isClose(fitted(3), 2));
  EXPECT_TRUE(isClose(fitted(14), 0.9));
  EXPECT_EQ(residual(14), 0.4);
}

// Faults: a text that a user may well type refused, or another one taken for a term.
TEST_F(GLM, ReadsTerms) {
  run(litters(), {" SUPP ", "dose", " dose * supp", " litter ( supp  dose ) "});
  EXPECT_EQ(error, "");
  EXPECT_EQ(terms, (StringArray{"supp", "dose", "dose*supp", "litter(supp,dose)"}));
  EXPECT_EQ(shown, (StringArray{"SUPP", "dose", "dose * supp", "litter(supp  dose)"}));

  const char* const illegal = "Illegal terms in model";
  const char* const notFactors = "Nested terms must be factors";
  const char* const notHierarchical = "Model is not hierarchical";
  const struct {
    StringArray model;
    const char* expected;
  } cases[] = {{{"supp", "wool"}, illegal},
               {{"supp", ""}, illegal},
               {{"supp", "(dose)"}, illegal},
               {{"supp", "dose", "supp*"}, illegal},
               {{"supp", "dose", "supp*dose", "dose*SUPP"}, illegal},  // the same term twice
               {{"supp", "supp*supp"}, illegal},
               {{"supp", "lit(supp"}, illegal},
               {{"supp", "lit(supp))"}, illegal},
               {{"supp", "lit()"}, illegal},
               {{"supp", "lit(supp,,lit)"}, illegal},
               {{"supp", "lit(lit)"}, illegal},
               {{"supp", "supp*lit(supp)"}, illegal},
               {{"lit*supp", "wool"}, illegal},  // before the hierarchy is looked at
               {{"supp*dose", "lit(dose)"}, notFactors},
               {{"supp", "dose(supp)"}, notFactors},
               {{"supp", "supp*dose"}, notHierarchical},
               {{"supp", "dose", "lit", "supp*dose", "supp*lit", "supp*dose*lit"}, notHierarchical},
               {{"lit(supp)"}, notHierarchical}};
  Data data = toothGrowth();
  data.df = textTable({supplement, litter});
  data.dfn = {"supp", "lit"};
  for (const auto& c : cases) EXPECT_EQ(errorOf(data, c.model), c.expected) << c.model(c.model.rows());

  // A factor that encloses another may be nested itself.
  Data nested = turnips;
  nested.df =
      textTable({inTurn({"1", "2"}, 12, 24), inTurn({"1", "2"}, 6, 24), inTurn({"1", "2", "3"}, 2, 24)});
  nested.dfn = {"A", "B", "C"};
  run(nested, {"A", "B(A)", "C(A, B)"});
  EXPECT_EQ(error, "");
  EXPECT_EQ(table(3, GLMSources::DF), 8);
}

// Faults: a singular or saturated model that gets numbers made of rounding.
TEST_F(GLM, TellsWhatCannotBeFitted) {
  Data data = toothGrowth();
  data.df = textTable({supplement, std::vector<std::string>(60, "same")});
  data.dfn = {"supp", "lab"};
  EXPECT_EQ(errorOf(data, {"wool"}), "Factors must have more than 1 level");

  // Fahrenheit and Celsius: a sum of columns but for the rounding of the data.
  Data two = toothGrowth();
  two.dc = DoubleArray(60, 2, 0.0);
  two.dCn = {"celsius", "fahrenheit"};
  for (Index i = 1; i <= 60; ++i) {
    two.dc(i, 1) = 20 + two.dy(i) / 7;
    two.dc(i, 2) = 1.8 * two.dc(i, 1) + 32;
  }
  EXPECT_EQ(errorOf(two, {"supp", "celsius", "fahrenheit"}), "Error: Collinearity");
  for (Index i = 1; i <= 60; ++i) two.dc(i, 2) = two.dc(i, 1);
  EXPECT_EQ(errorOf(two, {"celsius", "fahrenheit"}), "Error: Collinearity");
  for (Index i = 1; i <= 60; ++i) two.dc(i, 2) = 1e200 * two.dc(i, 1);
  EXPECT_EQ(errorOf(two, {"fahrenheit"}), "Error: Collinearity");

  // A pair of levels that never occurs.
  const Data gap{
      {1, 2, 4, 3, 5, 9, 7, 6},
      textTable({{"a", "a", "a", "b", "b", "c", "c", "c"}, {"x", "y", "x", "x", "x", "y", "x", "y"}}),
      {"A", "B"},
      {},
      {}};
  EXPECT_EQ(errorOf(gap, {"A", "B", "A*B"}), "Error: Collinearity");
  run(gap, {"A", "B"});
  EXPECT_EQ(error, "");

  // The same among 200 columns, where elimination leaves more rounding.
  Data wide{DoubleArray(5000), StringArray(5000, 2, ""), {"A", "B"}, {}, {}};
  std::mt19937_64 random(5);
  for (const std::uint64_t missing : {3, 42, 77, 101, 150, 188}) {
    for (Index i = 1; i <= 5000; ++i) {
      const std::uint64_t cell = random() % 200;
      wide.dy(i) = static_cast<double>(i % 7);
      wide.df(i, 1) = std::to_string((cell == missing ? missing + 1 : cell) % 20);
      wide.df(i, 2) = std::to_string(cell / 20);
    }
    EXPECT_EQ(errorOf(wide, {"A", "B", "A*B"}), "Error: Collinearity") << missing;
  }

  Data few = gap;
  few.dy = {1, 2, 3, 4};
  few.df = textTable({{"a", "b", "c", "a"}, {"x", "y", "x", "y"}});
  EXPECT_EQ(errorOf(few, {"A", "B", "A*B"}), "Insufficient data points");

  // As many coefficients as values: the fit is exact, even one with an error above the limit from rounding.
  few.dy = {1e9, -2e9, 3e9, 4.1e9};
  run(few, {"A", "B"});
  EXPECT_EQ(error, "");
  EXPECT_EQ(table(3, GLMSources::DF), 0);
  for (const Index row : {1, 2}) {
    EXPECT_NE(table(row, GLMSources::AdjMS), NoValue);
    EXPECT_EQ(table(row, GLMSources::F), NoValue);
    EXPECT_EQ(table(row, GLMSources::PValue), NoValue);
  }
  EXPECT_EQ(table(3, GLMSources::AdjMS), NoValue);
  EXPECT_EQ(s, NoValue);
  EXPECT_EQ(coefficients(1, GLMCoefficients::SE), NoValue);

  // A constant response has nothing to explain.
  few.dy = DoubleArray(4, 0.1);
  run(few, {"A"});
  EXPECT_EQ(error, "");
  EXPECT_LT(table(1, GLMSources::AdjSS), 1e-20);
  EXPECT_EQ(table(1, GLMSources::F), NoValue);
}

// Fault: a model that fits the rules and data that do not fit the model, ending in a crash, a failure or a
// number that is not finite. The catalogue's own hostile arguments seldom make a model.
TEST_F(GLM, SurvivesModelsOfAnyData) {
  const StringArray pool{"A",      "B",   "C",   "x",   "z",   "A*B",  "B(A)",
                         "C(A B)", "x*x", "A*x", "B*C", "A*C", "A*B*C"};
  const std::vector<double> extremes{0, 1, -1, 1e300, 1e-300, 0.1, 5, 1e15, NoValue};
  std::mt19937_64 random(1);
  int fits = 0;
  for (int round = 0; round < 5000; ++round) {
    const auto n = static_cast<Index>(1 + random() % 12);
    Data data{DoubleArray(n), StringArray(n, 3, ""), {"A", "B", "C"}, DoubleArray(n, 2, 0.0), {"x", "z"}};
    const bool wild = random() % 3 == 0;
    const auto number = [&] {
      return wild ? extremes[random() % 9] : static_cast<double>(random() % 50) / 10;
    };
    for (double& y : data.dy.elements()) y = number();
    for (double& x : data.dc.elements()) x = number();
    for (std::string& level : data.df.elements())
      level = std::string(1, static_cast<char>('a' + random() % 3));
    StringArray model(static_cast<Index>(1 + random() % 5));
    for (std::string& term : model.elements()) term = pool(static_cast<Index>(1 + random() % 13));
    run(data, model, random() % 2 == 0, random() % 2 == 0);
    if (std::exchange(error, "").empty()) ++fits;
    for (const DoubleArray* result : {&table, &coefficients, &fitted, &residual, &components}) {
      for (const double x : result->elements()) ASSERT_TRUE(std::isfinite(x));
    }
  }
  EXPECT_GT(fits, 100);
}

// Fault: tables that do not match the data, read beyond their ends.
TEST_F(GLM, RefusesTablesOfOtherSizes) {
  const auto number = [&](const Data& data) { return failureNumber([&] { run(data, {"supp", "dose"}); }); };
  Data data = toothGrowth();
  data.dy = {1, 2, 3};
  EXPECT_EQ(number(data), 9);
  data = toothGrowth();
  data.dCn = {"dose", "second"};
  EXPECT_EQ(number(data), 9);
  data = toothGrowth();
  data.dfn = {};
  EXPECT_EQ(number(data), 9);
  data = toothGrowth();
  EXPECT_EQ(failureNumber([&] { run(data, {}); }), 9);
}

}  // namespace
}  // namespace zelkova
