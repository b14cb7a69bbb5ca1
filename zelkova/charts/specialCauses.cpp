#include "zelkova/charts/specialCauses.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::control {

namespace {

/// Where a point lies, as flags. A point that lies beyond one sigma on the side of the centre line on which
/// it stands is `BeyondOne`; likewise two.
enum Place : std::uint8_t {
  Usable = 1,
  Above = 2,
  Below = 4,
  BeyondOne = 8,
  BeyondTwo = 16,
  OutsideOne = 32,  ///< above the upper or below the lower line, on whichever side of the centre
  Plotted = 64,
};

std::uint8_t placeOf(double y, double centre, double lower, double upper) {
  if (y == NoValue) return 0;
  if (centre == NoValue || lower == NoValue || upper == NoValue) return Plotted;
  const double up = upper - centre;
  const double down = centre - lower;
  const bool above = y > centre;
  const bool below = y < centre;
  const bool overOne = y > centre + up;
  const bool underOne = y < centre - down;
  int place = Plotted | Usable;
  if (above) place |= Above;
  if (below) place |= Below;
  if ((above && overOne) || (below && underOne)) place |= BeyondOne;
  if ((above && y > centre + 2 * up) || (below && y < centre - 2 * down)) place |= BeyondTwo;
  if (overOne || underOne) place |= OutsideOne;
  return static_cast<std::uint8_t>(place);
}

/// The eight tests over one chart. Each walks the positions once and keeps how far back its pattern reaches,
/// so that long windows cost no more than short ones. Positions count from 0.
class Tests {
 public:
  Tests(const ChartLines& chart, const std::vector<Index>& phaseStarts)
      : chart_(chart), n_(static_cast<Index>(chart.plotted.size())), failed_(chart.plotted.size(), 0) {
    places_.reserve(chart.plotted.size());
    for (std::size_t i = 0; i < chart.plotted.size(); ++i) {
      places_.push_back(placeOf(chart.plotted[i], chart.centre[i], chart.lower[i], chart.upper[i]));
    }
    startsPhase_.assign(chart.plotted.size(), false);
    for (const Index start : phaseStarts) startsPhase_[static_cast<std::size_t>(start)] = true;
  }

  void run(int test, Index k) {
    switch (test) {
      case 1:
        return farFromCentre(static_cast<double>(k));
      case 2:
        return onOneSide(k);
      case 3:
        return trending(k);
      case 4:
        return alternating(k);
      case 5:
        return mostlyBeyond(BeyondTwo, 5, k);
      case 6:
        return mostlyBeyond(BeyondOne, 6, k);
      case 7:
        return inARow(7, k, [](std::uint8_t place) { return (place & OutsideOne) == 0; });
      default:
        return inARow(8, k, [](std::uint8_t place) { return (place & BeyondOne) != 0; });
    }
  }

  StringArray marks() const {
    std::vector<std::string> texts(failed_.size());
    for (std::size_t i = 0; i < failed_.size(); ++i) {
      for (unsigned left = failed_[i], test = 1; left != 0; left >>= 1, ++test) {
        if ((left & 1) != 0) texts[i].append({'#', static_cast<char>('0' + test), '#'});
      }
    }
    return StringArray(std::move(texts));
  }

 private:
  std::uint8_t place(Index i) const { return places_[static_cast<std::size_t>(i)]; }
  bool is(Index i, Place flag) const { return (place(i) & flag) != 0; }
  bool startsPhase(Index i) const { return startsPhase_[static_cast<std::size_t>(i)]; }

  void signal(Index i, int test) {
    failed_[static_cast<std::size_t>(i)] |= static_cast<std::uint8_t>(1U << (test - 1));
  }

  /// The sign of the step to position `i`.
  int step(Index i) const {
    const double y = chart_.plotted[static_cast<std::size_t>(i)];
    const double before = chart_.plotted[static_cast<std::size_t>(i - 1)];
    return (y > before) - (y < before);
  }

