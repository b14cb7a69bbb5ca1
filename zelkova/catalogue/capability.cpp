#include "zelkova/capability/yCapability.h"
#include "zelkova/capability/yCapabilityB.h"
#include "zelkova/capability/yCapabilityP.h"
#include "zelkova/capability/yCapabilityW.h"
#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

Class describeNormal() {
  const Note measurements("dy", "the measurements");
  const Note upper("USL", "upper specification; blank for none");
  const Note lower("LSL", "lower specification; blank for none");
  const Note target("Target", "target; blank for none");
  return Description<yCapability>("yCapability", "Capability of a normally distributed characteristic")
      .method("CapabilityOutput", &yCapability::CapabilityOutput,
              "Sigma, capability indices, and the fractions beyond specification", measurements,
              Note("dx", "the subgroup of each row, a run of equal texts"),
              Note("estimate1",
                   "the estimate of sigma for subgroups of one value, and of the spread of subgroup means "
                   "with BW")
                  .choicesOfAnyCase({"Average Moving Range", "Median Moving Range"}),
              Note("estimate2", "the estimate within subgroups")
                  .choicesOfAnyCase({"Pooled Std Dev", "SBar", "RBar"}),
              Note("MRLength", "length of the moving range; blank for 2"), upper, lower, target,
              Note("Tolerance", "the process spread in sigmas; blank for 6"),
              Note("HistMean", "historical mean; blank for the mean of the data"),
              Note("HistSD", "historical sigma without BW; blank for the estimate"),
              Note("HistSDB", "historical between-subgroup sigma with BW; blank for the estimate"),
              Note("HistSDW", "historical within-subgroup sigma with BW; blank for the estimate"),
              Note("DisplayC", "what the slots with two names hold, indices or Z values; blank for the first")
                  .choices({"Cp & Pp", "Z & Sigma", ""}),
              Note("DisplayP", "the unit of the fractions; blank for the first")
                  .choices({"Parts per million", "Percentage", ""}),
              Note("Capability", "the study").slots(NormalCapability::names),
              Note("BW", "true for a study with a between-subgroup component").optional(false))
      .note(
          "Slots 6 and 7 are the sigma of the study and the overall one. With BW they are the between- and "
          "the within-subgroup sigma; slots 26 and 27, 0 otherwise, then hold the sigma that both make, on "
          "which the indices rest, and the overall one.")
      .note(
          "The most frequent subgroup size decides between the estimates: a size of 1 takes estimate1. The "
          "name of no estimate makes its sigma 0; an index over a sigma of 0 is failure 11.")
      .note(
          "A one-sided specification has no Cp and no Pp; its Cpk, Ppk and Z.Bench are those of its side. "
          "Z.Bench of both sides has no value where practically everything, or nothing, is within "
          "specification. A historical mean does not move the observed fractions, Cp, Pp, Cpm and the "
          "overall sigma.")
      .method("CapabilityChartoutput", &yCapability::CapabilityChartoutput,
              "The capability histogram: bins, two normal curves and the lines of the specifications",
              measurements, Note("dx", "not read"), upper, lower, target,
              Note("dMean", "the mean of the curves"),
              Note("dSD1", "the standard deviation within subgroups; NoValue for none"),
              Note("dSD2", "the overall standard deviation; NoValue for none"),
              Note("PlotX", "the midpoints of the bins"), Note("PlotY", "the counts"),
              Note("PlotWithin", "the curve of dSD1 at the midpoints, on the scale of the counts"),
              Note("PlotOverall", "the curve of dSD2"),
              Note("PlotLimitY", "0 and 1: the ends of the three lines"),
              Note("PlotLSLX", "where the line of LSL stands, as a fraction of the axis, twice"),
              Note("PlotUSLX", "where the line of USL stands"),
              Note("PlotTargetX", "where the line of the target stands"))
      .note(
          "The bins cover the data, three standard deviations to each side, and the specifications. A value "
          "on the edge of two bins counts in the upper one. A curve has no value where it is below 0.000005 "
          "of a count, and a standard deviation of 0 has no curve.")
      .done();
}

Class describeBinomial() {
  const Note defectives("dy", "the defectives of each sample");
  const Note sizes("dxN", "the size of each sample");
  const Note target("Target", "a target, handed through; blank for none");
  const Note historical("HistP", "historical proportion of defectives; blank for the observed one");
  return Description<yCapabilityB>("yCapabilityB", "Capability of a process by its defectives")
      .method("CapabilityBOutput", &yCapabilityB::CapabilityBOutput,
              "The proportion of defectives with exact 95 percent limits", defectives, sizes, target,
              historical, Note("Capability", "the study").slots(BinomialCapability::names))
      .note(
          "With a historical proportion the limits are those of as many defectives as it makes of all items, "
          "whatever was observed. Z values all have the sign of the first: positive below a proportion of "
          "one half. Those of 0 and 1 have no value.")
      .method("CapabilityBPlotOutput", &yCapabilityB::CapabilityBPlotOutput, "The charts of that study",
              defectives, sizes, target, historical, Note("CumPDefX", "1, 2, ...: the samples"),
              Note("CumPDefY", "percent defective of the samples so far"),
              Note("CumPDefAve", "percent defective of the process, at each sample"),
              Note("CumPDefLSL", "lower limit of the samples so far, in percent"),
              Note("CumPDefUSL", "their upper limit"), Note("PDef", "percent defective of each sample"),
              Note("RateX1", "the sample sizes, where they differ"),
              Note("RateX2", "the same in ascending order"),
              Note("RateYLSL", "lower limit, in percent, of a sample of each size of RateX2"),
              Note("RateYUSL", "their upper limit"),
              Note("BPlotX", "1, 2, ..., where the sample sizes are equal"),
              Note("BPlotObs", "the distinct counts, ascending"),
              Note("BPlotExp", "the binomial quantile that stands for each"),
              Note("BPlotLabel",
                   "title, vertical and horizontal axis label of the rate plot or the binomial plot"))
      .done();
}

