#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/charts/yControlChart.h"
#include "zelkova/charts/yControlTest.h"

namespace zelkova {

void describeCharts(std::vector<Class>& classes) {
  using Note = ArgumentNote;

  const char* const testRules =
      "A mark stands at the last point of its pattern. No pattern crosses a phase (the point before the "
      "first "
      "step of test 3 or 4 may lie in the one before), and one with an empty point or line does not signal, "
      "but for test 3, which looks at its last point only. A point on the centre line counts with both sides "
      "in test 2. Tests 5 and 6 want all k + 1 points on one side of the centre line, the last of them among "
      "the far ones.";
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
  const Note phases("dp", "the phase of each row; a phase is a run of equal texts");
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
          .method(
              "ControlChartOutput", &yControlChart::ControlChartOutput,
              "One control chart: variables, time-weighted, attribute, or of a between/within study",
              chartType, data,
              Note("dx",
                   "the subgroup of each row, a run of equal texts; the sample size for PChart, NPChart "
                   "and UChart; numbers for MA and EWMA; not read for INDIVIDUAL, MR and CChart"),
              phases, position, Note("DataY", "the plotted points"), centreLine, lowerLimits, upperLimits,
              dividerX, dividerY, marks, multipliers, lowerBound, upperBound,
              Note(
                  "EstimateType",
                  "the estimate of sigma: Average Moving Range, Median Moving Range, Pooled Std Dev, Sbar or "
                  "Rbar; for MA, EWMA and IMRRS1 to 3 the first two and the last three joined by >"),
              Note("kvar1", k1), Note("kvar2", k2), Note("kvar3", k3), Note("kvar4", k4), Note("kvar5", k5),
              Note("kvar6", k6), Note("kvar7", k7), Note("kvar8", k8),
              optionalText("HistMean", "historical mean, proportion or count; empty for the phase's own"),
              optionalText("HistSD", "historical sigma; empty for the estimate"),
              optionalText("MRLength", "length of the moving range"),
              optionalText("MALength", "length of the moving average"),
              optionalText("Weight", "weight of the EWMA, from 0 to 1"),
              optionalText("HistSDBetween", "historical between-subgroup sigma, IMRRS1 and 2"),
              optionalText("HistSDWithin", "historical within-subgroup sigma, IMRRS1 to 3"))
          .note(
              "INDIVIDUAL, MR, XBAR, RCHART, SCHART: Shewhart's charts of variables. MA and EWMA take rows "
              "as "
              "individual values where the labels number them (the last less the first plus 1 is the number "
              "of rows of the phase), and subgroup means otherwise. IMRRS1 to 3: subgroup means about their "
              "own moving range, that moving range, and the spread within subgroups (S chart for Sbar and "
              "for a pooled estimate of subgroups of 10 or more, else R chart).")
          .note(
              "Sigma estimates are compared ignoring case, but exactly for IMRRS1 to 3. A name that is none "
              "makes sigma 0: the limits lie on the centre line. An XBAR phase without a subgroup of two "
              "values takes the average moving range of 2, an RCHART or SCHART phase has no lines then.")
          .note(
              "The tests for special causes see the lines at one sigma, whatever multipliers and bounds are "
              "drawn.")
          .note(testRules)
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
