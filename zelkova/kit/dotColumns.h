#pragma once

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The width of the columns in which the dots of a dot plot stand, the centre of each being a multiple of it;
/// 0 for data without spread.
///
/// It is the width of the histogram's intervals (`GetHistogramBins`), refined: the smallest of 1, 2, 2.5 and
/// 5 times a power of ten that needs no more than 4 root n columns (Wilkinson, 1999: dots of 0.25 over root n
/// of the axis) and no more than 200. It is a whole number of the decimal place in which the data are
/// recorded, so that all columns take in equally many of the values that can occur. Failures 5 and 6 as
/// `GetHistogramBins`.
double dotColumnWidth(const DoubleArray& data);

/// The number of the column around `x`, whose centre is that many widths from 0. A value on the boundary of
/// two columns, but for the rounding of decimals, counts in the upper one.
double dotColumnPlace(double x, double width);

}  // namespace zelkova
