#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/plots/yProbability.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

const std::vector<std::string> distributions{
    "Weibull", "Smallest Extreme Value", "Exponential", "Normal", "Lognormal", "Logistic", "Loglogistic"};

Note starts(const char* name = "SA") {
  return {name,
          "when each unit was last known to be alive; no value for one known only to have failed by EA"};
}
Note ends(const char* name = "EA") {
  return {name,
          "when each was first known to have failed: SA itself for a failure at that time, no value for one "
          "that was still alive"};
}
Note frequencies(const char* name = "FA") { return {name, "how many units each row stands for"}; }

const Note distribution = Note("dist", "the life distribution").choices(distributions);
const Note plotPosition =
    Note("pMtd", "how failures are placed on a probability plot; Turnbull for arbitrary censoring")
        .choices({"Median rank", "Modified Kaplan-Meier", "Herd-Johnson", "Kaplan-Meier", "Turnbull"});
const Note estimation =
    Note("estimate", "least squares through the plot, or any other text for maximum likelihood")
        .choices({"Least squares", "Maximum likelihood"});
const Note confidence("CLevel", "confidence of two-sided limits, as a fraction");
const Note first("Para1", "parameter 1");
const Note second("Para2", "parameter 2; not read for Exponential");
const Note variance1("var1", "variance of parameter 1");
const Note variance2("var2", "variance of parameter 2; 0 for a held one");
const Note covariance("covar12", "covariance of both");
const Note shares("Percent", "shares of failed units whose times are asked for, in percent");
const Note someTimes("times", "times whose survival is asked for");
const Note linePlot =
    Note("PlotHVLU",
         "15 rows: share, score on the vertical axis, limits of the time, time of the fitted line")
        .table()
        .slots(ProbabilityLine::names);
const Note percentiles =
    Note("PM", "a row for each share: percentile, standard error, limits").table().slots(LifeEstimate::names);
const Note labels = Note("PMS", "the distribution and the percent of those rows, as texts").table();
const Note moments =
    Note("PMM", "rows: mean, standard deviation, median, first and third quartile, interquartile range")
        .table()
        .slots(LifeEstimate::names);
const Note summary = Note("Para", "summary of the fit").slots(LifeSummary::names);
const Note estimates = Note("ParaEst", "a row for each parameter").table().slots(LifeEstimate::names);
const Note survivals =
    Note("SurvTable", "a row for each time; the limits at the lower u come first, the greater survival")
        .table()
        .slots(LifeSurvival::names);
const Note plotTimes("PlotX", "the failure times");
const Note plotScores("PlotY", "their scores on the vertical axis of the probability plot");

const char* const parameterNote =
    "Parameters 1 and 2 are scale and shape (Weibull), location and scale of t (Smallest Extreme Value, "
    "Logistic) or of ln t (Loglogistic), mean and standard deviation of t (Normal) or ln t (Lognormal), or "
    "the mean (Exponential, whose parameter 2 is the same value). An unknown distribution fills nothing, or "
    "arrays without values.";

