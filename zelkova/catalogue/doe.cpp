#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/doe/yDOEAnalyse.h"
#include "zelkova/doe/yDOEGenerate.h"
#include "zelkova/doe/yFactorial.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

Class generate() {
  const Note replicates("Replicate", "the number of replicates");
  const Note centre("Center",
                    "centre runs in each block, for each combination of the levels of the text factors");
  const Note order("Randomize", "true puts the blocks, and the runs in each, into random order");
  const Note type("FType", "Text or Numeric for each factor; only numeric factors have a middle");
  const Note low("FLow", "the low level of each factor as the sheet shows it; empty shows -1");
  const Note high("FHigh", "the high level of each factor; empty shows 1");
  const Note name("FName", "the name of each factor");
  Note sheet("DOE_M",
             "a row for each run: standard order, run order, 1 for a corner or 0 for a centre run, block, "
             "and the setting of each factor");
  sheet.table();
  const Note headings("DOE_F", "the headings of the columns of DOE_M");
  const char* const ofRandomOrder =
      "The order is drawn from the process's one stream of random numbers, which starts from the clock; the "
      "call does not start it anew.";
  return Description<yDOEGenerate>("yDOEGenerate", "Run sheets of two-level experiments")
      .method("DOEGenOutput", &yDOEGenerate::DOEGenOutput, "Run sheet of a full factorial or a fraction",
              Note("Factor", "the number of factors, 2 to 15"),
              Note("Design", "which design of so many factors, 1, 2, ... in rising number of runs"),
              replicates, Note("Block", "the number of blocks in all"), centre, order, type, low, high, name,
              sheet, headings)
      .note(
          "Design, by number of factors: 2, the full factorial whatever Design is; 3, in 4 and 8 runs; 4, in "
          "8 and 16; 5, in 8, 16 and 32; 6, in 8, 16, 32 and 64; 7, in 8, 16, 32, 64 and 128; 8 to 15, in "
          "16, 32, 64 and 128.")
      .note(
          "Blocks hold whole replicates; or, where the design has words for 2, 4, 8, ... blocks, multiples "
          "of a half, a quarter, an eighth, ... of one. docs/designs.md has the generators and the block "
          "words of every design; RemoveAlias of yDOEAnalyse tells which terms stay apart.")
      .note(
          "The design of 9 factors in 32 runs has factor A high in its first run, where the regular fraction "
          "has it low. That of 14 factors in 32 runs has a fifteenth factor whose settings repeat those of "
          "the fourteenth: levels and names of 15 factors are needed.")
      .note(ofRandomOrder)
      .method("DOEGenPBOutput", &yDOEGenerate::DOEGenPBOutput, "Run sheet of a Plackett-Burman design",
              Note("Factor", "the number of factors, fewer than runs"),
              Note("Run", "the number of runs: 12, 16, 20, 24, 28, 32, 36, 40, 44 or 48"), replicates,
              Note("Blocking", "true makes each replicate a block"), centre, order, type, low, high, name,
              sheet, headings)
      .note(ofRandomOrder)
      .done();
}

