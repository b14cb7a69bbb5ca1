#include "zelkova/kit/matrixSet.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "zelkova/frame/arithmetic.h"

namespace zelkova::matrix {

namespace {

/// The elements of a table for the inner loops: columns of `rows` elements, counted from 0.
template <class T>
struct Columns {
  explicit Columns(Array<std::remove_const_t<T>>& table)
      : first(table.elements().data()), rows(static_cast<std::size_t>(table.rows())) {}
  explicit Columns(const Array<std::remove_const_t<T>>& table)
      : first(table.elements().data()), rows(static_cast<std::size_t>(table.rows())) {}

  T* operator[](std::size_t column) const { return first + column * rows; }

  T* first;
  std::size_t rows;
};

/// target(i) -= factor source(i).
void subtract(double* target, const double* source, double factor, std::size_t first, std::size_t last) {
  for (std::size_t i = first; i < last; ++i) target[i] -= factor * source[i];
}

}  // namespace

DoubleArray product(const DoubleArray& a, const DoubleArray& b) {
  const auto rows = static_cast<std::size_t>(a.rows());
  const auto inner = static_cast<std::size_t>(a.columns());
  DoubleArray result(a.rows(), b.columns(), 0.0);
  const Columns<const double> left(a);
  const Columns<const double> right(b);
  const Columns<double> sums(result);
  for (std::size_t j = 0; j < static_cast<std::size_t>(b.columns()); ++j) {
    double* sum = sums[j];
    const double* factors = right[j];
    std::size_t k = 0;
    for (; k + 4 <= inner; k += 4) {
      // Four terms for each pass over the sums, added in order.
      const double* a0 = left[k];
      const double* a1 = left[k + 1];
      const double* a2 = left[k + 2];
      const double* a3 = left[k + 3];
      const double b0 = factors[k];
      const double b1 = factors[k + 1];
      const double b2 = factors[k + 2];
      const double b3 = factors[k + 3];
      for (std::size_t i = 0; i < rows; ++i) {
        sum[i] = (((sum[i] + a0[i] * b0) + a1[i] * b1) + a2[i] * b2) + a3[i] * b3;
      }
    }
    for (; k < inner; ++k) {
      for (std::size_t i = 0; i < rows; ++i) sum[i] += left[k][i] * factors[k];
    }
  }
  checked::leaving(result);
  return result;
}

double determinant(DoubleArray work) {
  constexpr double largeEnough = 1E+99;
  const Columns<double> columns(work);
  const std::size_t n = columns.rows;
  std::vector<double> factors(n);
  double det = 1;
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t pivotColumn = k;
    while (pivotColumn < n && columns[pivotColumn][k] == 0) ++pivotColumn;
    if (pivotColumn == n) {
      checked::leaving(work);
      checked::finite(det);
      return 0;
    }
    if (pivotColumn != k) {
      std::swap_ranges(columns[k], columns[k] + n, columns[pivotColumn]);
      det = -det;
    }
    const double pivot = columns[k][k];
    if (det > largeEnough) break;
    det *= pivot;
    std::copy(columns[k] + k + 1, columns[k] + n, factors.data() + k + 1);
    for (std::size_t j = k; j < n; ++j) {
      subtract(columns[j], factors.data(), columns[j][k] / pivot, k + 1, n);
    }
  }
  // An overflow on the way is still in the working copy, even where the early exit has left it behind.
  checked::leaving(work);
  return checked::finite(det);
}

DoubleArray inverse(DoubleArray work) {
  constexpr double smallestPivot = 1E-10;
  const Columns<double> left(work);
  const std::size_t n = left.rows;
  DoubleArray result(work.rows(), work.rows(), 0.0);
  for (Index i = 1; i <= work.rows(); ++i) result(i, i) = 1;
  const Columns<double> right(result);

  std::vector<double> factors(n);
  for (std::size_t j = 0; j < n; ++j) {
    // The columns of the working copy before j are not read again, so no row operation carries them along.
    if (std::abs(left[j][j]) < smallestPivot) {
      std::size_t i = j + 1;
      while (i < n && std::abs(left[j][i]) < smallestPivot) ++i;
      if (i < n) {
        for (std::size_t c = j; c < n; ++c) left[c][j] += left[c][i];
        for (std::size_t c = 0; c < n; ++c) right[c][j] += right[c][i];
      }
    }
    const double s = checked::quotient(1, left[j][j]);
    std::transform(left[j], left[j] + n, factors.begin(), checked::finite);
    const auto clear = [&](double* column) {
      const double pivotRow = column[j] * s;
      column[j] = pivotRow;
      if (pivotRow == 0) return;
      subtract(column, factors.data(), pivotRow, 0, j);
      subtract(column, factors.data(), pivotRow, j + 1, n);
    };
    for (std::size_t c = j + 1; c < n; ++c) clear(left[c]);
    for (std::size_t c = 0; c < n; ++c) clear(right[c]);
  }
  checked::leaving(result);
  return result;
}

void raise(MatrixFailure failure) {
  const auto text = [failure] {
    switch (failure) {
      case MatrixFailure::NotConformable:
        return "Dimensions of the two matrices not suitable for multiplication !";
      case MatrixFailure::DeterminantNotSquare:
      case MatrixFailure::InverseNotSquare:
        return "Matrix should be a square matrix !";
      case MatrixFailure::Singular:
        // Deliberate spelling: callers know the failure by this text.
        return "Determinent equals zero, inverse can't be found !";
      case MatrixFailure::Unusable:
        break;
    }
    return "In order to do this operation values must be assigned to the matrix !!";
  };
  throw Failure(static_cast<int>(failure), text());
}

void raiseUnusableFactors() {
  throw Failure(static_cast<int>(MatrixFailure::Unusable),
                "One or both of the matrices are null, this operation cannot be done !!");
}

void raiseUnusableMatrix() { raise(MatrixFailure::Unusable); }

DoubleArray numbersOf(const VariantArray& a) {
  DoubleArray numbers(a.rows(), a.columns(), 0.0);
  std::transform(a.elements().begin(), a.elements().end(), numbers.elements().begin(),
                 [](const Variant& value) { return value.toNumber(); });
  return numbers;
}

}  // namespace zelkova::matrix
