#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/models/yANOVA1.h"
#include "zelkova/models/yANOVA2.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

Class oneWay() {
  return Description<yANOVA1>("yANOVA1", "One-way analysis of variance")
      .method("OneANOVAOutput", &yANOVA1::OneANOVAOutput, "Table, and means of the levels with limits",
              Note("dy", "the data"), Note("dx", "the label of each value; compared exactly, case included"),
              Note("CLevel", "confidence of the limits as a fraction, such as 0.95"),
              Note("OANVValue", "the table: between the levels (B), within them (W), total (T)")
                  .slots(OneANOVA::names),
              Note("OANVValue_I", "a row for each level").table().slots(OneANOVALevels::names),
              Note("OANVlabel", "the levels in order of first appearance: the rows of OANVValue_I"))
      .note(
          "The limits of a level's mean use the standard deviation pooled over all levels and its degrees of "
          "freedom.")
      .note(
          "F and p-value have no value where there is a single level or no spread inside the levels. Where "
          "every level has a single value the call fails: there is nothing to form limits from.")
      .method("OneANOVAResOutput", &yANOVA1::OneANOVAResOutput, "Fitted values and residuals",
              Note("dy", "the data"), Note("dx", "the label of each value"),
              Note("Residual", "value less fitted value, in the order of the data"),
              Note("FittedV", "the mean of each value's level"))
      .done();
}

Class twoWay() {
  const Note additive("Additive", "true leaves out the interaction: its variation counts as error");
  return Description<yANOVA2>("yANOVA2", "Two-way analysis of variance")
      .method("TwoANOVAOutput", &yANOVA2::TwoANOVAOutput,
              "Table of a balanced layout, and means of the levels with limits", Note("dy", "the data"),
              Note("dx1", "the label of each value under factor 1; compared exactly, case included"),
              Note("dx2", "the label of each value under factor 2"), additive,
              Note("dCLevel", "confidence of the limits as a fraction, such as 0.95"),
              Note("TANVValue", "the table: factor 1, factor 2, their interaction (12), error (E), total (T)")
                  .slots(TwoANOVA::names),
              Note("TANVValue_I1", "a row for each level of factor 1").table().slots(TwoANOVALevels::names),
              Note("TANVValue_I2", "a row for each level of factor 2").table().slots(TwoANOVALevels::names),
              Note("UniX1", "the levels of factor 1 in order of first appearance: the rows of TANVValue_I1"),
              Note("UniX2", "the levels of factor 2 in order of first appearance: the rows of TANVValue_I2"),
              Note("ErrorCode",
                   "set where the data do not fit: every pair of levels must have the same number "
                   "of values, and each factor two levels"))
      .note(
          "Without replicates, the table with the interaction has no error left: mean square, F, p-values "
          "and "
          "limits have no value. Additive true tests the factors against the interaction instead.")
      .note("The adjusted R-squared has no slot.")
      .method("TwoANOVAResOutput", &yANOVA2::TwoANOVAResOutput, "Fitted values and residuals",
              Note("dy", "the data"), Note("dx1", "the label of each value under factor 1"),
              Note("dx2", "the label of each value under factor 2"), additive,
              Note("Residual", "value less fitted value, in the order of the data"),
              Note("FittedV",
                   "the mean of each value's cell; with Additive true the sum of the means of its two "
                   "levels less the mean of all"))
      .note("Any layout serves, balanced or not.")
      .done();
}

}  // namespace

void describeModels(std::vector<Class>& classes) {
  classes.push_back(oneWay());
  classes.push_back(twoWay());
}

}  // namespace zelkova
