#include "zelkova/kit/modzMatrix.h"

#include "zelkova/kit/matrixSet.h"

namespace zelkova {

DoubleArray MatMultiply(const DoubleArray& a, const DoubleArray& b) { return matrix::multiply(a, b); }

DoubleArray MatTranspose(const DoubleArray& a) { return matrix::transpose(a); }

DoubleArray MatInverse(const DoubleArray& a) { return matrix::inverseOf(a); }

double MatDeterminant(const DoubleArray& a) { return matrix::determinantOf(a); }

}  // namespace zelkova
