#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/models/yANOVA1.h"
#include "zelkova/models/yANOVA2.h"
#include "zelkova/models/yBoxCox.h"
#include "zelkova/models/yGLM.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

Class regression() {
  Note response("M_Y", "the response");
  response.vectorOrTable();
  Note matrix("M_X", "the columns of the model; with an intercept, a first column of ones");
  matrix.table();
  const Note intercept("FitIntercept",
                       "true where the first column of M_X is the constant; false takes sums of squares "
                       "about 0");
  const Note confidence("CLevel", "confidence of the limits as a fraction, such as 0.95");
  const Note coefficients("coef", "the coefficients, one for each column of M_X");
  Note residual("Residual", "the residuals of the fit, in the order of the observations");
  residual.vectorOrTable();
  const Note order("order", "1 to n");

  const char* const exactFit =
      "A fit whose SSE is below 1E-8, in squared units of the response, or that leaves no error degrees of "
      "freedom counts as exact: whatever needs an error has no value.";
  const char* const singular =
      "Columns that explain each other end in failure 5012; RegressionCheck removes them.";

  return Description<yRegression>("yRegression", "Least squares regression and its diagnostics")
      .method("RegOutput", &yRegression::RegOutput, "The fit, its tests and its analysis of variance",
              response, matrix, coefficients, Note("SECoef", "their standard errors"),
              Note("tStat", "coefficient over standard error"), Note("PV", "two-sided p-values"),
              Note("FittedV", "fitted values; zeros unless CalculateResidual"),
              Note("Residual", "residuals to 7 decimals; zeros unless CalculateResidual"),
              Note("RegMain", "the analysis of variance").slots(Reg::names), intercept,
              Note("CalculateResidual", "true asks for fitted values and residuals").optional(false))
      .note(exactFit)
      .note(singular)
      .note(
          "Sums of squares are those of the normal equations in extended precision, not sums over the "
          "residuals, which are rounded for display.")
      .method("RegResiOutput", &yRegression::RegResiOutput, "Coefficients, fitted values and residuals",
              response, matrix, intercept, coefficients, Note("FittedV", "the fitted values"),
              Note("Residual", "the residuals, not rounded"), order)
      .note(singular)
      .method("GetSSSeq", &yRegression::GetSSSeq, "Sequential sums of squares", response, matrix, intercept,
              Note("SSSeq", "what each regressor adds to those before it"))
      .note(singular)
      .method("GetSSAdj", &yRegression::GetSSAdj, "Adjusted sums of squares", response, matrix, intercept,
              Note("SSAdj", "what each regressor adds to all others"))
      .note(singular)
      .method("GetVIF", &yRegression::GetVIF, "Variance inflation factors", matrix, intercept,
              Note("VIF", "1/(1 - R squared) of each regressor on the others"))
      .note(
          "A regressor that the others explain exactly, with an error sum of squares below 1E-8 in its "
          "own squared units, has no value. A single regressor has 1.")
      .method("GetDurbinWatson", &yRegression::GetDurbinWatson,
              "Durbin and Watson's statistic of serial correlation", residual)
      .note("Residuals that are all 0 have no value.")
      .method("GetPRESS", &yRegression::GetPRESS,
              "Prediction sum of squares, each row predicted from the others", residual, matrix, intercept)
      .note(
          "Rows of leverage 1, which alone determine a coefficient, are left out. A sum of 0 has no "
          "value.")
      .method("GetPreRsq", &yRegression::GetPreRsq, "Predicted R squared",
              Note("PRESS", "the prediction sum of squares"),
              Note("SST", "the total sum of squares, slot 6 of RegMain"))
      .note("1 where SST is not above 0.")
      .method("GetPredictNew", &yRegression::GetPredictNew, "Predictions at new rows, with limits", matrix,
              Note("M_X_new", "the new rows, in the columns of M_X").table(), coefficients,
              Note("dDoFR", "regression degrees of freedom, slot 1 of RegMain"),
              Note("dDoFT", "total degrees of freedom, slot 3 of RegMain"),
              Note("dMSE", "error mean square, slot 8 of RegMain"), intercept, confidence,
              Note("NewFit", "the predictions"), Note("NewSEFit", "their standard errors"),
              Note("NewLCL", "lower confidence limits of the mean response"),
              Note("NewUCL", "upper confidence limits of the mean response"),
              Note("NewLPL", "lower prediction limits of a single response"),
              Note("NewUPL", "upper prediction limits of a single response"))
      .note("Without an error mean square, as after an exact fit, errors and limits have no value.")
      .method("RegressionCheck", &yRegression::RegressionCheck,
              "Removes columns that are constant or explained by those before them",
              Note("M_X", "the columns of the model").table().inOut(),
              Note("M_Xname", "a name for each of them").inOut(), intercept)
      .note(
          "A column goes where its sum of squares about its fit on the columns before it is at most 1E-18 "
          "times its sum, or nothing but rounding. The constant of the fit stays.")
      .method("RegSOutput", &yRegression::RegSOutput, "Straight line with limits at each observation",
              response, Note("M_X", "two columns, ones and x").table(), confidence,
              Note("FV", "the fitted values"), Note("Resi", "the residuals, not rounded"), order,
              Note("LCL", "lower confidence limits of the mean response"),
              Note("UCL", "upper confidence limits of the mean response"),
              Note("LPL", "lower prediction limits of a single response"),
              Note("UPL", "upper prediction limits of a single response"))
      .method("GetNonLinear", &yRegression::GetNonLinear, "The columns of a polynomial",
              Note("dataarrayX", "the predictor x").vectorOrTable(), Note("XName", "its name"),
              Note("modeltype", "Quadratic adds the square, Cubic square and cube, any other text neither")
                  .choices({"Quadratic", "Cubic"}),
              Note("dx", "the constant, x and its powers, a column each").table(), Note("dxN", "their names"))
      .done();
}

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
          "The limits of a level's mean use the standard deviation pooled over all levels and its degrees "
          "of freedom.")
      .note(
          "F and p-value have no value where there is a single level or no spread inside the levels. "
          "Where every level has a single value the call fails: there is nothing to form limits from.")
      .method("OneANOVAResOutput", &yANOVA1::OneANOVAResOutput, "Fitted values and residuals",
              Note("dy", "the data"), Note("dx", "the label of each value"),
              Note("Residual", "value less fitted value, in the order of the data"),
              Note("FittedV", "the mean of each value's level"))
      .done();
}

