#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/frame/TestType.h"
#include "zelkova/hypothesis/yHTest.h"

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
      "case "
      "included, decides nothing: p-value and both limits are 0.";

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
          .done());
}

}  // namespace zelkova
