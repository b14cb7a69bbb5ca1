#pragma once

#include <string_view>

#include "zelkova/reliability/Objective.h"

namespace zelkova {

/// The value `f` of the objective at `x` and its gradient `g` by central differences with steps of
/// sqrt(5E-16) times each element (or that root itself where an element is 0): 2n + 1 evaluations.
void RSGradient(DoubleArray& x, double& f, DoubleArray& g, Objective& objective);

/// The n by n second derivatives `H` of the objective at `x` by central differences with steps of the fourth
/// root of 5E-16 times each element (or that root itself where an element is 0).
void RSHessian(DoubleArray& x, DoubleArray& H, Objective& objective);

/// The same for the negated log-likelihood of life data, see `NegLogLik`.
void RSGradient(DoubleArray& x, double& f, DoubleArray& g, const DoubleArray& SA, const DoubleArray& EA,
                const DoubleArray& FA, std::string_view dist, const DoubleArray& hold);
void RSHessian(DoubleArray& x, DoubleArray& H, const DoubleArray& SA, const DoubleArray& EA,
               const DoubleArray& FA, std::string_view dist, const DoubleArray& hold);

}  // namespace zelkova
