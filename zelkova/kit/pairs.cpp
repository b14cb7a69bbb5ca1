#include "zelkova/kit/pairs.h"

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/order.h"

namespace zelkova::pairs {

namespace {

// The pairs make a matrix whose rows and columns ascend, rounding included: one walk along its staircase
// counts the elements up to a bound (Johnson and Mizoguchi, 1978). Halving the bits of the bound ends at an
// element after 64 walks at most, on any data.

/// The smallest number up to which `countUpTo` counts k elements or more. `smallest` and `largest` are those
/// of the elements.
template <class CountUpTo>
double select(double smallest, double largest, Index k, CountUpTo countUpTo) {
  order::Key low = order::keyOf(smallest);
  order::Key high = order::keyOf(largest);
  while (low < high) {
    const order::Key middle = low + (high - low) / 2;
    if (countUpTo(order::fromOrderedBits(middle)) >= k) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  // -0 counts what 0 counts, and stands before it.
  return checked::finite(order::fromOrderedBits(low) + 0.0);
}

template <class Select>
double medianOf(Index count, Select kth) {
  if (count % 2 != 0) return kth(count / 2 + 1);
  return checked::finite((kth(count / 2) + kth(count / 2 + 1)) / 2);
}

Index sumsUpTo(std::span<const double> sorted, double bound) {
  const double* const x = sorted.data();
  Index count = 0;
  Index i = 0;
  Index j = static_cast<Index>(sorted.size()) - 1;
  while (i <= j) {
    // Without a branch: no processor can foresee which way the staircase turns.
    const Index within = x[i] + x[j] <= bound ? 1 : 0;
    count += -within & (j - i + 1);
    i += within;
    j -= 1 - within;
  }
  return count;
}

Index differencesUpTo(std::span<const double> sortedX, std::span<const double> sortedY, double bound) {
  const double* const x = sortedX.data();
  const double* const y = sortedY.data();
  const auto n = static_cast<Index>(sortedX.size());
  const auto m = static_cast<Index>(sortedY.size());
  Index count = 0;
  Index i = 0;
  Index j = 0;
  while (i < n && j < m) {
    const Index within = x[i] - y[j] <= bound ? 1 : 0;
    count += -within & (m - j);
    i += within;
    j += 1 - within;
  }
  return count;
}

}  // namespace

double walshAverage(std::span<const double> sorted, Index k) {
  // Halving keeps the order, so the sums are selected from.
  return select(2 * sorted.front(), 2 * sorted.back(), k,
                [sorted](double bound) { return sumsUpTo(sorted, bound); }) /
         2;
}

double walshMedian(std::span<const double> sorted) {
  return medianOf(walshCount(static_cast<Index>(sorted.size())),
                  [sorted](Index k) { return walshAverage(sorted, k); });
}

double medianDifference(std::span<const double> sortedX, std::span<const double> sortedY) {
  return medianOf(static_cast<Index>(sortedX.size() * sortedY.size()), [=](Index k) {
    return select(sortedX.front() - sortedY.back(), sortedX.back() - sortedY.front(), k,
                  [=](double bound) { return differencesUpTo(sortedX, sortedY, bound); });
  });
}

}  // namespace zelkova::pairs
