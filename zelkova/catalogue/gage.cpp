#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/gage/yAAA.h"
#include "zelkova/gage/yGage.h"
#include "zelkova/gage/yGageAtt.h"
#include "zelkova/gage/yGageLB.h"
#include "zelkova/gage/yGageRun.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

const Note readings("dy", "the readings");
const Note partOfRow("dpart", "the part of each reading");
const Note operatorOfRow("dop", "the operator of each reading");
const Note error("ErrorCode", "why the data are refused, if they are: then arrays stay unfilled");

Class crossed() {
  return Description<yGage>("yGage", "Crossed gage repeatability and reproducibility studies")
      .method("GageCrossedOutput", &yGage::GageCrossedOutput,
              "Analysis of variance and variance components of a crossed gage study", readings, partOfRow,
              operatorOfRow, Note("StudyV", "the multiplier of the study variation; 5 where empty"),
              Note("PTol", "the process tolerance, in the units of the readings; may be empty"),
              Note("AMethod", "analysis of variance, or any other text for average and range")
                  .choices({"ANOVA", "X-bar and R"}),
              Note("GCrossed_AN", "the analysis of variance; for average and range the last slot alone")
                  .slots(GageAnova::names),
              Note("GCrossed_VC",
                   "rows: total gage R&R, repeatability, reproducibility, operator, operator by part, part "
                   "to part, total variation; shares are fractions")
                  .table()
                  .slots(GageComponent::names),
              error)
      .note(
          "Every operator must have measured every part equally often, twice or more. One operator is enough "
          "for the analysis of variance.")
      .note(
          "The interaction stays in the model, whatever its p-value. Negative estimates count as 0, but for "
          "the parts in a study of one operator; by average and range, reproducibility may be negative too. "
          "A negative variance has a contribution, and nothing behind it.")
      .note(
          "F and p-values have no value against a mean square below 1E-7, and shares are 0 in a study with a "
          "total variation below 1E-7: record readings in units in which they vary.")
      .note(
          "DistinctCategories is 1.41 times the ratio of the standard deviations of parts and gage, rounded "
          "down, but at least 1; it has no value for a gage standard deviation below 1E-7.")
      .method("GageCrossedPlotOutput", &yGage::GageCrossedPlotOutput,
              "The data of the plots by part, by operator and of both", readings, partOfRow, operatorOfRow,
              Note("PartX", "for each row the position of its part on an axis from 0 to 1"),
              Note("PartMX", "the parts, in numeric-aware order"),
              Note("PartMY", "the mean of each; no value where there is only one"),
              Note("OpX", "for each row the position of its operator on an axis from 0 to 1"),
              Note("OpMX", "the operators, in numeric-aware order"),
              Note("OpMY", "the mean of each; no value where there is only one"),
              Note("OpPartY", "the mean of each cell: a row a part, a column an operator").table(),
              Note("newy", "the readings operator by operator, and part by part within each"),
              Note("newpart", "their parts"), Note("newop", "their operators"))
      .note("Any layout serves; an empty cell has no value. At most 1E8 cells.")
      .done();
}

Class linearity() {
  const Note reference("dstd", "the reference value of each reading's part");
  return Description<yGageLB>("yGageLB", "Linearity and bias of a gage against reference values")
      .method(
          "GageLBOutput", &yGageLB::GageLBOutput, "The line of bias on reference, and the bias at each value",
          readings, partOfRow, reference,
          Note("PVar", "the process variation, in the units of the readings; may be empty"),
          Note("Linearity",
               "the line, its standard errors and p-values; linearity is PVar times the absolute slope")
              .slots(GageLinearity::names),
          Note("Bias", "the average of all readings first, then a row for each reference value, ascending")
              .table()
              .slots(GageBias::names),
          error)
      .note(
          "The p-value of a bias takes its standard error from the readings at that reference value, pooled "
          "over its parts, and "
          "one degree of freedom less than there are readings. Without repeated readings there is none; "
          "repeated readings that are all equal end in failure 11.")
      .note(
          "A line with an error sum of squares below 1E-8, in squared units of the readings, counts as "
          "exact: it has neither standard errors nor p-values, S and R-squared.")
      .method("GageLBPlotOutput", &yGageLB::GageLBPlotOutput, "The points of the plot", readings, partOfRow,
              reference,
              Note("BiasArray", "reference and bias of each reading").table().slots(GageBiasPoint::names),
              Note("AverageBias", "each reference value, ascending, and the mean bias there")
                  .table()
                  .slots(GageBiasPoint::names))
      .note("Data that GageLBOutput refuses leave both unfilled.")
      .done();
}

