#include "zelkova/models/LeastSquares.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/matrixSet.h"

namespace zelkova {

namespace {

/// target(i) -= factor source(i), from `first` on.
void subtractMultiple(DoubleDouble* target, const DoubleDouble* source, DoubleDouble factor,
                      std::size_t first, std::size_t last) {
  for (std::size_t i = first; i < last; ++i) target[i] = target[i] - source[i] * factor;
}

/// `explainedShare`, and more where the elimination of many columns leaves more: on two-way layouts with an
/// empty cell up to 4E-32 times the square of their 60 to 1000 columns was measured.
double shareOfExplained(std::size_t columns) {
  const auto count = static_cast<double>(columns);
  return std::max(explainedShare, count * count * 0x1p-100);
}

}  // namespace

std::vector<std::size_t> firstPlaces(std::size_t count) {
  std::vector<std::size_t> places(count);
  std::iota(places.begin(), places.end(), std::size_t{0});
  return places;
}

LeastSquares::LeastSquares(const CrossProducts& products, std::vector<std::size_t> predictors)
    : products_(products), predictors_(std::move(predictors)), lower_(size() * size()), diagonal_(size()) {
  for (std::size_t k = 0; k < size(); ++k) {
    for (std::size_t i = k; i < size(); ++i) lower(i, k) = products(predictors_[i], predictors_[k]);
  }
  const double share = shareOfExplained(size());
  for (std::size_t k = 0; k < size(); ++k) {
    const double whole = products(predictors_[k], predictors_[k]).rounded();
    const DoubleDouble pivot = lower(k, k);
    if (pivot.rounded() <= whole * share) matrix::raise(MatrixFailure::Singular);
    diagonal_[k] = pivot;
    for (std::size_t j = k + 1; j < size(); ++j) {
      const DoubleDouble factor = lower(j, k) / pivot;
      subtractMultiple(&lower(0, j), &lower(0, k), factor, j, size());
    }
    for (std::size_t i = k + 1; i < size(); ++i) lower(i, k) = lower(i, k) / pivot;
    lower(k, k) = {1};
  }
}

LeastSquares::Projection LeastSquares::project(std::size_t response) const {
  Projection result;
  std::vector<DoubleDouble> rest(size());
  for (std::size_t k = 0; k < size(); ++k) rest[k] = products_(predictors_[k], response);
  for (std::size_t k = 0; k < size(); ++k) {
    for (std::size_t i = k + 1; i < size(); ++i) rest[i] = rest[i] - lower(i, k) * rest[k];
    result.reduced.push_back(rest[k] / diagonal_[k]);
    result.sequential.push_back(rest[k] * result.reduced.back());
    result.explained = result.explained + result.sequential.back();
  }
  const DoubleDouble& whole = products_(response, response);
  result.unexplained = whole - result.explained;
  if (result.unexplained.rounded() <= whole.rounded() * products_.noise()) result.unexplained = {};
  return result;
}

std::vector<double> LeastSquares::coefficients(const Projection& projection) const {
  std::vector<DoubleDouble> b = projection.reduced;
  for (std::size_t i = size(); i-- > 0;) {
    for (std::size_t k = i + 1; k < size(); ++k) b[i] = b[i] - lower(k, i) * b[k];
  }
  std::vector<double> result(size());
  std::transform(b.begin(), b.end(), result.begin(),
                 [](const DoubleDouble& x) { return checked::finite(x.rounded()); });
  return result;
}

std::vector<DoubleDouble> LeastSquares::inverseOfLower() const {
  std::vector<DoubleDouble> inverse(size() * size());
  for (std::size_t j = 0; j < size(); ++j) {
    DoubleDouble* const column = &inverse[j * size()];
    column[j] = {1};
    for (std::size_t k = j; k < size(); ++k) {
      for (std::size_t i = k + 1; i < size(); ++i) column[i] = column[i] - lower(i, k) * column[k];
    }
  }
  return inverse;
}

std::vector<double> LeastSquares::inverseDiagonal() const {
  const std::vector<DoubleDouble> inverse = inverseOfLower();
  std::vector<double> result;
  for (std::size_t j = 0; j < size(); ++j) {
    DoubleDouble sum;
    for (std::size_t k = j; k < size(); ++k) {
      const DoubleDouble& element = inverse[j * size() + k];
      sum = sum + element * element / diagonal_[k];
    }
    result.push_back(checked::finite(sum.rounded()));
  }
  return result;
}

std::vector<double> LeastSquares::leverages(const std::vector<Column>& columns) const {
  if (columns.size() != size()) matrix::raise(MatrixFailure::NotConformable);
  // As the sum of the squares of D^(-1/2) L^-1 x: a rounded L^-1 loses the digits of the condition of X, a
  // rounded C would lose those of its square.
  const std::vector<DoubleDouble> inverse = inverseOfLower();
  const std::size_t rows = columns.front().size();
  constexpr std::size_t blockRows = 256;
  std::vector<double> result(rows);
  std::vector<double> reduced(blockRows);
  for (std::size_t first = 0; first < rows; first += blockRows) {
    const std::size_t count = std::min(blockRows, rows - first);
    for (std::size_t k = 0; k < size(); ++k) {
      std::fill(reduced.begin(), reduced.end(), 0.0);
      const double scale = checked::quotient(1, checked::root(diagonal_[k].rounded()));
      for (std::size_t j = 0; j <= k; ++j) {
        const double factor = inverse[j * size() + k].rounded() * scale;
        const double* const x = columns[j].data() + first;
        for (std::size_t i = 0; i < count; ++i) reduced[i] += factor * x[i];
      }
      for (std::size_t i = 0; i < count; ++i) result[first + i] += reduced[i] * reduced[i];
    }
  }
  return result;
}

std::vector<std::size_t> independentPlaces(const CrossProducts& products, const std::vector<double>& limits,
                                           std::size_t fixed) {
  const std::size_t count = products.columns();
  // Column k of the lower triangle: the products of what the columns that stayed leave of the columns.
  std::vector<DoubleDouble> rest(count * count);
  for (std::size_t k = 0; k < count; ++k) {
    for (std::size_t i = k; i < count; ++i) rest[k * count + i] = products(i, k);
  }
  std::vector<std::size_t> places;
  for (std::size_t k = 0; k < count; ++k) {
    DoubleDouble* const source = &rest[k * count];
    const double noise = products(k, k).rounded() * shareOfExplained(count);
    const double unexplained = checked::finite(source[k].rounded());
    if (k < fixed && unexplained <= noise) matrix::raise(MatrixFailure::Singular);
    if (k >= fixed && unexplained <= std::max(noise, limits[k])) continue;
    places.push_back(k);
    for (std::size_t j = k + 1; j < count; ++j) {
      subtractMultiple(&rest[j * count], source, source[j] / source[k], j, count);
    }
  }
  return places;
}

}  // namespace zelkova