Class describePoisson() {
  const Note defects("dy", "the defects of each sample");
  const Note units("dxN", "the number of units of each sample");
  const Note target("Target", "a target, handed through; blank for none");
  const Note historical("HistMu", "historical defects per unit; blank for the observed ones");
  return Description<yCapabilityP>("yCapabilityP", "Capability of a process by its defects per unit")
      .method("CapabilityPOutput", &yCapabilityP::CapabilityPOutput,
              "Defects per unit with exact 95 percent limits", defects, units, target, historical,
              Note("Capability", "the study").slots(PoissonCapability::names))
      .note("The limits are those of the defects observed, also where a historical rate is given.")
      .method("CapabilityPPlotOutput", &yCapabilityP::CapabilityPPlotOutput, "The charts of that study",
              defects, units, target, historical, Note("CumDPUX", "1, 2, ...: the samples"),
              Note("CumDPUY", "defects per unit of the samples so far"),
              Note("CumDPUAve", "defects per unit of the process, at each sample"),
              Note("CumDPULSL", "their lower limit, at each sample"),
              Note("CumDPUUSL", "their upper limit, at each sample"),
              Note("DPU", "defects per unit of each sample"),
              Note("DRateX", "the numbers of units, where they differ"),
              Note("DRateY", "defects per unit of each sample"),
              Note("DRateAve", "defects per unit of the process, at each sample"),
              Note("PPlotObs", "the distinct counts, ascending, where the numbers of units are equal"),
              Note("PPlotExp", "the Poisson quantile that stands for each"),
              Note("PPlotLabel",
                   "title, vertical and horizontal axis label of the rate plot or the Poisson plot"))
      .done();
}

Class describeWeibull() {
  const Note measurements("dy", "the measurements, all above 0");
  const Note upper("USL", "upper specification; blank for none");
  const Note lower("LSL", "lower specification; blank for none");
  const Note target("Target", "target; blank for none");
  return Description<yCapabilityW>("yCapabilityW",
                                   "Capability of a characteristic with a Weibull distribution")
      .method("CapabilityWOutput", &yCapabilityW::CapabilityWOutput,
              "Shape and scale with limits, capability indices, and the fractions beyond specification",
              measurements, upper, lower, target,
              Note("HistShape", "historical shape; blank for the estimate"),
              Note("HistScale", "historical scale; blank for the estimate"),
              Note("CLevel", "confidence of the limits of shape and scale, as a fraction"),
              Note("DisplayP", "the unit of the fractions; blank for the first")
                  .choices({"Parts per million", "Percentage", ""}),
              Note("Capability", "the study").slots(WeibullCapability::names))
      .note(
          "Estimates are of maximum likelihood. A historical parameter has no limits; one alone is held "
          "while the other is estimated.")
      .note(
          "LowerQuantile and UpperQuantile are those at 0.00135 and 0.99865; Pp, PPU and PPL set the "
          "specifications against them and the median. A Z value is the normal quantile that cuts off the "
          "same fraction, so that 3 PPU and ZUSL differ for a skewed distribution.")
      .note(
          "A one-sided specification has no Pp; its Ppk and ZBench are those of its side. A fraction of 0 or "
          "1 has no Z value: nothing lies below a lower specification of 0. Leave LSL blank where 0 is a "
          "bound of the characteristic and no specification: it would lower Ppk to a PPL that means nothing.")
      .note(
          "Any other text for DisplayP leaves the fractions 0. Target is handed through: no index rests on "
          "it.")
      .note(
          "Failure 5: a measurement, shape or scale that is not above 0, USL below LSL, CLevel not above 0 "
          "and below 1, measurements all alike where a shape is to be estimated. Failure 13: a specification "
          "or historical parameter that is no number. Failure 11: quantiles that do not differ.")
      .method("CapabilityWChartOutput", &yCapabilityW::CapabilityWChartOutput,
              "The capability histogram: bins, the Weibull curve and the lines of the specifications",
              measurements, upper, lower, target,
              Note("dShape", "the shape of the curve; NoValue for no curve"),
              Note("dScale", "the scale of the curve; NoValue for no curve"),
              Note("PlotX", "the midpoints of the bins"), Note("PlotY", "the counts"),
              Note("PlotOverall", "the fitted curve: the counts that the distribution expects in the bins"),
              Note("PlotLimitY", "0 and 1: the ends of the three lines"),
              Note("PlotLSLX", "where the line of LSL stands, as a fraction of the axis, twice"),
              Note("PlotUSLX", "where the line of USL stands"),
              Note("PlotTargetX", "where the line of the target stands"))
      .note(
          "The bins cover the data, the quantiles at 0.00135 and 0.99865, and the specifications, which may "
          "all lie on one side; USL below LSL is failure 5. A value on "
          "the edge of two bins counts in the upper one. The curve has no value where it is below 0.000005 "
          "of a count; at its ends it counts all that lies beyond.")
      .done();
}

}  // namespace

void describeCapability(std::vector<Class>& classes) {
  classes.push_back(describeNormal());
  classes.push_back(describeBinomial());
  classes.push_back(describePoisson());
  classes.push_back(describeWeibull());
}

}  // namespace zelkova
