#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/gage/yGage.h"

namespace zelkova {
namespace {

constexpr double nothing = NoValue;

// The crossed study of the Automotive Industry Action Group's manual "Measurement Systems Analysis" (4th
// edition, 2010): operators A, B and C measured ten parts in turn, three times each.
// Published with it: sums of squares 88.3619 (parts), 3.1673 (operators), 0.3590 (interaction), 2.7589
// (error), 94.6471 (total).
const DoubleArray study{
    0.29,  -0.56, 1.34,  0.47, -0.8,  0.02,  0.59,  -0.31, 2.26, -1.36, 0.41,  -0.68, 1.17,  0.5,  -0.92,
    -0.11, 0.75,  -0.2,  1.99, -1.25, 0.64,  -0.58, 1.27,  0.64, -0.84, -0.21, 0.66,  -0.17, 2.01, -1.31,
    0.08,  -0.47, 1.19,  0.01, -0.56, -0.2,  0.47,  -0.63, 1.8,  -1.68, 0.25,  -1.22, 0.94,  1.03, -1.2,
    0.22,  0.55,  0.08,  2.12, -1.62, 0.07,  -0.68, 1.34,  0.2,  -1.28, 0.06,  0.83,  -0.34, 2.19, -1.5,
    0.04,  -1.38, 0.88,  0.14, -1.46, -0.29, 0.02,  -0.46, 1.77, -1.49, -0.11, -1.13, 1.09,  0.2,  -1.07,
    -0.67, 0.01,  -0.56, 1.45, -1.77, -0.15, -0.96, 0.67,  0.11, -1.45, -0.49, 0.21,  -0.49, 1.87, -2.16};

/// `levels` labels from `first` on, each of `run` rows in turn.
StringArray labels(char first, int levels, int run) {
  StringArray result(90);
  for (Index i = 1; i <= 90; ++i)
    result(i) = std::string(1, static_cast<char>(first + (i - 1) / run % levels));
  return result;
}
const StringArray studyParts = labels('0', 10, 1);
const StringArray studyOperators = labels('A', 3, 30);

class Crossed : public WithHost {
 protected:
  void run(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop, const std::string& method,
           const std::string& multiplier = "", const std::string& tolerance = "") {
    gage.GageCrossedOutput(dy, dpart, dop, multiplier, tolerance, method, anova, components, error);
  }

  DoubleArray slots(Index first, Index last) const {
    const std::span<const double> all = anova.vector();
    return DoubleArray(std::vector<double>(all.begin() + first - 1, all.begin() + last));
  }

  DoubleArray row(GageSource::Slot source) const {
    DoubleArray result(GageComponent::size);
    for (Index j = 1; j <= GageComponent::size; ++j) result(j) = components(source, j);
    return result;
  }

