#include "zelkova/reliability/lifeData.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "zelkova/frame/arithmetic.h"

namespace zelkova {

namespace {

struct Row {
  double start;
  double end;
  double frequency;
};

bool before(const Row& a, const Row& b) { return a.start != b.start ? a.start < b.start : a.end < b.end; }

/// Sorts the rows and sums those with the same span.
void sumEqualRows(std::vector<Row>& rows) {
  std::sort(rows.begin(), rows.end(), before);
  std::size_t kept = 0;
  for (std::size_t i = 1; i < rows.size(); ++i) {
    if (before(rows[kept], rows[i])) {
      rows[++kept] = rows[i];
    } else {
      rows[kept].frequency += rows[i].frequency;
    }
  }
  if (!rows.empty()) rows.resize(kept + 1);
}

WeightedTimes atTimes(std::vector<Row>& rows) {
  sumEqualRows(rows);
  WeightedTimes result;
  result.time.reserve(rows.size());
  result.frequency.reserve(rows.size());
  for (const Row& row : rows) {
    result.time.push_back(row.start);
    result.frequency.push_back(row.frequency);
  }
  return result;
}

}  // namespace

void requireWholeRows(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA) {
  const Index n = SA.rows();
  if (EA.rows() < n) raise(FailureNumber::OutOfRange, "there are fewer ends than starts");
  if (FA.rows() < n) raise(FailureNumber::OutOfRange, "there are fewer frequencies than starts");
}

double logTime(double t) {
  if (!(t > 0)) raise(FailureNumber::InvalidCall, "a time of 0 or below has no logarithm");
  return checked::log(t);
}

double logRatio(double start, double end) {
  const double growth = (end - start) / start;
  return growth < 1 ? std::log1p(growth) : logTime(end) - logTime(start);
}

KindTotals frequenciesByKind(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA) {
  KindTotals totals;
  const auto of = [&totals](Observation kind) -> double& {
    switch (kind) {
      case Observation::Exact:
        return totals.exact;
      case Observation::Right:
        return totals.right;
      case Observation::Left:
        return totals.left;
      case Observation::Interval:
        break;
    }
    return totals.interval;
  };
  for (Index i = 1; i <= SA.rows(); ++i) of(observationOf(SA(i), EA(i))) += FA(i);
  return totals;
}

LifeRows lifeRows(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA) {
  const auto starts = SA.vector();
  const auto ends = EA.vector();
  const auto frequencies = FA.vector();
  requireWholeRows(SA, EA, FA);

  std::array<std::vector<Row>, 4> byKind;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    const Observation kind = observationOf(starts[i], ends[i]);
    // A row with one time is known by that time alone.
    const double start = kind == Observation::Left ? ends[i] : starts[i];
    const double end = kind == Observation::Right ? starts[i] : ends[i];
    byKind[static_cast<std::size_t>(kind)].push_back({start, end, frequencies[i]});
  }

  LifeRows result;
  result.exact = atTimes(byKind[0]);
  result.right = atTimes(byKind[1]);
  result.left = atTimes(byKind[2]);
  sumEqualRows(byKind[3]);
  for (const Row& row : byKind[3]) {
    result.interval.start.push_back(row.start);
    result.interval.end.push_back(row.end);
    result.interval.frequency.push_back(row.frequency);
  }
  return result;
}

}  // namespace zelkova