Class reliability() {
  const Note held("hold", "a value that a parameter is held at, no value for a free one; may be left out");
  return Description<yReliability>("yReliability", "Life data with any censoring, and accelerated life tests")
      .method("HandleOverlap", &yReliability::HandleOverlap,
              "Merges the rows of life data whose spans overlap", starts().inOut(), ends().inOut(),
              frequencies().inOut())
      .note(
          "All rows that overlap any other become one last row, from the latest start to the earliest end, "
          "even where they form several groups; look at it before the analysis goes on. Rows with an open "
          "end stay.")
      .method("Para_LS", &yReliability::Para_LS,
              "Plot positions, and the least squares line of time on score", starts().inOut(), ends().inOut(),
              frequencies().inOut(), plotPosition, distribution,
              Note("P", "the parameters that the line gives; no values where there is none"),
              Note("corr", "its correlation; no value for Exponential"), plotTimes, plotScores,
              Note("holdslope", "a parameter 2 to hold; no value for none"))
      .note(
          "The rows come back sorted by their start, for Turnbull by their end. Only Turnbull looks at "
          "frequencies.")
      .note(parameterNote)
      .method("Para_ML", &yReliability::Para_ML, "Maximum likelihood by a search from a start", starts(),
              ends(),
              Note("FA",
                   "how many units each row stands for; stresses, or a table of frequency and covariates, "
                   "for other models")
                  .vectorOrTable(),
              Note("dist",
                   "the life distribution; with a bar and a relation a model of accelerated life; after LDR "
                   "a regression"),
              Note("P", "the start, then the estimate").inOut(),
              Note("MLO", "log-likelihood and iterations").slots(LifeFit::names),
              Note("FM", "the observed information, by differences; 1E-8 on the diagonal of a held parameter")
                  .table(),
              Note("hold", "a value that a parameter is held at, no value for a free one"))
      .note(
          "The value for Lognormal has the terms -ln t of exact times and that for Loglogistic has not: the "
          "two cannot be compared.")
      .note(
          "The parameters of accelerated life are (spread, b0, b1), and each row counts once. Those of a "
          "regression are (spread, a coefficient for each covariate).")
      .method("CalPara", &yReliability::CalPara, "The summary of a fit, with its goodness", starts().inOut(),
              ends().inOut(), frequencies().inOut(), plotPosition, distribution, first, second, summary)
      .note(
          "AD is the Anderson-Darling statistic adjusted for the plot positions, integrated over the steps "
          "of the plot up to a fitted share of 1 - 1E-12 and multiplied by the number of points: the less, "
          "the better the distribution fits. Compare it among distributions with the same plot positions.")
      .method("ParaAnalysis", &yReliability::ParaAnalysis, "A whole parametric analysis", starts("SA0"),
              ends("EA0"), frequencies("FA0"), distribution, plotPosition, estimation, shares, someTimes,
              Note("P", "the parameters"), percentiles, labels, moments, summary,
              Note("corr", "correlation of the probability plot; no value for Exponential"), plotTimes,
              plotScores, estimates, survivals, held, variance1, variance2,
              Note("var3", "no value; 0 for Exponential"), covariance,
              Note("covar13", "no value; 0 for Exponential"), Note("covar23", "no value; 0 for Exponential"),
              Note("BPercMTTF", "fill PM, PMS and PMM").optional(false),
              Note("BCalPara", "fill Para").optional(false), Note("BEstPara", "fill ParaEst").optional(false),
              Note("BCalTimes", "fill SurvTable").optional(false),
              Note("CLevel", "confidence of two-sided limits, as a fraction").optional(0.95))
      .note(parameterNote)
      .note(
          "Variances are those at the maximum of the likelihood, for least squares too. Where a parameter is "
          "held, var2 is 0; var1 of a held parameter 1 says nothing.")
      .note(
          "A search that fails starts again from nine tenths of its start, nine times; then the text Cannot "
          "Find solution is shown and outputs stay as the last search had them. A share of 0 or 100 percent "
          "and a time that the distribution cannot have fail it too.")
      .method("ParaAnalysisPlot", &yReliability::ParaAnalysisPlot, "The plots of a fit, each under its flag",
              distribution, first, second, variance1, variance2, Note("var3", "not read"), covariance,
              Note("covar13", "not read"), Note("covar23", "not read"), linePlot,
              Note("HarzX", "times of the hazard"), Note("HarzY", "the hazard"),
              Note("PDFX", "times of the density"), Note("PDFY", "the density"),
              Note("SurvX", "times of the survival"), Note("SurvY", "the survival"),
              Note("SurvYL", "its limit at the lower u, the greater one"),
              Note("SurvYU", "its limit at the upper u"), Note("FailX", "times of the failed share"),
              Note("FailY", "the failed share"), Note("FailYL", "1 less SurvYL"),
              Note("FailYU", "1 less SurvYU"), Note("BProbPlot", "fill PlotHVLU").optional(false),
              Note("BSurvFailPlot", "fill SurvX to FailYU").optional(false),
              Note("BHarzPDF", "fill HarzX to PDFY").optional(false),
              Note("CLevel", "confidence of two-sided limits, as a fraction").optional(0.95))
      .note("Every curve has 15 points, at the shares 0.001 to 0.999 of failed units.")
      .method("EstPara", &yReliability::EstPara, "Parameters with limits", confidence, first, second,
              distribution, variance1, variance2, estimates)
      .note("Limits are symmetric for locations and logarithmic for scales and shapes.")
      .method("PercMTTF", &yReliability::PercMTTF, "Percentiles and moments with limits", confidence,
              distribution, shares, first, second, variance1, variance2, covariance, percentiles, labels,
              moments)
      .note(
          "Standard errors by the delta method; those of moments and of the interquartile range take "
          "derivatives by differences of 1E-5 of a parameter. A moment that does not exist has no value.")
      .method("CalTimes", &yReliability::CalTimes, "Survival at given times with limits", confidence, first,
              second, distribution, variance1, variance2, covariance, someTimes, survivals)
      .method("ProbPlot", &yReliability::ProbPlot, "The line and bands of a probability plot", confidence,
              first, second, distribution, variance1, variance2, covariance, linePlot)
      .method(
          "SurvFailPlot", &yReliability::SurvFailPlot, "Curves of survival and failure with bands",
          confidence, first, second, distribution, variance1, variance2, covariance, Note("SurvX", "times"),
          Note("SurvY", "the survival"), Note("SurvYL", "its limit at the lower u, the greater one"),
          Note("SurvYU", "its limit at the upper u"), Note("FailX", "times"),
          Note("FailY", "the failed share"), Note("FailYL", "1 less SurvYL"), Note("FailYU", "1 less SurvYU"))
      .method("HarzPDFPlot", &yReliability::HarzPDFPlot, "Curves of hazard and density", first, second,
              distribution, Note("HarzX", "times"),
              Note("HarzY", "the hazard, to 8 decimals but for Exponential"), Note("PDFX", "times"),
              Note("PDFY", "the density"))
      .method("NonParaR", &yReliability::NonParaR, "The product-limit estimate of right-censored data",
              starts().inOut(), ends().inOut(), frequencies().inOut(), confidence,
              Note("NonPR", "a row for each failure time").table().slots(ProductLimit::names),
              Note("Harz", "the hazard at each: 1 / (at risk - failures + 1)"),
              Note("NonPara", "summary").slots(ProductLimitSummary::names),
              Note("SurvPlotX", "outline of the survival"), Note("SurvPlotY", "its level"),
              Note("SurvPlotL", "its lower limit"), Note("SurvPlotU", "its upper limit"),
              Note("FailPlotX", "outline of the failed share"), Note("FailPlotY", "its level"),
              Note("FailPlotL", "its lower limit"), Note("FailPlotU", "its upper limit"),
              Note("HarzPlotX", "outline of the hazard"), Note("HarzPlotY", "its level"))
      .note(
          "The mean is the area under the survival up to the last time, without censoring the mean of the "
          "times. Limits are plain normal ones, cut to 0 and 1.")
      .method("NonParaA", &yReliability::NonParaA, "Survival of data with arbitrary censoring", starts(),
              ends(), frequencies(), confidence,
              Note("ProbSEFS", "a row for each span, by its end").table().slots(SpanWeight::names),
              Note("ProbESSLU", "a row for each span but the last").table().slots(SpanSurvival::names),
              Note("NPA", "frequencies by kind of row").slots(SpanKinds::names), Note("hold", "not read"),
              Note("TurnSurvX", "outline of the survival"), Note("TurnSurvY", "its level"),
              Note("TurnSurvL", "its lower limit"), Note("TurnSurvU", "its upper limit"),
              Note("TurnFailX", "outline of the failed share"), Note("TurnFailY", "its level"),
              Note("TurnFailL", "its lower limit"), Note("TurnFailU", "its upper limit"))
      .note(
          "The spans must not overlap: HandleOverlap sees to it. Each then has its share of the frequencies "
          "as weight.")
      .method(
          "ALTOutput", &yReliability::ALTOutput, "An accelerated life test", starts(), ends(), frequencies(),
          Note("AA", "the stress of each row; degrees Celsius for Arrhenius and Inverse Temp"), confidence,
          distribution, plotPosition, estimation,
          Note("accf",
               "how location depends on stress: on itself, on 11604.83 / kelvin, 1 / kelvin or its logarithm")
              .choices({"Linear", "Arrhenius", "Inverse Temp", "Ln(Power)"}),
          shares, Note("relpercent", "the share of the relation plot, in percent"),
          Note("predictT", "stresses that percentiles and survivals are asked for"), someTimes,
          Note("hold", "values that spread, b0 and b1 are held at; no value for a free one; may be left out"),
          Note("idvl", "the stress levels, in order of first appearance"),
          Note("regtable", "rows: spread, b0, b1").table().slots(RelationCoefficient::names),
          Note("modelf", "the fit").slots(RelationFit::names),
          Note("SResitable", "standardised residuals at both ends of each row")
              .table()
              .slots(RelationResidual::names),
          Note("CSResitable", "Cox-Snell residuals, -ln S").table().slots(RelationResidual::names),
          Note("ptiletable", "a row for each stress of predictT and share")
              .table()
              .slots(RelationPercentile::names),
          Note("timestable", "a row for each stress of predictT and time; SE is that of the working quantity")
              .table()
              .slots(RelationSurvival::names),
          Note("PlotXi", "failure times, a column a level").table(), Note("PlotYi", "their scores").table(),
          Note("PlotHi", "shares of the line of each level").table(), Note("PlotVi", "their scores").table(),
          Note("PlotLi", "lower limits of the times").table(), Note("PlotUi", "upper limits").table(),
          Note("PlotLinei", "times of the line").table(),
          Note("LineXYm", "transformed stress and location").table().slots(RelationLine::names),
          Note("PlotX_RS", "standardised residuals of failures"), Note("PlotY_RS", "their scores"),
          Note("PlotHVLU_RS", "their probability line").table().slots(ProbabilityLine::names),
          Note("PlotX_RCS", "Cox-Snell residuals of failures"), Note("PlotY_RCS", "their scores"),
          Note("PlotHVLU_RCS", "their probability line").table().slots(ProbabilityLine::names),
          Note("RelX", "50 stresses, even on the transformed scale"),
          Note("RelA", "the percentile relpercent at each"), Note("RelACIL", "its lower limit"),
          Note("RelACIU", "its upper limit"))
      .note(
          "The joint fit is by maximum likelihood, whatever the estimate of the single levels. Its "
          "log-likelihood has no terms -ln t.")
      .note(
          "Every row counts once in the joint fit; frequencies weigh the plots of the single levels only. "
          "Repeat a row that stands for several units.")
      .note(
          "A level without a failure shows a message and has no plot, but its rows take part in the joint "
          "fit. An unknown distribution or relation fills nothing.")
      .method(
          "LDROutput", &yReliability::LDROutput, "Life data regression: the location depends on covariates",
          starts(), ends(),
          Note("FA",
               "a row for each: how many units it stands for, then its covariates; a constant is a column of "
               "ones, none is added")
              .table(),
          confidence, distribution, plotPosition,
          Note("estimate", "how the lines of the residual plots are fitted")
              .choices({"Least squares", "Maximum likelihood"}),
          shares,
          Note("predictX",
               "rows of covariates, as in FA, that percentiles and survivals are asked for; may be left out")
              .table(),
          someTimes,
          Note("hold",
               "values that the spread and the coefficients are held at; no value for a free one; may be "
               "left out"),
          Note("regtable", "rows: spread, then the coefficient of each covariate")
              .table()
              .slots(RelationCoefficient::names),
          Note("modelf", "the fit; N is how many units there are").slots(RelationFit::names),
          Note("SResitable", "location and standardised residuals at both ends of each row")
              .table()
              .slots(LifeRegressionResidual::names),
          Note("CSResitable", "Cox-Snell residuals, -ln S").table().slots(LifeRegressionResidual::names),
          Note("ptiletable", "a row for each row of predictX and share")
              .table()
              .slots(LifeRegressionPercentile::names),
          Note("timestable", "a row for each row of predictX and time; SE is that of the working quantity")
              .table()
              .slots(LifeRegressionSurvival::names),
          Note("PlotX_RS", "standardised residuals of failures"), Note("PlotY_RS", "their scores"),
          Note("PlotHVLU_RS", "their probability line").table().slots(ProbabilityLine::names),
          Note("PlotX_RCS", "Cox-Snell residuals of failures"), Note("PlotY_RCS", "their scores"),
          Note("PlotHVLU_RCS", "their probability line").table().slots(ProbabilityLine::names))
      .note(
          "The fit is by maximum likelihood. The spread is the shape for Weibull, else the scale; that of "
          "Exponential is held at 1. The log-likelihood has no terms -ln t.")
      .note(
          "Frequencies multiply the terms of their rows, but for Logistic and Loglogistic: there the "
          "frequency of an exact failure multiplies only a part of its term, so that it does not count as "
          "that many rows, and a row of frequency 0 still counts. Repeat a row that stands for several units "
          "and leave out one that stands for none.")
      .note(
          "For Logistic and Loglogistic, too, a unit that is known only to have failed by EA tells nothing. "
          "Give it an SA below every time that can occur, above 0 for Loglogistic.")
      .note(
          "Where the likelihood has no finite maximum, the text Cannot Find solution is shown and nothing is "
          "filled: no failure at all, no failure at some level of a covariate, more parameters than "
          "failures.")
      .note(
          "The text The residuals cannot be fitted on their own, with the reason, means that the regression "
          "stands and the probability plots of its residuals have no line: only Turnbull places rows without "
          "a start, least squares finds no line, or the search finds no maximum. A row without a start has "
          "no value in both coordinates of its point.")
      .note(
          "Failure 5: CLevel not above 0 and below 1, a share not above 0 and below 100, no value in "
          "predictX "
          "or times, a spread held at 0 or below, a negative frequency, a row without any time, an interval "
          "that ends before it starts, a covariate without a value or a combination of others, a time of 0 "
          "or "
          "below for Weibull, Exponential, Lognormal and Loglogistic. Failure 9: no covariate, fewer ends or "
          "rows of FA than starts, predictX of another width.")
      .done();
}

