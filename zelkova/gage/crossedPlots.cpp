#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/gage/yGage.h"
#include "zelkova/kit/SortedLevels.h"
#include "zelkova/kit/groups.h"
#include "zelkova/kit/order.h"

namespace zelkova {

namespace {

/// For each row the middle of its label's share of an axis from 0 to 1.
DoubleArray positions(const SortedLevels<std::string>& labels) {
  DoubleArray result(static_cast<Index>(labels.codes.size()));
  for (Index i = 1; i <= result.rows(); ++i) {
    const auto place = static_cast<double>(labels.codes[static_cast<std::size_t>(i - 1)] + 1);
    result(i) = (place - 0.5) / static_cast<double>(labels.count());
  }
  return result;
}

/// The mean at each label; no value where there is nothing to compare it with.
DoubleArray means(std::span<const double> readings, const SortedLevels<std::string>& labels) {
  DoubleArray result(labels.count(), NoValue);
  if (labels.count() < 2) return result;
  Index k = 0;
  for (const GroupSummary& group : summariesOf(readings, labels.codes, labels.count())) {
    result(++k) = group.mean();
  }
  return result;
}

/// The rows operator by operator, and part by part within each.
std::vector<order::Row> cellByCell(const SortedLevels<std::string>& parts,
                                   const SortedLevels<std::string>& operators) {
  std::vector<order::Row> rows;
  rows.reserve(parts.codes.size());
  for (std::size_t i = 0; i < parts.codes.size(); ++i) {
    const Index cell = operators.codes[i] * parts.count() + parts.codes[i];
    rows.push_back({static_cast<order::Key>(cell), static_cast<Index>(i)});
  }
  order::stableSort(rows);
  return rows;
}

template <class T>
Array<T> inOrder(std::span<const T> column, const std::vector<order::Row>& rows) {
  std::vector<T> result;
  result.reserve(rows.size());
  for (const order::Row& row : rows) result.push_back(column[static_cast<std::size_t>(row.place)]);
  return Array<T>(std::move(result));
}

/// The means of the cells, a row a part and a column an operator. `readings` are those of `rows`.
DoubleArray cellMeans(std::span<const double> readings, const std::vector<order::Row>& rows, Index parts,
                      Index operators) {
  constexpr Index mostCells = 100'000'000;
  if (parts > mostCells / operators) {
    raise(FailureNumber::OutOfMemory, "dpart and dop have too many labels for a table of all pairs");
  }
  DoubleArray result(parts, operators, NoValue);
  for (std::size_t first = 0; first < rows.size();) {
    std::size_t end = first + 1;
    while (end < rows.size() && rows[end].key == rows[first].key) ++end;
    result.elements()[rows[first].key] = summaryOf(readings.subspan(first, end - first)).mean();
    first = end;
  }
  return result;
}

}  // namespace

void yGage::GageCrossedPlotOutput(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop,
                                  DoubleArray& PartX, StringArray& PartMX, DoubleArray& PartMY,
                                  DoubleArray& OpX, StringArray& OpMX, DoubleArray& OpMY,
                                  DoubleArray& OpPartY, DoubleArray& newy, StringArray& newpart,
                                  StringArray& newop) const {
  const std::span<const double> readings = dy.vector();
  const std::span<const std::string> partOfRow = firstRows(dpart, dy.rows(), "dpart");
  const std::span<const std::string> operatorOfRow = firstRows(dop, dy.rows(), "dop");
  SortedLevels<std::string> parts = sortedLevels(partOfRow);
  SortedLevels<std::string> operators = sortedLevels(operatorOfRow);

  const std::vector<order::Row> rows = cellByCell(parts, operators);
  DoubleArray ordered = inOrder(readings, rows);
  DoubleArray byPart = means(readings, parts);
  DoubleArray byOperator = means(readings, operators);
  DoubleArray byCell = cellMeans(ordered.vector(), rows, parts.count(), operators.count());
  checked::leaving(ordered, byPart, byOperator, byCell);

  PartX = positions(parts);
  OpX = positions(operators);
  PartMY = std::move(byPart);
  OpMY = std::move(byOperator);
  OpPartY = std::move(byCell);
  newy = std::move(ordered);
  newpart = inOrder(partOfRow, rows);
  newop = inOrder(operatorOfRow, rows);
  PartMX = std::move(parts.values);
  OpMX = std::move(operators.values);
}

}  // namespace zelkova
