#pragma once

#include "zelkova/frame/Array.h"

namespace zelkova {

/// 10 to a whole power, as the decimal text gives it: the same bits on every machine. Failure 6 beyond the
/// range of a double.
double powerOfTen(Index exponent);

/// `x` as its 15 digits give it: 0.3 for 0.1 + 0.1 + 0.1. Failure 6 where it is not finite.
double readable(double x);

/// Whether data between `low` and `high` agree in all the digits that an axis can show.
bool agreeOnAxis(double low, double high);

}  // namespace zelkova
