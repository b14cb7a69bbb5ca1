#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/gage/yAAA.h"

namespace zelkova {
namespace {

constexpr double nothing = NoValue;

/// The columns of a study.
struct Sheet {
  std::vector<std::string> dy, dpart, dop, dtrial, dstd;

  void add(const std::string& rating, const std::string& part, const std::string& appraiser,
           const std::string& trial, const std::string& standard) {
    dy.push_back(rating);
    dpart.push_back(part);
    dop.push_back(appraiser);
    dtrial.push_back(trial);
    dstd.push_back(standard);
  }

  Sheet with(std::vector<std::string> Sheet::*column, std::size_t row, const std::string& text) const {
    Sheet result = *this;
    (result.*column)[row] = text;
    return result;
  }
};

/// A text a part, its characters the ratings by the appraisers "A", "B", ... trial by trial; the standard
/// behind a blank.
Sheet sheetOf(const std::vector<std::string>& parts, std::size_t trials) {
  Sheet sheet;
  for (std::size_t part = 0; part < parts.size(); ++part) {
    const std::size_t raters = parts[part].find(' ');
    const std::string standard = raters == std::string::npos ? "" : parts[part].substr(raters + 1);
    for (std::size_t r = 0; r < std::min(raters, parts[part].size()); ++r) {
      sheet.add(std::string(1, parts[part][r]), std::to_string(part + 1),
                std::string(1, static_cast<char>('A' + r / trials)), std::to_string(r % trials + 1),
                standard);
    }
  }
  if (sheet.dstd.front().empty()) sheet.dstd.clear();
  return sheet;
}

/// The attribute study of the Automotive Industry Action Group's manual "Measurement Systems Analysis" (4th
/// edition, 2010): appraisers A, B and C, fifty parts, three trials; 1 accepts.
std::vector<std::string> attributeStudy() {
  std::vector<std::string> parts(50, "111111111 1");
  for (const std::size_t part : {3, 4, 5, 9, 25, 37, 39, 42, 45, 48, 50}) parts[part - 1] = "000000000 0";
  const std::pair<std::size_t, const char*> others[] = {
      {6, "110110100 1"},  {7, "111111101 1"},  {12, "000000010 0"}, {14, "110111100 1"},
      {21, "110101010 1"}, {22, "001010110 0"}, {26, "010000001 0"}, {30, "000001000 0"},
      {34, "001001011 0"}, {36, "110111101 1"}, {43, "101111110 1"}};
  for (const auto& [part, ratings] : others) parts[part - 1] = ratings;
  return parts;
}

class Agreement : public WithHost {
 protected:
  void run(const Sheet& sheet, bool between = true, double confidence = 0.95) {
    error.clear();
    aaa.GageAAAOutput(StringArray(sheet.dy), StringArray(sheet.dpart), StringArray(sheet.dop),
                      StringArray(sheet.dtrial), StringArray(sheet.dstd), order, ordinal, between, confidence,
                      appraisers, categories, within, withinKappa, among, amongKappa, standard, standardKappa,
                      all, allKappa, disagreement, error);
  }

  /// `expected` against row `row` of `table` from column `first` on.
  static void expectRow(const DoubleArray& table, Index row, Index first,
                        const std::vector<double>& expected) {
    for (const double value : expected) {
      EXPECT_TRUE(isClose(table(row, first), value, 1e-11)) << "row " << row << ", column " << first;
      ++first;
    }
  }

