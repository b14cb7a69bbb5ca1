#include "zelkova/gage/yAAA.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/gage/agreement.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/SortedLevels.h"
#include "zelkova/kit/order.h"

namespace zelkova {

using agreement::Counter;
using agreement::Estimate;
using agreement::MeanEstimate;
using agreement::MeanKappas;
using agreement::StandardOrder;
using agreement::Study;

namespace {

/// A cell without an entry: an empty text, or a number that holds no value.
bool isBlank(const std::string& text) { return trimmed(text).empty() || numberOf(text) == NoValue; }

bool hasBlank(std::span<const std::string> column) {
  return std::any_of(column.begin(), column.end(), isBlank);
}

/// The labels of a column in numeric-aware order. Those that tie in it ("1" and "01") or compare in circles
/// ("9", "10", "1A") would come as the rows happen to stand; they come by their exact texts.
SortedLevels<std::string> levelsInOrder(std::span<const std::string> column) {
  const auto text = [column](Index row) -> const std::string& {
    return column[static_cast<std::size_t>(row)];
  };
  const Levels levels(column);
  std::vector<Index> firsts = levels.firsts();
  std::sort(firsts.begin(), firsts.end(), [&](Index a, Index b) { return text(a) < text(b); });
  std::vector<std::string> texts;
  texts.reserve(firsts.size());
  for (const Index first : firsts) texts.push_back(text(first));

  SortedLevels<std::string> result = sortedLevels(std::span<const std::string>(texts));
  std::vector<Index> places(firsts.size());
  for (std::size_t i = 0; i < firsts.size(); ++i) {
    places[static_cast<std::size_t>(levels.codes()[static_cast<std::size_t>(firsts[i])])] = result.codes[i];
  }
  result.codes = levels.codes();
  for (Index& code : result.codes) code = places[static_cast<std::size_t>(code)];
  return result;
}

/// The categories of ratings and standards, and which of them each has.
struct Categories {
  StringArray labels;
  std::vector<Index> ratings, standards;
};

/// Nothing where categories are listed in `order` and a rating or a standard is not.
std::optional<Categories> categoriesOf(std::span<const std::string> ratings,
                                       std::span<const std::string> standards,
                                       std::span<const std::string> order) {
  std::vector<std::string> texts;
  texts.reserve(order.size() + ratings.size() + standards.size());
  for (const auto part : {order, ratings, standards}) texts.insert(texts.end(), part.begin(), part.end());
  Categories result;
  std::vector<Index> codes;
  if (!order.empty()) {
    const Levels levels{std::span<const std::string>(texts)};
    codes = levels.codes();
    const auto known = static_cast<Index>(order.size());
    for (Index i = 0; i < known; ++i) {
      if (codes[static_cast<std::size_t>(i)] != i) {
        raise(FailureNumber::InvalidCall, "CategoryOrder has a category twice");
      }
    }
    if (levels.count() > known) return std::nullopt;
    result.labels = StringArray(std::vector<std::string>(order.begin(), order.end()));
  } else {
    SortedLevels<std::string> levels = levelsInOrder(texts);
    codes = std::move(levels.codes);
    result.labels = std::move(levels.values);
  }
  const auto firstRating = codes.begin() + static_cast<Index>(order.size());
  const auto firstStandard = firstRating + static_cast<Index>(ratings.size());
  result.ratings.assign(firstRating, firstStandard);
  result.standards.assign(firstStandard, codes.end());
  return result;
}

/// The first `n` rows of a column that may be left out: none where it was never filled, or is blank as a
/// range that a form leaves empty.
std::span<const std::string> rowsIfGiven(const StringArray& column, Index n, const char* name) {
  if (!column.filled()) return {};
  const std::span<const std::string> rows = column.vector();
  const auto read = rows.first(std::min(rows.size(), static_cast<std::size_t>(n)));
  if (std::all_of(read.begin(), read.end(), isBlank)) return {};
  return firstRows(column, n, name);
}

/// The categories that the caller lists; the rest of the range may be blank.
std::vector<std::string> listedIn(const StringArray& categoryOrder) {
  std::vector<std::string> result;
  if (!categoryOrder.filled()) return result;
  for (const std::string& category : categoryOrder.vector()) {
    if (!isBlank(category)) result.push_back(category);
  }
  return result;
}

/// What the caller passed, row by row.
struct Rows {
  std::span<const std::string> ratings, parts, appraisers, trials, standards;

