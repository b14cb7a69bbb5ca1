#pragma once

#include "zelkova/capability/specifications.h"
#include "zelkova/frame/Array.h"

/// The axis of a capability histogram.
namespace zelkova::capability {

/// The bins of the values, of an axis from `low` to `high`, and of what is specified on either side; a target
/// may lie on any.
DoubleArray binsOf(std::span<const double> y, double low, double high, const Specifications& given);

/// Both ends of the line at a specification, as fractions of an axis with a category for each bin.
DoubleArray markerOf(const std::optional<double>& specification, const DoubleArray& bins);

/// The curve without what would be drawn along the axis, far from the data.
DoubleArray nearTheData(DoubleArray curve);

}  // namespace zelkova::capability
