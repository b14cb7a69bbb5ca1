#include "zelkova/models/TwoWay.h"

#include <utility>

#include "zelkova/kit/groups.h"

namespace zelkova {

namespace {

double squares(const std::vector<double>& values) {
  double sum = 0;
  for (const double x : values) sum += x * x;
  return sum;
}

}  // namespace

TwoWay analyseTwoWay(std::span<const double> values, const Levels& levels1, const Levels& levels2) {
  const auto a = static_cast<std::size_t>(levels1.count());
  const auto b = static_cast<std::size_t>(levels2.count());
  std::vector<Index> cells(values.size());
  for (std::size_t i = 0; i < cells.size(); ++i) {
    cells[i] = levels1.codes()[i] * levels2.count() + levels2.codes()[i];
  }
  const std::vector<GroupSummary> groups = summariesOf(values, cells, levels1.count() * levels2.count());

  // Cells are measured from the first of them, so that no digits go into what all have in common.
  std::vector<double> means(a * b);
  std::vector<double> means1(a, 0.0);
  std::vector<double> means2(b, 0.0);
  double mean = 0;
  double within = 0;
  for (std::size_t i = 0; i < a; ++i) {
    for (std::size_t j = 0; j < b; ++j) {
      const double cell = difference(groups[i * b + j], groups.front());
      means[i * b + j] = cell;
      means1[i] += cell;
      means2[j] += cell;
      mean += cell;
      within += groups[i * b + j].squares;
    }
  }

  mean /= static_cast<double>(a * b);

  TwoWay result;
  result.a = static_cast<double>(a);
  result.b = static_cast<double>(b);
  result.r = groups.front().n;
  result.effects1 = std::move(means1);
  result.effects2 = std::move(means2);
  for (double& effect : result.effects1) effect = effect / result.b - mean;
  for (double& effect : result.effects2) effect = effect / result.a - mean;
  for (std::size_t i = 0; i < a; ++i) {
    for (std::size_t j = 0; j < b; ++j) {
      means[i * b + j] -= mean + result.effects1[i] + result.effects2[j];
    }
  }
  result.ss1 = checked::finite(result.b * result.r * squares(result.effects1));
  result.ss2 = checked::finite(result.a * result.r * squares(result.effects2));
  result.ss12 = checked::finite(result.r * squares(means));
  result.effects12 = std::move(means);
  result.within = checked::finite(within);
  return result;
}

}  // namespace zelkova
