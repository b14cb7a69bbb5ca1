#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(LifeFit, LogLikelihood, Iterations);
ZELKOVA_SLOTS(LifeSummary, Para1, Para2, Mean, SD, Median, IQR, Failures, RightCensored, AD, TurnbullExact,
              TurnbullRightCensored, TurnbullInterval, TurnbullLeftCensored);
ZELKOVA_SLOTS(LifeEstimate, Estimate, SE, Lower, Upper);
ZELKOVA_SLOTS(LifeSurvival, Time, Survival, AtLowerU, AtUpperU);
ZELKOVA_SLOTS(ProductLimit, Time, AtRisk, Failures, F, SE, Lower, Upper);
ZELKOVA_SLOTS(ProductLimitSummary, Failures, Censored, MTTF, SE, Lower, Upper, Median, Q1, Q3, IQR);
ZELKOVA_SLOTS(SpanWeight, Start, End, Frequency, Weight);
ZELKOVA_SLOTS(SpanSurvival, End, Survival, SE, Lower, Upper);
ZELKOVA_SLOTS(SpanKinds, RightCensored, Interval, LeftCensored, Exact);
ZELKOVA_SLOTS(RelationCoefficient, Coefficient, SE, Z, PValue, Lower, Upper);
ZELKOVA_SLOTS(RelationFit, LogLikelihood, N, Iterations);
ZELKOVA_SLOTS(RelationResidual, Stress, SA, EA, AtStart, AtEnd);
ZELKOVA_SLOTS(RelationPercentile, Stress, Percent, Percentile, SE, Lower, Upper);
ZELKOVA_SLOTS(RelationSurvival, Stress, Time, Survival, SE, AtLowerU, AtUpperU);
ZELKOVA_SLOTS(RelationLine, X, M);
ZELKOVA_SLOTS(LifeRegressionResidual, Location, SA, EA, AtStart, AtEnd);
ZELKOVA_SLOTS(LifeRegressionPercentile, Row, Percent, Percentile, SE, Lower, Upper);
ZELKOVA_SLOTS(LifeRegressionSurvival, Row, Time, Survival, SE, AtLowerU, AtUpperU);
ZELKOVA_SLOTS(ProbabilityLine, Share, Score, Lower, Upper, Time);

/// Life data with any censoring: parametric and nonparametric analysis, accelerated tests. Binds to the host.
///
/// A life data set is three arrays of n rows. `SA` is the last time at which the unit was known to be alive,
/// `EA` the first at which it was known to have failed, `FA` how many units share the row. Equal times are a
/// failure at that time; an `EA` of `NoValue` is a unit that was still alive at `SA`; else an `SA` of
/// `NoValue` is a unit that had failed by `EA`; anything else is a failure within the span.
///
/// `dist` is one of seven distributions with parameters 1 and 2: "Weibull" (scale, shape), "Smallest Extreme
/// Value", "Logistic" (location, scale of t), "Loglogistic" (location, scale of ln t), "Exponential" (mean;
/// parameter 2 is the same value), "Normal" (mean, standard deviation of t), "Lognormal" (those of ln t). An
/// unknown name fills nothing.
///
/// `pMtd` is the plot position: "Median rank", "Modified Kaplan-Meier", "Herd-Johnson", "Kaplan-Meier", or
/// "Turnbull" for arbitrary censoring. `hold` has an element for each parameter: `NoValue`, or the value that
/// it is fixed at. `CLevel` is the confidence of two-sided limits as a fraction.
class yReliability : public HostBound {
 public:
  /// Merges the rows whose spans overlap: those with an end strictly inside the span of another row, and
  /// those another's end lies inside of. deliberate: they all become one last row, from the latest start to
  /// the earliest end, with the sum of their frequencies, even where they form several groups. Rows with an
  /// open end are never merged.
  void HandleOverlap(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA) const;