  void farFromCentre(double k) {
    for (Index i = 0; i < n_; ++i) {
      if (!is(i, Usable)) continue;
      const auto at = static_cast<std::size_t>(i);
      const double y = chart_.plotted[at];
      const double centre = chart_.centre[at];
      if (y > centre + k * (chart_.upper[at] - centre) || y < centre - k * (centre - chart_.lower[at])) {
        signal(i, 1);
      }
    }
  }

  void onOneSide(Index k) {
    Index start = 0;
    Index lastAbove = -1;
    Index lastBelow = -1;
    for (Index i = 0; i < n_; ++i) {
      if (startsPhase(i)) start = i;
      if (!is(i, Usable)) start = i + 1;
      if (is(i, Above)) lastAbove = i;
      if (is(i, Below)) lastBelow = i;
      // Deliberate: a point on the centre line is on neither side and counts with both.
      if (i - k + 1 >= start && std::min(lastAbove, lastBelow) <= i - k) signal(i, 2);
    }
  }

  void trending(Index k) {
    Index phase = 0;
    Index length = 0;
    int direction = 0;
    for (Index i = 1; i < n_; ++i) {
      if (startsPhase(i)) phase = i;
      const int next = step(i);
      length = next == 0 ? 0 : next == direction ? length + 1 : 1;
      direction = next;
      // Deliberate: the point before the first step may lie in the phase before, or have no value.
      if (length >= k && i - k + 1 >= phase && is(i, Plotted)) signal(i, 3);
    }
  }

  void alternating(Index k) {
    Index start = 0;
    Index length = 0;
    int direction = 0;
    for (Index i = 1; i < n_; ++i) {
      if (startsPhase(i)) start = i;
      if (!is(i, Usable)) start = i + 1;
      const int next = is(i, Plotted) && is(i - 1, Plotted) ? step(i) : 0;
      length = next == 0 ? 0 : next == -direction ? length + 1 : 1;
      direction = next;
      if (length >= k && i - k + 1 >= start) signal(i, 4);
    }
  }

  /// k out of k + 1 points `beyond` on one side. Deliberate: all k + 1 lie on that side of the centre line,
  /// and the last of them is one of the k, so that a signal stands where something is far off.
  void mostlyBeyond(Place beyond, int test, Index k) {
    for (const Place side : {Above, Below}) {
      Index start = 0;
      Index lastNear = -1;
      Index nearBefore = -1;
      for (Index i = 0; i < n_; ++i) {
        if (startsPhase(i)) start = i;
        if (!is(i, side)) start = i + 1;
        if (!is(i, beyond)) {
          nearBefore = lastNear;
          lastNear = i;
          continue;
        }
        if (i - k >= start && nearBefore < i - k) signal(i, test);
      }
    }
  }

  template <class Passes>
  void inARow(int test, Index k, Passes passes) {
    Index start = 0;
    for (Index i = 0; i < n_; ++i) {
      if (startsPhase(i)) start = i;
      if (!is(i, Usable) || !passes(place(i))) start = i + 1;
      if (i - k + 1 >= start) signal(i, test);
    }
  }

  const ChartLines& chart_;
  Index n_;
  std::vector<std::uint8_t> places_;
  std::vector<bool> startsPhase_;
  std::vector<std::uint8_t> failed_;
};

/// The number a parameter's text holds, nothing where it is blank.
std::optional<Index> parameterOf(std::string_view text, int test) {
  text = trimmed(text);
  if (text.empty()) return std::nullopt;
  const Index k = toInteger<std::int16_t>(toNumber(text));
  // Tests 5 and 6 of 0 out of 1 point still ask something of that point; test 1 takes any distance.
  const Index least = test == 5 || test == 6 ? 0 : 1;
  if (test != 1 && k < least) {
    raise(FailureNumber::OutOfRange, "the parameter of test " + std::to_string(test) + " is too small");
  }
  return k;
}

}  // namespace

StringArray failedTests(const ChartLines& chart, const std::vector<Index>& phaseStarts,
                        const TestParameters& parameters) {
  Tests tests(chart, phaseStarts);
  for (int test = 1; test <= 8; ++test) {
    const std::optional<Index> k = parameterOf(parameters[static_cast<std::size_t>(test - 1)], test);
    if (k) tests.run(test, *k);
  }
  return tests.marks();
}

}  // namespace zelkova::control
