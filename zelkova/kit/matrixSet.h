#pragma once

#include <algorithm>
#include <utility>

#include "zelkova/frame/Variant.h"
#include "zelkova/kit/modzMatrix.h"

/// The one template behind both sets of matrix routines; `T` is what a matrix holds.
namespace zelkova::matrix {

// The bare operations, on tables whose sizes fit. They fail where a number does not stay finite.
DoubleArray product(const DoubleArray& a, const DoubleArray& b);
double determinant(DoubleArray work);
DoubleArray inverse(DoubleArray work);

[[noreturn]] void raise(MatrixFailure failure);

/// Failure 5022 with the product's text, or with the text of the routines of one matrix.
[[noreturn]] void raiseUnusableFactors();
[[noreturn]] void raiseUnusableMatrix();

inline const DoubleArray& numbersOf(const DoubleArray& a) { return a; }
DoubleArray numbersOf(const VariantArray& a);

template <class T>
Array<T> holding(DoubleArray numbers) {
  if constexpr (std::is_same_v<T, double>) {
    return numbers;
  } else {
    Array<T> result(numbers.rows(), numbers.columns(), T());
    std::copy(numbers.elements().begin(), numbers.elements().end(), result.elements().begin());
    return result;
  }
}

/// Runs `work`. The failures `passing` leave as they are, any other as `unusable` raises it.
template <class Work>
auto guarded(std::initializer_list<MatrixFailure> passing, void (*unusable)(), Work work) {
  try {
    return work();
  } catch (const Failure& failure) {
    const auto passes = [&](MatrixFailure pass) { return failure.number() == static_cast<int>(pass); };
    if (std::none_of(passing.begin(), passing.end(), passes)) unusable();
    throw;
  }
}

template <class T>
Array<T> multiply(const Array<T>& a, const Array<T>& b) {
  return guarded({MatrixFailure::NotConformable}, raiseUnusableFactors, [&] {
    if (a.columns() != b.rows()) raise(MatrixFailure::NotConformable);
    if (b.dimensions() != 2) zelkova::raise(FailureNumber::OutOfRange);
    return holding<T>(product(numbersOf(a), numbersOf(b)));
  });
}

template <class T>
Array<T> transpose(const Array<T>& a) {
  return guarded({}, raiseUnusableMatrix, [&] {
    Array<T> result(a.columns(), a.rows(), T());
    for (Index i = 1; i <= a.rows(); ++i) {
      const std::span<T> column = result.column(i);
      for (Index j = 1; j <= a.columns(); ++j) column[static_cast<std::size_t>(j - 1)] = a(i, j);
    }
    return result;
  });
}

template <class T>
double determinantOf(const Array<T>& a) {
  return guarded({MatrixFailure::DeterminantNotSquare}, raiseUnusableMatrix, [&] {
    if (a.rows() != a.columns()) raise(MatrixFailure::DeterminantNotSquare);
    return determinant(numbersOf(a));
  });
}

template <class T>
Array<T> inverseOf(const Array<T>& a) {
  return guarded({MatrixFailure::Singular, MatrixFailure::InverseNotSquare}, raiseUnusableMatrix, [&] {
    if (a.rows() != a.columns()) raise(MatrixFailure::InverseNotSquare);
    const DoubleArray& numbers = numbersOf(a);
    if (determinant(numbers) == 0) raise(MatrixFailure::Singular);
    return holding<T>(inverse(numbers));
  });
}

}  // namespace zelkova::matrix