  yAAA aaa;
  StringArray order;
  bool ordinal = false;
  StringArray appraisers, categories;
  DoubleArray within, withinKappa, among, amongKappa, standard, standardKappa, all, allKappa, disagreement;
  std::string error;
};

// Faults: a share of the wrong total; the standard error of 1971, or that of estimation, for that under
// chance; two tails. Data: diagnoses of thirty patients by six psychiatrists (Fleiss, 1971), who published
// the shares 0.144, 0.144, 0.167, 0.306, 0.239 and kappa 0.430. Expected: R arithmetic on the table.
TEST_F(Agreement, HasTheKappasOfThePsychiatrists) {
  const std::vector<std::string> patients = {
      "444444", "222555", "233335", "555555", "222444", "113333", "333355", "113334", "114444", "555555",
      "144444", "124444", "222333", "144444", "224445", "333335", "111455", "111112", "224444", "133555",
      "555555", "244444", "224555", "114444", "144445", "222224", "111155", "224444", "133333", "555555"};
  run(sheetOf(patients, 1));
  const double kappas[] = {0.244755244755245, 0.244755244755245, 0.52, 0.471127272727273, 0.566117806823969};
  for (Index j = 1; j <= 5; ++j) {
    expectRow(amongKappa, j, AgreementKappa::Appraiser,
              {nothing, static_cast<double>(j), kappas[j - 1], 0.0471404520791032});
  }
  expectRow(amongKappa, 5, AgreementKappa::FleissZ, {12.00917220467053, 1.59006157475200e-33, nothing});
  expectRow(amongKappa, 6, AgreementKappa::Category,
            {nothing, 0.430244520060141, 0.0243739320994112, 17.65183058299137, 4.92553547046308e-70});
  EXPECT_EQ(among(AgreementAmong::Matched), 5);
}

// Faults: trials and appraisers confused; the standard among the raters; kappas averaged over the wrong
// comparisons; rates of the wrong total. Published: effectiveness 84, 90, 80 percent with limits 71-93,
// 78-97, 66-90, of the system 78 with 64-89; kappas with the reference 0.88, 0.92, 0.77; misses 6.3, 6.3,
// 12.5 and false alarms 4.9, 2.0, 8.8 percent. Expected: R, binom.test and arithmetic.
TEST_F(Agreement, HasTheAttributeStudyOfTheManual) {
  run(sheetOf(attributeStudy(), 3));
  EXPECT_EQ(appraisers, (StringArray{"A", "B", "C"}));
  EXPECT_EQ(categories, (StringArray{"0", "1"}));
  const std::vector<double> effectiveness[] = {{50, 42, 84, 70.8873693404889, 92.8299232816714},
                                               {50, 45, 90, 78.1864633565798, 96.6724906410978},
                                               {50, 40, 80, 66.2816891616512, 89.9697762527429},
                                               {50, 39, 78, 64.0388111434210, 88.4734173962151}};
  for (Index i = 1; i <= 3; ++i) {
    expectRow(within, i, 1, effectiveness[i - 1]);
    expectRow(standard, i, 1, effectiveness[i - 1]);
    EXPECT_EQ(within(i, AgreementAmong::KendallW), nothing);
    EXPECT_EQ(standard(i, AgreementWithStandard::KendallTau), nothing);
  }
  for (Index slot = 1; slot <= 5; ++slot) {
    const double expected = effectiveness[3][static_cast<std::size_t>(slot - 1)];
    EXPECT_TRUE(isClose(among(slot), expected, 1e-11));
    EXPECT_TRUE(isClose(all(slot), expected, 1e-11));
  }

  const double se = 0.0816496580927726;
  expectRow(withinKappa, 3, 1, {1, nothing, 0.76, se, 9.30806102257608, 6.50935976286197e-21, nothing});
  expectRow(withinKappa, 9, 1, {3, nothing, 0.70291146761735, se});
  expectRow(amongKappa, 3, 3, {0.7936056917845, 0.0235702260395516, 33.6698379749437, 7.9906523991827e-249});
  expectRow(standardKappa, 3, 1,
            {1, nothing, 0.880236185383244, se, 10.7806475366142, 2.12442073073501e-27, 0.880394773567790,
             0.0815418733608934, 10.7968426193899, 1.78121940572620e-27});
  expectRow(standardKappa, 9, AgreementKappa::CohenKappa, {0.774909541500279, 0.0815140197989389});
  expectRow(allKappa, 3, 3,
            {0.859183785457124, 0.0471404520791032, 18.2260404294678, 1.60358877700967e-74, 0.859312696067831,
             0.0470878927164382, 18.2491219397433, 1.05130797789077e-74});

  const double parts[][6] = {{0, 0, 0, 0, 8, 16}, {0, 0, 0, 0, 5, 10}, {0, 0, 0, 0, 10, 20}};
  const double ratings[][2] = {{5, 3}, {2, 3}, {9, 6}};
  for (Index i = 1; i <= 3; ++i) {
    const double* const p = parts[i - 1];
    const double falseAlarms = ratings[i - 1][0];
    const double misses = ratings[i - 1][1];
    expectRow(disagreement, i, 1, {p[0], p[1], p[2], p[3], p[4], p[5]});
    expectRow(disagreement, i, AgreementErrors::RatingsSecondAsFirst,
              {falseAlarms, 100 * falseAlarms / 102, misses, 100 * misses / 48});
  }

  // An upper quantile that rounds to that of 1 at the highest confidence there is. R: qbeta(2^-54, 43, 8,
  // lower.tail = FALSE), qbeta(2^-54, 42, 9).
  run(sheetOf(attributeStudy(), 3), true, 1 - 0x1p-53);
  expectRow(within, 1, AgreementAmong::Lower, {26.9365711019980, 99.9244307991511});

  // The same study without trials, in the order of the rows, and with the categories the other way round.
  order = {"1", "0"};
  Sheet untold = sheetOf(attributeStudy(), 3);
  untold.dtrial.clear();
  run(untold, true, 0.9);
  expectRow(within, 1, AgreementAmong::Lower, {72.9779922473587, 91.7814938261439});
  expectRow(standardKappa, 9, AgreementKappa::CohenKappa, {0.774909541500279, 0.0815140197989389});
  expectRow(disagreement, 3, AgreementErrors::RatingsSecondAsFirst, {6, 12.5, 9, 100 * 9.0 / 102});
}

// Faults: a column of blanks taken for a trial or a standard "" of all parts; blanks of the list of
// categories taken for one; rows beyond the data read.
TEST_F(Agreement, TakesBlankColumnsForNone) {
  const std::vector<std::string> parts = {"1122", "2122", "1111", "2222"};
  order = {"2", "", "1", "1E+99", " "};
  Sheet blank = sheetOf(parts, 2);
  blank.dtrial.assign(blank.dy.size(), " ");
  blank.dstd.assign(blank.dy.size(), "");
  for (auto* const column : {&blank.dpart, &blank.dop, &blank.dtrial, &blank.dstd}) column->push_back("9");
  run(blank);
  EXPECT_EQ(error, "");
  EXPECT_EQ(categories, (StringArray{"2", "1"}));
  EXPECT_EQ(appraisers, (StringArray{"A", "B"}));
  expectRow(within, 1, AgreementAmong::Inspected, {4, 3, 75});
  EXPECT_EQ(among(AgreementAmong::Matched), 2);
  EXPECT_EQ(all(AgreementWithStandard::Matched), nothing);
}

// Fault: labels that tie or compare in circles in the order of the rows, so that ranks and the trials that
// are compared depend on it. Each label serves as a rating, an appraiser and a trial.
TEST_F(Agreement, HasOneResultForAnyOrderOfRows) {
  ordinal = true;
  const std::vector<std::string> lists[] = {{"good", "Good", "bad"}, {"1", "01", "1.0"}, {"9", "10", "1A"}};
  for (const auto& labels : lists) {
    Sheet sheet;
    for (std::size_t i = 0; i < 45; ++i) {
      const std::size_t part = i / 9;
      sheet.add(labels[i * i % 11 % 3], std::to_string(part), labels[i / 3 % 3], labels[i % 3],
                labels[part % 3]);
    }
    run(sheet);
    ASSERT_EQ(error, "");
    const StringArray inOrder[] = {categories, appraisers};
    const DoubleArray expected[] = {within, withinKappa, among, standard, standardKappa};
    for (int turn = 0; turn < 7; ++turn) {
      for (auto column : {&Sheet::dy, &Sheet::dpart, &Sheet::dop, &Sheet::dtrial, &Sheet::dstd}) {
        std::rotate((sheet.*column).begin(), (sheet.*column).begin() + 19, (sheet.*column).end());
        std::reverse((sheet.*column).begin(), (sheet.*column).begin() + 30);
      }
      run(sheet);
      EXPECT_EQ(categories, inOrder[0]);
      EXPECT_EQ(appraisers, inOrder[1]);
      const DoubleArray results[] = {within, withinKappa, among, standard, standardKappa};
      for (std::size_t i = 0; i < 5; ++i) EXPECT_TRUE(areClose(results[i], expected[i])) << labels[0] << i;
    }
  }
}

// Fault: rounding noise, of either sign, for the kappa of agreement just as by chance. By hand: two
// independent raters; three whose parts are binomial with p = 1/5.
TEST_F(Agreement, HasKappasOfExactlyZero) {
  const struct {
    std::vector<std::pair<std::size_t, const char*>> parts;
    Index slot;
  } cases[] = {{{{1, "11"}, {2, "12"}, {3, "21"}, {6, "22"}}, AgreementKappa::CohenKappa},
               {{{1, "111"}, {12, "112"}, {48, "221"}, {64, "222"}}, AgreementKappa::FleissKappa}};
  for (const auto& test : cases) {
    std::vector<std::string> parts;
    for (const auto& [count, ratings] : test.parts) parts.insert(parts.end(), count, ratings);
    run(sheetOf(parts, 1));
    for (Index row = 1; row <= 3; ++row) {
      EXPECT_EQ(amongKappa(row, test.slot), 0);
      EXPECT_EQ(amongKappa(row, test.slot + 2), 0);
    }
  }
}

// Faults: tau-b above 1 for perfect agreement; sums of squares that lose digits beyond 2^53. By hand: ranks
// of n parts shifted by one give W = 1 - 3 / (n + 1) and tau = 1 - 4 / n.
TEST_F(Agreement, KeepsTheDigitsOfRanksInLargeStudies) {
  constexpr int n = 300000;
  Sheet sheet;
  for (int i = 0; i < n; ++i) {
    const std::string part = std::to_string(i);
    sheet.add(part, part, "A", "1", part);
    sheet.add(std::to_string((i + 1) % n), part, "B", "1", part);
  }
  ordinal = true;
  run(sheet);
  EXPECT_EQ(standard(1, AgreementWithStandard::KendallTau), 1);
  EXPECT_DOUBLE_EQ(standard(2, AgreementWithStandard::KendallTau), 1 - 4.0 / n);
  EXPECT_DOUBLE_EQ(among(AgreementAmong::KendallW), 1 - 3.0 / (n + 1));
}

// Faults: margins of one rater for both; the wrong variance; a category not set against all others. Data: two
// clinicians' diagnoses, a row a diagnosis by the first (Fleiss, Cohen and Everitt, 1969; kappa 0.429); the
// manual's cross tabulation of A and B (kappa 0.86), its trials taken for parts. Expected: R arithmetic.
TEST_F(Agreement, HasPublishedKappasOfTwoRatings) {
  const struct {
    std::vector<std::vector<int>> counts;
    std::vector<std::vector<double>> kappas;
  } cases[] = {
      {{{106, 10, 4}, {22, 28, 10}, {2, 12, 6}},
       {{0.595744680851064, 0.0703094112419502, 8.47318545736323, 1.19385992200466e-17},
        {0.325, 0.0701560760020113, 4.63252819314870, 1.80613562229251e-06},
        {2.0 / 9, 0.0707106781186548, 3.14269680527354, 0.000836995684312311},
        {3.0 / 7, 0.0555124549363584, 7.72027518982468, 5.80394079041581e-15}}},
      {{{44, 6}, {3, 97}},
       {{0.862944162436548}, {0.862944162436548}, {0.862944162436548, 0.0815644062593290, 10.5799110422366}}},
  };
  for (const auto& test : cases) {
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < test.counts.size(); ++i) {
      for (std::size_t j = 0; j < test.counts.size(); ++j) {
        const std::string part = {static_cast<char>('1' + i), static_cast<char>('1' + j)};
        parts.insert(parts.end(), static_cast<std::size_t>(test.counts[i][j]), part);
      }
    }
    run(sheetOf(parts, 1));
    for (std::size_t row = 0; row < test.kappas.size(); ++row) {
      expectRow(amongKappa, static_cast<Index>(row) + 1, AgreementKappa::CohenKappa, test.kappas[row]);
    }
  }
}

// Faults: categories in the order of their labels in spite of CategoryOrder; trials in the order of rows, or
// "10" before "9"; parts ranked for raters; ties not corrected for. Expected: R, friedman.test (its
// chi-square is that of W), cor.test(method = "kendall", exact = FALSE), arithmetic.
TEST_F(Agreement, RanksOrderedCategories) {
  const std::string ratings[] = {"12332132", "12322133", "22331131", "12231132"};
  const std::string standards = "12332131";
  const char* const labels[] = {"low", "medium", "high"};
  const auto label = [&](char digit) { return labels[digit - '1']; };
  Sheet sheet;
  for (const std::size_t part : {4, 7, 0, 2, 5, 1, 6, 3}) {
    for (const std::size_t i : {1, 2, 0, 3}) {
      const std::size_t rater = part % 2 == 0 ? i : 3 - i;
      sheet.add(label(ratings[rater][part]), std::to_string(part), rater < 2 ? "2" : "11",
                rater % 2 == 0 ? "9" : "10", label(standards[part]));
    }
  }
  order = {"low", "medium", "high"};
  ordinal = true;
  run(sheet);
  EXPECT_EQ(appraisers, (StringArray{"2", "11"}));
  EXPECT_EQ(categories, order);
  expectRow(within, 1, AgreementAmong::KendallW, {0.88, 12.32, 7, 0.0905145257675183});
  expectRow(within, 2, AgreementAmong::KendallW, {13.0 / 15, 12.1333333333333, 7, 0.0962585114395204});
  EXPECT_TRUE(isClose(among(AgreementAmong::KendallW), 0.766666666666667));
  EXPECT_TRUE(isClose(among(AgreementAmong::PValue), 0.00313749775196226));
  expectRow(standard, 1, AgreementWithStandard::KendallTau,
            {0.714285714285714, 0.239198125912878, 2.98616768655568, 0.00282497689359068});
  EXPECT_TRUE(isClose(all(AgreementWithStandard::KendallTau), 0.714285714285714));
  EXPECT_TRUE(isClose(all(AgreementWithStandard::SE), 0.169138616880110));
  expectRow(withinKappa, 8, 1,
            {2, nothing, 0.435294117647059, 0.250432152440094, 1.738171849763522, 0.0410902688481029,
             0.441860465116279, 0.242937004834607, 1.81882733516494, 0.0344688883168727});
  expectRow(standardKappa, 6, 1, {2, 2, 0.230303030303030, 0.25});
  expectRow(standardKappa, 6, AgreementKappa::CohenKappa, {0.238095238095238, 0.244844807157180});
  EXPECT_EQ(disagreement(1, AgreementErrors::Mixed), nothing);

  order = {};
  run(sheet);
  EXPECT_EQ(categories, (StringArray{"high", "low", "medium"}));
}

// Faults: 0 over 0 for a failure or a number; a limit of a quantile that does not exist; a kappa left out or
// made up for a category of the standard that nobody used; results of one trial without any comparison.
// Expected: limits of R's binom.test; kappas by hand.
TEST_F(Agreement, HasNoValueWhereNothingIsCompared) {
  ordinal = true;
  // One appraiser, one trial; nobody rates 3, an eighth of all: kappa 1 - (1/8) / (7/64) by Fleiss, 0 by
  // Cohen.
  run(sheetOf({"1 1", "1 1", "2 2", "2 3"}, 1), false);
  EXPECT_TRUE(error.empty());
  for (const DoubleArray* const empty : {&within, &among, &disagreement}) {
    EXPECT_TRUE(std::all_of(empty->elements().begin(), empty->elements().end(),
                            [](double x) { return x == NoValue; }));
  }
  expectRow(withinKappa, 4, 1, {1, nothing, nothing, nothing, nothing, nothing, nothing});
  expectRow(amongKappa, 1, 1, {nothing, 1, nothing});
  expectRow(standardKappa, 3, 2, {3, -1.0 / 7, 0.5, -2.0 / 7});
  expectRow(standardKappa, 3, AgreementKappa::CohenKappa, {0, 0, nothing, nothing});
  EXPECT_TRUE(areClose(
      all, DoubleArray(std::vector<double>(standard.elements().begin(), standard.elements().end()))));

  // No part of the second category.
  run(sheetOf({"12 1", "11 1"}, 2), false);
  expectRow(disagreement, 1, 1, {0, nothing, 0, 0, 1, 50, 0, nothing, 1, 25});

  // Perfect agreement, with a category that only the caller knows.
  order = {"0", "1", "2"};
  std::vector<std::string> parts(25, "0000 0");
  parts.insert(parts.end(), 25, "1111 1");
  run(sheetOf(parts, 2));
  for (const DoubleArray* const perfect : {&within, &standard}) {
    expectRow(*perfect, 2, 1, {50, 50, 100, 92.8878263535802, 100, 1});
  }
  expectRow(amongKappa, 3, 1, {nothing, 3, nothing, nothing, nothing});
  expectRow(amongKappa, 4, AgreementKappa::FleissKappa, {1, std::sqrt(1.0 / 300), std::sqrt(300.0)});
  expectRow(withinKappa, 4, AgreementKappa::CohenKappa, {1, std::sqrt(0.02)});
  order = {};

  // No agreement at all: an appraiser of a single category, another of the other.
  run(sheetOf(std::vector<std::string>(50, "12"), 1));
  EXPECT_TRUE(areClose(among, {50, 0, 0, 0, 7.11217364641976, nothing, nothing, nothing, nothing}, 1e-11));
  expectRow(amongKappa, 3, AgreementKappa::FleissKappa, {-1});
  expectRow(amongKappa, 3, AgreementKappa::CohenKappa, {0, 0, nothing, nothing});

  // One part: no ranks.
  run(sheetOf({"1121 1"}, 2));
  EXPECT_EQ(among(AgreementAmong::KendallW), nothing);
  EXPECT_EQ(all(AgreementWithStandard::KendallTau), nothing);
  // The first appraiser's ratings and the standard are all 1.
  expectRow(standardKappa, 3, 1, {1, nothing, nothing, nothing, nothing, nothing, nothing, nothing});
}

// Fault: a variance that loses its digits where nearly all ratings are one category. Expected: by hand, for
// shares p and q of both raters, kappa = -q / p and se = 1 / sqrt(n).
TEST_F(Agreement, KeepsItsDigitsForARareCategory) {
  constexpr std::size_t n = 20000;
  std::vector<std::string> parts(n, "11");
  parts[5] = "12";
  parts[n - 3] = "21";
  run(sheetOf(parts, 1));
  for (const Index slot : {AgreementKappa::FleissKappa, AgreementKappa::CohenKappa}) {
    expectRow(amongKappa, 3, slot, {-1.0 / (n - 1), std::sqrt(1.0 / n)});
  }
}

// Faults: a check left out or in another order; results in spite of it; a text where there is no fault.
TEST_F(Agreement, RefusesBadStudiesInOrder) {
  const Sheet sound = sheetOf({"1122 1", "2122 2", "1111 1"}, 2);
  const Sheet oneAppraiser = sheetOf({"11 1", "22 2"}, 2);
  const char* const balance = "Design must be balanced";
  const Sheet unbalanced = sound.with(&Sheet::dpart, 0, "4");
  const struct {
    Sheet sheet;
    bool between;
    StringArray order;
    const char* text;
  } cases[] = {
      {sound, true, {}, ""},
      {unbalanced.with(&Sheet::dy, 0, " ").with(&Sheet::dstd, 1, ""), true, {}, "Ratings must not be blank"},
      {sound.with(&Sheet::dy, 7, "1E+99"), true, {}, "Ratings must not be blank"},
      {unbalanced.with(&Sheet::dstd, 1, ""), true, {}, "Standards must not be blank"},
      {unbalanced, true, {}, balance},
      {sound.with(&Sheet::dpart, 0, "2"), true, {"1"}, balance},
      {sound.with(&Sheet::dop, 0, "B"), true, {}, balance},
      {sound.with(&Sheet::dtrial, 5, "1"), true, {"1"}, "Trials of a part by an appraiser must differ"},
      {oneAppraiser, false, {}, ""},
      {oneAppraiser, true, {"1"}, "At least 2 appraiser values required"},
      {sheetOf({"12", "22"}, 1), true, {}, ""},
      {sheetOf({"12", "22"}, 1), false, {"1"}, "At least 2 trials or a standard required"},
      {sound.with(&Sheet::dstd, 7, "3"), true, {"2", "1"}, "Rating or standard not in CategoryOrder"},
      {sound.with(&Sheet::dstd, 7, "1"), true, {}, "Standard for the same part must be the same"},
      {sheetOf({"1111", "1111"}, 2), true, {"1", "2"}, "At least 2 categories required"},
      {sheetOf({"1111 2", "1111 2"}, 2), true, {}, ""},
  };
  for (const auto& test : cases) {
    order = test.order;
    among = {};
    run(test.sheet, test.between);
    EXPECT_EQ(error, test.text);
    EXPECT_EQ(among.filled(), error.empty());
  }
}

// Fault: a wrong number, a crash or a table without end out of impossible arguments.
TEST_F(Agreement, FailsOnImpossibleArguments) {
  const Sheet sound = sheetOf({"1122 1", "2122 2", "1111 1"}, 2);
  for (const double confidence : {0.0, 1.0, -0.5, 95.0}) {
    EXPECT_EQ(failureNumber([&] { run(sound, true, confidence); }), 5);
  }
  Sheet shortened = sound;
  shortened.dstd.pop_back();
  EXPECT_EQ(failureNumber([&] { run(shortened); }), 9);
  EXPECT_EQ(failureNumber([&] { run(Sheet()); }), 9);
  order = {"1", "2", "1"};
  EXPECT_EQ(failureNumber([&] { run(sound); }), 5);

  // As many appraisers as categories: 4E6 rows of kappas.
  Sheet many;
  for (int i = 0; i < 2000; ++i) many.add(std::to_string(i), "1", std::to_string(i), "1", "0");
  order = {};
  EXPECT_EQ(failureNumber([&] { run(many); }), 7);
}

}  // namespace
}  // namespace zelkova
