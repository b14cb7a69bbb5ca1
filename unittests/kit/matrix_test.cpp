#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

#include "unittests/support.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/kit/modzMatrixOps.h"

namespace zelkova {
namespace {

/// Small whole numbers and tiny ones, so that pivots vanish and need repair.
DoubleArray randomMatrix(std::mt19937& random, Index rows, Index columns) {
  constexpr double entries[] = {0, 0, 1, -1, 2, 3, 0.1, 1e-11, -7};
  DoubleArray a(rows, columns, 0.0);
  for (double& x : a.elements()) x = entries[random() % std::size(entries)];
  return a;
}

DoubleArray plainProduct(const DoubleArray& a, const DoubleArray& b) {
  DoubleArray c(a.rows(), b.columns(), 0.0);
  for (Index i = 1; i <= a.rows(); ++i) {
    for (Index j = 1; j <= b.columns(); ++j) {
      for (Index k = 1; k <= a.columns(); ++k) c(i, j) += a(i, k) * b(k, j);
    }
  }
  return c;
}

double plainDeterminant(DoubleArray a) {
  const Index n = a.rows();
  double det = 1;
  for (Index k = 1; k <= n; ++k) {
    Index l = k;
    while (l <= n && a(k, l) == 0) ++l;
    if (l > n) return 0;
    if (l > k) {
      for (Index i = 1; i <= n; ++i) std::swap(a(i, k), a(i, l));
      det = -det;
    }
    const double p = a(k, k);
    if (det > 1E+99) return det;
    det = det * p;
    for (Index i = k + 1; i <= n; ++i) {
      const double factor = a(i, k);
      for (Index j = k; j <= n; ++j) a(i, j) = a(i, j) - (a(k, j) / p) * factor;
    }
  }
  return det;
}

DoubleArray plainInverse(DoubleArray a) {
  const Index n = a.rows();
  DoubleArray b(n, n, 0.0);
  for (Index i = 1; i <= n; ++i) b(i, i) = 1;
  const auto addRow = [n](DoubleArray& m, Index from, Index to, double factor) {
    for (Index c = 1; c <= n; ++c) m(to, c) = m(to, c) - factor * m(from, c);
  };
  for (Index j = 1; j <= n; ++j) {
    for (Index i = j + 1; i <= n && std::abs(a(j, j)) < 1E-10; ++i) {
      if (std::abs(a(i, j)) < 1E-10) continue;
      addRow(a, i, j, -1);
      addRow(b, i, j, -1);
      break;
    }
    const double s = 1 / a(j, j);
    for (Index c = 1; c <= n; ++c) {
      a(j, c) *= s;
      b(j, c) *= s;
    }
    for (Index i = 1; i <= n; ++i) {
      if (i == j) continue;
      const double f = a(i, j);
      addRow(a, j, i, f);
      addRow(b, j, i, f);
    }
  }
  return b;
}

bool finite(const DoubleArray& a) {
  return std::all_of(a.elements().begin(), a.elements().end(), [](double x) { return std::isfinite(x); });
}

// Fault: arithmetic in another order than the rules give, or a pivot repaired otherwise; results must agree
// to the last bit.
TEST(Matrix, AgreesWithThePlainRules) {
  std::mt19937 random(3);
  int inverted = 0;
  for (int round = 0; round < 400; ++round) {
    const Index n = 1 + static_cast<Index>(random() % 9);
    const DoubleArray a = randomMatrix(random, n, n);
    const DoubleArray b = randomMatrix(random, n, 1 + static_cast<Index>(random() % 5));
    EXPECT_EQ(MatMultiply(a, b), plainProduct(a, b));
    const double det = plainDeterminant(a);
    EXPECT_EQ(MatDeterminant(a), det);
    const DoubleArray inverse = plainInverse(a);
    if (det == 0) {
      EXPECT_EQ(failureNumber([&] { MatInverse(a); }), 5012);
    } else if (finite(inverse)) {
      ++inverted;
      EXPECT_EQ(MatInverse(a), inverse);
    } else {
      EXPECT_EQ(failureNumber([&] { MatInverse(a); }), 5022);
    }
  }
  EXPECT_GT(inverted, 100);
}

// Fault: a wrong inverse or determinant in well-known cases. The Hilbert matrix of order 5: the last row of
// its inverse is whole, and its determinant is 1/266716800000 (Choi, Tricks or treats with the Hilbert
// matrix, 1983).
TEST(Matrix, InvertsTheHilbertMatrix) {
  DoubleArray hilbert(5, 5, 0.0);
  for (Index i = 1; i <= 5; ++i) {
    for (Index j = 1; j <= 5; ++j) hilbert(i, j) = 1.0 / static_cast<double>(i + j - 1);
  }
  EXPECT_NEAR(MatDeterminant(hilbert) * 266716800000, 1, 1e-11);
  const DoubleArray inverse = MatInverse(hilbert);
  const double lastRow[] = {630, -12600, 56700, -88200, 44100};
  for (Index j = 1; j <= 5; ++j) EXPECT_NEAR(inverse(5, j) / lastRow[j - 1], 1, 1e-10);
}

// Fault: a vanishing first pivot that stops the inverse; the early exit taken on the size without the sign,
// or not taken. Worked by hand.
TEST(Matrix, RepairsPivotsAndLeavesEarly) {
  const DoubleArray swap = DoubleArray::table({{0, 1}, {1, 0}});
  EXPECT_EQ(MatInverse(swap), swap);
  EXPECT_EQ(MatDeterminant(swap), -1);
  const auto diagonal = [](double a, double b, double c) {
    return DoubleArray::table({{a, 0, 0}, {0, b, 0}, {0, 0, c}});
  };
  EXPECT_EQ(MatDeterminant(diagonal(1e60, 1e60, 1e-60)), 1e60 * 1e60);
  EXPECT_EQ(MatDeterminant(diagonal(-1e60, 1e60, 1e-60)), -1e60 * 1e60 * 1e-60);
  EXPECT_EQ(MatTranspose(DoubleArray::table({{1, 2, 3}, {4, 5, 6}})),
            DoubleArray::table({{1, 4}, {2, 5}, {3, 6}}));
}

// Fault: a failure under another number or text than callers know.
TEST(Matrix, RaisesItsNumberedFailures) {
  const DoubleArray never;
  const DoubleArray wide = DoubleArray::table({{1, 2, 3}, {4, 5, 6}});
  const DoubleArray zero = DoubleArray::table({{0}});
  const DoubleArray huge = DoubleArray::table({{1e300, 1}, {1, 1e300}});
  const DoubleArray tiny = DoubleArray::table({{1e-320}});
  const VariantArray words = VariantArray::table({{"one"}});
  const std::string square = "Matrix should be a square matrix !";
  const std::string noProduct = "One or both of the matrices are null, this operation cannot be done !!";
  const std::string noMatrix = "In order to do this operation values must be assigned to the matrix !!";
  const std::string noFit = "Dimensions of the two matrices not suitable for multiplication !";
  const std::string singular = "Determinent equals zero, inverse can't be found !";
  const struct {
    std::function<void()> call;
    int number;
    std::string text;
  } cases[] = {
      {[&] { MatMultiply(wide, wide); }, 5009, noFit},
      {[&] { MatMultiply(never, wide); }, 5022, noProduct},
      {[&] {
         MatMultiply(wide, DoubleArray{1, 2, 3});
       },
       5022, noProduct},
      {[&] { MatMultiply(huge, huge); }, 5022, noProduct},
      {[&] { MatDeterminant(wide); }, 5011, square},
      {[&] { MatDeterminant(never); }, 5022, noMatrix},
      // The product of the first two pivots overflows before the third is found to be 0.
      {[&] {
         MatDeterminant(DoubleArray::table({{1e200, 0, 1e200}, {1e200, 0, -1}, {1e200, 0, 1}}));
       },
       5022, noMatrix},
      {[&] {
         MatDeterminant(DoubleArray::table({{-1e300, 0}, {0, 1e300}}));
       },
       5022, noMatrix},
      {[&] { MatInverse(wide); }, 5014, square},
      {[&] { MatInverse(zero); }, 5012, singular},
      {[&] { MatInverse(never); }, 5022, noMatrix},
      {[&] { MatInverse(tiny); }, 5022, noMatrix},
      {[&] { MatTranspose(never); }, 5022, noMatrix},
      {[&] { MatMultiplyV(words, words); }, 5022, noProduct},
      {[&] { MatDeterminantV(words); }, 5022, noMatrix},
      {[&] { MatInverseV(VariantArray::table({{0.0}})); }, 5012, singular},
  };
  for (const auto& [call, number, text] : cases) {
    EXPECT_EQ(failureNumber(call), number) << text;
    EXPECT_EQ(failureText(call), text);
  }
}

// Fault: a set of mixed values that differs from the plain one, or changes its argument.
TEST(Matrix, WorksOnMixedValuesAlike) {
  const VariantArray a = VariantArray::table({{2.0, "1"}, {Variant(), 4.0}});
  EXPECT_EQ(MatDeterminantV(a), 8);
  EXPECT_EQ(MatInverseV(a), VariantArray::table({{0.5, -0.125}, {0.0, 0.25}}));
  EXPECT_EQ(MatMultiplyV(a, MatInverseV(a)), VariantArray::table({{1.0, 0.0}, {0.0, 1.0}}));
  EXPECT_EQ(MatTransposeV(a)(1, 2), Variant());
  EXPECT_EQ(a(1, 2), Variant("1"));
}

}  // namespace
}  // namespace zelkova
