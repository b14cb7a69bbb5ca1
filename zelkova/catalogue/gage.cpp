#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
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

}  // namespace

void describeGage(std::vector<Class>& classes) {
  classes.push_back(crossed());
  classes.push_back(linearity());
  classes.push_back(attribute());
  classes.push_back(runChart());
}

}  // namespace zelkova
