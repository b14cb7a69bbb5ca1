#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {

/// Life data as the analyses take them.
struct LifeData {
  DoubleArray SA;
  DoubleArray EA;
  DoubleArray FA;
};

/// R's data set `ovarian`: days that 26 patients lived after a treatment, or were known to live.
inline LifeData ovarian() {
  return {{59,  115, 156, 421,  431,  448,  464,  475,  477, 563, 638, 744, 769,
           770, 803, 855, 1040, 1106, 1129, 1206, 1227, 268, 329, 353, 365, 377},
          {59,      115,     156,     NoValue, 431,     NoValue, 464,     475,     NoValue,
           563,     638,     NoValue, NoValue, NoValue, NoValue, NoValue, NoValue, NoValue,
           NoValue, NoValue, NoValue, 268,     329,     353,     365,     NoValue},
          DoubleArray(26, 1.0)};
}

/// A small set with all four kinds of rows and frequencies.
inline LifeData everyKind() {
  return {{5, 8, NoValue, 10, 3, 12, NoValue, 20, 7, 15},
          {5, NoValue, 4, 14, 6, 12, 9, NoValue, 7, 22},
          {2, 3, 1, 2, 1, 1, 2, 1, 1, 1}};
}

/// Life of 40 electric motors at 150, 170, 190 and 220 degrees Celsius (Schmee and Hahn, Technometrics 21,
/// 1979; R's data set `imotor`).
struct Motors {
  DoubleArray hours{8064, 8064, 8064, 8064, 8064, 8064, 8064, 8064, 8064, 8064, 1764, 2772, 3444, 3542,
                    3780, 4860, 5196, 5448, 5448, 5448, 408,  408,  1344, 1344, 1440, 1680, 1680, 1680,
                    1680, 1680, 408,  408,  504,  504,  504,  528,  528,  528,  528,  528};
  DoubleArray end = hours;
  DoubleArray temperature = DoubleArray(40);
  DoubleArray one = DoubleArray(40, 1.0);

  Motors() {
    for (Index i = 1; i <= 40; ++i) {
      temperature(i) = i <= 10 ? 150 : i <= 20 ? 170 : i <= 30 ? 190 : 220;
      if (hours(i) == 8064 || hours(i) == 5448 || hours(i) == 1680 || hours(i) == 528) end(i) = NoValue;
    }
  }
};

}  // namespace zelkova