  /// Plot positions of the failures, and the least squares line of time on score through them (time is the
  /// dependent variable). Sorts the three arrays by `SA`, or by `EA` for "Turnbull". `P` gets the parameters
  /// that the line gives (one for "Exponential", else two), `corr` its correlation (`NoValue` for
  /// "Exponential"); both are `NoValue` with fewer than two failures or with all at one time. `PlotX` gets
  /// the failure times and `PlotY` their scores. `holdslope` is a parameter 2 to hold, or `NoValue`.
  ///
  /// "Turnbull" takes its positions from frequencies, the others from the rows. Failure 5 for times that the
  /// distribution cannot have, and for an unknown `pMtd`.
  void Para_LS(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA, const std::string& pMtd,
               const std::string& dist, DoubleArray& P, double& corr, DoubleArray& PlotX, DoubleArray& PlotY,
               double holdslope) const;

  /// Maximum likelihood from the start `P`, which gets the estimate. `MLO` gets the log-likelihood and the
  /// iterations, `FM` the observed information, by differences; a held parameter has 1E-8 on its diagonal.
  /// `dist` may be any model of `NegLogLik`.
  ///
  /// deliberate: `LBFGSMinimize` and the differences work in units in which the parameters are about 1, and
  /// in a model of acceleration with the location at the mean stress: the result does not depend on whether
  /// lives are in hours or years.
  void Para_ML(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA, const std::string& dist,
               DoubleArray& P, DoubleArray& MLO, DoubleArray& FM, const DoubleArray& hold) const;

  /// The summary of a fit, 13 slots of `Para`: parameters, moments and quantiles of the fitted distribution,
  /// frequencies by kind of row (slots 7 and 8, or 10 to 13 for "Turnbull"; the others hold `NoValue`), and
  /// the adjusted Anderson-Darling statistic: the squared distance of the fitted F from the plotted steps,
  /// over F (1 - F), integrated piecewise over the steps (Anderson and Darling 1954; D'Agostino and Stephens
  /// 1986, chapter 4), from 0 to 1 - 1E-12, times the number of points. Less is better. `NoValue` where it
  /// cannot be formed. Sorts the three arrays as `Para_LS` does.
  void CalPara(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA, const std::string& pMtd,
               const std::string& dist, double Para1, double Para2, DoubleArray& Para) const;

  /// A whole parametric analysis of the life data `SA0`, `EA0`, `FA0`, which stay as they are: `Para_LS` for
  /// the start (and the estimate, where `estimate` is "Least squares"; any other text is maximum likelihood),
  /// `Para_ML`, and under each flag its table. A search that fails starts again from nine tenths of its
  /// start, up to nine times; a start that the line cannot give is 2. `hold` may be shorter than the
  /// parameters or unfilled: what it lacks is free.
  ///
  /// `var1` to `covar23` are variances and covariances of the parameters at the likelihood's optimum,
  /// whatever the estimate: from the inverse of `FM`, with `var2` 0 where a parameter is held; for
  /// "Exponential" all but `var1` are 0. `var3`, `covar13` and `covar23` belong to models of three parameters
  /// and are `NoValue` for two.
  ///
  /// Two texts reach the user through the host's message box: "Least square estimates cannot be calculated",
  /// before failure 11, and "Cannot Find solution" after the tenth failed search, which leaves the outputs as
  /// the last one had them. A table that cannot be formed (a share of 0 or 100 percent, a time that the
  /// distribution cannot have, limits from the variance of a held parameter 1) counts as a failed search.
  void ParaAnalysis(const DoubleArray& SA0, const DoubleArray& EA0, const DoubleArray& FA0,
                    const std::string& dist, const std::string& pMtd, const std::string& estimate,
                    const DoubleArray& Percent, const DoubleArray& times, DoubleArray& P, DoubleArray& PM,
                    StringArray& PMS, DoubleArray& PMM, DoubleArray& Para, double& corr, DoubleArray& PlotX,
                    DoubleArray& PlotY, DoubleArray& ParaEst, DoubleArray& SurvTable, const DoubleArray& hold,
                    double& var1, double& var2, double& var3, double& covar12, double& covar13,
                    double& covar23, bool BPercMTTF = false, bool BCalPara = false, bool BEstPara = false,
                    bool BCalTimes = false, double CLevel = 0.95) const;