  yGage gage;
  DoubleArray anova, components;
  std::string error;
};

// Faults: a slot in another's place; the interaction pooled into the error (its p-value is 0.97), or main
// effects tested against the error; a component not cut at 0. Expected: R, summary(aov(y ~ part * op)), main
// effects against the interaction by pf, components by their formulas.
TEST_F(Crossed, AnovaAgreesWithR) {
  run(study, studyParts, studyOperators, "ANOVA", " 6 ", " 8");
  EXPECT_TRUE(error.empty());
  EXPECT_TRUE(areClose(slots(GageAnova::DFPart, GageAnova::DFTotal), {9, 2, 18, 60, 89}, 1e-11));
  EXPECT_TRUE(areClose(
      slots(GageAnova::SSPart, GageAnova::SSTotal),
      {88.3619344444445, 3.16726222222222, 0.358982222222222, 2.75893333333333, 94.6471122222222}, 1e-11));
  EXPECT_TRUE(areClose(slots(GageAnova::MSPart, GageAnova::MSError),
                       {9.81799271604938, 1.58363111111111, 0.0199434567901234, 0.0459822222222222}, 1e-11));
  EXPECT_TRUE(areClose(slots(GageAnova::FPart, GageAnova::FInteraction),
                       {492.291422664076, 79.4060492008271, 0.433721030135102}, 1e-11));
  EXPECT_TRUE(areClose(slots(GageAnova::PPart, GageAnova::PInteraction),
                       {1.16306399492598e-19, 1.17447760634102e-09, 0.974106404329046}, 1e-11));
  EXPECT_EQ(anova(GageAnova::DistinctCategories), 4);
  EXPECT_TRUE(areClose(row(GageSource::GageRR), {0.0981051440329218, 0.0826651684015583, 0.313217406976244,
                                                 1.87930444185746, 0.287515509845223, 0.234913055232183}));
  EXPECT_TRUE(areClose(row(GageSource::Operator), {0.0521229218106996, 0.0439197164586683, 0.22830444982676,
                                                   1.36982669896056, 0.209570313877391, 0.17122833737007}));
  EXPECT_EQ(row(GageSource::Reproducibility), row(GageSource::Operator));
  EXPECT_EQ(row(GageSource::OperatorByPart), DoubleArray(6, 0.0));
  const DoubleArray shares{0.0387454519428901, 0.917334831598442, 1};
  EXPECT_TRUE(areClose({components(GageSource::Repeatability, GageComponent::Contribution),
                        components(GageSource::PartToPart, GageComponent::Contribution),
                        components(GageSource::TotalVariation, GageComponent::Contribution)},
                       shares));
}

// Faults: a constant of another size (trials, operators, parts) under a range; an empty multiplier of 5.15 or
// 6; a tolerance that was not given. Expected: the formulas in R with d2 = 1.693, 1.907 and 3.179; and, to
// the digits that its own constants allow, the manual's EV, AV, GRR, PV, TV and ndc.
TEST_F(Crossed, AverageAndRangeAgreeWithTheManual) {
  run(study, studyParts, studyOperators, "X-bar and R");
  EXPECT_EQ(slots(1, 20), DoubleArray(20, NoValue));
  EXPECT_EQ(anova(GageAnova::DistinctCategories), 5);
  EXPECT_TRUE(areClose(row(GageSource::GageRR), {0.09374129418985, 0.0713623498178831, 0.306172000989395,
                                                 1.53086000494697, 0.267137323895189, nothing}));
  EXPECT_EQ(row(GageSource::Operator), DoubleArray(GageComponent::size, NoValue));
  EXPECT_EQ(row(GageSource::OperatorByPart), DoubleArray(GageComponent::size, NoValue));

  std::vector<double> sds;
  for (const auto source : {GageSource::GageRR, GageSource::Repeatability, GageSource::Reproducibility,
                            GageSource::PartToPart, GageSource::TotalVariation})
    sds.push_back(components(source, GageComponent::SD));
  EXPECT_TRUE(areClose(DoubleArray(sds), {0.30575, 0.20188, 0.22963, 1.10456, 1.14610}, 0.003));
}

// Faults: slots of the operator filled or the error of the wrong degrees of freedom; a negative part
// component cut at 0, or a failure for the categories of such a study. Expected: R, summary(aov(y ~ part)) of
// the first operator; by hand two parts that both read 1 and 3: mean squares 0 and 2, part (0 - 2)/2.
TEST_F(Crossed, TakesOneOperator) {
  const std::span<const double> all = study.vector();
  const DoubleArray first(std::vector<double>(all.begin(), all.begin() + 30));
  run(first, studyParts, studyOperators, "ANOVA", "", "8");
  EXPECT_TRUE(error.empty());
  EXPECT_TRUE(areClose(slots(GageAnova::DFPart, GageAnova::DFTotal), {9, nothing, nothing, 20, 29}, 1e-11));
  EXPECT_TRUE(areClose(slots(GageAnova::SSPart, GageAnova::SSTotal),
                       {28.1293633333333, nothing, nothing, 0.211733333333334, 28.3410966666667}, 1e-11));
  EXPECT_TRUE(areClose(slots(GageAnova::MSPart, GageAnova::MSError),
                       {3.12548481481481, nothing, nothing, 0.0105866666666667}, 1e-11));
  EXPECT_TRUE(
      areClose(slots(GageAnova::FPart, GageAnova::FInteraction), {295.22841449762, nothing, nothing}, 1e-11));
  EXPECT_TRUE(areClose(slots(GageAnova::PPart, GageAnova::PInteraction),
                       {2.89352989243671e-19, nothing, nothing}, 1e-11));
  EXPECT_EQ(anova(GageAnova::DistinctCategories), 13);
  EXPECT_TRUE(areClose(row(GageSource::GageRR), {0.0105866666666667, 0.0100932476629822, 0.102891528643843,
                                                 0.514457643219213, 0.100465156462239, 0.0643072054024016}));
  EXPECT_EQ(row(GageSource::Reproducibility), DoubleArray(GageComponent::size, NoValue));
  EXPECT_TRUE(
      areClose(row(GageSource::PartToPart), {1.03829938271605, 0.989906752337018, 1.01896976535913,
                                             5.09484882679567, 0.994940577289427, 0.636856103349459}));

  run({1, 3, 1, 3}, {"x", "x", "y", "y"}, StringArray(4, "A"), "ANOVA");
  EXPECT_TRUE(areClose(row(GageSource::PartToPart), {-1, -1, nothing, nothing, nothing, nothing}));
  EXPECT_TRUE(isClose(components(GageSource::GageRR, GageComponent::Contribution), 2));
  EXPECT_EQ(anova(GageAnova::DistinctCategories), 1);
}

// Fault: a check left out, in another order, or for the wrong method; results in spite of it.
TEST_F(Crossed, RefusesBadDesignsInOrder) {
  const StringArray two{"a", "a", "b", "b"};
  const StringArray one{"a", "a", "a", "a"};
  const struct {
    StringArray parts;
    StringArray operators;
    const char* method;
    const char* text;
  } cases[] = {
      {{"a", "a", "b", "b"}, {"1", "2", "1", "2"}, "ANOVA", "Design must be balanced and with replicates"},
      {{"a", "a", "b", "c"}, one, "ANOVA", "Design must be balanced and with replicates"},
      {one, one, "Anova", "At least 2 operator values required"},
      {one, one, "ANOVA", "At least 2 part values required"},
      {one, two, "X-bar and R", "At least 2 part values required"},
  };
  for (const auto& test : cases) {
    error.clear();
    run({1, 2, 3, 4}, test.parts, test.operators, test.method, "no number", "0");
    EXPECT_EQ(error, test.text);
  }
  EXPECT_FALSE(anova.filled() || components.filled());

  EXPECT_EQ(failureNumber([&] { run({1, 2, 3, 4}, two, one, "ANOVA", "x"); }), 13);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 3, 4}, two, one, "ANOVA", "", "x"); }), 13);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 3, 4}, two, one, "ANOVA", "", "0"); }), 11);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 3, 4}, two, one, "ANOVA", "", "-1"); }), 5);
  EXPECT_EQ(failureNumber([&] { run({1, 2, 3, 4, 5}, two, one, "ANOVA"); }), 9);
  EXPECT_EQ(failureNumber([&] { run({1e200, 2, 3, 4}, two, one, "ANOVA"); }), 6);
}

