#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/charts/yControlChart.h"
#include "zelkova/charts/yControlTest.h"

namespace zelkova {

namespace {

/// The estimates of individual values and of subgroups, each alone and one of each joined; none for
/// attributes.
std::vector<std::string> sigmaEstimates() {
  const std::vector<std::string> individual{"Average Moving Range", "Median Moving Range"};
  const std::vector<std::string> subgroups{"Pooled Std Dev", "Sbar", "Rbar"};
  std::vector<std::string> all = individual;
  all.insert(all.end(), subgroups.begin(), subgroups.end());
  for (const std::string& one : individual) {
    for (const std::string& other : subgroups) all.push_back(one + ">" + other);
  }
  all.emplace_back();
  return all;
}

}  // namespace

void describeCharts(std::vector<Class>& classes) {
  using Note = ArgumentNote;

  const char* const testRules =
      "A mark stands at the last point of its pattern. No pattern crosses a phase (the point before the "
      "first step of test 3 or 4 may lie in the one before), and one with an empty point or line does not "
      "signal, but for test 3, which looks at its last point only. A point on the centre line counts with "
      "both sides in test 2. Tests 5 and 6 want all k + 1 points on one side of the centre line, the last of "
      "them among the far ones.";
  const char* const k1 = "test 1: a point more than k sigma from the centre line; blank for no test";
  const char* const k2 = "test 2: k points in a row on one side of the centre line";
  const char* const k3 = "test 3: k steps in a row, all up or all down";
  const char* const k4 = "test 4: k steps in a row, alternating up and down";
  const char* const k5 = "test 5: k out of k + 1 points more than 2 sigma from the centre line, one side";
  const char* const k6 = "test 6: k out of k + 1 points more than 1 sigma from the centre line, one side";
  const char* const k7 = "test 7: k points in a row within 1 sigma of the centre line, either side";
  const char* const k8 = "test 8: k points in a row more than 1 sigma from the centre line, either side";
  const Note marks("FailedTest", "for each point the tests that signal, such as #1##5#");

  const Note data("dy", "the data: values, or counts of defectives or defects");
  const Note phases("dp",
                    "the phase of each row; a phase is a run of equal texts; left out for a single phase");
  const Note position("DataX", "1, 2, ...: the position of each point");
  const Note centreLine("CCL", "the centre line at each position");
  const Note lowerLimits =
      Note("LCL", "the lower limits: a row for each position, a column for each multiplier").table();
  const Note upperLimits =
      Note("UCL", "the upper limits: a row for each position, a column for each multiplier").table();
  const Note dividerX("PhaseX", "dividers between phases, three corners each, as fractions of the axis");
  const Note dividerY("PhaseY", "the other coordinate of those corners: 0, 1, 0");
  const Note multipliers("LimitPos", "sigma multipliers of the limits, such as 1,2,3");
  const Note lowerBound("LCLBound", "no lower limit is drawn below this number; blank for none");
  const Note upperBound("UCLBound", "no upper limit is drawn above this number; blank for none");
  const auto optionalText = [](const char* name, const char* help) {
    return Note(name, help).optional(std::string());
  };
  Note chartType("ChartType", "the chart");
  chartType.choices({"INDIVIDUAL", "MR", "XBAR", "RCHART", "SCHART", "MA", "EWMA", "PChart", "NPChart",
                     "CChart", "UChart", "IMRRS1", "IMRRS2", "IMRRS3"});

  classes.push_back(
      Description<yControlChart>("yControlChart", "Control charts")
          .method("ControlChartOutput", &yControlChart::ControlChartOutput,
                  "One control chart: variables, time-weighted, attribute, or of a between/within study",
                  chartType, data,
                  Note("dx",
                       "the subgroup of each row, a run of equal texts; the sample size for PChart, NPChart "
                       "and UChart; numbers for MA and EWMA; not read for INDIVIDUAL, MR and CChart"),
                  phases, position, Note("DataY", "the plotted points"), centreLine, lowerLimits, upperLimits,
                  dividerX, dividerY, marks, multipliers, lowerBound, upperBound,
                  Note("EstimateType",
                       "the estimate of sigma, not read for PChart to UChart; for MA, EWMA and IMRRS1 to 3 "
                       "one of the moving "
                       "ranges and one of the others joined by >")
                      .choicesOfAnyCase(sigmaEstimates()),
                  Note("kvar1", k1), Note("kvar2", k2), Note("kvar3", k3), Note("kvar4", k4),
                  Note("kvar5", k5), Note("kvar6", k6), Note("kvar7", k7), Note("kvar8", k8),
                  optionalText("HistMean", "historical mean, proportion or count; empty for the phase's own"),
                  optionalText("HistSD", "historical sigma; empty for the estimate"),
                  optionalText("MRLength", "length of the moving range"),
                  optionalText("MALength", "length of the moving average"),
                  optionalText("Weight", "weight of the EWMA, from 0 to 1"),
                  optionalText("HistSDBetween", "historical between-subgroup sigma, IMRRS1 and 2"),
                  optionalText("HistSDWithin", "historical within-subgroup sigma, IMRRS1 to 3"))
          .note(
              "INDIVIDUAL, MR, XBAR, RCHART, SCHART: Shewhart's charts of variables. MA and EWMA take rows "
              "as individual values where the labels number them (the last less the first plus 1 is the "
              "number "
              "of rows of the phase), and subgroup means otherwise. IMRRS1 to 3: subgroup means about their "
              "own moving range, that moving range, and the spread within subgroups (S chart for Sbar and "
              "for a pooled estimate of subgroups of 10 or more, else R chart).")
          .note(
              "Sigma estimates are compared ignoring case, but exactly for IMRRS1 to 3. A name that is none "
              "makes sigma 0, and so does Sbar for RCHART and Rbar for SCHART: the limits lie on the centre "
              "line. An XBAR phase without a subgroup of two values takes the average moving range of 2, an "
              "RCHART or SCHART phase has no lines then.")
          .note(
              "The tests for special causes see the lines at one sigma, whatever multipliers and bounds are "
              "drawn.")
          .note(testRules)
          .method(
              "ZoneChartOutput", &yControlChart::ZoneChartOutput,
              "A zone chart: subgroup means scored by their distance from the centre, and the running sum",
              data, Note("dx", "the subgroup of each row, a run of equal texts"), phases,
              Note("SigmaType",
                   "two estimates joined by >, compared exactly: Average or Median Moving Range for "
                   "subgroups of one value, Pooled Std Dev, Sbar or Rbar for all others"),
              Note("MRLength", "length of the moving range, for subgroups of one value"),
              Note("ResetScore", "whether a sum that has reached Zone4 begins anew"),
              Note("Zone1", "the score within 1 sigma of a mean"), Note("Zone2", "from 1 to 2 sigma"),
              Note("Zone3", "from 2 to 3 sigma"), Note("Zone4", "beyond 3 sigma, and what makes a signal"),
              Note("HistMean", "historical mean; empty for the phase's own"),
              Note("HistSD", "historical sigma; empty for the estimate"), multipliers, position,
              Note("DataY", "the zone of each mean: 0.5 to 3.5 above the centre, negative below or on it"),
              Note("DataYFailed", "DataY where the sum has reached Zone4"), centreLine, lowerLimits,
              upperLimits, Note("CumZoneScore", "the running sum of the scores"), dividerX, dividerY)
          .note(
              "A mean on a border belongs to the zone inside it. The sum begins anew where a mean lies on "
              "the other side of the centre from the one before; a mean exactly on the centre is no "
              "crossing. A "
              "phase whose sigma cannot be estimated has neither positions nor sums. The lines are those of "
              "the positions: multipliers of 1, 2, 3 draw the borders of the zones.")
          .method(
              "ZMROutput", &yControlChart::ZMROutput,
              "Charts of a short run of several parts: standardised values and their moving ranges", data,
              Note("dx", "the part of each row"),
              Note("GroupType", "what has a mean of its own: each run of a part, or each part")
                  .choices({"By runs", "By parts"}),
              Note("SigmaType", "one sigma for all, or one a part and of the logarithms of the values")
                  .choices({"Constant", "Relative to size"}),
              Note("MRLength", "length of the moving range"), Note("DataY1", "the standardised values"),
              Note("CCL1", "centre line of the standardised values: 0"),
              Note("LCL1", "their lower limits, a column for each multiplier").table(),
              Note("UCL1", "their upper limits, a column for each multiplier").table(),
              Note("DataY2", "the moving ranges of the standardised values"),
              Note("CCL2", "centre line of the moving ranges: d2"),
              Note("LCL2", "their lower limits, a column for each multiplier").table(),
              Note("UCL2", "their upper limits, a column for each multiplier").table(), position, dividerX,
              dividerY, multipliers,
              Note("LCLBound", "no lower limit of either chart is drawn below this number; blank for none"),
              Note("UCLBound", "no upper limit of either chart is drawn above this number; blank for none"),
              Note("HistMean",
                   "historical mean of each part, parts in order of first appearance; may be empty"),
              Note("HistSD", "historical sigma of each part in the same order; may be empty"))
          .note("The points stand in the order of the rows, with a divider wherever the part changes. Moving "
                "ranges never cross a group: by parts, the one of a row reaches back to the part's earlier "
                "rows wherever they stand.")
          .note(
              "Constant: sigma is the mean of the moving ranges of all groups over d2. Relative to size: the "
              "same for each part on its own, from the logarithms. Historical values are in the units "
              "analysed, logarithms with the latter; an entry without a value counts as not given.")
          .note(
              "A group whose values all lie at their mean, a single row without a historical mean included, "
              "stands at 0. A group that has no sigma (too few rows for a moving range) has no points.")
          .done());
  classes.push_back(
      Description<yControlTest>("yControlTest", "Tests for special causes on a finished control chart")
          .method("CCTest", &yControlTest::CCTest, "The eight tests for special causes, position by position",
                  Note("CCL", "the centre line"), Note("LCL", "the line one sigma below it"),
                  Note("UCL", "the line one sigma above it"), Note("plotdata", "the plotted points"),
                  Note("dp", "the phase of each point"), marks, Note("kvar1s", k1), Note("kvar2s", k2),
                  Note("kvar3s", k3), Note("kvar4s", k4), Note("kvar5s", k5), Note("kvar6s", k6),
                  Note("kvar7s", k7), Note("kvar8s", k8))
          .note(testRules)
          .done());
}

}  // namespace zelkova