Class analyse() {
  const Note designType("DesignType", "1 for a full factorial or a fraction, 2 for a Plackett-Burman design");
  const Note factor("Factor", "the number of factors of the design");
  const Note design("Design", "which design of so many factors it is, as in yDOEGenerate");
  const Note replicates("Replicate", "the number of replicates");
  const Note selected("TSel", "the terms: A, AB, ACD; for a Plackett-Burman design codes of factors");
  const char* const codes =
      "Factors are coded A to H, J to P, for Plackett-Burman designs on to Z, then AA to HH, JJ to WW. A "
      "term has at most seven of them.";
  return Description<yDOEAnalyse>("yDOEAnalyse", "Analysis of two-level experiments")
      .method(
          "DOEAnaOutput", &yDOEAnalyse::DOEAnaOutput, "Effects, coefficients and analysis of variance",
          Note("dy", "the response of each run").vectorOrTable(),
          Note("dx", "the settings as the run sheet shows them, a column for each factor").table(),
          Note("dc", "1 for a corner, 0 for a centre run"), Note("db", "the block of each run, 1, 2, ..."),
          selected, Note("FName", "the name of each factor"),
          Note("FType", "Text or Numeric for each factor"),
          Note("FLow", "the low level of each factor, as it stands in dx"),
          Note("FHigh", "the high level of each factor, as it stands in dx"), designType, factor, design,
          Note("Center", "the number of centre runs in a block; becomes 0 where dc marks none").inOut(),
          replicates,
          Note("Block",
               "the number of blocks; for a Plackett-Burman design whether replicates are blocks, true or "
               "-1, and becomes their number")
              .inOut(),
          Note("AnalyseBlock", "whether the blocks enter the model"),
          Note("AnalyseCenter",
               "whether a term for curvature enters the model; becomes false where dc marks no centre run")
              .inOut(),
          Note("TermsO", "the terms: Constant, Blk1, ..., those of TSel that can be estimated, Ct Pt"),
          Note("CeffectO", "the effect of each term, twice the coefficient"),
          Note("CcoefO", "the coefficient of each term, levels coded -1 and 1"),
          Note("CSECoefO", "their standard errors"), Note("CtStatO", "coefficient over standard error"),
          Note("CPvalueO", "two-sided p-values"),
          Note("SourcesO", "the rows of the analysis of variance: groups of terms, error and total"),
          Note("DoFO", "degrees of freedom of each source"),
          Note("SeqSSO", "what each source explains beyond those before it"),
          Note("AdjSSO", "what each source explains beyond all others; the total has none"),
          Note("SSFstatO", "F of each source but the last two"), Note("SSPvalueO", "its p-value"),
          Note("UcoefO",
               "the coefficient of each term in the factors' own units; not filled where all levels are -1 "
               "and 1"),
          Note("DOEothers", "the fit as a whole").slots(DOEOthers::names),
          Note("fyfitO", "the fitted values"), Note("fresidualO", "the residuals to 7 decimals"),
          Note("OutputType", "Residual fills the fitted values and residuals alone")
              .choices({"Residual"})
              .optional(std::string()))
      .note(codes)
      .note(
          "Levels are compared as texts: 10 is not 10.0. A setting that is neither level counts as the "
          "middle, 0.")
      .note(
          "The coefficient of Ct Pt is the mean of the centre runs less that of the corner runs, and with it "
          "the constant is that of the corner runs. Constant, blocks and Ct Pt have no effect.")
      .note(
          "A block's coefficient is its deviation from the mean of the blocks; the last block, minus the sum "
          "of the others, has no row.")
      .note(
          "Without error degrees of freedom, or with an error sum of squares below 1E-8 in squared units of "
          "dy, whatever needs an error has no value.")
      .note(
          "In the factors' own units the columns of an interaction are products of plain settings, of codes "
          "for text factors.")
      .method("RemoveAlias", &yDOEAnalyse::RemoveAlias, "Takes out the terms that a design cannot estimate",
              factor, design, replicates, Note("Block", "the number of blocks in all"),
              Note("AnalyseBlock", "true takes out what is confounded with blocks as well"),
              Note("TSel", "the terms; those that stay, in order").inOut())
      .note(
          "Of terms confounded with each other the first stays, so that the order decides. A word of the "
          "defining relation goes, unless it stands first.")
      .note(
          "Terms count as confounded when they have at most 4 letters for 8 to 10 factors, at most 3 for 11 "
          "to 15; longer ones stay.")
      .method("DOEAnaEPOutput", &yDOEAnalyse::DOEAnaEPOutput, "Pareto plot of the effects, with its limit",
              Note("alpha", "the level of significance, such as 0.05"),
              Note("Terms", "TermsO of DOEAnaOutput"), Note("Ceffect", "its CeffectO"),
              Note("CtStat", "its CtStatO"), Note("DoFR", "the degrees of freedom of its residual error"),
              Note("EP_X", "the terms of factors, in rising order of EP_Y"),
              Note("EP_Y", "their t values without sign; without error degrees of freedom their effects"),
              Note("EPL_X", "0 and 1"), Note("EPL_Y", "the limit of significance, at both ends"))
      .note(
          "Without error degrees of freedom the limit is that of Lenth's pseudo standard error, with a third "
          "of the number of effects, cut to a whole number, for degrees of freedom. It needs three effects, "
          "and that not more than half of them are 0.")
      .done();
}

