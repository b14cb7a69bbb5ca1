#include "host/quantiles.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>
#include <limits>
#include <numbers>

namespace zelkova::quantiles {

namespace {

namespace bp = boost::math::policies;
using Policy = bp::policy<bp::domain_error<bp::ignore_error>, bp::pole_error<bp::ignore_error>,
                          bp::overflow_error<bp::ignore_error>, bp::underflow_error<bp::ignore_error>,
                          bp::denorm_error<bp::ignore_error>, bp::evaluation_error<bp::ignore_error>,
                          bp::rounding_error<bp::ignore_error>, bp::promote_double<false>>;
constexpr Policy policy;

}  // namespace

double normal(double p) { return -std::numbers::sqrt2 * boost::math::erfc_inv(2 * p, policy); }

double studentBothTails(double p, double df) { return std::sqrt(varianceRatioUpper(p, 1, df)); }

double gammaLower(double p, double shape) { return boost::math::gamma_p_inv(shape, p, policy); }

double gammaUpper(double p, double shape) { return boost::math::gamma_q_inv(shape, p, policy); }

double varianceRatioUpper(double p, double df1, double df2) {
  double complement = 0;
  const double x = boost::math::ibetac_inv(df1 / 2, df2 / 2, p, &complement, policy);
  return df2 / df1 * (x / complement);
}

double betaLower(double p, double a, double b) { return boost::math::ibeta_inv(a, b, p, policy); }

}  // namespace zelkova::quantiles
