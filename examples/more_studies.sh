#!/usr/bin/env bash
# Questions and their tests, one after the other, on the data of this folder: means, variances, medians, regression,
# analysis of variance.
#
# Usage: more_studies.sh [path of the program]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
zelkova=$(realpath "$(command -v "${1:-$here/../build/release/bin/zelkova}")")
cd "$here"

heading() { printf '\n== %s\n\n' "$1"; }

# Michelson measured the speed of light 100 times, in five series of 20 runs.
# How good were his measurements, and did they agree with each other?

heading "The summary of all 100 measurements, km/s, with limits of 95 percent confidence"
"$zelkova" call yDStat.DesStatOutput dy=@michelson.csv:speed --digits 8

heading "Is their mean 299734.5, the value now known? (one-sample t test)"
"$zelkova" call yHTest.OneTOutput dy=@michelson.csv:speed TestMean=299734.5 CLevel=0.95 TestType="Not equals" --digits 8

heading "Did the last series lie off the mean of all, if the method's standard deviation is 80? (one-sample z test)"
"$zelkova" call yHTest.OneZOutput dy=@michelson_by_series.csv:series5 Sigma=80 TestMean=299852.4 CLevel=0.95 \
  TestType="Not equals" --digits 8

heading "Was the first series higher than the last? (two-sample t test, Welch)"
"$zelkova" call yHTest.TwoTOutput dy1=@michelson_by_series.csv:series1 dy2=@michelson_by_series.csv:series5 \
  TestMeanD=0 CLevel=0.95 TestType="Greater than" EqualVariance=false --digits 8

heading "The same from printed summaries, as in a report that gives no data"
"$zelkova" call yHTest.TwoTOutput_S dMean1=299909 dSD1=104.926 dn1=20 dMean2=299831.5 dSD2=54.2193 dn2=20 \
  TestMeanD=0 CLevel=0.95 TestType="Greater than" EqualVariance=false --digits 8

heading "Two sleeping drugs, ten patients, each under both (paired t test, Student's own example)"
"$zelkova" call yHTest.PairedTOutput dy1=@sleep.csv:laevo dy2=@sleep.csv:dextro \
  TestMeanD=0 CLevel=0.95 TestType="Greater than"

heading "The density of the earth: was Cavendish's mean below the 5.514 now known?"
"$zelkova" call yHTest.OneTOutput dy=@cavendish.csv:density TestMean=5.514 CLevel=0.95 TestType="Less than"

# Two suppliers: do the yarns of two wools break equally often? The variances first, for they decide how the means are
# compared. The medians last: a few bad looms pull at variances and means, and little at them.

heading "Two suppliers of wool, 27 looms each: do their numbers of breaks vary alike? (F test, for normal data)"
"$zelkova" call yHTest.FTestOutput dy=@wool.csv:breaks dx=@wool.csv:supplier CLevel=0.95 --digits 8

heading "The same by Levene's test, which does not mind that such counts are skewed: here it is less sure"
"$zelkova" call yHTest.LeveneOutput dy=@wool.csv:breaks dx=@wool.csv:supplier CLevel=0.95 --digits 8

heading "Where equal variances are in doubt, the means are compared without pooling them (two-sample t test, Welch)"
"$zelkova" call yHTest.TwoTOutput dy1=@wool_by_supplier.csv:A dy2=@wool_by_supplier.csv:B \
  TestMeanD=0 CLevel=0.95 TestType="Not equals" EqualVariance=false --digits 8

heading "And the medians? (Mann-Whitney test)"
"$zelkova" call yHTest.TwoMannWOutput dy1=@wool_by_supplier.csv:A dy2=@wool_by_supplier.csv:B \
  TestType="Not equals" --digits 8

heading "The same by Mood's median test, with limits for each supplier's median: no difference is shown by any of the three"
"$zelkova" call yHTest.MoodsMOutput dy=@wool.csv:breaks dx=@wool.csv:supplier --digits 8

heading "What drives the ammonia that a plant loses up its stack? (regression on air flow, water temperature, acid)"
stack=(M_Y=@stackloss.csv:stack_loss M_X=@stackloss.csv:1-4 FitIntercept=true)
"$zelkova" call yRegression.RegOutput "${stack[@]}" CalculateResidual=true

heading "What each of the three explains beyond the other two, and how far they overlap"
"$zelkova" call yRegression.GetSSAdj "${stack[@]}"
"$zelkova" call yRegression.GetVIF "${stack[@]:1}"

heading "Do the losses of neighbouring days go together (Durbin-Watson), and how well is a day predicted from the others?"
fit=$("$zelkova" call yRegression.RegResiOutput "${stack[@]}" --json)
residual=$(sed 's/.*"Residual": \[\([^]]*\)\].*/\1/' <<< "$fit")
coef=$(sed 's/.*"coef": \[\([^]]*\)\].*/\1/' <<< "$fit")
"$zelkova" call yRegression.GetDurbinWatson Residual="$residual"
"$zelkova" call yRegression.GetPRESS Residual="$residual" "${stack[@]:1}"

heading "Two settings that are planned, with limits of 95 percent for their mean and for a single day"
"$zelkova" call yRegression.GetPredictNew M_X=@stackloss.csv:1-4 M_X_new=@stackloss_plan.csv:1-4 coef="$coef" \
  dDoFR=3 dDoFT=20 dMSE=10.5194095 FitIntercept=true CLevel=0.95

heading "The two wools once more: do supplier and tension drive the breaks, and does the one depend on the other? (two-way)"
"$zelkova" call yANOVA2.TwoANOVAOutput dy=@wool.csv:breaks dx1=@wool.csv:supplier dx2=@wool.csv:tension \
  Additive=false dCLevel=0.95

heading "Which fertilizer raises the yield of peas, beyond what the field's blocks differ? (general linear model)"
"$zelkova" call yGLM.GLMOutput dy=@npk.csv:yield dyn=yield df=@npk.csv:1-4 dfn=block,N,P,K \
  model='block,N,P,K,N*P,N*K,P*K' FNANOVA=false
