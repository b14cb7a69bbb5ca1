#include <algorithm>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

/// Which rows have an end strictly inside another's span, or another's end strictly inside theirs.
std::vector<bool> overlapping(std::span<const double> starts, std::span<const double> ends) {
  struct Span {
    double start;
    double end;
  };
  std::vector<Span> spans;
  std::vector<double> bounds;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    if (starts[i] == NoValue || ends[i] == NoValue) continue;
    spans.push_back({starts[i], ends[i]});
    bounds.push_back(starts[i]);
    bounds.push_back(ends[i]);
  }
  std::sort(bounds.begin(), bounds.end());
  std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.start < b.start; });

  // The latest end of all spans up to each, in the order of their starts.
  std::vector<double> latestEnd;
  latestEnd.reserve(spans.size());
  for (const Span& span : spans) {
    latestEnd.push_back(latestEnd.empty() ? span.end : std::max(latestEnd.back(), span.end));
  }
  const auto insideAnother = [&](double t) {
    const auto from =
        std::partition_point(spans.begin(), spans.end(), [t](const Span& span) { return span.start < t; });
    return from != spans.begin() && latestEnd[static_cast<std::size_t>(from - spans.begin()) - 1] > t;
  };
  const auto hasInside = [&](double start, double end) {
    const auto above = std::upper_bound(bounds.begin(), bounds.end(), start);
    return above != bounds.end() && *above < end;
  };

  std::vector<bool> result(starts.size());
  for (std::size_t i = 0; i < starts.size(); ++i) {
    if (starts[i] == NoValue || ends[i] == NoValue) continue;
    result[i] = insideAnother(starts[i]) || insideAnother(ends[i]) || hasInside(starts[i], ends[i]);
  }
  return result;
}

}  // namespace

void yReliability::HandleOverlap(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA) const {
  const Index n = SA.rows();
  requireWholeRows(SA, EA, FA);
  const std::vector<bool> flagged = overlapping(SA.vector(), EA.vector().first(static_cast<std::size_t>(n)));

  std::vector<double> starts;
  std::vector<double> ends;
  std::vector<double> frequencies;
  double latestStart = -NoValue;
  double earliestEnd = NoValue;
  double merged = 0;
  for (Index i = 1; i <= n; ++i) {
    if (flagged[static_cast<std::size_t>(i - 1)]) {
      latestStart = std::max(latestStart, SA(i));
      earliestEnd = std::min(earliestEnd, EA(i));
      merged += FA(i);
      continue;
    }
    starts.push_back(SA(i));
    ends.push_back(EA(i));
    frequencies.push_back(FA(i));
  }
  if (static_cast<Index>(starts.size()) < n) {
    starts.push_back(latestStart);
    ends.push_back(earliestEnd);
    frequencies.push_back(checked::finite(merged));
  }
  SA = DoubleArray(std::move(starts));
  EA = DoubleArray(std::move(ends));
  FA = DoubleArray(std::move(frequencies));
}

}  // namespace zelkova