Class twoWay() {
  const Note additive("Additive", "true leaves out the interaction: its variation counts as error");
  return Description<yANOVA2>("yANOVA2", "Two-way analysis of variance")
      .method(
          "TwoANOVAOutput", &yANOVA2::TwoANOVAOutput,
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
               "why the data are refused, if they are: then arrays stay unfilled. Every pair of levels must "
               "have the same number of values, and each factor two levels"))
      .note(
          "Without replicates, the table with the interaction has no error left: mean square, F, p-values "
          "and limits have no value. Additive true tests the factors against the interaction instead.")
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
          Note("ErrorCode",
               "why the model or the data are refused, if they are: then arrays stay unfilled, numbers as "
               "they came"),
          Note("ResidualPlot",
               "true fills FittedV and Residual in place of ANOVAtable, ANOVAlabel and varcomp")
              .optional(false))
      .note(
          "Factors are in effect coding: a coefficient is a level's deviation from the mean of the "
          "levels, and that of the last level, in numeric-aware order, is minus the sum of the others. A "
          "coefficient of an interaction is named by its levels, A|a1*B|b1, one of a nested term by the "
          "inner level and, in parentheses, the enclosing ones, B(A)|b1(a1).")
      .note(
          "Sequential sums of squares (Type I) are each term's after those before it in the model, "
          "adjusted ones (Type III) each term's after all others. F and p-value are from the adjusted "
          "mean square over that of the error.")
      .note(
          "A model must be hierarchical: A*B needs A and B, A*B*C the three pairs as well, B(A) needs A. "
          "A factor that encloses another may itself be nested: A, B(A), C(A, B). Names compare without "
          "regard to case.")
      .note(
          "ErrorCode is one of: Factors must have more than 1 level; Illegal terms in model (unknown "
          "names, empty or repeated terms); Nested terms must be factors; Model is not hierarchical; "
          "Insufficient data points (more coefficients than values); Error: Collinearity (columns that "
          "depend on each other, such as an interaction with an empty cell, or data too large to square); "
          "Rank deficiency due to colinearity.")
      .note(
          "An error sum of squares below 1E-8, in the squared units of dy, or without degrees of freedom "
          "counts as an exact fit: what needs an error has no value.")
      .note(
          "A variance component is a term's mean square less that of the next term, or of the error for "
          "the last, over the number of values in a combination of the term's levels, n over their "
          "number. That is exact for balanced data. A negative one stays negative.")
      .done();
}

Class boxCox() {
  return Description<yBoxCox>("yBoxCox", "Box-Cox power transformation")
      .method("BoxcoxOutput", &yBoxCox::BoxcoxOutput, "The power that comes closest to a constant spread",
              Note("dy", "the data, all positive"),
              Note("dx",
                   "the subgroup of each value, equal texts wherever they stand; where no text occurs twice, "
                   "the data are individual values"),
              Note("Transform", "true asks for Transformed"),
              Note("SpecifyLamda", "the power of Transformed, read as a number; blank for lambda"),
              Note("lambda", "the power of the smallest spread tried"),
              Note("MinimumSD", "that spread, in the units of the data"),
              Note("CISD", "the limit of the spread"),
              Note("LambdaLower", "the power below lambda at that limit"),
              Note("LambdaUpper", "the power above lambda at that limit"),
              Note("DataX", "the powers tried, ascending"), Note("DataY", "the spread at each"),
              Note("Transformed", "the data to the power, or their natural logarithms for a power of 0"))
      .note(
          "The spread is that of y^lambda / (lambda g^(lambda - 1)), g ln y for 0, with g the geometric "
          "mean. Subgroups: the pooled standard deviation over c4; individual values: the mean moving range "
          "of two "
          "over 1.128.")
      .note(
          "CISD is MinimumSD plus t/m, with t the 0.975 quantile of t at the m degrees of freedom of the "
          "spread: n less the number of subgroups, or n - 1. The powers at the limit are linear between the "
          "points of the curve; where the curve stays below the limit they are its end.")
      .note(
          "The search walks in steps of 1 from 5, then halves the steps, until neighbouring spreads differ "
          "by at most 0.002, in the units of the data: data in very small units want a larger scale first.")
      .done();
}

}  // namespace

void describeModels(std::vector<Class>& classes) {
  for (const auto& describeClass : {regression, oneWay, twoWay, generalLinearModel, boxCox}) {
    classes.push_back(describeClass());
  }
}

}  // namespace zelkova