  /// The plots of a fit, each under its flag: `ProbPlot`, `SurvFailPlot`, `HarzPDFPlot`. `var3`, `covar13`
  /// and `covar23` are not looked at.
  void ParaAnalysisPlot(const std::string& dist, double Para1, double Para2, double var1, double var2,
                        double var3, double covar12, double covar13, double covar23, DoubleArray& PlotHVLU,
                        DoubleArray& HarzX, DoubleArray& HarzY, DoubleArray& PDFX, DoubleArray& PDFY,
                        DoubleArray& SurvX, DoubleArray& SurvY, DoubleArray& SurvYL, DoubleArray& SurvYU,
                        DoubleArray& FailX, DoubleArray& FailY, DoubleArray& FailYL, DoubleArray& FailYU,
                        bool BProbPlot = false, bool BSurvFailPlot = false, bool BHarzPDF = false,
                        double CLevel = 0.95) const;

  /// Parameters with limits: a row for each, symmetric for locations and logarithmic for scales and shapes. A
  /// held parameter (variance 0) has neither standard error nor limits.
  void EstPara(double CLevel, double Para1, double Para2, const std::string& dist, double var1, double var2,
               DoubleArray& ParaEst) const;

  /// Percentiles of the life at each share of `Percent` (in percent) and moments, with limits that are
  /// symmetric for times on a plain scale and logarithmic for those on a logarithmic one. `PM` has a row for
  /// each share, `PMS` the distribution and the percent as texts, `PMM` six rows: mean, standard deviation,
  /// median, first quartile, third quartile, interquartile range. Standard errors come from the delta method,
  /// those of moments and of the range with derivatives by differences. Moments that do not exist are
  /// `NoValue`. Failure 5 for shares that are not inside 0 to 100.
  void PercMTTF(double CLevel, const std::string& dist, const DoubleArray& Percent, double Para1,
                double Para2, double var1, double var2, double covar12, DoubleArray& PM, StringArray& PMS,
                DoubleArray& PMM) const;

  /// Survival at each of `times`, with limits formed in the working quantity u: the greater survival first.
  void CalTimes(double CLevel, double Para1, double Para2, const std::string& dist, double var1, double var2,
                double covar12, const DoubleArray& times, DoubleArray& SurvTable) const;

  /// The vertical coordinate, the limits and the time of the fitted line of a probability plot at 15 shares
  /// from 0.001 to 0.999.
  void ProbPlot(double CLevel, double Para1, double Para2, const std::string& dist, double var1, double var2,
                double covar12, DoubleArray& PlotHVLU) const;

  /// Survival and failure curves at those 15 shares; the limits `SurvYL`, `FailYL` are those at the lower u,
  /// so that `SurvYL` is the greater survival.
  void SurvFailPlot(double CLevel, double Para1, double Para2, const std::string& dist, double var1,
                    double var2, double covar12, DoubleArray& SurvX, DoubleArray& SurvY, DoubleArray& SurvYL,
                    DoubleArray& SurvYU, DoubleArray& FailX, DoubleArray& FailY, DoubleArray& FailYL,
                    DoubleArray& FailYU) const;

  /// Hazard and density at those 15 shares; the hazard is rounded to 8 decimals but for "Exponential".
  void HarzPDFPlot(double Para1, double Para2, const std::string& dist, DoubleArray& HarzX,
                   DoubleArray& HarzY, DoubleArray& PDFX, DoubleArray& PDFY) const;

  /// The product-limit estimate of right-censored data (Kaplan and Meier 1958) with standard errors of
  /// Greenwood (1926). Any row with an end counts as a failure at its `SA`; the arrays are sorted by `SA`.
  ///
  /// `NonPR` has a row for each of the k failure times, `Harz` the hazard there, 1 / (at risk - failures +
  /// 1). Limits are F -+ z SE, cut to 0 and 1. The mean time to failure of `NonPara` is the area under the
  /// survival up to the last time (the mean of the times without censoring); its standard error is that of
  /// Kaplan and Meier, with a term for each row of failures. A quantile is the first time whose survival is
  /// at most 0.75, 0.5 or 0.25 (but for rounding), `NoValue` where none is. Rows count with their
  /// frequencies.
  ///
  /// The outlines have 2k + 1 points: a start at time 0 (or at the first time, if that is earlier), then the
  /// old and the new level at each failure time.
  ///
  /// Failures: 5 where there is no failure, 11 where there is a single one.
  void NonParaR(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA, double CLevel, DoubleArray& NonPR,
                DoubleArray& Harz, DoubleArray& NonPara, DoubleArray& SurvPlotX, DoubleArray& SurvPlotY,
                DoubleArray& SurvPlotL, DoubleArray& SurvPlotU, DoubleArray& FailPlotX,
                DoubleArray& FailPlotY, DoubleArray& FailPlotL, DoubleArray& FailPlotU,
                DoubleArray& HarzPlotX, DoubleArray& HarzPlotY) const;