  /// `trials` and `standards` are empty where there are none.
  Rows(const StringArray& dy, const StringArray& dpart, const StringArray& dop, const StringArray& dtrial,
       const StringArray& dstd)
      : ratings(dy.vector()),
        parts(firstRows(dpart, dy.rows(), "dpart")),
        appraisers(firstRows(dop, dy.rows(), "dop")),
        trials(rowsIfGiven(dtrial, dy.rows(), "dtrial")),
        standards(rowsIfGiven(dstd, dy.rows(), "dstd")) {}

  /// The rows trial by trial, the key being the trial; without trials as they stand.
  std::vector<order::Row> byTrial() const {
    std::vector<order::Row> rows(ratings.size());
    std::vector<Index> codes(ratings.size());
    if (!trials.empty()) codes = levelsInOrder(trials).codes;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      rows[i] = {static_cast<order::Key>(codes[i]), static_cast<Index>(i)};
    }
    if (!trials.empty()) order::stableSort(rows);
    return rows;
  }
};

/// A study with the labels of what it counts, or why it is none.
struct Layout {
  std::string fault;
  Study study;
  StringArray appraisers, categories;
};

/// Each row's place among the ratings of a study, part by part and rater by rater.
struct Places {
  std::string fault;
  std::vector<std::size_t> ofRows;
};

Places placesOf(const Rows& rows, const Study& study, const Levels& parts,
                const std::vector<Index>& appraisers) {
  Places result;
  result.ofRows.resize(rows.ratings.size());
  const auto trials = static_cast<order::Key>(study.trials);
  const auto cells = static_cast<std::size_t>(study.parts * study.appraisers);
  std::vector<order::Key> taken(cells);
  std::vector<order::Key> latest(cells);
  for (const auto& [trial, row] : rows.byTrial()) {
    const auto i = static_cast<std::size_t>(row);
    const auto cell = static_cast<std::size_t>(parts.codes()[i] * study.appraisers + appraisers[i]);
    if (taken[cell] == trials) return {"Design must be balanced", {}};
    const bool isRepeated = !rows.trials.empty() && taken[cell] > 0 && latest[cell] == trial;
    if (isRepeated) result.fault = "Trials of a part by an appraiser must differ";
    latest[cell] = trial;
    result.ofRows[i] = cell * static_cast<std::size_t>(study.trials) + static_cast<std::size_t>(taken[cell]);
    ++taken[cell];
  }
  return result;
}

/// What of the study's own questions cannot be answered; empty where nothing.
std::string faultOfQuestions(const Study& study, bool hasStandard, bool between) {
  if (between && study.appraisers < 2) return "At least 2 appraiser values required";
  if (!between && study.trials < 2 && !hasStandard) return "At least 2 trials or a standard required";
  return {};
}

/// The standard of each part; nothing where rows of a part differ.
std::optional<std::vector<Index>> standardOf(const Levels& parts, const std::vector<Index>& standards) {
  std::vector<Index> result;
  if (standards.empty()) return result;
  for (const Index first : parts.firsts()) result.push_back(standards[static_cast<std::size_t>(first)]);
  for (std::size_t i = 0; i < standards.size(); ++i) {
    if (standards[i] != result[static_cast<std::size_t>(parts.codes()[i])]) return std::nullopt;
  }
  return result;
}

bool areAllEqual(const std::vector<Index>& a, const std::vector<Index>& b) {
  const auto isFirst = [&](Index code) { return code == a.front(); };
  return std::all_of(a.begin(), a.end(), isFirst) && std::all_of(b.begin(), b.end(), isFirst);
}

Layout layOut(const Rows& rows, std::span<const std::string> categoryOrder, bool between) {
  Layout result;
  Study& study = result.study;
  const auto refused = [&](std::string fault) {
    result.fault = std::move(fault);
    return std::move(result);
  };
  if (hasBlank(rows.ratings)) return refused("Ratings must not be blank");
  if (hasBlank(rows.standards)) return refused("Standards must not be blank");
  const Levels parts(rows.parts);
  SortedLevels<std::string> appraisers = levelsInOrder(rows.appraisers);
  const auto n = static_cast<Index>(rows.ratings.size());
  study.parts = parts.count();
  study.appraisers = appraisers.count();
  if (study.parts > n / study.appraisers || n % (study.parts * study.appraisers) != 0) {
    return refused("Design must be balanced");
  }
  study.trials = n / (study.parts * study.appraisers);
  Places places = placesOf(rows, study, parts, appraisers.codes);
  if (!places.fault.empty()) return refused(std::move(places.fault));
  if (std::string fault = faultOfQuestions(study, !rows.standards.empty(), between); !fault.empty()) {
    return refused(std::move(fault));
  }

  std::optional<Categories> categories = categoriesOf(rows.ratings, rows.standards, categoryOrder);
  if (!categories) return refused("Rating or standard not in CategoryOrder");
  std::optional<std::vector<Index>> standard = standardOf(parts, categories->standards);
  if (!standard) return refused("Standard for the same part must be the same");
  if (areAllEqual(categories->ratings, categories->standards)) {
    return refused("At least 2 categories required");
  }
  study.categories = categories->labels.rows();
  study.standard = std::move(*standard);
  study.ratings.resize(rows.ratings.size());
  for (std::size_t i = 0; i < places.ofRows.size(); ++i) {
    study.ratings[places.ofRows[i]] = categories->ratings[i];
  }
  result.appraisers = std::move(appraisers.values);
  result.categories = std::move(categories->labels);
  return result;
}

/// One of the questions: the parts that match, a row a group of raters, and the groups' kappas.
struct Answer {
  DoubleArray value, kappa;
};

/// Fleiss' and Cohen's kappas of a group of raters; none until something is added.
struct GroupKappas {
  MeanKappas fleiss, cohen;

