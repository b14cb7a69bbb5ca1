#pragma once

#include <string_view>

#include "zelkova/reliability/Objective.h"

namespace zelkova {

/// How a minimisation ended.
enum class Minimised : int {
  Refused = -1,          ///< arguments that are none, or a search direction that does not descend
  ValueSettled = 1,      ///< the value fell by no more than `EpsF`, relative to the value or 1
  PointSettled = 2,      ///< the last step was no longer than `EpsX`
  GradientVanished = 4,  ///< the norm of the gradient is at most `EpsG`
  IterationLimit = 5,    ///< `MaxIts` iterations were made
};

/// Minimises the objective from `x` (n elements) by the limited-memory BFGS method (Nocedal 1980; Liu and
/// Nocedal 1989) with `m` correction pairs and the line search of More and Thuente (1994), on numeric
/// gradients. `x` holds the best point found, `Info` how the search ended (`Minimised`) and `Iter` its
/// iterations.
///
/// `Info` is -1, with `x` as it came, for n or m below 1, m above n, a negative tolerance or limit. With
/// `MaxIts` 0 one iteration is made. A start whose gradient is 0 to `EpsG` is returned as it is, with Info 4
/// and Iter 0. Failures of the objective pass through.
void LBFGSMinimize(int n, int m, DoubleArray& x, double EpsG, double EpsF, double EpsX, int MaxIts, int& Info,
                   int& Iter, Objective& objective);

/// The same for the negated log-likelihood of life data, see `NegLogLik`.
void LBFGSMinimize(int n, int m, DoubleArray& x, double EpsG, double EpsF, double EpsX, int MaxIts, int& Info,
                   int& Iter, const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                   std::string_view dist, const DoubleArray& hold);

}  // namespace zelkova