  /// Survival of arbitrarily censored data whose spans do not overlap (see `HandleOverlap`): each span has
  /// its share of the frequencies as weight, the fixed point of the self-consistent estimate (Turnbull 1976),
  /// and standard errors come from the information about the weights, by differences. The rows are taken in
  /// the order of their ends.
  ///
  /// `ProbSEFS` has a row for each of the n spans, `ProbESSLU` for the first n - 1, after which nothing is
  /// left to estimate. `NPA` sums frequencies by kind of row. `hold` is not looked at. The outlines have 2 (n
  /// - 1) + 1 points: a start at time 0, then the start of each span on the old level and its end on the new;
  /// a span without a start is drawn from 0.
  ///
  /// Failures: 11 for a frequency of 0, 5 for a negative one.
  void NonParaA(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA, double CLevel,
                DoubleArray& ProbSEFS, DoubleArray& ProbESSLU, DoubleArray& NPA, const DoubleArray& hold,
                DoubleArray& TurnSurvX, DoubleArray& TurnSurvY, DoubleArray& TurnSurvL,
                DoubleArray& TurnSurvU, DoubleArray& TurnFailX, DoubleArray& TurnFailY,
                DoubleArray& TurnFailL, DoubleArray& TurnFailU) const;

  /// An accelerated life test: one distribution whose location is a line b0 + b1 x in the transformed stress
  /// x, fitted to the rows `SA`, `EA` with the stresses `AA`. `accf` is the relation: "Linear" (x is the
  /// stress), "Arrhenius" (11604.83 / kelvin), "Inverse Temp" (1 / kelvin), both of degrees Celsius,
  /// "Ln(Power)" (its logarithm). The parameters are (spread, b0, b1); `hold` has three elements, and
  /// "Exponential" has its spread held at 1. deliberate: every row counts once in the joint fit; `FA` weighs
  /// the rows of a level in the fit and plot of that level alone.
  ///
  /// `idvl` gets the stress levels in order of first appearance, `regtable` a row for each parameter (limits
  /// symmetric for b0 and b1, logarithmic for the spread; a held parameter has its value alone), `modelf` the
  /// fit. `SResitable` and `CSResitable` have a row for each row of data, with the standardised and the
  /// Cox-Snell residual (-ln S, Cox and Snell 1968) at both ends of the span. `ptiletable` and `timestable`
  /// have a row for each stress of `predictT` and each element of `Percent` or `times`.
  ///
  /// `PlotXi` to `PlotLinei` have a column for each level: the points of its probability plot, then share,
  /// score, lower and upper limit and time of its line (`ProbPlot`), filled up with `NoValue`. Those of the
  /// residuals (`PlotX_RS` ... of the standardised, `PlotX_RCS` ... of the Cox-Snell ones) are vectors and a
  /// table.
  /// `LineXYm` has x and the location, `RelX` the stress and `RelA`, `RelACIL`, `RelACIU` the percentile
  /// `relpercent` with limits, at 50 stresses even in x over all levels and all of `predictT`.
  ///
  /// A level without a failure, and a joint fit that finds no maximum, show a text through the host's message
  /// box; the latter leaves what comes after the levels' plots as it was. An unknown `dist` or `accf` fills
  /// nothing.
  void ALTOutput(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA, const DoubleArray& AA,
                 double CLevel, const std::string& dist, const std::string& pMtd, const std::string& estimate,
                 const std::string& accf, const DoubleArray& Percent, double relpercent,
                 const DoubleArray& predictT, const DoubleArray& times, const DoubleArray& hold,
                 DoubleArray& idvl, DoubleArray& regtable, DoubleArray& modelf, DoubleArray& SResitable,
                 DoubleArray& CSResitable, DoubleArray& ptiletable, DoubleArray& timestable,
                 DoubleArray& PlotXi, DoubleArray& PlotYi, DoubleArray& PlotHi, DoubleArray& PlotVi,
                 DoubleArray& PlotLi, DoubleArray& PlotUi, DoubleArray& PlotLinei, DoubleArray& LineXYm,
                 DoubleArray& PlotX_RS, DoubleArray& PlotY_RS, DoubleArray& PlotHVLU_RS,
                 DoubleArray& PlotX_RCS, DoubleArray& PlotY_RCS, DoubleArray& PlotHVLU_RCS, DoubleArray& RelX,
                 DoubleArray& RelA, DoubleArray& RelACIL, DoubleArray& RelACIU) const;

