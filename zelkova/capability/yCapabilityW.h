#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

ZELKOVA_SLOTS(WeibullCapability, USL, Target, LSL, Mean, N, Shape, ShapeLower, ShapeUpper, Scale, ScaleLower,
              ScaleUpper, LowerQuantile, Median, UpperQuantile, Pp, PPU, PPL, Ppk, ZBench, ZUSL, ZLSL,
              ObservedBelow, ObservedAbove, ObservedTotal, ExpectedBelow, ExpectedAbove, ExpectedTotal);

/// Capability of a characteristic with a Weibull distribution, one that is positive and skewed: a life, a
/// strength, a roughness, a distance from true. Binds to the host.
///
/// `dy` are the measurements, all above 0, in any unit. `USL`, `LSL` and `Target` are numbers as texts, empty
/// for none. Failures: 9 for an array that was never filled, 13 for a text that must be a number and is not,
/// 5 for a measurement that is not above 0 and for a shape or a scale that is not, 6 where a result
/// overflows.
class yCapabilityW : public HostBound {
 public:
  /// Shape and scale, indices, Z values and the fractions beyond specification.
  ///
  /// `HistShape` and `HistScale` are historical parameters, numbers as texts, empty for estimates: by maximum
  /// likelihood, with limits at the confidence `CLevel` (a fraction) that are symmetric in the logarithm. A
  /// historical parameter has no limits; one alone is held while the other is estimated. `Target` is handed
  /// through: no index rests on it.
  ///
  /// Indices compare the specifications with the median and the quantiles at 0.00135 and 0.99865, which cut
  /// off as much as three standard deviations of a normal distribution do (ISO 22514-2:2017): Pp = (USL -
  /// LSL) / (Q.99865 - Q.00135), PPU = (USL - Q.5) / (Q.99865 - Q.5), PPL = (Q.5 - LSL) / (Q.5 - Q.00135),
  /// Ppk the lesser. A Z value is the normal quantile that cuts off the same fraction: `ZUSL` that above the
  /// upper specification, `ZLSL` that below the lower one, `ZBench` both together.
  ///
  /// `DisplayP`, "Parts per million" (also where empty) or "Percentage", is the unit of the observed and
  /// expected fractions; any other text leaves their slots 0. `NoValue` marks what the specifications given
  /// do not yield, and a Z value of a fraction of 0 or 1, as below an `LSL` of 0. Leave `LSL` empty where 0
  /// is a bound of the characteristic and no specification: it would lower Ppk to a PPL that means nothing.
  /// Further failures: 5 where `USL` lies below `LSL`, for a `CLevel` that is not inside 0 to 1 and where
  /// there is nothing to estimate from (measurements all alike, or all at a historical scale), 11 where the
  /// distribution is too narrow for quantiles that differ.
  void CapabilityWOutput(const DoubleArray& dy, const std::string& USL, const std::string& LSL,
                         const std::string& Target, const std::string& HistShape,
                         const std::string& HistScale, double CLevel, const std::string& DisplayP,
                         DoubleArray& Capability) const;

  /// The capability histogram: midpoints and counts of its bins, the counts that a Weibull distribution of
  /// `dShape` and `dScale` expects there (in the first and last bin with all that lies beyond), and two
  /// points, from `PlotLimitY` 0 to 1, for a line at each specification, as fractions of the axis. The axis
  /// covers the data, the quantiles at 0.00135 and 0.99865 and the specifications, on whatever side of the
  /// data. `NoValue` where fewer than 0.000005 are expected and for a specification that is not given; in
  /// curve and lines on an axis of a single bin; in the curve where `dShape` or `dScale` is `NoValue`.
  /// Further failures: 5 where `USL` lies below `LSL` and where the data differ by less than their size can
  /// resolve.
  void CapabilityWChartOutput(const DoubleArray& dy, const std::string& USL, const std::string& LSL,
                              const std::string& Target, double dShape, double dScale, DoubleArray& PlotX,
                              DoubleArray& PlotY, DoubleArray& PlotOverall, DoubleArray& PlotLimitY,
                              DoubleArray& PlotLSLX, DoubleArray& PlotUSLX, DoubleArray& PlotTargetX) const;
};

}  // namespace zelkova
