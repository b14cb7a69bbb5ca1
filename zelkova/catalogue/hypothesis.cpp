#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/frame/TestType.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/hypothesis/yNormality.h"
#include "zelkova/hypothesis/yRunTest.h"

namespace zelkova {

void describeHypothesis(std::vector<Class>& classes) {
  using Note = ArgumentNote;

  const Note confidence("CLevel", "confidence of the limits as a fraction, such as 0.95");
  Note alternative("TestType", "the alternative");
  alternative.choices({std::string(TestType::LessThan), std::string(TestType::GreaterThan),
                       std::string(TestType::NotEquals)});
  const Note testMean("TestMean", "the tested mean");
  const Note testDifference("TestMeanD", "the tested difference of the means");
  const Note sigma("Sigma", "the known standard deviation, above 0");
  const Note equalVariance("EqualVariance",
                           "true pools the variances; false takes Welch's degrees of freedom");

  const char* const openLimit =
      "The limit that a one-sided alternative does not produce is 0. A text that is no alternative, a wrong "
      "case included, decides nothing: p-value and both limits are 0.";

  const Note errorCode(
      "ErrorCode", "why the data are refused, if they are: then arrays stay unfilled, numbers as they came");
  const Note grouped("dy", "the data, all groups");
  const Note labels("dx", "the group of each value, as many labels as dy has values");
  const Note jointConfidence("CLevel", "joint confidence of all limits as a fraction, such as 0.95");
  const Note categories("Category", "the groups in order of first appearance");
  const Note observations = Note("dym", "a row an observation, a column a variable").table();
  const char* const testInLastRow =
      "Statistic and p-value stand in the last row; above it those columns are empty.";

  const Note testMedian("TestMedian", "the tested median");
  const char* const noAlternative =
      "A text that is no alternative, a wrong case included, decides nothing: the p-value has no value.";
  const char* const noAlternativeOfOne =
      "A text that is no alternative, a wrong case included, decides nothing: the p-value has no value, or "
      "is 1 where no value differs from TestMedian.";
  const char* const fPValue =
      "The p-value is twice the tail above the ratio with the larger variance on top, and at most 1. With "
      "unequal numbers of values that tail may be above a half: p is 1 then, where twice the smaller of both "
      "tails is below 1.";
  const char* const ties =
      "HTies and PValueTies are corrected for ties; they have no value where all values are equal.";

  classes.push_back(
      Description<yHTest>("yHTest", "Hypothesis tests")
          .method("OneZOutput", &yHTest::OneZOutput, "One-sample z test of a mean, standard deviation known",
                  Note("dy", "the data"), sigma, testMean, confidence, alternative,
                  Note("OneZValue", "the test").slots(OneZ::names))
          .note(openLimit)
          .method("OneZOutput_S", &yHTest::OneZOutput_S, "One-sample z test from a summary",
                  Note("dn", "number of values"), Note("dMean", "their mean"),
                  Note("dSD", "their standard deviation"), sigma, testMean, confidence, alternative,
                  Note("OneZValue", "the test").slots(OneZ::names))
          .note(openLimit)
          .method("OneTOutput", &yHTest::OneTOutput, "One-sample t test of a mean", Note("dy", "the data"),
                  testMean, confidence, alternative, Note("OneTValue", "the test").slots(OneT::names))
          .note(openLimit)
          .method("OneTOutput_S", &yHTest::OneTOutput_S, "One-sample t test from a summary",
                  Note("dn", "number of values"), Note("dMean", "their mean"),
                  Note("dSD", "their standard deviation"), testMean, confidence, alternative,
                  Note("OneTValue", "the test").slots(OneT::names))
          .note(openLimit)
          .method("TwoTOutput", &yHTest::TwoTOutput, "Two-sample t test of the difference of two means",
                  Note("dy1", "the first sample"), Note("dy2", "the second sample"), testDifference,
                  confidence, alternative, equalVariance, Note("TwoTValue", "the test").slots(TwoT::names))
          .note(openLimit)
          .note("Welch's degrees of freedom are rounded down to a whole number.")
          .method("TwoTOutput_S", &yHTest::TwoTOutput_S, "Two-sample t test from two summaries",
                  Note("dMean1", "mean of the first sample"), Note("dSD1", "its standard deviation"),
                  Note("dn1", "its number of values"), Note("dMean2", "mean of the second sample"),
                  Note("dSD2", "its standard deviation"), Note("dn2", "its number of values"), testDifference,
                  confidence, alternative, equalVariance, Note("TwoTValue", "the test").slots(TwoT::names))
          .note(openLimit)
          .note("Welch's degrees of freedom are rounded down to a whole number.")
          .method("PairedTOutput", &yHTest::PairedTOutput, "Paired t test of the mean difference",
                  Note("dy1", "the first value of each pair"), Note("dy2", "the second value of each pair"),
                  testDifference, confidence, alternative, Note("PTValue", "the test").slots(PairedT::names),
                  Note("Difference", "first less second value, pair by pair"))
          .note(openLimit)
          .note("There are as many pairs as dy1 has values. A longer dy2 is not refused: its further values "
                "count in its "
                "own mean and standard deviation only.")
          .note("Differences that are all equal leave limits, t and p-value without a value.")
          .method("OnePOutput", &yHTest::OnePOutput, "One-sample test of a proportion, normal approximation",
                  Note("dx", "number of events"), Note("dn", "number of trials"),
                  Note("TestP", "the tested proportion, above 0 and below 1"), confidence, alternative,
                  Note("OnePValue", "the test").slots(OneP::names))
          .note(openLimit)
          .note(
              "The test takes the standard error under the tested proportion, the limits that of the sample. "
              "A sample of nothing but events, or of none, has no limits.")
          .method("TwoPOutput", &yHTest::TwoPOutput,
                  "Two-sample test of the difference of two proportions, normal approximation",
                  Note("dx1", "events in the first sample"), Note("dn1", "its trials"),
                  Note("dx2", "events in the second sample"), Note("dn2", "its trials"),
                  Note("TestP", "the tested difference of the proportions"), confidence, alternative,
                  Note("TwoPValue", "the test").slots(TwoP::names))
          .note(openLimit)
          .note("The standard error is not pooled. Where it is 0 there are no limits, no z and no p-value.")
          .method("ChisquareOutput", &yHTest::ChisquareOutput, "Chi-square test of a two-way table of counts",
                  Note("OFreq", "the counts, whole numbers of at least 0").table(),
                  Note("EFreq", "the expected counts, a table like the counts").table(),
                  Note("ChiTable", "what each cell adds to chi-square").table(),
                  Note("rowtotal", "the total of each row"), Note("coltotal", "the total of each column"),
                  Note("Obstotal", "the total of all"),
                  Note("ChisquareValue", "the test").slots(ChiSquareTest::names),
                  Note(errorCode).optional(std::string()))
          .note("Refused: \"Invalid data\" where a cell is negative or not whole, \"Rows all zeros\", "
                "\"Columns all zeros\".")
          .note(
              "There is no correction for continuity. Mind the number of cells with an expected count below "
              "5: the p-value is an approximation that wants few of them.")
          .method("GOFOutput", &yHTest::GOFOutput, "Chi-square test of goodness of fit",
                  Note("dyy", "the category of each row"), Note("dff", "the count of each row"),
                  Note("dPp",
                       "the tested proportion of each row; may be left out: all categories are equal then"),
                  Note("dy", "the categories in order of first appearance"), Note("df", "their counts"),
                  Note("dp", "their tested proportions"), Note("dExp", "their expected counts"),
                  Note("ChiS", "the test").slots(GoodnessOfFit::names),
                  Note("Ctable", "what each category adds to chi-square"), errorCode)
          .note("Refused: \"Invalid data\" where a count is negative, \"Invalid Proportions\" where rows of "
                "one category name different proportions or a proportion is negative.")
          .note("The proportions are taken as they are: nothing checks that they add up to 1.")
          .note("dyy says how many rows there are: further elements of dff and dPp do not count.")
          .method("FTestOutput", &yHTest::FTestOutput, "F test of two variances, two-sided", grouped, labels,
                  Note("CLevel", "only passed on to its slot"),
                  Note("FTestValue", "the test").slots(FTest::names), Note("Category", "the two labels"))
          .note("The groups are those of the first two labels; rows with a third are left out.")
          .note(fPValue)
          .note("Where the second variance is 0 there is no F and no p-value.")
          .method("FTestOutput_S", &yHTest::FTestOutput_S, "F test of two variances from two summaries",
                  Note("dSD1", "standard deviation of the first sample"), Note("dn1", "its number of values"),
                  Note("dSD2", "standard deviation of the second sample"),
                  Note("dn2", "its number of values"), Note("CLevel", "only passed on to its slot"),
                  Note("FTestValue", "the test").slots(FTest::names))
          .note(fPValue)
          .note("Where the second variance is 0 there is no F and no p-value.")
          .method("BarlettOutput", &yHTest::BarlettOutput, "Bartlett's test of equal variances", grouped,
                  labels, jointConfidence,
                  Note("BarlettValue", "a row a group").table().slots(EqualVariances::names), categories)
          .note(testInLastRow)
          .note(
              "A group whose values are all equal, or that has only one, has no limits, and then there is no "
              "statistic and no p-value.")
          .method("LeveneOutput", &yHTest::LeveneOutput,
                  "Levene's test of equal variances, about the medians (Brown and Forsythe)", grouped, labels,
                  jointConfidence, Note("LeveneValue", "a row a group").table().slots(EqualVariances::names),
                  categories)
          .note(testInLastRow)
          .note(
              "Where the values of every group are equally far from its median there is no statistic and no "
              "p-value. A group whose values are all equal, or that has only one, has no limits.")
          .method("CorrelationOutput", &yHTest::CorrelationOutput,
                  "Pearson correlations of all pairs of columns", observations,
                  Note("corr", "the correlation of columns i < j in row i, column j - 1; else 0").table(),
                  Note("Pvalue", "its two-sided p-value, in the same place").table())
          .note("A column without spread has no correlations, and a perfect correlation has no p-value.")
          .method("CovarianceOutput", &yHTest::CovarianceOutput, "Covariances of all pairs of columns",
                  observations,
                  Note("Cov", "the covariance of columns i <= j in row i, column j; below that 0").table())

          .method("OneWilcoxonOutput", &yHTest::OneWilcoxonOutput, "Wilcoxon signed rank test of a median",
                  Note("dy", "the data"), testMedian, confidence, alternative,
                  Note("OneWilcoxonValue", "the test").slots(OneWilcoxon::names))
          .note(noAlternativeOfOne)
          .note("The test takes the NonZero values that differ from TestMedian, by the normal approximation "
                "with continuity correction and tie term. W is the sum of the ranks of those above "
                "TestMedian. Where there are none that differ, W is 0 and the p-value 1, and there are no "
                "limits.")
          .note("The estimate is the median of all Walsh averages, the means of each two values and of each "
                "with itself. The limits are two of these averages, those whose confidence by the normal "
                "approximation, AchievedConfidence (a fraction), is nearest to CLevel. They are two-sided "
                "whatever TestType is. Too few values give no limits: fewer than 5 at a CLevel of 0.95.")
          .method("OneSignOutput", &yHTest::OneSignOutput, "Sign test of a median", Note("dy", "the data"),
                  testMedian, confidence, alternative, Note("OneSignValue", "the test").slots(OneSign::names))
          .note(noAlternativeOfOne)
          .note(
              "The test is exact, on the NonEqual values that differ from TestMedian; where there are none, "
              "the p-value is 1.")
          .note(
              "Three intervals of the median: that between the sorted values at InnerPlace and at the same "
              "place from the other end, with the coverage next below CLevel; that at OuterPlace, with the "
              "coverage next above; and one interpolated non-linearly between them, with the coverage "
              "CLevel. Where even the smallest and the largest value cover less than CLevel, only the inner "
              "interval exists; where the two values in the middle cover more, only the outer one. Slots of "
              "an interval that does not exist have no value: without an interpolated one, CLevel shows none "
              "either. All are two-sided whatever TestType is. Reserved is 0.")
          .method("TwoMannWOutput", &yHTest::TwoMannWOutput, "Mann-Whitney test of two medians",
                  Note("dy1", "the first sample"), Note("dy2", "the second sample"), alternative,
                  Note("TwoMannWValue", "the test").slots(TwoMannW::names))
          .note(noAlternative)
          .note("W is the sum of the ranks of the first sample. PValue and PValueTies, without and with a "
                "correction for ties, come from the normal approximation with continuity correction.")
          .note(
              "EstimatedDifference is the median of all differences between a value of the first and one of "
              "the second sample. 100000 pairs or more leave it without a value.")
          .method("KruskalWOutput", &yHTest::KruskalWOutput, "Kruskal-Wallis test of several medians",
                  grouped, labels,
                  Note("KruskalWValue_I", "a row for each group").table().slots(KruskalWGroup::names),
                  Note("KruskalWValue", "the test").slots(KruskalW::names), categories)
          .note(ties)
          .method("MoodsMOutput", &yHTest::MoodsMOutput, "Mood's median test of several medians", grouped,
                  labels, Note("MoodsMValue_I", "a row for each group").table().slots(MoodsMGroup::names),
                  Note("MoodsMValue", "the test").slots(MoodsM::names), categories,
                  Note("Lessthan6", "true where a group holds fewer than 6 values"))
          .note(
              "The counts of a group are those of its values at or below, and above, the median of all data, "
              "which is the Median of MoodsMValue.")
          .note("Lower and Upper are the limits of a group's median at 95 percent, interpolated as "
                "OneSignOutput does. A group of fewer than 6 values has none.")
          .method("FriedmanOutput", &yHTest::FriedmanOutput, "Friedman test of treatments in blocks",
                  Note("dy", "the responses, one for each treatment in each block"),
                  Note("dx1", "the treatment of each response"), Note("dx2", "the block of each response"),
                  Note("FriedmanValue_I", "a row for each treatment").table().slots(FriedmanTreatment::names),
                  Note("FriedmanValue", "the test").slots(Friedman::names),
                  Note("Category", "the treatments, sorted"))
          .note(
              "STies and PValueTies are corrected for ties; they have no value where all responses of every "
              "block are equal.")
          .note("A treatment's EstimatedMedian is the median of its responses, each less its block's median, "
                "plus GrandMedian, the median of the block medians.")
          .note("A layout that lacks a response or has one twice leaves all slots of FriedmanValue without a "
                "value, and the two other results unfilled.")
          .done());

  classes.push_back(
      Description<yNormality>("yNormality", "Normality test and normal plot")
          .method("NormTestOutput", &yNormality::NormTestOutput, "Anderson-Darling test of normality",
                  Note("dataarray", "the data, not all equal"),
                  Note("NormTestValue", "the test").slots(NormTest::names))
          .note("AStar is the statistic with the small-sample adjustment; from 13 on its p-value is 0.")
          .method("NormTestPlotOutput", &yNormality::NormTestPlotOutput, "Points and line of a normal plot",
                  Note("dataarray", "the data, not all equal"), Note("NTNormPlotX", "the data, sorted"),
                  Note("NTNormPlotY", "the normal score of each, at Filliben's plotting positions"),
                  Note("NTRealPlotY", "the score of each on the fitted line, (x - mean) / sd"))
          .done());
  classes.push_back(
      Description<yRunTest>("yRunTest", "Runs tests of randomness")
          .method("RunTestOutput", &yRunTest::RunTestOutput, "Runs about the median, and runs up and down",
                  Note("dy", "the series, in order, two values or more"),
                  Note("RunTest", "both tests").slots(RunsTest::names))
          .note("K is the median. Few Runs about it tell of clustering, many of mixtures. Where their number "
                "cannot vary, as in a constant series, Z has no value and both p-values are 1.")
          .note(
              "Few RunsUpDown tell of trends, many of oscillation; a step to an equal value counts as down. "
              "Fewer than 3 values leave them and all that follows without a value.")
          .done());
}

}  // namespace zelkova
