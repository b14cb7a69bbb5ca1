#pragma once

namespace zelkova {

/// A number of about 31 digits, as the unevaluated sum of two doubles (Dekker, Numerische Mathematik 18,
/// 1971). For numbers up to 1E+300 whose products do not fall below 1E-290; the arithmetic is unchecked, and
/// beyond that range ends in a not-a-number or in the digits of a double.
struct DoubleDouble {
  double high = 0;
  double low = 0;

  double rounded() const { return high; }
};

/// a + b without error (Knuth 1969).
inline DoubleDouble twoSum(double a, double b) {
  const double sum = a + b;
  const double shareOfB = sum - a;
  return {sum, (a - (sum - shareOfB)) + (b - shareOfB)};
}

/// a + b without error where |a| >= |b| (Dekker 1971).
inline DoubleDouble quickTwoSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

/// The leading 26 bits of x, and the rest (Veltkamp 1968).
inline DoubleDouble halves(double x) {
  constexpr double splitter = 134217729;  // 2^27 + 1
  const double spread = splitter * x;
  const double high = spread - (spread - x);
  return {high, x - high};
}

/// a b without error (Dekker 1971).
inline DoubleDouble twoProduct(double a, double b) {
  const double product = a * b;
  const DoubleDouble x = halves(a);
  const DoubleDouble y = halves(b);
  return {product, ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low};
}

inline DoubleDouble operator-(DoubleDouble a) { return {-a.high, -a.low}; }

inline DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble high = twoSum(a.high, b.high);
  const DoubleDouble low = twoSum(a.low, b.low);
  const DoubleDouble joined = quickTwoSum(high.high, high.low + low.high);
  return quickTwoSum(joined.high, joined.low + low.low);
}

inline DoubleDouble operator-(DoubleDouble a, DoubleDouble b) { return a + -b; }

inline DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble product = twoProduct(a.high, b.high);
  return quickTwoSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

/// b must not be 0.
inline DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
  const double first = a.high / b.high;
  DoubleDouble rest = a - b * DoubleDouble{first};
  const double second = rest.high / b.high;
  rest = rest - b * DoubleDouble{second};
  return quickTwoSum(first, second) + DoubleDouble{rest.high / b.high};
}

}  // namespace zelkova
