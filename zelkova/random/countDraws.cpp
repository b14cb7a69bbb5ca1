#include "zelkova/random/countDraws.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "zelkova/frame/arithmetic.h"

namespace zelkova::random {

namespace {

void checkProbability(double p) {
  if (!(p >= 0 && p <= 1)) raise(FailureNumber::InvalidCall, "Para2 must be a probability from 0 to 1");
}

/// The number of `trials` independent uniform draws that are at most `p`.
double successes(WorksheetFunction& host, std::int32_t trials, double p, UniformStream& stream) {
  // A large number of trials is split at the draw in the middle of their order, whose place is a beta
  // variate; those on its far side are uniform again (Relles 1972).
  constexpr std::int32_t split = 2048;
  double count = 0;
  while (trials > split && p > 0 && p < 1) {
    const std::int32_t middle = trials / 2 + 1;
    const double place = host.BetaInv(stream.next(), middle, trials + 1.0 - middle);
    if (place <= p) {
      count += middle;
      trials -= middle;
      p = place < 1 ? (p - place) / (1 - place) : 0;
    } else {
      trials = middle - 1;
      p /= place;
    }
  }
  if (p >= 1) return count + trials;
  for (std::int32_t i = 0; i < trials; ++i) count += stream.next() <= p ? 1 : 0;
  return count;
}

/// A walk along cumulated probabilities to the one that reaches a uniform draw. What every draw would walk
/// past is laid out once.
class Walk {
 public:
  /// `mass(k)` is the probability of k; the walk ends at `last` or after 1000 steps.
  template <class Mass>
  Walk(double last, Mass mass) {
    constexpr int steps = 1000;
    double sum = 0;
    double here = mass(0);
    for (int k = 0; k < steps && k <= last; ++k) {
      sum += here;
      cumulated_.push_back(sum);
      // deliberate: a step leaves k behind, but the one at the end of the support stays.
      const bool isEnd = k + 1 > last;
      if (!isEnd) here = mass(k + 1);
      stops_.push_back({isEnd ? k : k + 1.0, sum - here});
    }
  }

  double at(double u) const {
    if (u <= 0) return 0;
    // The last step is where the walk ends anyway.
    const auto reached = std::lower_bound(cumulated_.begin(), cumulated_.end() - 1, u);
    const Stop& stop = stops_[static_cast<std::size_t>(reached - cumulated_.begin())];
    // deliberate: the value goes to the nearer of two cumulated probabilities, where the lower one is taken
    // to be short of the upper by the probability of the stop.
    return std::abs(u - stop.previous) < std::abs(u - *reached) ? stop.k - 1 : stop.k;
  }

 private:
  struct Stop {
    double k;
    double previous;  ///< the cumulated probability less that of k
  };

  std::vector<double> cumulated_;
  std::vector<Stop> stops_;
};

void draw(const Walk& walk, UniformStream& stream, std::span<double> cells) {
  for (double& cell : cells) cell = walk.at(stream.next());
}

}  // namespace

void bernoulliDraws(double probability, UniformStream& stream, std::span<double> cells) {
  checkProbability(probability);
  // deliberate: compared in single precision; a probability such as 0.1 and a draw that shows as 0.1 are then
  // equal.
  const auto p = static_cast<float>(probability);
  for (double& cell : cells) cell = static_cast<float>(stream.next()) <= p ? 1 : 0;
}

void binomialDraws(WorksheetFunction& host, double trials, double probability, UniformStream& stream,
                   std::span<double> cells) {
  checkProbability(probability);
  const auto count = toInteger<std::int32_t>(trials);
  // What rounds to the probability in single precision or below lies below the middle to the next number.
  const auto p = static_cast<float>(probability);
  const double bound = (static_cast<double>(p) + std::nextafter(p, 2.0F)) / 2;
  for (double& cell : cells) cell = successes(host, count, bound, stream);
}

void GetPoissonRandom(WorksheetFunction& host, double Mean, UniformStream& stream, std::span<double> cells) {
  draw(Walk(std::numeric_limits<double>::infinity(), [&](double k) { return host.Poisson(k, Mean, false); }),
       stream, cells);
}

void GetHyperRandom(WorksheetFunction& host, double Population, double Success, double Sample,
                    UniformStream& stream, std::span<double> cells) {
  const double population = std::trunc(Population);
  const double success = std::trunc(Success);
  const double sample = std::trunc(Sample);
  if (sample == 0) {
    std::fill(cells.begin(), cells.end(), 0.0);
    return;
  }
  const double first = std::max(0.0, sample - (population - success));
  const double last = std::min(sample, success);
  const auto mass = [&](double k) { return host.HypGeomDist(k, sample, success, population); };
  mass(first);  // the host refuses what no population can be
  draw(Walk(last, [&](double k) { return k < first ? 0 : mass(k); }), stream, cells);
}

}  // namespace zelkova::random
