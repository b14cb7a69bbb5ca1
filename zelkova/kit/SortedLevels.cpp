#include "zelkova/kit/SortedLevels.h"

#include <utility>

#include "zelkova/kit/Levels.h"
#include "zelkova/kit/modzSort.h"

namespace zelkova {

namespace {

template <class T, class Sort>
SortedLevels<T> inOrder(std::span<const T> column, Sort sort) {
  const Levels levels(column);
  std::vector<T> distinct;
  distinct.reserve(levels.firsts().size());
  for (const Index first : levels.firsts()) distinct.push_back(column[static_cast<std::size_t>(first)]);
  Array<T> sorted(distinct);
  if (sorted.filled()) sort(sorted);

  // The sorted values, followed by the same as they came: the codes of the latter are places in the order.
  distinct.insert(distinct.begin(), sorted.elements().begin(), sorted.elements().end());
  const Levels places{std::span<const T>(distinct)};
  std::vector<Index> codes = levels.codes();
  for (Index& code : codes) code = places.codes()[static_cast<std::size_t>(levels.count() + code)];
  return {std::move(sorted), std::move(codes)};
}

}  // namespace

SortedLevels<double> sortedLevels(std::span<const double> column) {
  return inOrder(column, [](DoubleArray& values) { ExchangeSortD(values); });
}

SortedLevels<std::string> sortedLevels(std::span<const std::string> column) {
  return inOrder(column, [](StringArray& labels) { ExchangeSortS(labels); });
}

}  // namespace zelkova
