#include "zelkova/kit/modzMatrixOps.h"

#include "zelkova/kit/matrixSet.h"

namespace zelkova {

VariantArray MatMultiplyV(const VariantArray& a, const VariantArray& b) { return matrix::multiply(a, b); }

VariantArray MatTransposeV(const VariantArray& a) { return matrix::transpose(a); }

VariantArray MatInverseV(const VariantArray& a) { return matrix::inverseOf(a); }

double MatDeterminantV(const VariantArray& a) { return matrix::determinantOf(a); }

}  // namespace zelkova