Class factorialPlots() {
  Note responses("dy", "the response of each run");
  responses.vectorOrTable();
  Note settings("dx", "the settings as the run sheet shows them, a column for each factor");
  settings.table();
  const Note marks("dc", "1 for a corner run; any other is a centre run");
  const Note name("FName", "the name of each factor");
  const Note low("FLow", "the low level of each factor, as it stands in dx");
  const Note high("FHigh", "the high level of each factor, as it stands in dx");
  return Description<yFactorial>("yFactorial", "Plots of two-level experiments")
      .method("MainEffectsOutput", &yFactorial::MainEffectsOutput, "Main effects plot", responses, settings,
              marks, name, low, high, Note("PlotX", "three slots a factor: low level, empty, high level"),
              Note("PlotY", "means of the corner runs at low, no value, at high"),
              Note("PlotYC", "means of the centre runs at low, at neither level, at high"),
              Note("PlotXM", "the name of each factor"),
              Note("PlotYM", "the mean of all runs, for each factor"))
      .method("InteractionsOutput", &yFactorial::InteractionsOutput,
              "Interaction plots of all pairs of factors in one chart", responses, settings, marks, name, low,
              high, Note("PlotX", "x of 363 slots, three a pair: low, high and middle of its first factor"),
              Note("PlotY1", "y of the corner runs at the low level of the second factor: a line"),
              Note("PlotY2", "y of the corner runs at its high level: a line"),
              Note("PlotY1C", "y of the centre runs at the low level or at neither level: points"),
              Note("PlotY2C", "y of the centre runs at the high level: points"),
              Note("GridY", "y of the lines that border the panels"), Note("GridX", "x of those lines"),
              Note("YAxisX", "x of the ticks of the y scale, for each row"),
              Note("YAxisY", "y of those ticks"), Note("YAxis", "their values"),
              Note("XAxisX", "x of the levels under each column"), Note("XAxisY", "y of those levels"),
              Note("XAxis", "the levels: low, empty, high"))
      .note(
          "Column c and row r, from below, span 10 units each. The pair of factors j and k, j before k, "
          "stands in column j and row k: x is factor j, the two lines are factor k. The lowest row and the "
          "last column hold no panel; their slots, and whatever else has no point, are without a value.")
      .note("2 to 16 factors.")
      .method("CubeOutput", &yFactorial::CubeOutput, "Cube plot of the means", responses, settings, marks,
              name, low, high, Note("CubeCageX", "x along one line through all edges"),
              Note("CubeCageY", "y along that line"),
              Note("CubePointX",
                   "x of the corners in standard order, and of the centre if there are centre runs"),
              Note("CubePointY", "their y"),
              Note("CubePointL", "the mean of their runs; empty for a corner without a run"),
              Note("CubeLabelX", "x of three labels a factor"), Note("CubeLabelY", "their y"),
              Note("CubeLabelL", "low level, name and high level along an edge of the factor"))
      .note(
          "2 factors make a square, 4 two cubes side by side, 5 four cubes. The line passes from cube to "
          "cube along edges of the fourth and fifth factor.")
      .done();
}

}  // namespace

void describeDOE(std::vector<Class>& classes) {
  for (const auto& describeClass : {generate, analyse, factorialPlots}) classes.push_back(describeClass());
}

}  // namespace zelkova