Class probability() {
  return Description<yProbability>("yProbability", "Probability plots of complete data")
      .method(
          "ProbPlotOutput", &yProbability::ProbPlotOutput,
          "Points, fitted line and Anderson-Darling test of a probability plot",
          Note("dataarrayY", "the data"), Note("Distribution", "the distribution").choices(distributions),
          Note("HistPara1", "historical parameter 1, the shape for Weibull; empty for an estimate"),
          Note("HistPara2", "historical parameter 2, the scale for Weibull; empty for an estimate"),
          Note("CLevel", "confidence of the bands, as a fraction"),
          Note("pp", "parameters as yReliability has them, count and statistic").slots(ProbabilityFit::names),
          Note("Pvalue",
               "the p-value, to three decimals, or past the table >0.25 or < its last level; None for an "
               "unknown distribution"),
          Note("PlotX", "the sorted data"), Note("PlotY", "their scores at median ranks"),
          Note("PlotHVLU", "15 rows: share, score, limits and time of the fitted line")
              .table()
              .slots(ProbabilityLine::names))
      .note("Parameters are of maximum likelihood: the standard deviation of Normal has the divisor n.")
      .note(
          "For Normal and Lognormal with a corrected statistic below 0.34, the p-value is that of the close "
          "side, so that data which fit too well stand out with a small one.")
      .done();
}

}  // namespace

void describeReliability(std::vector<Class>& classes) {
  classes.push_back(reliability());
  classes.push_back(probability());
}

}  // namespace zelkova
