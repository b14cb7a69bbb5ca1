#!/usr/bin/env bash
# How long will a part live? 38 shock absorbers were driven; 11 failed, the others were taken off before. Then a motor whose
# life is too long to wait for, tested at higher temperatures.
#
# Usage: life_study.sh [path of the program]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
zelkova=$(realpath "$(command -v "${1:-$here/../build/release/bin/zelkova}")")
cd "$here"

heading() { printf '\n== %s\n\n' "$1"; }

# One number of a JSON answer: an output and its place.
number() { grep -oP "\"$1\": \\[\\K.*?(?=\\](, \"|\\}))" <<< "$answer" | tr -d '[]" ' | cut -d , -f "$2"; }

absorbers=(SA0=@shock_absorbers.csv:alive EA0=@shock_absorbers.csv:failed FA0=@shock_absorbers.csv:count
  pMtd="Median rank" estimate="Maximum likelihood" Percent=1,10,50 times=5000,10000,20000)
distributions=(Weibull "Smallest Extreme Value" Exponential Normal Lognormal Logistic Loglogistic)

heading "Which distribution? The one with the least Anderson-Darling statistic lies closest to the failures"
for dist in "${distributions[@]}"; do
  answer=$("$zelkova" call yReliability.ParaAnalysis dist="$dist" "${absorbers[@]}" BCalPara=true --json)
  printf '%-24s %8.3f\n' "$dist" "$(number Para 9)"
done | sort -t . -k 1.25n

heading "A Weibull life: parameters, percentiles in km, moments, and the share that survives 5000, 10000 and 20000 km"
"$zelkova" call yReliability.ParaAnalysis dist=Weibull "${absorbers[@]}" BEstPara=true BPercMTTF=true BCalTimes=true |
  sed -n '/^ParaEst/,/^$/p; /^PM$/,/^$/p; /^PMM/,/^$/p; /^SurvTable/,/^$/p'
answer=$("$zelkova" call yReliability.ParaAnalysis dist=Weibull "${absorbers[@]}" --json)
scale=$(number P 1)
shape=$(number P 2)
scalar() { grep -oP "\"$1\": \\K[-+.0-9e]+" <<< "$answer"; }

heading "The probability plot: the failures at their median ranks, and the fitted line with its bands"
paste <(number PlotX 1- | tr , '\n') <(number PlotY 1- | tr , '\n')
"$zelkova" call yReliability.ProbPlot CLevel=0.95 Para1="$scale" Para2="$shape" dist=Weibull var1="$(scalar var1)" \
  var2="$(scalar var2)" covar12="$(scalar covar12)"

heading "The same without a distribution (Kaplan and Meier)"
"$zelkova" call yReliability.NonParaR SA=@shock_absorbers.csv:alive EA=@shock_absorbers.csv:failed \
  FA=@shock_absorbers.csv:count CLevel=0.95 | sed -n '/^NonPR/,/^$/p; /^NonPara$/,/^$/p'

# The message that no solution can be found is about the plot of the motors at 150 degrees alone: none of them failed.
heading "A motor for 130 degrees, tested at 150 to 220 (Arrhenius)"
"$zelkova" call yReliability.ALTOutput SA=@motors.csv:alive EA=@motors.csv:failed FA=@motors.csv:count \
  AA=@motors.csv:temperature CLevel=0.95 dist=Lognormal pMtd="Median rank" estimate="Maximum likelihood" accf=Arrhenius \
  Percent=10,50 relpercent=50 predictT=130 times=10000,20000 |
  sed -n '/^regtable/,/^$/p; /^ptiletable/,/^$/p; /^timestable/,/^$/p'
