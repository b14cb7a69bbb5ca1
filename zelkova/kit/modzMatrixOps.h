#pragma once

#include "zelkova/frame/Variant.h"

namespace zelkova {

// The matrix operations of modzMatrix.h on tables of mixed values, with the same failures. Each element holds
// a number, or what converts to one; results hold numbers.

VariantArray MatMultiplyV(const VariantArray& a, const VariantArray& b);
VariantArray MatTransposeV(const VariantArray& a);
VariantArray MatInverseV(const VariantArray& a);
double MatDeterminantV(const VariantArray& a);

}  // namespace zelkova
