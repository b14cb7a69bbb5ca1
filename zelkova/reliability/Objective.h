#pragma once

#include "zelkova/frame/Array.h"

namespace zelkova {

/// A function of a parameter vector, to be minimised.
class Objective {
 public:
  virtual ~Objective() = default;

  /// Its value at `P`. A model may bring `P` into its standard form on the way.
  virtual double operator()(DoubleArray& P) = 0;
};

}  // namespace zelkova