Class attribute() {
  return Description<yGageAtt>("yGageAtt", "Bias and repeatability of a gage that accepts or rejects")
      .method("GageAttributeOutput", &yGageAtt::GageAttributeOutput,
              "The gage performance curve, and what follows from it", Note("dpart", "labels; not read"),
              Note("dstd", "the reference value of each row"), Note("dy", "how often each row was accepted"),
              Note("dtrial", "how often each row was tried"),
              Note("Tolerance_Type", "which limit it is; any text but the first means a lower one")
                  .choices({"Upper limit", "Lower limit"}),
              Note("Tolerance", "the tolerance limit, in the units of the reference values"),
              Note("Method", "how repeatability and the test of the bias are formed")
                  .choices({"AIAG method", "Regression method"}),
              Note("AttributeValue", "the result; Intercept and Slope are of the normal scores")
                  .slots(GageAttribute::names),
              Note("Refarray", "the reference values between the extremes, ascending"),
              Note("Zarray", "their normal scores"), Note("Fittedarray", "the line at each"),
              Note("Probarray", "their probabilities of acceptance, as observed"), error)
      .note(
          "Rows of one reference value count together. There must be eight reference values or more, one or "
          "more never and one or more always accepted, and six or more between, with a probability of "
          "acceptance that falls towards an upper limit or rises from a lower one, without ties.")
      .note("The line is that of least squares through the normal scores of the values between the extremes.")
      .note(
          "Bias is the reference value at a fitted probability of 0.5 less the limit; its p-value has N - 2 "
          "degrees of freedom.")
      .note(
          "AIAG method, exactly six values between the extremes: probabilities other than 0.5 first move "
          "0.025 towards it. Repeatability is the width from the fitted probability 0.005 to 0.995, over "
          "1.08, and t is 31.3 absolute biases over that.")
      .note(
          "Regression method, six values or more: repeatability is the standard deviation of the curve, 1 "
          "over the absolute slope; t is the bias over its standard error by the delta method, with its "
          "sign. Another text leaves repeatability, t and p-value without a value.")
      .done();
}

Class runChart() {
  return Description<yGageRun>("yGageRun", "Run chart of a crossed gage study")
      .method("GageRunOutput", &yGageRun::GageRunOutput,
              "All readings in one chart: a panel a part, a series an operator", readings, partOfRow,
              operatorOfRow, Note("dtrial", "the trial of each reading"),
              Note("HistMean", "the mean line; the mean of the readings where this is no number"),
              Note("RunX", "the position of each slot on an axis from 0 to 1"),
              Note("RunY", "the readings: a row a slot, a column an operator").table(),
              Note("MeanY", "the mean line at each slot"),
              Note("PartLabel", "the parts, in numeric-aware order"),
              Note("OpLabel", "the operators, in numeric-aware order"), Note(error).optional())
      .note(
          "Every operator must have measured every part equally often; up to ten parts, ten operators and, "
          "of each operator's trials of a part, the first ten in numeric-aware order. The operators share "
          "the slots of a part.")
      .done();
}