  explicit GroupKappas(const Study& study) : fleiss(study.categories), cohen(study.categories) {}
};

/// Works out the answers; `ordinal` adds Kendall's statistics.
class Analysis {
 public:
  Analysis(const Study& study, WorksheetFunction& host, double confidence, bool ordinal)
      : study_(study), host_(host), alpha_(1 - confidence), ordinal_(ordinal), counter_(study.categories) {}

  Answer within() {
    Answer result = emptyAnswer(study_.appraisers, AgreementAmong::size);
    for (Index appraiser = 0; appraiser < study_.appraisers; ++appraiser) {
      compareAmong(result, appraiser + 1, appraiser * study_.trials, study_.trials);
      numberRows(result.kappa, appraiser + 1);
    }
    return result;
  }

  Answer between(bool asked) {
    Answer result = emptyAnswer(1, AgreementAmong::size);
    if (asked) compareAmong(result, 1, 0, study_.raters());
    return result;
  }

  /// Each appraiser against the standard, and all of them.
  std::pair<Answer, Answer> withStandard() {
    Answer each = emptyAnswer(study_.appraisers, AgreementWithStandard::size);
    Answer all = emptyAnswer(1, AgreementWithStandard::size);
    for (Index appraiser = 1; appraiser <= study_.appraisers; ++appraiser) numberRows(each.kappa, appraiser);
    if (!study_.hasStandard()) return {std::move(each), std::move(all)};

    const StandardOrder order(study_, counter_);
    GroupKappas kappasOfAll(study_);
    MeanEstimate tauOfAll;
    for (Index appraiser = 0; appraiser < study_.appraisers; ++appraiser) {
      GroupKappas kappas(study_);
      MeanEstimate tau;
      const Index firstRater = appraiser * study_.trials;
      for (Index rater = firstRater; rater < firstRater + study_.trials; ++rater) {
        const std::vector<Index> ratings = study_.column(rater);
        const Counter::OfTwo ofTrial = counter_.kappasOf(ratings, study_.standard);
        for (GroupKappas* const group : {&kappas, &kappasOfAll}) {
          group->fleiss.add(ofTrial.fleiss);
          group->cohen.add(ofTrial.cohen);
        }
        if (!ordinal_) continue;
        const Estimate tauOfTrial = order.tauOf(ratings, counter_);
        tau.add(tauOfTrial);
        tauOfAll.add(tauOfTrial);
      }
      compareWithStandard(each, appraiser + 1, firstRater, study_.trials, tau);
      setKappas(each.kappa, appraiser + 1, kappas);
    }
    compareWithStandard(all, 1, 0, study_.raters(), tauOfAll);
    setKappas(all.kappa, 1, kappasOfAll);
    return {std::move(each), std::move(all)};
  }

 private:
  Answer emptyAnswer(Index groups, Index slots) const {
    constexpr Index mostRows = 1'000'000;
    const Index rows = study_.categories + 1;
    if (rows > mostRows / groups) {
      raise(FailureNumber::OutOfMemory, "there are too many appraisers and categories for a table of kappas");
    }
    Answer result{DoubleArray(groups, slots, NoValue),
                  DoubleArray(groups * rows, AgreementKappa::size, NoValue)};
    for (Index row = 0; row < groups * rows; ++row) {
      if (row % rows == study_.categories) continue;
      result.kappa(row + 1, AgreementKappa::Category) = static_cast<double>(row % rows + 1);
    }
    return result;
  }

