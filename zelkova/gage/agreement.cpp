#include "zelkova/gage/agreement.h"

#include <algorithm>
#include <cmath>

#include "zelkova/kit/LevelTally.h"
#include "zelkova/kit/doubleDouble.h"

namespace zelkova::agreement {

namespace {

/// A category's ratings by two sides, and those of all others. Counts rather than shares: sums of their
/// products are exact, so that agreement as by chance gives a kappa of exactly 0.
struct Margins {
  double first, second;
  double firstOthers, secondOthers;
};

Margins marginsOf(double first, double second, double n) { return {first, second, n - first, n - second}; }

/// The squared number of ratings times the probability of disagreement by chance.
double chanceDisagreement(std::span<const Margins> categories) {
  double sum = 0;
  for (const Margins& c : categories) sum += c.first * c.secondOthers;
  return sum;
}

/// The fourth power of the number of ratings, times n, times the variance, under chance, of the share of n
/// pairs that disagree, the shares a and b of the categories estimated. As a sum of positive terms, Pe + Pe^2
/// - sum a b (a + b) = sum a b ((1 - a)(1 - b) + Pe - a b): the usual form cancels where one category is
/// nearly everything.
double chanceVariance(std::span<const Margins> categories) {
  const std::size_t k = categories.size();
  std::vector<double> after(k + 1, 0.0);
  for (std::size_t i = k; i-- > 0;) {
    after[i] = after[i + 1] + categories[i].first * categories[i].second;
  }
  double sum = 0;
  double before = 0;
  for (std::size_t i = 0; i < k; ++i) {
    const Margins& c = categories[i];
    const double both = c.first * c.second;
    sum += both * (c.firstOthers * c.secondOthers + before + after[i + 1]);
    before += both;
  }
  return sum;
}

double kappa(double disagreement, double byChance) { return (byChance - disagreement) / byChance; }

/// A kappa from the share of pairs that disagree, times the squared number of ratings; `n` pairs stand behind
/// the standard error.
Estimate kappaOf(double disagreement, std::span<const Margins> categories, double n) {
  const double byChance = chanceDisagreement(categories);
  if (byChance == 0) return {};
  return {kappa(disagreement, byChance), std::sqrt(chanceVariance(categories) / n) / byChance};
}

/// A category's ratings by all raters, and the ordered pairs of a part's ratings of which the first alone is
/// of that category.
struct FleissCount {
  Index category;
  double ratings;
  double disagreements;
};

Kappas fleissOf(const std::vector<FleissCount>& counts, double parts, double raters) {
  const double ratings = parts * raters;
  const double pairs = ratings * (raters - 1);
  const auto scaled = [=](double disagreements) { return disagreements * ratings / (raters - 1); };
  Kappas result;
  std::vector<Margins> margins;
  margins.reserve(counts.size());
  double disagreements = 0;
  for (const FleissCount& count : counts) {
    const Margins c = marginsOf(count.ratings, count.ratings, ratings);
    margins.push_back(c);
    disagreements += count.disagreements;
    if (c.firstOthers == 0) continue;
    result.categories.push_back(
        {count.category,
         {kappa(scaled(count.disagreements), c.first * c.firstOthers), std::sqrt(2 / pairs)}});
  }
  result.overall = kappaOf(scaled(disagreements), margins, pairs / 2);
  return result;
}

/// How a column tells parts apart: the ordered pairs that it does not tie, and the sum over all parts of
/// the squared number of those below less those above.
struct Spread {
  double untied = 0;
  double squares = 0;

