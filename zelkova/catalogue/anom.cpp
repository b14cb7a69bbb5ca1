#include <string>

#include "zelkova/anom/yANOM.h"
#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

Class analysisOfMeans() {
  const Note alpha("alpha",
                   "the level of significance, such as 0.05: at most how often a chart of levels that do not "
                   "differ has any point that signals (exactly so where the critical value is exact)");
  const Note rateAlpha("alpha",
                       "the level of significance, such as 0.05: at most how often, as far as the normal "
                       "approximation goes, a chart of levels that do not differ has any point that signals");
  const Note data("dy", "the data");
  const Note tooSmall(
      "TooSmall",
      "true where a level is too small for the normal approximation; the chart is drawn all the same");

  const char* const signals =
      "Signal is 1 for a point above its upper limit, -1 for one below its lower limit, and 0 for all "
      "others, a point on a limit included. Signals counts both.";
  const char* const noSpread =
      "Without any spread in the error, but for roundings, there is nothing to measure deviations by: S is "
      "0, the limits have no value and nothing signals.";
  const char* const normal =
      "The critical value is the normal quantile at Sidak's level for the number of levels, be their sizes "
      "equal or not, and the spread is that of the common rate. Two levels need no such allowance: they "
      "deviate alike.";
  const std::string failures = "Failures: 5 for an alpha outside (0, 1) and for a single level";
  const std::string rateFailures =
      ", 5 for a negative count or size, 9 where dy and dxN differ in length, 11 for a size of 0.";

  Note levelRows("ANOMValue_I", "a row for each level");
  levelRows.table().slots(ANOMLevels::names);
  Note rateRows("ANOMValue_I", "a row for each level, in the order of dy");
  rateRows.table().slots(RateANOMLevels::names);

  return Description<yANOM>("yANOM", "Analysis of means: which levels differ from the mean of all")
      .method("ANOMOneOutput", &yANOM::ANOMOneOutput, "Means of the levels of one factor", data,
              Note("dx", "the label of each value; compared exactly, case included"), alpha,
              Note("ANOMValue", "the study: S and its degrees of freedom are those within the levels")
                  .slots(OneANOM::names),
              levelRows,
              Note("ANOMlabel", "the levels in order of first appearance: the rows of ANOMValue_I"))
      .note(
          "The centre line is the mean of all values. Its limits lie the critical value times S sqrt((N - "
          "n)/(N n)) away, for n of N values.")
      .note(
          "The critical value is exact for levels of equal size, and for two levels. For levels of unequal "
          "size it is Sidak's bound, a Student quantile, which is a little larger than need be.")
      .note(signals)
      .note(noSpread)
      .note(failures +
            ", 5 where every level has a single value, which leaves no error to judge by, 9 where dy and dx "
            "differ in length.")
      .method(
          "ANOMTwoOutput", &yANOM::ANOMTwoOutput,
          "Means of the levels of two factors in a balanced layout, and effects of their interaction", data,
          Note("dx1", "the label of each value under factor 1; compared exactly, case included"),
          Note("dx2", "the label of each value under factor 2"),
          Note("Additive", "true leaves out the interaction: its variation counts as error"), alpha,
          Note("ANOMValue",
               "the study, with critical value and signals of factor 1, factor 2 and their interaction (12)")
              .slots(TwoANOM::names),
          Note("ANOMValue_I1", "a row for each level of factor 1").table().slots(ANOMLevels::names),
          Note("ANOMValue_I2", "a row for each level of factor 2").table().slots(ANOMLevels::names),
          Note("ANOMValue_I12", "a row for each pair of levels; not filled with Additive true")
              .table()
              .slots(ANOMLevels::names),
          Note("UniX1", "the levels of factor 1 in order of first appearance: the rows of ANOMValue_I1"),
          Note("UniX2", "the levels of factor 2 in order of first appearance: the rows of ANOMValue_I2"),
          Note("UniX12", "the pairs of levels, a*b, factor 2 changing fastest: the rows of ANOMValue_I12"))
      .note(
          "The points of the interaction are effects about 0: the mean of a pair less what its two levels "
          "explain.")
      .note(
          "Critical values are exact for both factors, and for the interaction where a factor has two "
          "levels. Otherwise that of the interaction is Sidak's bound for all pairs, which is larger than "
          "need be.")
      .note(
          "The layout must be balanced, with the same number of values for each pair of levels and two "
          "levels or more of each factor. Without replicates only Additive true leaves an error to judge by.")
      .note(signals)
      .note(noSpread)
      .note(failures +
            " of a factor, 5 for an unbalanced layout and where there is no error to judge by, 9 where dy "
            "and dx1 or dx2 differ in length.")
      .method("ANOMBinomialOutput", &yANOM::ANOMBinomialOutput, "Proportions of defectives",
              Note("dy", "the defectives of each level"), Note("dxN", "the items of each level"), rateAlpha,
              Note("ANOMValue", "the study: N are all items, Mean is their proportion of defectives")
                  .slots(RateANOM::names),
              rateRows, tooSmall)
      .note(normal)
      .note("A limit below 0 is 0, and one above 1 is 1.")
      .note(
          "Small is 1, and TooSmall true, where at most 5 defectives or at most 5 good items are to be "
          "expected of a level at the common proportion.")
      .note(signals)
      .note(failures + ", 5 for more defectives than items" + rateFailures)
      .method("ANOMPoissonOutput", &yANOM::ANOMPoissonOutput, "Defects per unit",
              Note("dy", "the defects of each level"), Note("dxN", "the number of units of each level"),
              rateAlpha,
              Note("ANOMValue", "the study: N are all units, Mean is their rate of defects")
                  .slots(RateANOM::names),
              rateRows, tooSmall)
      .note(normal)
      .note("A lower limit below 0 is 0.")
      .note(
          "Small is 1, and TooSmall true, where at most 5 defects are to be expected of a level at the "
          "common rate.")
      .note(signals)
      .note(failures + rateFailures)
      .done();
}

}  // namespace

void describeANOM(std::vector<Class>& classes) { classes.push_back(analysisOfMeans()); }

}  // namespace zelkova
