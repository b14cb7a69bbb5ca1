#pragma once

#include <memory>
#include <string_view>

#include "zelkova/frame/NoValue.h"
#include "zelkova/reliability/Objective.h"

namespace zelkova {

/// The negated log-likelihood of a life distribution (see `NegLogLik`); null where `dist` names none.
std::unique_ptr<Objective> lifeLikelihood(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                                          std::string_view dist, const DoubleArray& hold);

/// The parameter k: the held value, or that of `P`.
inline double parameterOf(const DoubleArray& P, const DoubleArray& hold, Index k) {
  return hold.filled() && hold(k) != NoValue ? hold(k) : P(k);
}

}  // namespace zelkova
