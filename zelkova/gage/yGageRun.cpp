#include "zelkova/gage/yGageRun.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/SortedLevels.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"

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

}  // namespace

void yGageRun::GageRunOutput(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop,
                             const StringArray& dtrial, const std::string& HistMean, DoubleArray& RunX,
                             DoubleArray& RunY, DoubleArray& MeanY, StringArray& PartLabel,
                             StringArray& OpLabel, std::string& ErrorCode) const {
  const Index n = dy.rows();
  const std::span<const std::string> partOfRow = firstRows(dpart, n, "dpart");
  const std::span<const std::string> operatorOfRow = firstRows(dop, n, "dop");
  const std::span<const std::string> trialOfRow = firstRows(dtrial, n, "dtrial");
  if (!IsBalanced(dy, dpart, dop, true, false)) {
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

  std::vector<Cell> cells(static_cast<std::size_t>(parts.count() * operators.count()));
  for (std::size_t i = 0; i < trialOfRow.size(); ++i) {
    Cell& cell = cells[static_cast<std::size_t>(parts.codes[i] * operators.count() + operators.codes[i])];
    cell.trials.push_back(trialOfRow[i]);
    cell.readings.push_back(dy.vector()[i]);
  }
  const Index trials = std::min(n / static_cast<Index>(cells.size()), mostTrials);

  const Index slots = parts.count() * trials;
  DoubleArray x(slots);
  DoubleArray y(slots, operators.count(), NoValue);
  for (Index part = 0; part < parts.count(); ++part) {
    for (Index trial = 1; trial <= trials; ++trial) {
      const double inPanel = static_cast<double>(trial) / static_cast<double>(trials + 1);
      x(part * trials + trial) = (static_cast<double>(part) + inPanel) / static_cast<double>(parts.count());
    }
    for (Index op = 0; op < operators.count(); ++op) {
      const DoubleArray readings =
          inOrderOfTrials(std::move(cells[static_cast<std::size_t>(part * operators.count() + op)]));
      for (Index trial = 1; trial <= trials; ++trial) y(part * trials + trial, op + 1) = readings(trial);
    }
  }
  const std::optional<double> given = numberOf(HistMean);
  DoubleArray mean(slots, given ? *given : GetMean(dy));
  checked::leaving(y, mean);

  RunX = std::move(x);
  RunY = std::move(y);
  MeanY = std::move(mean);
  PartLabel = std::move(parts.values);
  OpLabel = std::move(operators.values);
}

}  // namespace zelkova
