#include <algorithm>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

struct CentredTable {
  DoubleArray values;
  std::vector<double> sds;  ///< of the columns, from 0
};

CentredTable centred(const DoubleArray& table) {
  CentredTable result{DoubleArray(table.rows(), table.columns(), 0.0), {}};
  for (Index j = 1; j <= table.columns(); ++j) {
    const std::span<const double> column = table.column(j);
    const DoubleArray copy(std::vector<double>(column.begin(), column.end()));
    const double mean = GetMean(copy);
    result.sds.push_back(GetStdDev(copy));
    // A constant column is left at 0, even where its mean is off by a rounding.
    const double first = column.front();
    if (std::all_of(column.begin(), column.end(), [first](double x) { return x == first; })) continue;
    std::transform(column.begin(), column.end(), result.values.column(j).begin(),
                   [mean](double x) { return x - mean; });
  }
  return result;
}

/// The sums of products of each pair of columns i <= j, at (i, j); 0 below the diagonal.
DoubleArray sumsOfProducts(const DoubleArray& table) {
  // A stretch of rows at a time, so that the columns stay in the cache while they meet each other.
  constexpr std::size_t stretch = 512;
  const auto n = static_cast<std::size_t>(table.rows());
  const Index k = table.columns();
  DoubleArray sums(k, k, 0.0);
  for (std::size_t start = 0; start < n; start += stretch) {
    const std::size_t length = std::min(stretch, n - start);
    for (Index j = 1; j <= k; ++j) {
      const std::span<const double> b = table.column(j).subspan(start, length);
      for (Index i = 1; i <= j; ++i) {
        sums(i, j) += laneProduct(table.column(i).subspan(start, length), b);
      }
    }
  }
  return sums;
}

/// The two-sided p-value of a correlation of `n` pairs: Student's distribution of r sqrt(n - 2) / sqrt(1 -
/// r^2).
double correlationP(WorksheetFunction& host, double r, double n) {
  // deliberate: a perfect correlation has no test, and one within rounding of it counts as perfect.
  if (std::abs(roundHalfEven(r, 8)) == 1 || n <= 2) return NoValue;
  // In factors, which keep the digits where r is near 1.
  const double t = checked::quotient(checked::root(n - 2) * r, checked::root((1 - r) * (1 + r)));
  return host.TDist(std::abs(t), n - 2, 2);
}

}  // namespace

void yHTest::CorrelationOutput(const DoubleArray& dym, DoubleArray& corr, DoubleArray& Pvalue) const {
  const auto n = static_cast<double>(dym.rows());
  const Index k = dym.columns();
  const CentredTable table = centred(dym);
  const DoubleArray products = sumsOfProducts(table.values);
  DoubleArray r(k - 1, k - 1, 0.0);
  DoubleArray p(k - 1, k - 1, 0.0);
  for (Index i = 1; i < k; ++i) {
    for (Index j = i + 1; j <= k; ++j) {
      const double sd1 = table.sds[static_cast<std::size_t>(i - 1)];
      const double sd2 = table.sds[static_cast<std::size_t>(j - 1)];
      if (n == 1 || sd1 == 0 || sd2 == 0) {
        r(i, j - 1) = NoValue;
        p(i, j - 1) = NoValue;
        continue;
      }
      const double covariance = checked::finite(products(i, j)) / (n - 1);
      // Rounding must not carry a correlation beyond 1.
      r(i, j - 1) = std::clamp(checked::quotient(checked::quotient(covariance, sd1), sd2), -1.0, 1.0);
      p(i, j - 1) = correlationP(worksheetFunction(), r(i, j - 1), n);
    }
  }
  checked::leaving(r, p);
  corr = std::move(r);
  Pvalue = std::move(p);
}

void yHTest::CovarianceOutput(const DoubleArray& dym, DoubleArray& Cov) const {
  const Index n = dym.rows();
  if (n == 1) raise(FailureNumber::OutOfRange, "a covariance needs two rows or more");
  DoubleArray covariances = sumsOfProducts(centred(dym).values);
  for (double& x : covariances.elements()) x /= static_cast<double>(n - 1);
  checked::leaving(covariances);
  Cov = std::move(covariances);
}

}  // namespace zelkova
