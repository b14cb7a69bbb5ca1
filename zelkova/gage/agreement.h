#pragma once

#include <span>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/NoValue.h"

/// What raters who put the same parts into categories have in common. Parts, raters and categories count
/// from 0.
namespace zelkova::agreement {

/// A balanced study: every appraiser rated every part once a trial. A trial of an appraiser is a rater.
struct Study {
  Index parts = 0;
  Index appraisers = 0;
  Index trials = 0;
  Index categories = 0;
  std::vector<Index> ratings;   ///< part by part, in each appraiser by appraiser, in each trial by trial
  std::vector<Index> standard;  ///< one a part; empty where there is none

  Index raters() const noexcept { return appraisers * trials; }
  bool hasStandard() const noexcept { return !standard.empty(); }

  std::span<const Index> ratingsOf(Index part, Index firstRater, Index count) const {
    return std::span(ratings).subspan(static_cast<std::size_t>(part * raters() + firstRater),
                                      static_cast<std::size_t>(count));
  }

  /// The ratings of all parts by one rater.
  std::vector<Index> column(Index rater) const;
};

/// A statistic and its standard error; both `NoValue` where it is 0 over 0.
struct Estimate {
  double value = NoValue;
  double se = NoValue;

  bool exists() const noexcept { return value != NoValue; }
};

/// The mean of estimates from separate comparisons, its standard error taken as if these were independent.
/// It does not exist where one of them does not.
class MeanEstimate {
 public:
  void add(const Estimate& estimate);
  Estimate over(Index comparisons) const;

 private:
  double sum_ = 0;
  double variance_ = 0;
  Index count_ = 0;
};

/// A kappa for each category that occurs, and one over all. Standard errors are those under agreement by
/// chance alone.
struct Kappas {
  struct OfCategory {
    Index category;
    Estimate estimate;
  };
  std::vector<OfCategory> categories;
  Estimate overall;
};

/// The means of kappas from several comparisons.
class MeanKappas {
 public:
  explicit MeanKappas(Index categories) : categories_(static_cast<std::size_t>(categories)) {}

  void add(const Kappas& kappas);
  Estimate ofCategory(Index category) const {
    return categories_[static_cast<std::size_t>(category)].over(comparisons_);
  }
  Estimate overall() const { return overall_.over(comparisons_); }

 private:
  std::vector<MeanEstimate> categories_;
  MeanEstimate overall_;
  Index comparisons_ = 0;
};

/// How often each category that occurs in a column of ratings does, ascending; and for each rating the place
/// of its category among them.
struct Compact {
  std::vector<double> counts;
  std::vector<std::size_t> places;
};

/// Counts categories; its room is kept from call to call, so that each takes the time of its ratings alone.
class Counter {
 public:
  explicit Counter(Index categories) : cells_(static_cast<std::size_t>(categories)) {}

  /// Fleiss' kappa (Fleiss, 1971) among two raters or more, with the standard errors of Fleiss, Nee and
  /// Landis (1979).
  Kappas fleissAmong(const Study& study, Index firstRater, Index count);

  /// The kappas of two columns of ratings: Fleiss', and Cohen's (1960) with the standard errors of Fleiss,
  /// Cohen and Everitt (1969), a category against all others together.
  struct OfTwo {
    Kappas fleiss, cohen;
  };
  OfTwo kappasOf(std::span<const Index> first, std::span<const Index> second);

  Compact compact(std::span<const Index> column);

 private:
  struct Cell {
    double first = 0;    // ratings by the first rater, or by all
    double second = 0;   // ratings by the second
    double both = 0;     // parts that both rated so, or the sum over the parts of squared counts
    double current = 0;  // ratings of the part at hand
    bool occurs = false;
  };

  Cell& at(Index category);

  /// The categories that occurred, ascending.
  const std::vector<Index>& occurring();
  void clear();

  std::vector<Cell> cells_;
  std::vector<Index> occurring_;
};

/// Kendall's coefficient of concordance with ties (Kendall and Babington Smith, 1939), for categories in
/// order; `NoValue` where no rater tells parts apart.
double concordance(const Study& study, Index firstRater, Index count, Counter& counter);

/// Kendall's tau-b with a standard (Kendall, 1945), for categories in order.
class StandardOrder {
 public:
  StandardOrder(const Study& study, Counter& counter);

  /// The standard error is that of independent orders with the same ties (Kendall, 1970).
  Estimate tauOf(std::span<const Index> ratings, Counter& counter) const;

 private:
  Compact standard_;
  std::vector<std::size_t> parts_;  // by standard
};

}  // namespace zelkova::agreement