Class agreement() {
  const auto kappas = [](const char* name, const char* help) {
    Note note(name, help);
    return note.table().slots(AgreementKappa::names);
  };
  return Description<yAAA>("yAAA",
                           "Attribute agreement: appraisers against themselves, each other and a standard")
      .method(
          "GageAAAOutput", &yAAA::GageAAAOutput,
          "Matches, kappas and, for ordered categories, Kendall's statistics",
          Note("dy", "the ratings: categories, as texts or numbers"),
          Note("dpart", "the part of each rating"), Note("dop", "the appraiser (operator) of each rating"),
          Note(
              "dtrial",
              "the trial of each rating; where left out or blank, an appraiser's trials of a part are in the "
              "order of the rows"),
          Note("dstd", "the standard of the part, on each row; left out or blank where there is none"),
          Note("CategoryOrder",
               "all categories in their order, blanks skipped; where left out or blank, those that occur in "
               "numeric-aware order"),
          Note("Ordinal",
               "true takes the order of the categories for a scale, and adds Kendall's statistics"),
          Note("Between", "true compares the appraisers with each other, too"),
          Note("CLevel", "confidence of the limits as a fraction, such as 0.95"),
          Note("Appraiser", "the appraisers, in numeric-aware order"), Note("Category", "the categories"),
          Note("WithinValue", "each appraiser against their own trials: a row an appraiser")
              .table()
              .slots(AgreementAmong::names),
          kappas("WithinKappa", "the kappas of each appraiser over their own trials"),
          Note("BetweenValue", "the appraisers against each other, all trials of each")
              .slots(AgreementAmong::names),
          kappas("BetweenKappa", "the kappas of all trials of all appraisers"),
          Note("StandardValue", "each appraiser against the standard: a row an appraiser")
              .table()
              .slots(AgreementWithStandard::names),
          kappas("StandardKappa", "the kappas of each appraiser with the standard"),
          Note("AllValue", "all appraisers against the standard").slots(AgreementWithStandard::names),
          kappas("AllKappa", "the kappas of all appraisers with the standard"),
          Note("Disagreement",
               "for two categories and a standard, a row an appraiser: parts of the second category rated as "
               "the first in every trial, the reverse, parts rated both ways, and the first two also for "
               "single "
               "ratings; percentages are of the parts or ratings of that standard, Mixed of all parts")
              .table()
              .slots(AgreementErrors::names),
          error)
      .note(
          "Every appraiser must have rated every part equally often. Categories, parts and appraisers are "
          "compared exactly: \"good\" and \"Good\" are two, and so are \"1\" and \"1.0\". "
          "Trial labels must differ within a part and an appraiser, and need not match from part to part. "
          "Rows "
          "beyond the length of dy are not read.")
      .note(
          "A part is matched where all ratings concerned are the same, trials included, and the standard's "
          "where there is one. Percentages are from 0 to 100, their limits exact (Clopper and Pearson), with "
          "half of what CLevel leaves on each side also at 0 and 100 percent.")
      .note(
          "Tables of kappas have a row for each category and then one over all, without a Category, for each "
          "appraiser in turn; Appraiser and Category are places in the lists of those names, and Appraiser "
          "has "
          "no value in BetweenKappa and AllKappa. Standard errors are those under agreement by chance, and "
          "p-values are P(Z > z).")
      .note(
          "Cohen's kappa is given where two ratings are compared: two trials of an appraiser, two appraisers "
          "of one trial each, a trial and the standard. For AIAG's cross tabulation of two appraisers, "
          "pass them alone and make each trial a part of its own.")
      .note(
          "With a standard, each trial of each appraiser is compared with it; kappas and tau-b are the means "
          "of these comparisons, with standard errors as if they were independent. The p-value of tau-b has "
          "both tails; that of Kendall's W is the chi-square approximation.")
      .note(
          "With 0 for bad and 1 for good, RatingsFirstAsSecondPercent is AIAG's miss rate and "
          "RatingsSecondAsFirstPercent its false alarm rate. A percentage has no value where the standard "
          "does "
          "not occur.")
      .note(
          "A kappa has no value where it is 0 over 0, as that of a category that did not occur or was all "
          "that did, and a mean has none where one of its comparisons has none. Tau-b has none where a trial "
          "or the standard is constant, W where every trial is. A standard error of 0 leaves z and p-value "
          "without a value.")
      .note(
          "What was not compared has no values: WithinValue for a single trial, BetweenValue unless asked "
          "for, StandardValue and AllValue without a standard. Ordered categories that are not all distinct "
          "numbers want a CategoryOrder: otherwise \"high\" comes before \"low\", and labels that tie, such "
          "as "
          "\"1\" and \"01\", have an arbitrary order, if always the same.")
      .note(
          "ErrorCode, checked in this order: Ratings must not be blank; Standards must not be blank, where "
          "others are given; Design must be balanced; Trials of a part by an appraiser must "
          "differ; At least 2 appraiser values required; At least 2 trials or a standard required; Rating or "
          "standard not in CategoryOrder; Standard for the same part must be the same; At least 2 categories "
          "required. A text of 1E+99, which holds no value, is blank.")
      .note(
          "Failures: 5 for a CLevel that is not between 0 and 1, such as 95, and for a category listed "
          "twice; 7 "
          "for more than 1E6 rows of kappas; 9 for columns of fewer rows than dy.")
      .done();
}

}  // namespace

void describeGage(std::vector<Class>& classes) {
  classes.push_back(crossed());
  classes.push_back(linearity());
  classes.push_back(attribute());
  classes.push_back(runChart());
  classes.push_back(agreement());
}

}  // namespace zelkova
