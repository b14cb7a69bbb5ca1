#include "zelkova/logistic/CovariatePatterns.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/matrixSet.h"
#include "zelkova/kit/sums.h"

namespace zelkova {

namespace {

void refuseEmpty(const Variant& value, const char* name) {
  if (value.isNothing()) raise(FailureNumber::TypeMismatch, std::string(name) + " has an empty cell");
}

/// Keeps the elements at ascending `places`.
void keep(const std::vector<Index>& places, std::vector<double>& values) {
  for (std::size_t i = 0; i < places.size(); ++i) values[i] = values[static_cast<std::size_t>(places[i])];
  values.resize(places.size());
}

struct Scaling {
  double centre, unit;
};

/// The mean to whole units, and the power of two at or below the standard deviation.
Scaling scalingOf(std::span<const double> values) {
  const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
  const double base = *lowest;
  const double range = checked::finite(*highest - base);
  if (range == 0) matrix::raise(MatrixFailure::Singular);
  const auto n = static_cast<double>(values.size());
  const auto share = [base, range](double value) { return (value - base) / range; };
  const double mean = laneSum(values, share) / n;
  const double square = laneSum(values, [&](double value) { return share(value) * share(value); }) / n;
  const double sd = range * checked::root(square - mean * mean);
  const double unit = std::ldexp(1.0, std::ilogb(sd));
  return {checked::finite(roundHalfEven((base + range * mean) / unit) * unit), unit};
}

/// The order of rows by their code, rows of one code as they come, and where each code begins.
struct Grouping {
  std::vector<std::size_t> rows;
  std::vector<std::size_t> starts;
};

Grouping grouped(const std::vector<std::size_t>& rows, const std::vector<Index>& codes, std::size_t count) {
  Grouping result;
  result.starts.resize(count + 1);
  for (const Index code : codes) ++result.starts[static_cast<std::size_t>(code) + 1];
  std::partial_sum(result.starts.begin(), result.starts.end(), result.starts.begin());
  std::vector<std::size_t> next(result.starts.begin(), result.starts.end() - 1);
  result.rows.resize(rows.size());
  for (const std::size_t row : rows) result.rows[next[static_cast<std::size_t>(codes[row])]++] = row;
  return result;
}

}  // namespace

std::span<const Variant> responseOf(const VariantArray& Y) {
  const Index rows = Y.rows();
  if (Y.dimensions() == 2 && Y.columns() != 1) raise(FailureNumber::InvalidCall, "Y must have one column");
  for (const Variant& value : Y.elements()) refuseEmpty(value, "Y");
  return Y.elements().first(static_cast<std::size_t>(rows));
}

std::vector<double> numbersOf(std::span<const Variant> values, const char* name) {
  std::vector<double> numbers;
  numbers.reserve(values.size());
  for (const Variant& value : values) {
    refuseEmpty(value, name);
    numbers.push_back(checked::finite(value.toNumber()));
  }
  return numbers;
}

void checkCoefficients(double count) {
  constexpr double most = 1000;
  if (count > most) raise(FailureNumber::InvalidCall, "the model has more than 1000 coefficients");
}

CovariatePatterns::CovariatePatterns(const VariantArray& x, std::size_t n) {
  const auto predictorCount = static_cast<std::size_t>(x.columns());
  if (static_cast<std::size_t>(x.rows()) != n) {
    raise(FailureNumber::OutOfRange, "x must have a row for each element of Y");
  }
  checkCoefficients(static_cast<double>(predictorCount) + 1);

  std::vector<std::vector<double>> data;
  std::vector<std::span<const double>> views;
  data.reserve(predictorCount);
  for (Index j = 1; j <= x.columns(); ++j) views.emplace_back(data.emplace_back(numbersOf(x.column(j), "x")));
  Levels rows(views);
  const std::vector<Index>& firsts = rows.firsts();
  const std::size_t count = firsts.size();

  columns_.emplace_back(count, 1.0);
  for (std::vector<double>& column : data) {
    if (count < n) keep(firsts, column);
    const Scaling scaling = scalingOf(column);
    for (double& value : column) value = (value - scaling.centre) / scaling.unit;
    checked::allFinite(column);
    columns_.push_back(std::move(column));
    centres_.push_back(scaling.centre);
    scales_.push_back(scaling.unit);
  }
  codes_ = rows.codes();
}

LevelCounts::LevelCounts(const CovariatePatterns& patterns, const std::vector<Index>& levels,
                         std::size_t levelCount)
    : rows_(patterns.count()), totals_(levelCount), all_(static_cast<double>(levels.size())) {
  std::vector<std::size_t> order(levels.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const Grouping grouping =
      grouped(grouped(order, levels, levelCount).rows, patterns.codes(), patterns.count());
  for (std::size_t g = 0; g < patterns.count(); ++g) {
    starts_.push_back(cells_.size());
    for (std::size_t i = grouping.starts[g]; i < grouping.starts[g + 1]; ++i) {
      const auto level = static_cast<std::size_t>(levels[grouping.rows[i]]);
      if (cells_.size() == starts_.back() || cells_.back().level != level) cells_.push_back({level, 0});
      ++cells_.back().count;
      ++rows_[g];
      ++totals_[level];
    }
  }
  starts_.push_back(cells_.size());
}

}  // namespace zelkova