  void numberRows(DoubleArray& kappa, Index appraiser) const {
    const Index rows = study_.categories + 1;
    for (Index row = (appraiser - 1) * rows + 1; row <= appraiser * rows; ++row) {
      kappa(row, AgreementKappa::Appraiser) = static_cast<double>(appraiser);
    }
  }

  /// Answers for the `count` raters from `firstRater` on, as group number `group`.
  void compareAmong(Answer& answer, Index group, Index firstRater, Index count) {
    if (count < 2) return;
    const auto matches = [&](Index part) {
      const std::span<const Index> ratings = study_.ratingsOf(part, firstRater, count);
      return std::all_of(ratings.begin(), ratings.end(), [&](Index code) { return code == ratings.front(); });
    };
    setMatches<AgreementAmong>(answer.value, group, matches);
    GroupKappas kappas(study_);
    kappas.fleiss.add(counter_.fleissAmong(study_, firstRater, count));
    if (count == 2) {
      kappas.cohen.add(counter_.kappasOf(study_.column(firstRater), study_.column(firstRater + 1)).cohen);
    }
    setKappas(answer.kappa, group, kappas);
    if (ordinal_) setConcordance(answer.value, group, firstRater, count);
  }

  void compareWithStandard(Answer& answer, Index group, Index firstRater, Index count,
                           const MeanEstimate& tau) const {
    const auto matches = [&](Index part) {
      const std::span<const Index> ratings = study_.ratingsOf(part, firstRater, count);
      const Index standard = study_.standard[static_cast<std::size_t>(part)];
      return std::all_of(ratings.begin(), ratings.end(), [=](Index code) { return code == standard; });
    };
    setMatches<AgreementWithStandard>(answer.value, group, matches);
    const Estimate mean = tau.over(count);
    const double z = setEstimate(answer.value, group, AgreementWithStandard::KendallTau, mean);
    if (z != NoValue) {
      answer.value(group, AgreementWithStandard::PValue) = 2 * host_.NormSDist(-std::abs(z));
    }
  }

  /// The parts on which `matches` is true, with exact limits.
  template <class Slots, class Matches>
  void setMatches(DoubleArray& table, Index row, Matches matches) const {
    double count = 0;
    for (Index part = 0; part < study_.parts; ++part) count += matches(part) ? 1 : 0;
    const auto n = static_cast<double>(study_.parts);
    table(row, Slots::Inspected) = n;
    table(row, Slots::Matched) = count;
    table(row, Slots::Percent) = 100 * count / n;
    table(row, Slots::Lower) = count == 0 ? 0 : 100 * host_.BetaInv(alpha_ / 2, count, n - count + 1);
    table(row, Slots::Upper) = count == n ? 100 : 100 * (1 - host_.BetaInv(alpha_ / 2, n - count, count + 1));
  }

  void setConcordance(DoubleArray& table, Index row, Index firstRater, Index count) {
    const auto df = static_cast<double>(study_.parts - 1);
    const double w = concordance(study_, firstRater, count, counter_);
    if (w == NoValue) return;
    const double chiSquare = static_cast<double>(count) * df * w;
    table(row, AgreementAmong::KendallW) = w;
    table(row, AgreementAmong::ChiSquare) = chiSquare;
    table(row, AgreementAmong::DF) = df;
    table(row, AgreementAmong::PValue) = host_.ChiDist(chiSquare, df);
  }

  void setKappas(DoubleArray& table, Index group, const GroupKappas& kappas) const {
    const Index firstRow = (group - 1) * (study_.categories + 1) + 1;
    for (Index category = 0; category < study_.categories; ++category) {
      setKappa(table, firstRow + category, AgreementKappa::FleissKappa, kappas.fleiss.ofCategory(category));
      setKappa(table, firstRow + category, AgreementKappa::CohenKappa, kappas.cohen.ofCategory(category));
    }
    const Index overall = firstRow + study_.categories;
    setKappa(table, overall, AgreementKappa::FleissKappa, kappas.fleiss.overall());
    setKappa(table, overall, AgreementKappa::CohenKappa, kappas.cohen.overall());
  }

  void setKappa(DoubleArray& table, Index row, Index slot, const Estimate& kappa) const {
    const double z = setEstimate(table, row, slot, kappa);
    if (z != NoValue) table(row, slot + 3) = host_.NormSDist(-z);
  }

