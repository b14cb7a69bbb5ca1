#include "zelkova/reliability/lifeData.h"

#include <algorithm>
#include <array>

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

LifeRows lifeRows(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA) {
  const auto starts = SA.vector();
  const auto ends = EA.vector();
  const auto frequencies = FA.vector();
  if (ends.size() < starts.size() || frequencies.size() < starts.size()) raise(FailureNumber::OutOfRange);

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
