#include <algorithm>
#include <array>
#include <cmath>

#include "zelkova/charts/modzControl.h"
#include "zelkova/frame/arithmetic.h"

namespace zelkova {

namespace {

// From 2 values on. sqrt(2 / (n - 1)) gamma(n / 2) / gamma((n - 1) / 2).
constexpr std::array<double, 99> c4{
    0.797885, 0.886227, 0.921318, 0.939986, 0.951533, 0.959369, 0.965030, 0.969311, 0.972659, 0.975350,
    0.977559, 0.979406, 0.980971, 0.982316, 0.983484, 0.984506, 0.985410, 0.986214, 0.986934, 0.987583,
    0.988170, 0.988705, 0.989193, 0.989640, 0.990052, 0.990433, 0.990786, 0.991113, 0.991418, 0.991703,
    0.991969, 0.992219, 0.992454, 0.992675, 0.992884, 0.993080, 0.993267, 0.993443, 0.993611, 0.993770,
    0.993922, 0.994066, 0.994203, 0.994335, 0.994460, 0.994580, 0.994695, 0.994806, 0.994911, 0.995013,
    0.995110, 0.995204, 0.995294, 0.995381, 0.995465, 0.995546, 0.995624, 0.995699, 0.995772, 0.995842,
    0.995910, 0.995976, 0.996040, 0.996102, 0.996161, 0.996219, 0.996276, 0.996330, 0.996383, 0.996435,
    0.996485, 0.996534, 0.996581, 0.996627, 0.996672, 0.996716, 0.996759, 0.996800, 0.996841, 0.996880,
    0.996918, 0.996956, 0.996993, 0.997028, 0.997063, 0.997097, 0.997131, 0.997163, 0.997195, 0.997226,
    0.997257, 0.997286, 0.997315, 0.997344, 0.997372, 0.997399, 0.997426, 0.997452, 0.997478};

// From 2 values on. Deliberate: the values as they stand; some differ from sqrt(1 - c4^2) in the sixth
// decimal.
constexpr std::array<double, 99> c5{
    0.602810, 0.463251, 0.388810, 0.341213, 0.307547, 0.282154, 0.262139, 0.245838, 0.232238, 0.220663,
    0.210662, 0.201901, 0.194154, 0.187231, 0.180995, 0.175351, 0.170197, 0.165475, 0.161125, 0.157098,
    0.153362, 0.149875, 0.146619, 0.143571, 0.140702, 0.137994, 0.135437, 0.133023, 0.130730, 0.128550,
    0.126481, 0.124505, 0.122618, 0.120815, 0.119086, 0.117440, 0.115848, 0.114328, 0.112859, 0.111450,
    0.110087, 0.108779, 0.107519, 0.106292, 0.105116, 0.103974, 0.102868, 0.101789, 0.100758, 0.099745,
    0.098773, 0.097821, 0.096901, 0.096003, 0.095129, 0.094277, 0.093450, 0.092647, 0.091859, 0.091097,
    0.090351, 0.089620, 0.088906, 0.088209, 0.087540, 0.086878, 0.086221, 0.085595, 0.084976, 0.084364,
    0.083771, 0.083186, 0.082621, 0.082065, 0.081516, 0.080977, 0.080446, 0.079936, 0.079423, 0.078932,
    0.078451, 0.077966, 0.077492, 0.077040, 0.076586, 0.076142, 0.075695, 0.075273, 0.074847, 0.074433,
    0.074017, 0.073625, 0.073231, 0.072835, 0.072451, 0.072078, 0.071703, 0.071341, 0.070976};

// From 1 value on; the integral of 1 - F^n - (1 - F)^n (Tippett, 1925).
constexpr std::array<double, 50> d2{1.000, 1.128, 1.693, 2.059, 2.326, 2.534, 2.704, 2.847, 2.970, 3.078,
                                    3.173, 3.258, 3.336, 3.407, 3.472, 3.532, 3.588, 3.640, 3.689, 3.735,
                                    3.778, 3.819, 3.858, 3.895, 3.931, 3.965, 3.997, 4.028, 4.058, 4.086,
                                    4.113, 4.139, 4.164, 4.189, 4.213, 4.236, 4.258, 4.280, 4.301, 4.322,
                                    4.342, 4.361, 4.380, 4.398, 4.415, 4.432, 4.449, 4.466, 4.482, 4.498};

// From 1 value on. Deliberate: 0.8200 at 1 and 0.8794 at 4 values as they stand.
constexpr std::array<double, 25> d3{0.8200, 0.8525, 0.8884, 0.8794, 0.8641, 0.8480, 0.8332, 0.8198, 0.8078,
                                    0.7971, 0.7873, 0.7785, 0.7704, 0.7630, 0.7562, 0.7499, 0.7441, 0.7386,
                                    0.7335, 0.7287, 0.7242, 0.7199, 0.7159, 0.7121, 0.7084};

// From 1 value on; the median of the studentized range at infinite degrees of freedom.
constexpr std::array<double, 25> d4{1.000, 0.954, 1.588, 1.978, 2.257, 2.472, 2.645, 2.791, 2.915,
                                    3.024, 3.121, 3.207, 3.285, 3.356, 3.422, 3.482, 3.538, 3.591,
                                    3.640, 3.686, 3.730, 3.771, 3.811, 3.847, 3.883};

// From 2 values on.
constexpr std::array<double, 9> d2Star{1.411, 1.907, 2.239, 2.476, 2.668, 2.830, 2.960, 3.084, 3.179};

/// The entry at size `n`, rounded; the table begins at `first`. Failure 9 outside.
template <std::size_t size>
double entry(const std::array<double, size>& table, double first, double n) {
  const double place = roundHalfEven(checked::finite(n)) - first;
  if (!(place >= 0 && place < static_cast<double>(size))) {
    raise(FailureNumber::OutOfRange, "there is no unbiasing constant for such a sample size");
  }
  return table[static_cast<std::size_t>(place)];
}

double polynomial(double x, double a, double b, double c, double d) {
  return a + b * x + c * x * x + d * x * x * x;
}

}  // namespace

double UnbiasC4(double n) {
  if (n >= 2 && n <= 100) return entry(c4, 2, n);
  return 1.00005 - checked::quotient(0.257014, n);
}

double UnbiasC5(double n) { return entry(c5, 2, std::clamp(checked::finite(n), 2.0, 100.0)); }

double UnbiasD2(double n) { return entry(d2, 1, std::min(checked::finite(n), 50.0)); }

double UnbiasD3(double n) {
  if (n >= 1 && n <= 25) return entry(d3, 1, n);
  if (checked::finite(n) < 26) return 0;
  return polynomial(std::min(n, 50.0), 0.80818, -0.0051871, 0.00005098, -0.00000019);
}

double UnbiasD4(double n) {
  if (n >= 1 && n <= 25) return entry(d4, 1, n);
  if (checked::finite(n) < 26) return 0;
  return polynomial(std::min(n, 50.0), 2.88606, 0.051313, -0.00049243, 0.00000188);
}

double UnbiasD2Star(double n) { return entry(d2Star, 2, std::min(checked::finite(n), 10.0)); }

}  // namespace zelkova