  /// Life data regression: one distribution whose location is linear in covariates, by maximum likelihood
  /// (Lawless 2003, chapter 6). `FA` is a table: the frequency, then the covariates, at least one. A constant
  /// is a column of ones; none is added. The parameters are the spread (shape of "Weibull", else the scale)
  /// and a coefficient for each covariate; `hold` has an element for each, may be shorter or unfilled, and
  /// "Exponential" has its spread held at 1.
  ///
  /// Frequencies multiply the terms of their rows. deliberate, in "Logistic" and "Loglogistic" alone: that of
  /// an exact failure multiplies only the part of its term that is linear in the time, and a row that is
  /// known only to have failed by its end tells nothing. An exact failure of frequency 0 still counts with
  /// the rest of its term. With those two, repeat a row that stands for several units, and give an early
  /// failure an interval with a start (above 0 for "Loglogistic").
  ///
  /// `regtable` gets a row for each parameter as in `ALTOutput`, `modelf` the log-likelihood (without the
  /// terms -ln t of a logarithmic scale), the units and the iterations. `SResitable` and `CSResitable` have a
  /// row for each row of data: its location, its span, and the standardised or Cox-Snell residual at both
  /// ends. `ptiletable` and `timestable` have a row for each row of `predictX`, which has the covariates as
  /// `FA` has them, and each element of `Percent` or `times`.
  ///
  /// The residuals are life data of their own: `PlotX_RS` to `PlotHVLU_RS` are the probability plot of the
  /// standardised ones, `PlotX_RCS` to `PlotHVLU_RCS` that of the Cox-Snell ones as "Exponential", with
  /// `pMtd` and `estimate` as `ParaAnalysis` takes them: only "Turnbull" places them with their frequencies,
  /// and only it has a place for rows without a start; for others such a row has the point `NoValue`,
  /// `NoValue`. Residuals that cannot be fitted on their own have no line, and one text, "The residuals
  /// cannot be fitted on their own: " and why, is shown for both kinds; the regression stands.
  ///
  /// Where the likelihood has no finite maximum (no failure, no failure for some level of a covariate, more
  /// parameters than failures, logistic frequencies of 2 and more), "Cannot Find solution" is shown through
  /// the host's message box and nothing is filled. An unknown `dist` fills nothing. Failures: 9 for an `FA`
  /// without covariates, for arrays too short and for a `predictX` of another width; 5 for a `CLevel` that is
  /// not inside 0 to 1, an element of `Percent` that is not inside 0 to 100, an element of `predictX` or
  /// `times` without a value, a spread held at 0 or below, a frequency below 0, a row without any time, an
  /// interval that ends before it starts, a covariate without a value, collinear covariates, and a time of 0
  /// or below on a logarithmic scale; 6 where a result overflows.
  void LDROutput(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA, double CLevel,
                 const std::string& dist, const std::string& pMtd, const std::string& estimate,
                 const DoubleArray& Percent, const DoubleArray& predictX, const DoubleArray& times,
                 const DoubleArray& hold, DoubleArray& regtable, DoubleArray& modelf, DoubleArray& SResitable,
                 DoubleArray& CSResitable, DoubleArray& ptiletable, DoubleArray& timestable,
                 DoubleArray& PlotX_RS, DoubleArray& PlotY_RS, DoubleArray& PlotHVLU_RS,
                 DoubleArray& PlotX_RCS, DoubleArray& PlotY_RCS, DoubleArray& PlotHVLU_RCS) const;
};

}  // namespace zelkova
