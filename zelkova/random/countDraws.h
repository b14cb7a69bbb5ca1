#pragma once

#include <span>

#include "zelkova/frame/Host.h"
#include "zelkova/random/UniformStream.h"

/// Draws of counts; each fills all of `cells`.
namespace zelkova::random {

/// 1 with the given probability, else 0. Failure 5 for a probability outside [0, 1], here and below.
void bernoulliDraws(double probability, UniformStream& stream, std::span<double> cells);

/// Successes in `trials` Bernoulli draws, `trials` rounded half to even; none for a negative number.
void binomialDraws(WorksheetFunction& host, double trials, double probability, UniformStream& stream,
                   std::span<double> cells);

/// Values around a Poisson distribution of mean `Mean`, at most 1000.
void GetPoissonRandom(WorksheetFunction& host, double Mean, UniformStream& stream, std::span<double> cells);

/// Values around the number of successes in a `Sample` without replacement, at most 1000; 0 for a
/// `Sample` of 0. Failure 1004 for what the host refuses, a population without successes too.
void GetHyperRandom(WorksheetFunction& host, double Population, double Success, double Sample,
                    UniformStream& stream, std::span<double> cells);

}  // namespace zelkova::random
