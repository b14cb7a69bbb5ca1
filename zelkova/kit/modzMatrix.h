#pragma once

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The failures of the matrix kit, both sets alike.
enum class MatrixFailure : int {
  NotConformable = 5009,  ///< a product's inner dimensions differ
  DeterminantNotSquare = 5011,
  Singular = 5012,  ///< the determinant is exactly 0
  InverseNotSquare = 5014,
  Unusable = 5022,  ///< a matrix that was never filled, or any other fault at work
};

// Dense matrix operations on tables. All leave their arguments unchanged.

/// A times B. Failures: 5009 unless A has as many columns as B has rows, 5022 for any other fault.
DoubleArray MatMultiply(const DoubleArray& a, const DoubleArray& b);

/// The transpose. Failure 5022 where `a` is not a table.
DoubleArray MatTranspose(const DoubleArray& a);

/// The inverse by Gauss-Jordan elimination without row exchange. Deliberate: a pivot below 1E-10 is repaired
/// by adding a row, which keeps the rows in order. Failures: 5014 for a table that is not square, 5012 for a
/// determinant of exactly 0, 5022 for any other fault. A nearly singular matrix has what accuracy it has.
DoubleArray MatInverse(const DoubleArray& a);

/// The determinant by elimination with column exchange. Deliberate: a product above 1E+99 is returned as it
/// stands before the next pivot. Failures: 5011 for a table that is not square, 5022 for any other fault.
double MatDeterminant(const DoubleArray& a);

}  // namespace zelkova
