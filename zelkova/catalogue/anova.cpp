#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/models/yANOVA1.h"
#include "zelkova/models/yANOVA2.h"
#include "zelkova/models/yGLM.h"

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

Class generalLinearModel() {
  return Description<yGLM>("yGLM", "General linear model")
      .method(
          "GLMOutput", &yGLM::GLMOutput,
          "Analysis of variance with sequential and adjusted sums of squares, and coefficients",
          Note("dy", "the data"), Note("dyn", "their name; enters no result"),
          Note("df", "the levels of the factors, a column for each factor; may be left out").table(),
          Note("dfn", "the factors' names"),
          Note("dc", "the covariates, a column for each; may be left out").table(),
          Note("dCn", "the covariates' names"),
          Note("model",
               "the terms: A, A*B (interaction), B(A) or C(A, B) (nested in), x*x (a covariate squared)"),
          Note("ANOVAtable", "a row for each term, then error and total").table().slots(GLMSources::names),
          Note("ANOVAlabel", "the rows of ANOVAtable"),
          Note("regtable", "a row for each coefficient, the constant first")
              .table()
              .slots(GLMCoefficients::names),
          Note("Reglabel", "the rows of regtable: A|a1 is level a1 of factor A"),
          Note("DS", "S, the square root of the error mean square"), Note("r2", "R-squared"),
          Note("R2a", "adjusted R-squared"), Note("FittedV", "the fitted values, when ResidualPlot is true"),
          Note("Residual", "the residuals to 7 decimals, when ResidualPlot is true"),
          Note("mterm", "the terms in canonical form"), Note("model2", "the terms as tables show them"),
          Note("varcomp",
               "the variance component of each term and the error mean square, when FNANOVA is true"),
          Note("FNANOVA", "true asks for the variance components of a fully nested model"),
          Note("ErrorCode", "set where the model or the data do not fit"),
          Note("ResidualPlot",
               "true fills FittedV and Residual in place of ANOVAtable, ANOVAlabel and varcomp")
              .optional(false))
      .note(
          "Factors are in effect coding: a coefficient is a level's deviation from the mean of the levels, "
          "and "
          "that of the last level, in numeric-aware order, is minus the sum of the others. A coefficient of "
          "an "
          "interaction is named by its levels, A|a1*B|b1, one of a nested term by the inner level and, in "
          "parentheses, the enclosing ones, B(A)|b1(a1).")
      .note(
          "Sequential sums of squares (Type I) are each term's after those before it in the model, adjusted "
          "ones "
          "(Type III) each term's after all others. F and p-value are from the adjusted mean square over "
          "that of "
          "the error.")
      .note(
          "A model must be hierarchical: A*B needs A and B, A*B*C the three pairs as well, B(A) needs A. A "
          "factor "
          "that encloses another may itself be nested: A, B(A), C(A, B). Names compare without regard to "
          "case.")
      .note(
          "ErrorCode is one of: Factors must have more than 1 level; Illegal terms in model (unknown names, "
          "empty "
          "or repeated terms); Nested terms must be factors; Model is not hierarchical; Insufficient data "
          "points "
          "(more coefficients than values); Error: Collinearity (columns that depend on each other, such as "
          "an "
          "interaction with an empty cell, or data too large to square); Rank deficiency due to colinearity.")
      .note(
          "An error sum of squares below 1E-8, in the squared units of dy, or without degrees of freedom "
          "counts as "
          "an exact fit: what needs an error has no value.")
      .note(
          "A variance component is a term's mean square less that of the next term, or of the error for the "
          "last, "
          "over the number of values in a combination of the term's levels, n over their number. That is "
          "exact for "
          "balanced data. A negative one stays negative.")
      .done();
}

}  // namespace

void describeModels(std::vector<Class>& classes) {
  classes.push_back(oneWay());
  classes.push_back(twoWay());
  classes.push_back(generalLinearModel());
}

}  // namespace zelkova