  /// Puts an estimate, its standard error and their ratio into three slots, and returns the ratio.
  static double setEstimate(DoubleArray& table, Index row, Index slot, const Estimate& estimate) {
    table(row, slot) = estimate.value;
    table(row, slot + 1) = estimate.se;
    if (!estimate.exists() || estimate.se == 0) return NoValue;
    return table(row, slot + 2) = checked::quotient(estimate.value, estimate.se);
  }

  const Study& study_;
  WorksheetFunction& host_;
  double alpha_;
  bool ordinal_;
  Counter counter_;
};

/// Parts or ratings of one standard, and those of them that were rated otherwise.
struct Misrated {
  double count = 0;
  double all = 0;

  void add(Index wrong, Index of) {
    count += static_cast<double>(wrong);
    all += static_cast<double>(of);
  }
  void set(DoubleArray& table, Index row, Index slot) const {
    table(row, slot) = count;
    if (all > 0) table(row, slot + 1) = 100 * count / all;
  }
};

/// A table of one row as a vector.
DoubleArray onlyRow(const DoubleArray& table) {
  return DoubleArray(std::vector<double>(table.elements().begin(), table.elements().end()));
}

/// How appraisers part from the standard, where there are two categories.
DoubleArray disagreementsOf(const Study& study) {
  DoubleArray table(study.appraisers, AgreementErrors::size, NoValue);
  if (study.categories != 2 || !study.hasStandard()) return table;
  for (Index appraiser = 0; appraiser < study.appraisers; ++appraiser) {
    std::array<Misrated, 2> parts, ratings;
    Misrated mixed;
    for (Index part = 0; part < study.parts; ++part) {
      const auto given = study.ratingsOf(part, appraiser * study.trials, study.trials);
      const auto standard = static_cast<std::size_t>(study.standard[static_cast<std::size_t>(part)]);
      const Index wrong = study.trials - std::count(given.begin(), given.end(), static_cast<Index>(standard));
      parts[standard].add(wrong == study.trials ? 1 : 0, 1);
      ratings[standard].add(wrong, study.trials);
      mixed.add(wrong > 0 && wrong < study.trials ? 1 : 0, 1);
    }
    parts[1].set(table, appraiser + 1, AgreementErrors::SecondAsFirst);
    parts[0].set(table, appraiser + 1, AgreementErrors::FirstAsSecond);
    mixed.set(table, appraiser + 1, AgreementErrors::Mixed);
    ratings[1].set(table, appraiser + 1, AgreementErrors::RatingsSecondAsFirst);
    ratings[0].set(table, appraiser + 1, AgreementErrors::RatingsFirstAsSecond);
  }
  return table;
}

}  // namespace

void yAAA::GageAAAOutput(const StringArray& dy, const StringArray& dpart, const StringArray& dop,
                         const StringArray& dtrial, const StringArray& dstd, const StringArray& CategoryOrder,
                         bool Ordinal, bool Between, double CLevel, StringArray& Appraiser,
                         StringArray& Category, DoubleArray& WithinValue, DoubleArray& WithinKappa,
                         DoubleArray& BetweenValue, DoubleArray& BetweenKappa, DoubleArray& StandardValue,
                         DoubleArray& StandardKappa, DoubleArray& AllValue, DoubleArray& AllKappa,
                         DoubleArray& Disagreement, std::string& ErrorCode) const {
  if (!(CLevel > 0 && CLevel < 1)) raise(FailureNumber::InvalidCall, "CLevel must be between 0 and 1");
  Layout layout = layOut(Rows(dy, dpart, dop, dtrial, dstd), listedIn(CategoryOrder), Between);
  if (!layout.fault.empty()) {
    ErrorCode = std::move(layout.fault);
    return;
  }
  Analysis analysis(layout.study, worksheetFunction(), CLevel, Ordinal);
  Answer within = analysis.within();
  Answer between = analysis.between(Between);
  auto [standard, all] = analysis.withStandard();
  DoubleArray disagreement = disagreementsOf(layout.study);

  for (const Answer* const answer : {&within, &between, &standard, &all}) {
    checked::leaving(answer->value, answer->kappa);
  }
  Appraiser = std::move(layout.appraisers);
  Category = std::move(layout.categories);
  WithinValue = std::move(within.value);
  WithinKappa = std::move(within.kappa);
  BetweenValue = onlyRow(between.value);
  BetweenKappa = std::move(between.kappa);
  StandardValue = std::move(standard.value);
  StandardKappa = std::move(standard.kappa);
  AllValue = onlyRow(all.value);
  AllKappa = std::move(all.kappa);
  Disagreement = std::move(disagreement);
}

}  // namespace zelkova
