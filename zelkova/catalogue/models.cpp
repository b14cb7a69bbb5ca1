#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

void describeModels(std::vector<Class>& classes) {
  using Note = ArgumentNote;

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

  classes.push_back(
      Description<yRegression>("yRegression", "Least squares regression and its diagnostics")
          .method("RegOutput", &yRegression::RegOutput, "The fit, its tests and its analysis of variance",
                  response, matrix, coefficients, Note("SECoef", "their standard errors"),
                  Note("tStat", "coefficient over standard error"), Note("PV", "two-sided p-values"),
                  Note("FittedV", "fitted values; zeros unless CalculateResidual"),
                  Note("Residual", "residuals to 7 decimals; zeros unless CalculateResidual"),
                  Note("RegMain", "the analysis of variance").slots(Reg::names), intercept,
                  Note("CalculateResidual", "true asks for fitted values and residuals").optional(false))
          .note(exactFit)
          .note(singular)
          .note("Sums of squares are those of the normal equations in extended precision, not sums over the "
                "residuals, which are rounded for display.")
          .method("RegResiOutput", &yRegression::RegResiOutput, "Coefficients, fitted values and residuals",
                  response, matrix, intercept, coefficients, Note("FittedV", "the fitted values"),
                  Note("Residual", "the residuals, not rounded"), order)
          .note(singular)
          .method("GetSSSeq", &yRegression::GetSSSeq, "Sequential sums of squares", response, matrix,
                  intercept, Note("SSSeq", "what each regressor adds to those before it"))
          .note(singular)
          .method("GetSSAdj", &yRegression::GetSSAdj, "Adjusted sums of squares", response, matrix, intercept,
                  Note("SSAdj", "what each regressor adds to all others"))
          .note(singular)
          .method("GetVIF", &yRegression::GetVIF, "Variance inflation factors", matrix, intercept,
                  Note("VIF", "1/(1 - R squared) of each regressor on the others"))
          .note("A regressor that the others explain exactly, with an error sum of squares below 1E-8 in its "
                "own "
                "squared units, has no value. A single regressor has 1.")
          .method("GetDurbinWatson", &yRegression::GetDurbinWatson,
                  "Durbin and Watson's statistic of serial correlation", residual)
          .note("Residuals that are all 0 have no value.")
          .method("GetPRESS", &yRegression::GetPRESS,
                  "Prediction sum of squares, each row predicted from the others", residual, matrix,
                  intercept)
          .note("Rows of leverage 1, which alone determine a coefficient, are left out. A sum of 0 has no "
                "value.")
          .method("GetPreRsq", &yRegression::GetPreRsq, "Predicted R squared",
                  Note("PRESS", "the prediction sum of squares"),
                  Note("SST", "the total sum of squares, slot 6 of RegMain"))
          .note("1 where SST is not above 0.")
          .method("GetPredictNew", &yRegression::GetPredictNew, "Predictions at new rows, with limits",
                  matrix, Note("M_X_new", "the new rows, in the columns of M_X").table(), coefficients,
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
          .note("A column goes where its sum of squares about its fit on the columns before it is at most "
                "1E-18 "
                "times its sum, or nothing but rounding. The constant of the fit stays.")
          .method("RegSOutput", &yRegression::RegSOutput, "Straight line with limits at each observation",
                  response, Note("M_X", "two columns, ones and x").table(), confidence,
                  Note("FV", "the fitted values"), Note("Resi", "the residuals, not rounded"), order,
                  Note("LCL", "lower confidence limits of the mean response"),
                  Note("UCL", "upper confidence limits of the mean response"),
                  Note("LPL", "lower prediction limits of a single response"),
                  Note("UPL", "upper prediction limits of a single response"))
          .method(
              "GetNonLinear", &yRegression::GetNonLinear, "The columns of a polynomial",
              Note("dataarrayX", "the predictor x").vectorOrTable(), Note("XName", "its name"),
              Note("modeltype", "Quadratic adds the square, Cubic square and cube, any other text neither")
                  .choices({"Quadratic", "Cubic"}),
              Note("dx", "the constant, x and its powers, a column each").table(), Note("dxN", "their names"))
          .done());
}

}  // namespace zelkova
