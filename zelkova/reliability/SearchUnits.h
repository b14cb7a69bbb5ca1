#pragma once

#include <string>

#include "zelkova/reliability/Objective.h"

namespace zelkova {

/// The units in which a fit is searched for: parameters of about 1 at the start, and in a model of
/// acceleration the location at the mean stress in place of that at stress 0. The minimiser's first step and
/// tolerances are absolute, and derivatives by differences need parameters that are told apart: in other
/// units a search would end beside the maximum of data in hours, and standard errors would lose their digits.
class SearchUnits {
 public:
  /// Units for `model` (see `NegLogLik`) from the start `P`; `AA` are stresses, or anything for other models.
  SearchUnits(const std::string& model, const DoubleArray& P, const DoubleArray& AA, const DoubleArray& hold);

  /// Parameters in these units, and back.
  DoubleArray to(const DoubleArray& P) const;
  DoubleArray from(const DoubleArray& Q) const;

  /// Second derivatives by the parameters themselves, from those in these units.
  DoubleArray secondDerivatives(const DoubleArray& H) const;

 private:
  void centre(const std::string& model, const DoubleArray& AA);

  DoubleArray unit_;
  double origin_ = 0;  ///< of the first parameter
  double centre_ = 0;  ///< the transformed stress at which the second parameter is the location
};

/// An objective as a function of parameters in other units.
class InSearchUnits : public Objective {
 public:
  InSearchUnits(Objective& objective, const SearchUnits& units) : objective_(&objective), units_(&units) {}

  double operator()(DoubleArray& Q) override {
    DoubleArray P = units_->from(Q);
    return (*objective_)(P);
  }

 private:
  Objective* objective_;
  const SearchUnits* units_;
};

}  // namespace zelkova