const StringArray twoParts{"p", "p", "p", "p", "q", "q", "q", "q"};
const StringArray twoOperators{"1", "1", "2", "2", "1", "1", "2", "2"};

// Faults: F against a mean square that is nothing; a division by a variance or standard deviation of 0; a
// negative reproducibility cut, or its root taken. By hand. Cells of one value 1, 2; 4, 9: part, operator and
// interaction sums of squares 50, 18, 8 (r = 2). Additive cells 1, 2; 4, 5: no interaction.
TEST_F(Crossed, LeavesOutWhatHasNoMeasure) {
  run({1, 1, 2, 2, 4, 4, 9, 9}, twoParts, twoOperators, "ANOVA");
  EXPECT_EQ(anova(GageAnova::FInteraction), NoValue);
  EXPECT_EQ(anova(GageAnova::PInteraction), NoValue);
  EXPECT_TRUE(isClose(anova(GageAnova::FPart), 50.0 / 8));
  EXPECT_TRUE(isClose(anova(GageAnova::FOperator), 18.0 / 8));

  run({0, 2, 1, 3, 3, 5, 4, 6}, twoParts, twoOperators, "ANOVA");
  EXPECT_EQ(anova(GageAnova::FPart), NoValue);
  EXPECT_EQ(anova(GageAnova::POperator), NoValue);
  EXPECT_EQ(anova(GageAnova::FInteraction), 0);

  for (const char* const method : {"ANOVA", "X-bar and R"}) {
    run(DoubleArray(8, 0.1), twoParts, twoOperators, method);
    EXPECT_EQ(row(GageSource::TotalVariation), (DoubleArray{0, 0, 0, 0, 0, NoValue})) << method;
    EXPECT_EQ(anova(GageAnova::DistinctCategories), NoValue) << method;
  }

  const double repeatability = (1 / 1.128) * (1 / 1.128);
  run({0, 1, 0, 1, 3, 4, 3, 4}, twoParts, twoOperators, "X-bar and R");
  EXPECT_TRUE(areClose(row(GageSource::Reproducibility),
                       {-repeatability / 4, -repeatability / 4 / (0.75 * repeatability + 9 / 1.411 / 1.411),
                        nothing, nothing, nothing, nothing}));
  EXPECT_TRUE(isClose(components(GageSource::GageRR, GageComponent::Variance), 0.75 * repeatability));
}

