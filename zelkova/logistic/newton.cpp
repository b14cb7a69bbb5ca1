#include "zelkova/logistic/newton.h"

#include <algorithm>

#include "zelkova/kit/matrixSet.h"
#include "zelkova/kit/modzMatrixOps.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

void addProducts(const CovariatePatterns& patterns, const Block& block, std::span<const double> weights,
                 std::size_t fromColumn, std::size_t row, std::size_t column, DoubleArray& information) {
  Lane weighted;
  const std::size_t size = patterns.predictors() + 1 - fromColumn;
  for (std::size_t i = 0; i < size; ++i) {
    const std::span<const double> left = patterns.column(fromColumn + i, block);
    for (std::size_t k = 0; k < block.count; ++k) weighted[k] = weights[k] * left[k];
    for (std::size_t j = 0; j <= i; ++j) {
      const double sum = laneProduct(patterns.column(fromColumn + j, block), weighted);
      information(static_cast<Index>(row + i + 1), static_cast<Index>(column + j + 1)) += sum;
      if (row != column && i != j) {
        information(static_cast<Index>(row + j + 1), static_cast<Index>(column + i + 1)) += sum;
      }
    }
  }
}

Information::Information(const DoubleArray& information) : scaled_(information) {
  constexpr double lost = 1E-13;
  const Index n = information.rows();
  for (Index i = 1; i <= n; ++i) {
    if (!(information(i, i) > 0)) matrix::raise(MatrixFailure::Singular);
    scales_.push_back(1 / std::sqrt(information(i, i)));
  }
  for (Index j = 1; j <= n; ++j) {
    for (Index i = j; i <= n; ++i) {
      const double value = information(i, j) * scales_[static_cast<std::size_t>(i - 1)] *
                           scales_[static_cast<std::size_t>(j - 1)];
      scaled_(i, j) = scaled_(j, i) = value;
    }
  }

  // Cholesky, column by column of the lower triangle.
  factor_ = scaled_;
  const auto size = static_cast<std::size_t>(n);
  for (std::size_t k = 0; k < size; ++k) {
    const std::span<double> source = factor_.column(static_cast<Index>(k + 1));
    if (!(source[k] > lost)) matrix::raise(MatrixFailure::Singular);
    const double root = std::sqrt(source[k]);
    for (std::size_t i = k; i < size; ++i) source[i] /= root;
    for (std::size_t j = k + 1; j < size; ++j) {
      const std::span<double> target = factor_.column(static_cast<Index>(j + 1));
      const double multiple = source[j];
      for (std::size_t i = j; i < size; ++i) target[i] -= multiple * source[i];
    }
  }
}

std::vector<double> Information::solve(std::vector<double> score) const {
  const std::size_t n = score.size();
  for (std::size_t k = 0; k < n; ++k) score[k] *= scales_[k];
  for (std::size_t k = 0; k < n; ++k) {
    const std::span<const double> source = factor_.column(static_cast<Index>(k + 1));
    score[k] /= source[k];
    for (std::size_t i = k + 1; i < n; ++i) score[i] -= source[i] * score[k];
  }
  for (std::size_t k = n; k-- > 0;) {
    const std::span<const double> source = factor_.column(static_cast<Index>(k + 1));
    for (std::size_t i = k + 1; i < n; ++i) score[k] -= source[i] * score[i];
    score[k] /= source[k];
  }
  for (std::size_t k = 0; k < n; ++k) score[k] *= scales_[k];
  return score;
}

DoubleArray Information::inverse() const {
  const Index n = scaled_.rows();
  VariantArray scaled(n, n, Variant());
  std::copy(scaled_.elements().begin(), scaled_.elements().end(), scaled.elements().begin());
  const VariantArray inverted = MatInverseV(scaled);
  DoubleArray result(n, n, 0.0);
  for (Index j = 1; j <= n; ++j) {
    for (Index i = 1; i <= n; ++i) {
      result(i, j) = inverted(i, j).toNumber() * scales_[static_cast<std::size_t>(i - 1)] *
                     scales_[static_cast<std::size_t>(j - 1)];
    }
  }
  return result;
}

namespace newton {

void refusePerfectSeparation(double logLikelihood) {
  constexpr double highestUnseparated = -0.69;
  if (logLikelihood > highestUnseparated) matrix::raise(MatrixFailure::Singular);
}

std::vector<double> along(std::vector<double> b, const std::vector<double>& step, double length) {
  for (std::size_t i = 0; i < b.size(); ++i) b[i] += length * step[i];
  return b;
}

}  // namespace newton

}  // namespace zelkova