  explicit Spread(const Compact& column) {
    const auto n = static_cast<double>(column.places.size());
    double below = 0;
    for (const double count : column.counts) {
      const double above = n - below - count;
      untied += count * (n - count);
      squares += count * (below - above) * (below - above);
      below += count;
    }
  }
};

/// The variance of concordant less discordant pairs under independence (Kendall, 1970), in a form without
/// cancellation.
double surplusVariance(const Spread& x, const Spread& y, double n) {
  const double pairs = n * (n - 1);
  const double ofPairs = x.untied * y.untied / (2 * pairs);
  if (n < 3) return ofPairs;
  return (x.squares - x.untied) * (y.squares - y.untied) / (pairs * (n - 2)) + ofPairs;
}

}  // namespace

std::vector<Index> Study::column(Index rater) const {
  std::vector<Index> result;
  result.reserve(static_cast<std::size_t>(parts));
  for (Index part = 0; part < parts; ++part) result.push_back(ratingsOf(part, rater, 1).front());
  return result;
}

void MeanEstimate::add(const Estimate& estimate) {
  if (!estimate.exists()) return;
  sum_ += estimate.value;
  variance_ += estimate.se * estimate.se;
  ++count_;
}

Estimate MeanEstimate::over(Index comparisons) const {
  if (comparisons == 0 || count_ != comparisons) return {};
  const auto n = static_cast<double>(comparisons);
  return {sum_ / n, std::sqrt(variance_) / n};
}

void MeanKappas::add(const Kappas& kappas) {
  for (const auto& [category, estimate] : kappas.categories) {
    categories_[static_cast<std::size_t>(category)].add(estimate);
  }
  overall_.add(kappas.overall);
  ++comparisons_;
}

Counter::Cell& Counter::at(Index category) {
  Cell& cell = cells_[static_cast<std::size_t>(category)];
  if (!cell.occurs) {
    cell.occurs = true;
    occurring_.push_back(category);
  }
  return cell;
}

const std::vector<Index>& Counter::occurring() {
  std::sort(occurring_.begin(), occurring_.end());
  return occurring_;
}

void Counter::clear() {
  for (const Index category : occurring_) cells_[static_cast<std::size_t>(category)] = {};
  occurring_.clear();
}

Kappas Counter::fleissAmong(const Study& study, Index firstRater, Index count) {
  for (Index part = 0; part < study.parts; ++part) {
    const std::span<const Index> ratings = study.ratingsOf(part, firstRater, count);
    for (const Index rating : ratings) {
      Cell& cell = at(rating);
      ++cell.first;
      cell.both += 2 * cell.current + 1;
      ++cell.current;
    }
    for (const Index rating : ratings) at(rating).current = 0;
  }
  const auto raters = static_cast<double>(count);
  std::vector<FleissCount> counts;
  for (const Index category : occurring()) {
    const Cell& cell = at(category);
    counts.push_back({category, cell.first, raters * cell.first - cell.both});
  }
  clear();
  return fleissOf(counts, static_cast<double>(study.parts), raters);
}

Counter::OfTwo Counter::kappasOf(std::span<const Index> first, std::span<const Index> second) {
  for (std::size_t i = 0; i < first.size(); ++i) {
    ++at(first[i]).first;
    ++at(second[i]).second;
    if (first[i] == second[i]) ++at(first[i]).both;
  }
  const auto n = static_cast<double>(first.size());
  OfTwo result;
  std::vector<FleissCount> counts;
  std::vector<Margins> margins;
  double agreements = 0;
  for (const Index category : occurring()) {
    const Cell& cell = at(category);
    const double disagreements = cell.first + cell.second - 2 * cell.both;
    const Margins c = marginsOf(cell.first, cell.second, n);
    const Margins againstOthers[] = {c, {c.firstOthers, c.secondOthers, c.first, c.second}};
    counts.push_back({category, cell.first + cell.second, disagreements});
    margins.push_back(c);
    agreements += cell.both;
    result.cohen.categories.push_back({category, kappaOf(n * disagreements, againstOthers, n)});
  }
  clear();
  result.fleiss = fleissOf(counts, n, 2);
  result.cohen.overall = kappaOf(n * (n - agreements), margins, n);
  return result;
}

Compact Counter::compact(std::span<const Index> column) {
  for (const Index rating : column) ++at(rating).first;
  Compact result;
  for (const Index category : occurring()) {
    Cell& cell = at(category);
    cell.current = static_cast<double>(result.counts.size());
    result.counts.push_back(cell.first);
  }
  result.places.reserve(column.size());
  for (const Index rating : column) result.places.push_back(static_cast<std::size_t>(at(rating).current));
  clear();
  return result;
}

double concordance(const Study& study, Index firstRater, Index count, Counter& counter) {
  // Ranks about their mean: neither the sums nor their spread cancel. Squares are summed at double length:
  // those of large studies do not fit a double, and perfect concordance is to be exactly 1.
  std::vector<double> sums(static_cast<std::size_t>(study.parts));
  DoubleDouble spread;
  for (Index rater = firstRater; rater < firstRater + count; ++rater) {
    const Compact column = counter.compact(study.column(rater));
    const double middle = (static_cast<double>(study.parts) + 1) / 2;
    std::vector<double> ranks;
    double below = 0;
    for (const double ratings : column.counts) {
      ranks.push_back(below + (ratings + 1) / 2 - middle);
      spread = spread + twoProduct(ratings * ranks.back(), ranks.back());
      below += ratings;
    }
    for (std::size_t part = 0; part < sums.size(); ++part) sums[part] += ranks[column.places[part]];
  }
  if (spread.rounded() == 0) return NoValue;
  DoubleDouble squares;
  for (const double sum : sums) squares = squares + twoProduct(sum, sum);
  return (squares / (spread * DoubleDouble{static_cast<double>(count)})).rounded();
}

StandardOrder::StandardOrder(const Study& study, Counter& counter)
    : standard_(counter.compact(study.standard)), parts_(study.standard.size()) {
  std::vector<std::size_t> next(standard_.counts.size(), 0);
  for (std::size_t k = 1; k < next.size(); ++k) {
    next[k] = next[k - 1] + static_cast<std::size_t>(standard_.counts[k - 1]);
  }
  for (std::size_t part = 0; part < parts_.size(); ++part) parts_[next[standard_.places[part]]++] = part;
}

Estimate StandardOrder::tauOf(std::span<const Index> ratings, Counter& counter) const {
  const Compact column = counter.compact(ratings);
  const Spread x(column);
  const Spread y(standard_);
  if (x.untied == 0 || y.untied == 0) return {};

  double surplus = 0;
  LevelTally lower(column.counts.size());
  auto first = parts_.begin();
  for (const double ties : standard_.counts) {
    const auto end = first + static_cast<Index>(ties);
    const double all = lower.all();
    for (auto part = first; part != end; ++part) {
      const std::size_t place = column.places[*part];
      surplus += lower.below(place) - (all - lower.below(place + 1));
    }
    for (; first != end; ++first) lower.add(column.places[*first], 1);
  }
  // Ordered pairs count each pair twice. The root of a square is exact, so perfect agreement is 1.
  const double scale = std::sqrt(x.untied * y.untied) / 2;
  const auto n = static_cast<double>(ratings.size());
  return {surplus / scale, std::sqrt(surplusVariance(x, y, n)) / scale};
}

}  // namespace zelkova::agreement