// Fault: a negative component of operators or parts kept. By hand: an interaction alone, cells of means 1, 3;
// 3, 1 with readings 1 to either side: mean squares 0, 0, 8 and 2, so interaction (8 - 2)/2.
TEST_F(Crossed, CutsNegativeComponents) {
  run({0, 2, 2, 4, 2, 4, 0, 2}, twoParts, twoOperators, "ANOVA");
  const std::span<const double> variances = components.column(GageComponent::Variance);
  EXPECT_TRUE(
      areClose(DoubleArray(std::vector<double>(variances.begin(), variances.end())), {5, 2, 3, 0, 3, 0, 5}));
  EXPECT_EQ(anova(GageAnova::DistinctCategories), 1);
}

// Faults: categories rounded, or below 1. By hand as above: 1.41 times the ratio is 1.3014 times the distance
// of the parts, so 4.99, 5.01 and 0.90.
TEST_F(Crossed, RoundsCategoriesDown) {
  const std::pair<double, double> cases[] = {{3.834, 4}, {3.85, 5}, {0.69, 1}};
  for (const auto& [distance, categories] : cases) {
    const double d = distance;
    run({0, 1, 0, 1, d, d + 1, d, d + 1}, twoParts, twoOperators, "X-bar and R");
    EXPECT_EQ(anova(GageAnova::DistinctCategories), categories) << distance;
  }
}

// Faults: labels in the order of texts ("10" before "9"), rows shuffled within a cell, a table of operators
// by parts, an empty cell at 0; a table of pairs that fills the memory where readings are passed as labels.
// By hand.
TEST_F(Crossed, LaysOutPlots) {
  DoubleArray partX, partY, opX, opY, cells, y;
  StringArray partLabels, opLabels, parts, operators;
  const auto plot = [&](const DoubleArray& dy, const StringArray& dpart, const StringArray& dop) {
    gage.GageCrossedPlotOutput(dy, dpart, dop, partX, partLabels, partY, opX, opLabels, opY, cells, y, parts,
                               operators);
  };
  plot({6, 1, 2, 3, 9}, {"10", "9", "10", "9", "11"}, {"b", "b", "a", "b", "a"});
  EXPECT_EQ(partLabels, (StringArray{"9", "10", "11"}));
  EXPECT_EQ(opLabels, (StringArray{"a", "b"}));
  EXPECT_TRUE(areClose(partX, {0.5, 1.0 / 6, 0.5, 1.0 / 6, 5.0 / 6}));
  EXPECT_EQ(opX, (DoubleArray{0.75, 0.75, 0.25, 0.75, 0.25}));
  EXPECT_EQ(partY, (DoubleArray{2, 4, 9}));
  EXPECT_TRUE(areClose(opY, {5.5, 10.0 / 3}));
  EXPECT_EQ(cells, DoubleArray::table({{NoValue, 2}, {2, 6}, {9, NoValue}}));
  EXPECT_EQ(y, (DoubleArray{2, 9, 1, 3, 6}));
  EXPECT_EQ(parts, (StringArray{"10", "11", "9", "9", "10"}));
  EXPECT_EQ(operators, (StringArray{"a", "a", "b", "b", "b"}));

  plot({3, 4}, {"p", "p"}, {"a", "A"});
  EXPECT_EQ(partY, (DoubleArray{NoValue}));
  EXPECT_EQ(opY.rows(), 2);
  EXPECT_EQ(failureNumber([&] { plot({1, 2}, {"p"}, {"a", "b"}); }), 9);
  StringArray many(20'000);
  for (Index i = 1; i <= many.rows(); ++i) many(i) = std::to_string(i);
  EXPECT_EQ(failureNumber([&] { plot(DoubleArray(20'000, 1.0), many, many); }), 7);
}

}  // namespace
}  // namespace zelkova
