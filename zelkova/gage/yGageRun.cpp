#include "zelkova/gage/yGageRun.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/SortedLevels.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/kit/modzStat.h"

namespace zelkova {

namespace {

// What the panels have room for.
constexpr Index mostParts = 10;
constexpr Index mostOperators = 10;
constexpr Index mostTrials = 10;

/// The readings of one operator on one part, and their trials.
struct Cell {
  std::vector<std::string> trials;
  std::vector<double> readings;
};

/// The readings by trial.
DoubleArray inOrderOfTrials(Cell cell) {
  StringArray trials(std::move(cell.trials));
  DoubleArray readings(std::move(cell.readings));
  QuickSortSD(trials, readings);
  return readings;
}

/// The cells part by part, and operator by operator within each.
std::vector<Cell> cellsOf(std::span<const double> readings, const SortedLevels<std::string>& parts,
                          const SortedLevels<std::string>& operators, std::span<const std::string> trials) {
  std::vector<Cell> cells(static_cast<std::size_t>(parts.count() * operators.count()));
  for (std::size_t i = 0; i < readings.size(); ++i) {
    Cell& cell = cells[static_cast<std::size_t>(parts.codes[i] * operators.count() + operators.codes[i])];
    cell.trials.push_back(trials[i]);
    cell.readings.push_back(readings[i]);
  }
  return cells;
}

/// The places of the slots on an axis from 0 to 1, in equal panels, with a step of margin at the ends of
/// each.
DoubleArray positions(Index parts, Index trials) {
  DoubleArray x(parts * trials);
  for (Index part = 0; part < parts; ++part) {
    for (Index trial = 1; trial <= trials; ++trial) {
      const double inPanel = static_cast<double>(trial) / static_cast<double>(trials + 1);
      x(part * trials + trial) = (static_cast<double>(part) + inPanel) / static_cast<double>(parts);
    }
  }
  return x;
}

/// The first `trials` readings of each cell: a row a slot, a column an operator.
DoubleArray seriesOf(std::vector<Cell> cells, Index operators, Index trials) {
  const auto parts = static_cast<Index>(cells.size()) / operators;
  DoubleArray y(parts * trials, operators, 0.0);
  auto cell = cells.begin();
  for (Index part = 0; part < parts; ++part) {
    for (Index op = 1; op <= operators; ++op) {
      const DoubleArray readings = inOrderOfTrials(std::move(*cell++));
      for (Index trial = 1; trial <= trials; ++trial) y(part * trials + trial, op) = readings(trial);
    }
  }
  return y;
}

}  // namespace

void yGageRun::GageRunOutput(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop,
                             const StringArray& dtrial, const std::string& HistMean, DoubleArray& RunX,
                             DoubleArray& RunY, DoubleArray& MeanY, StringArray& PartLabel,
                             StringArray& OpLabel, std::string& ErrorCode) const {
  const Index n = dy.rows();
  const std::span<const std::string> partOfRow = firstRows(dpart, n, "dpart");
  const std::span<const std::string> operatorOfRow = firstRows(dop, n, "dop");
  const std::span<const std::string> trialOfRow = firstRows(dtrial, n, "dtrial");
  if (!isEvenlySpread(n, Levels(partOfRow), Levels(operatorOfRow), true, false)) {
    ErrorCode = "Design unbalanced";
    return;
  }
  SortedLevels<std::string> parts = sortedLevels(partOfRow);
  SortedLevels<std::string> operators = sortedLevels(operatorOfRow);
  if (parts.count() > mostParts) {
    ErrorCode = "Limited to 10 parts";
    return;
  }
  if (operators.count() > mostOperators) {
    ErrorCode = "Limited to 10 operators";
    return;
  }

  std::vector<Cell> cells = cellsOf(dy.vector(), parts, operators, trialOfRow);
  const Index trials = std::min(n / static_cast<Index>(cells.size()), mostTrials);
  DoubleArray x = positions(parts.count(), trials);
  DoubleArray y = seriesOf(std::move(cells), operators.count(), trials);
  const std::optional<double> given = numberOf(HistMean);
  DoubleArray mean(x.rows(), given ? *given : GetMean(dy));
  checked::leaving(y, mean);

  RunX = std::move(x);
  RunY = std::move(y);
  MeanY = std::move(mean);
  PartLabel = std::move(parts.values);
  OpLabel = std::move(operators.values);
}

}  // namespace zelkova
