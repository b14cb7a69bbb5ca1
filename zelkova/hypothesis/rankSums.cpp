#include <array>
#include <cmath>
#include <utility>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/hypothesis/ranking.h"
#include "zelkova/hypothesis/yHTest.h"
#include "zelkova/kit/groups.h"
#include "zelkova/kit/pairs.h"
#include "zelkova/kit/summary.h"

namespace zelkova {

void yHTest::TwoMannWOutput(const DoubleArray& dy1, const DoubleArray& dy2, const std::string& TestType,
                            DoubleArray& TwoMannWValue) const {
  const ranking::PooledGroups samples(std::array{dy1, dy2});
  const std::span<const double> one = samples.sorted(0);
  const std::span<const double> two = samples.sorted(1);
  std::vector<double> rankSums(2);
  const double tieCube = order::addRanks(samples.pooled(), rankSums);

  const auto n1 = static_cast<double>(one.size());
  const auto n2 = static_cast<double>(two.size());
  const double N = n1 + n2;
  const double w = rankSums[0];
  const double deviation = w - n1 * (N + 1) / 2;
  const double sd = std::sqrt(n1 * n2 * (N + 1) / 12);
  // deliberate: the tie term is divided by N(N + 1), which makes p a little larger than N(N - 1) would.
  const double sdTies = checked::root(n1 * n2 / 12 * ((N + 1) - tieCube / ((N + 1) * N)));

  // deliberate: the estimate is for samples that a person looks at; in large ones the medians tell the same.
  constexpr double mostPairs = 100000;

  DoubleArray result(TwoMannW::size);
  result(TwoMannW::N1) = n1;
  result(TwoMannW::N2) = n2;
  result(TwoMannW::Median1) = summary::median(one);
  result(TwoMannW::Median2) = summary::median(two);
  result(TwoMannW::EstimatedDifference) = n1 * n2 < mostPairs ? pairs::medianDifference(one, two) : NoValue;
  result(TwoMannW::W) = w;
  result(TwoMannW::PValue) = ranking::normalTail(worksheetFunction(), TestType, deviation, sd);
  result(TwoMannW::PValueTies) = ranking::normalTail(worksheetFunction(), TestType, deviation, sdTies);
  checked::leaving(result);
  TwoMannWValue = std::move(result);
}

void yHTest::KruskalWOutput(const DoubleArray& dy, const StringArray& dx, DoubleArray& KruskalWValue_I,
                            DoubleArray& KruskalWValue, StringArray& Category) const {
  Groups split = splitByLabel(dy, dx);
  const ranking::PooledGroups groups(split.values);
  if (groups.count() == 1) raise(FailureNumber::DivisionByZero, "dx has only one label");
  std::vector<double> rankSums(static_cast<std::size_t>(groups.count()));
  const double tieCube = order::addRanks(groups.pooled(), rankSums);
  const auto N = static_cast<double>(groups.pooled().size());
  const double overallMeanRank = (N + 1) / 2;

  DoubleArray table(groups.count(), KruskalWGroup::size, NoValue);
  double squares = 0;
  for (Index g = 1; g <= groups.count(); ++g) {
    const std::span<const double> sorted = groups.sorted(g - 1);
    const auto n = static_cast<double>(sorted.size());
    const double rankSum = rankSums[static_cast<std::size_t>(g - 1)];
    // Sums of ranks are exact, so a small deviation keeps all its digits where mean ranks would not.
    const double deviation = (rankSum - n * overallMeanRank) / n;
    squares += n * deviation * deviation;
    table(g, KruskalWGroup::N) = n;
    table(g, KruskalWGroup::Median) = summary::median(sorted);
    table(g, KruskalWGroup::MeanRank) = rankSum / n;
    table(g, KruskalWGroup::Z) = checked::quotient(deviation, std::sqrt((N + 1) * (N / n - 1) / 12));
  }

  const double H = 12 * squares / (N * (N + 1));
  const auto df = static_cast<double>(groups.count() - 1);
  const double mostTies = N * N * N - N;
  double HTies = NoValue;
  double pTies = NoValue;
  if (tieCube != mostTies) {
    HTies = checked::quotient(H, 1 - tieCube / mostTies);
    pTies = worksheetFunction().ChiDist(HTies, df);
  }

  DoubleArray result(KruskalW::size);
  result(KruskalW::N) = N;
  result(KruskalW::Median) = ranking::median(groups.pooled());
  result(KruskalW::MeanRank) = overallMeanRank;
  result(KruskalW::H) = H;
  result(KruskalW::DF) = df;
  result(KruskalW::PValue) = worksheetFunction().ChiDist(H, df);
  result(KruskalW::HTies) = HTies;
  result(KruskalW::PValueTies) = pTies;
  checked::leaving(table, result);
  KruskalWValue_I = std::move(table);
  KruskalWValue = std::move(result);
  Category = std::move(split.labels);
}

}  // namespace zelkova
