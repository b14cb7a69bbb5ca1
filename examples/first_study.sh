#!/usr/bin/env bash
# A first study: is a process stable, is it capable, and does it stay so?
#
# Piston rings are forged; their inside diameter must be 74.000 mm, give or take 0.050. From 25 samples of five rings we
# ask what the process does, and then watch the next 15 samples on the charts that we have made.
#
# Usage: first_study.sh [path of the program]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
zelkova=$(realpath "$(command -v "${1:-$here/../build/release/bin/zelkova}")")
cd "$here"

heading() { printf '\n== %s\n\n' "$1"; }

# One output of a JSON answer, an element a line.
output() { grep -oP "\"$1\": \[\K.*?(?=\](, \"|\}))" <<< "$answer" | tr -d '[]" ' | tr , '\n'; }

# The eight tests as control charts usually have them, and what a signal of each says.
tests=(kvar1=3 kvar2=9 kvar3=6 kvar4=14 kvar5=2 kvar6=4 kvar7=15 kvar8=8)
meaning=('' 'one point beyond 3 sigma' 'nine points in a row on one side of the centre' 'six steps in a row, all up or all down'
  'fourteen steps in a row, up and down in turn' 'two of three points beyond 2 sigma on one side'
  'four of five points beyond 1 sigma on one side' 'fifteen points in a row within 1 sigma'
  'eight points in a row beyond 1 sigma on either side')

# chart TYPE FILE [name=value ...]: draws one chart's points with the signals that end at them.
chart() {
  local type=$1 file=$2 sample point lower centre upper signals
  answer=$("$zelkova" call yControlChart.ControlChartOutput ChartType="$type" dy=@"$file":diameter dx=@"$file":sample \
    dp=@"$file":phase LimitPos=3 EstimateType=Rbar UCLBound= "${tests[@]}" "${@:3}" --json)
  printf '%6s  %9s  %9s  %9s  %9s\n' sample point lower centre upper
  paste -d'|' <(tail -n +2 "$file" | cut -d, -f2 | uniq) <(output DataY) <(output LCL) <(output CCL) <(output UCL) \
    <(output FailedTest) | while IFS='|' read -r sample point lower centre upper signals; do
    printf '%6s  %9.4f  %9.4f  %9.4f  %9.4f\n' "$sample" "$point" "$lower" "$centre" "$upper"
    for test in ${signals//#/ }; do printf '        ^ test %s: %s\n' "$test" "${meaning[$test]}"; done
  done
}

heading "The 125 diameters, mm, with limits of 95 percent confidence"
"$zelkova" call yDStat.DesStatOutput dy=@piston_rings.csv:diameter --digits 7

heading "May they be taken as normal? (Anderson-Darling)"
"$zelkova" call yNormality.NormTestOutput dataarray=@piston_rings.csv:diameter --digits 7

heading "Is the spread within samples stable? (R chart)"
chart RCHART piston_rings.csv LCLBound=0

heading "And the level? (X-bar chart)"
chart XBAR piston_rings.csv LCLBound=

heading "The process is stable: is it capable of 74.000 mm, give or take 0.050?"
capability=(dy=@piston_rings.csv:diameter dx=@piston_rings.csv:sample estimate1="Average Moving Range" estimate2=RBar
  MRLength= USL=74.050 LSL=73.950 Target=74 Tolerance= HistMean= HistSD= HistSDB= HistSDW= DisplayC= DisplayP=)
"$zelkova" call yCapability.CapabilityOutput "${capability[@]}" --digits 6

# Sigma is the mean range over d2: 0.02324 / 2.326.
heading "The next 15 samples, on the limits of the study: does the process stay where it was?"
chart XBAR piston_rings_after.csv LCLBound= HistMean=74.001176 HistSD=0.0099914
