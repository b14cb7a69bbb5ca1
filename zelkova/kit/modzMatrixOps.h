#pragma once

#include "zelkova/frame/Variant.h"

namespace zelkova {

// The matrix operations of modzMatrix.h on tables of mixed values. Each element holds a number, or what
// converts to one; results hold numbers.

/// As `MatMultiply`, and the same failures.
VariantArray MatMultiplyV(const VariantArray& a, const VariantArray& b);
/// As `MatTranspose`.
VariantArray MatTransposeV(const VariantArray& a);
/// As `MatInverse`.
VariantArray MatInverseV(const VariantArray& a);
/// As `MatDeterminant`.
double MatDeterminantV(const VariantArray& a);

}  // namespace zelkova
