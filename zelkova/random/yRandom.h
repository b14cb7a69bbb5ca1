#pragma once

#include <string>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"

namespace zelkova {

/// Random data. Binds to the host.
class yRandom : public HostBound {
 public:
  /// Fills `RandomValue`, a table of `NumRow` by `NumCol` (texts of numbers, rounded half to even, up to
  /// 32767), with values from `Distribution`; 0 everywhere for a text that names none:
  ///
  /// | `Distribution` | `Para1` | `Para2` | `Para3` |
  /// |---|---|---|---|
  /// | "Normal" | mean | standard deviation | |
  /// | "Lognormal" | mean of ln x | standard deviation of ln x | |
  /// | "Uniform" | lower | upper | |
  /// | "Integer" | lower | upper | |
  /// | "Triangular" | minimum | mode | maximum |
  /// | "Exponential" | mean | | |
  /// | "Weibull", "Gamma" | shape | scale | |
  /// | "Beta" | alpha | beta | |
  /// | "t", "Chi-square" | degrees of freedom | | |
  /// | "F" | numerator df | denominator df | |
  /// | "Bernoulli" | not read | probability | |
  /// | "Binomial" | trials | probability | |
  /// | "Poisson" | mean | | |
  /// | "Hypergeometric" | population size | successes in it | sample size |
  /// | "Discrete" | not read | not read | not read |
  ///
  /// A parameter is the text of a number; an empty one is 0, one that the distribution has not is not read.
  /// "Discrete" draws the elements of `dValue` by the weights `dProb`. Values come by inversion of draws from
  /// `random::UniformStream`, which is started anew from the clock at entry unless it is set; Poisson and
  /// hypergeometric values go to the nearer of two cumulative probabilities, see the page of numeric choices.
  ///
  /// Failures: 13 for a text that is no number, 6 for a size beyond 32767, 9 for one below 1 and for fewer
  /// values than weights, 5 for parameters that the distribution cannot have, 1004 where the host refuses
  /// them, 11 for weights that sum to 0.
  void RandomOutput(const std::string& Distribution, const std::string& NumCol, const std::string& NumRow,
                    const std::string& Para1, const std::string& Para2, const std::string& Para3,
                    const DoubleArray& dValue, const DoubleArray& dProb, DoubleArray& RandomValue) const;
};

}  // namespace zelkova
