#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/hypothesis/ranking.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/kit/summary.h"

namespace zelkova {

namespace {

/// For each of the `labels`, its place among the `sorted` ones, from 0.
std::vector<Index> placesIn(const StringArray& sorted, const StringArray& labels) {
  std::unordered_map<std::string_view, Index> placeOf;
  for (const std::string& label : sorted.vector()) placeOf.emplace(label, static_cast<Index>(placeOf.size()));
  std::vector<Index> places;
  places.reserve(labels.vector().size());
  for (const std::string& label : labels.vector()) places.push_back(placeOf.at(label));
  return places;
}

/// The responses as a table, treatments down in the order of `category` and blocks across.
struct Layout {
  StringArray category;
  DoubleArray responses;
};

/// Nothing where a treatment has not exactly one response in every block.
std::optional<Layout> layOut(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2) {
  const std::span<const double> responses = dy.vector();
  const Levels treatments(dx1.vector());
  const Levels blocks(dx2.vector());
  const Index n = dy.rows();
  if (dx1.rows() < n || dx2.rows() < n) {
    raise(FailureNumber::OutOfRange, "there are fewer labels than values");
  }
  if (treatments.count() * blocks.count() != n) return std::nullopt;

  const StringArray asTheyCame = treatments.distinct(dx1);
  StringArray category = asTheyCame;
  ExchangeSortS(category);
  const std::vector<Index> places = placesIn(category, asTheyCame);
  DoubleArray table(treatments.count(), blocks.count(), 0.0);
  std::vector<bool> taken(responses.size());
  for (std::size_t i = 0; i < responses.size(); ++i) {
    const Index place = places[static_cast<std::size_t>(treatments.codes()[i])];
    const auto cell = static_cast<std::size_t>(blocks.codes()[i] * treatments.count() + place);
    if (taken[cell]) return std::nullopt;
    taken[cell] = true;
    table.elements()[cell] = checked::finite(responses[i]);
  }
  return Layout{std::move(category), std::move(table)};
}

/// What the blocks of a layout tell together.
struct BlockRanks {
  std::vector<double> rankSums;
  double tieCube = 0;
  DoubleArray blockMedians;
  /// Each response less its block's median: blocks down, treatments across.
  DoubleArray aligned;
};

BlockRanks rankBlocks(const DoubleArray& table) {
  const Index t = table.rows();
  const Index b = table.columns();
  BlockRanks result{std::vector<double>(static_cast<std::size_t>(t)), 0, DoubleArray(b),
                    DoubleArray(b, t, 0.0)};
  std::vector<order::Row> rows(static_cast<std::size_t>(t));
  double* const aligned = result.aligned.elements().data();
  for (Index block = 1; block <= b; ++block) {
    const std::span<const double> responses = table.column(block);
    for (std::size_t j = 0; j < rows.size(); ++j) {
      rows[j] = {order::keyOf(responses[j]), static_cast<Index>(j)};
    }
    std::sort(rows.begin(), rows.end(),
              [](const order::Row& a, const order::Row& c) { return a.key < c.key; });
    result.tieCube += order::addRanks(rows, result.rankSums);
    const double median = ranking::median(rows);
    result.blockMedians(block) = median;
    for (Index j = 0; j < t; ++j) {
      aligned[j * b + block - 1] = responses[static_cast<std::size_t>(j)] - median;
    }
  }
  return result;
}

/// Friedman's S from the sums of ranks over b blocks. About their mean, so that the digits of a small S do
/// not cancel.
double friedmanS(const std::vector<double>& rankSums, double b) {
  const auto t = static_cast<double>(rankSums.size());
  double squares = 0;
  for (const double sum : rankSums) {
    const double deviation = sum - b * (t + 1) / 2;
    squares += deviation * deviation;
  }
  return 12 * squares / (b * t * (t + 1));
}

}  // namespace

void yHTest::FriedmanOutput(const DoubleArray& dy, const StringArray& dx1, const StringArray& dx2,
                            DoubleArray& FriedmanValue_I, DoubleArray& FriedmanValue,
                            StringArray& Category) const {
  DoubleArray result(Friedman::size, NoValue);
  std::optional<Layout> layout = layOut(dy, dx1, dx2);
  if (!layout) {
    FriedmanValue = std::move(result);
    return;
  }
  BlockRanks ranks = rankBlocks(layout->responses);
  const auto t = static_cast<double>(ranks.aligned.columns());
  const auto b = static_cast<double>(ranks.aligned.rows());
  if (t == 1) raise(FailureNumber::HostRefused, "ChiDist: dx1 has only one label");
  const double df = t - 1;
  result(Friedman::S) = friedmanS(ranks.rankSums, b);
  result(Friedman::DF) = df;
  result(Friedman::PValue) = worksheetFunction().ChiDist(result(Friedman::S), df);
  const double mostTies = b * (t * t * t - t);
  if (ranks.tieCube != mostTies) {
    result(Friedman::STies) = checked::quotient(result(Friedman::S), 1 - ranks.tieCube / mostTies);
    result(Friedman::PValueTies) = worksheetFunction().ChiDist(result(Friedman::STies), df);
  }
  const double grandMedian = summary::selectMedian(ranks.blockMedians.vector());
  result(Friedman::GrandMedian) = grandMedian;
  result(Friedman::Blocks) = b;

  DoubleArray table(ranks.aligned.columns(), FriedmanTreatment::size, 0.0);
  for (Index j = 1; j <= table.rows(); ++j) {
    table(j, FriedmanTreatment::Blocks) = b;
    table(j, FriedmanTreatment::EstimatedMedian) =
        summary::selectMedian(ranks.aligned.column(j)) + grandMedian;
    table(j, FriedmanTreatment::RankSum) = ranks.rankSums[static_cast<std::size_t>(j - 1)];
  }
  checked::leaving(table, result);
  FriedmanValue_I = std::move(table);
  FriedmanValue = std::move(result);
  Category = std::move(layout->category);
}

}  // namespace zelkova
