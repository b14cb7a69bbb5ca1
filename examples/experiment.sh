#!/usr/bin/env bash
# A whole experiment: parts from an injection moulding process shrink too much. Six settings are suspected; all their
# combinations would be 64 runs, there is time for 16. What can 16 runs tell, and what did they tell?
#
# Usage: experiment.sh [path of the program]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
zelkova=$(realpath "$(command -v "${1:-$here/../build/release/bin/zelkova}")")
cd "$here"

heading() { printf '\n== %s\n\n' "$1"; }
output() { sed "s/.*\"$2\": \(\[[^]]*\]\).*/\1/" <<< "$1"; }  # one array of an answer in JSON

names=temperature,speed,holding,cycle,gate,pressure
plan=(Factor=6 Design=2 Replicate=1)

heading "The plan: a quarter fraction, design 2 of 6 factors, in the order in which to run it"
"$zelkova" call yDOEGenerate.DOEGenOutput "${plan[@]}" Block=1 Center=0 Randomize=true \
  FType=Numeric,Numeric,Numeric,Numeric,Numeric,Numeric FLow=,,,,, FHigh=,,,,, FName=$names

heading "Its price: 16 runs cannot tell 15 interactions of two factors from each other. These share one estimate:"
pairs=(AB AC AD AE AF BC BD BE BF CD CE CF DE DF EF)
told=""
for first in "${pairs[@]}"; do
  if [[ $told == *"$first"* ]]; then continue; fi
  aliases=$first
  for other in "${pairs[@]}"; do
    if [[ $other == "$first" ]]; then continue; fi
    kept=$("$zelkova" call yDOEAnalyse.RemoveAlias "${plan[@]}" Block=1 AnalyseBlock=false TSel="$first,$other" --json)
    if [[ $kept != *"$other"* ]]; then aliases+=" = $other"; fi
  done
  echo "  $aliases"
  told+=" $aliases"
done

heading "No main effect (A to F) stands among them, so those are safe. Which terms can be estimated side by side?"
terms=A,B,C,D,E,F,AB,AC,AD,AE,AF,BC,BD,BE,BF,CD,CE,CF,DE,DF,EF,ABD,ABF
"$zelkova" call yDOEAnalyse.RemoveAlias "${plan[@]}" Block=1 AnalyseBlock=false TSel=$terms

# The responses have come in: shrinkage, in tenths of a percent.
analyse() {  # terms, settings of factors
  "$zelkova" call yDOEAnalyse.DOEAnaOutput dy=@moulding.csv:shrinkage dx=@moulding.csv:1-6 dc=@moulding.csv:corner \
    db=@moulding.csv:block TSel="$1" FName=$names FType=Numeric,Numeric,Numeric,Numeric,Numeric,Numeric \
    FLow=-1,-1,-1,-1,-1,-1 FHigh=1,1,1,1,1,1 DesignType=1 "${plan[@]}" Center=0 Block=1 AnalyseBlock=false \
    AnalyseCenter=false "${@:2}"
}
full=$(analyse $terms --json)
labels=$(output "$full" TermsO)
effects=$(output "$full" CeffectO)

heading "The effects on shrinkage. No run is left to measure the error, so the small effects do (Lenth): which pass the limit?"
"$zelkova" call yDOEAnalyse.DOEAnaEPOutput alpha=0.05 Terms="$labels" Ceffect="$effects" CtStat="$effects" DoFR=0

heading "Speed, temperature and their interaction tower. (AB may be CE, but C and E themselves do nothing.) The model of these"
analyse A,B,AB

heading "What to do: means at the corners of temperature (across) and speed (up). Slow is good; when fast, be cool"
"$zelkova" call yFactorial.CubeOutput dy=@moulding.csv:shrinkage dx=@moulding.csv:1-2 dc=@moulding.csv:corner \
  FName=temperature,speed FLow=-1,-1 FHigh=1,1
