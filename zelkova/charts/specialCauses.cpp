#include "zelkova/charts/specialCauses.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <string>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::control {

namespace {

/// One flag for each position of a chart, in words, so that a question about every window costs a few passes
/// over the words, however long the window is. Positions count from 0; what lies before the first is false.
class Flags {
 public:
  template <class Predicate>
  Flags(std::size_t n, Predicate predicate) : words_((n + bits - 1) / bits) {
    // The answers first, in a loop that the compiler turns into vector instructions, then packed.
    const auto wordAt = [&](std::size_t first, std::size_t count) {
      std::array<std::uint8_t, bits> answers{};
      for (std::size_t i = 0; i < count; ++i) answers[i] = predicate(first + i) ? 1 : 0;
      return packed(answers);
    };
    for (std::size_t word = 0; word < n / bits; ++word) words_[word] = wordAt(word * bits, bits);
    if (n % bits != 0) words_.back() = wordAt(n - n % bits, n % bits);
  }

  Flags& operator&=(const Flags& other) {
    for (std::size_t i = 0; i < words_.size(); ++i) words_[i] &= other.words_[i];
    return *this;
  }
  Flags& operator|=(const Flags& other) {
    for (std::size_t i = 0; i < words_.size(); ++i) words_[i] |= other.words_[i];
    return *this;
  }
  friend Flags operator&(Flags a, const Flags& b) { return a &= b; }
  friend Flags operator|(Flags a, const Flags& b) { return a |= b; }
  friend Flags operator~(Flags a) {
    for (std::uint64_t& word : a.words_) word = ~word;
    return a;
  }

  bool operator[](std::size_t i) const { return (words_[i / bits] >> (i % bits) & 1) != 0; }
  void clear(std::size_t i) { words_[i / bits] &= ~(std::uint64_t{1} << (i % bits)); }

  /// Each flag moved `places` later.
  Flags later(Index places) const {
    Flags result = *this;
    const auto shift = static_cast<std::size_t>(places);
    const std::size_t whole = shift / bits;
    const std::size_t part = shift % bits;
    for (std::size_t i = words_.size(); i-- > 0;) {
      std::uint64_t word = i >= whole ? words_[i - whole] << part : 0;
      if (part != 0 && i > whole) word |= words_[i - whole - 1] >> (bits - part);
      result.words_[i] = word;
    }
    return result;
  }

  /// Calls visit(i) for each of the first `n` positions whose flag is set, in order.
  template <class Visit>
  void forEach(std::size_t n, Visit visit) const {
    for (std::size_t word = 0; word < words_.size(); ++word) {
      for (std::uint64_t left = words_[word]; left != 0; left &= left - 1) {
        const std::size_t i = word * bits + static_cast<std::size_t>(std::countr_zero(left));
        if (i < n) visit(i);
      }
    }
  }

 private:
  static constexpr std::size_t bits = 64;

  static std::uint64_t packed(const std::array<std::uint8_t, bits>& answers) {
    std::uint64_t word = 0;
    for (std::size_t byte = 0; byte < 8; ++byte) {
      std::uint64_t eight = 0;
      for (std::size_t i = 0; i < 8; ++i) eight |= std::uint64_t{answers[8 * byte + i]} << (8 * i);
      // The product brings the lowest bit of byte i to place 56 + i.
      word |= ((eight * 0x0102040810204080) >> 56) << (8 * byte);
    }
    return word;
  }

  std::vector<std::uint64_t> words_;
};

/// Of the windows of one length that end at each position: whether the flag is set at all places, and at all
/// but one at most.
struct Windows {
  Flags all, allButOne;
};

/// The windows made of `earlier` and the windows of `length` places behind them.
Windows joined(const Windows& earlier, const Windows& recent, Index length) {
  const Flags all = earlier.all.later(length);
  return {all & recent.all, (earlier.allButOne.later(length) & recent.all) | (all & recent.allButOne)};
}

/// The windows of `k` places, put together from those whose lengths are powers of two.
Windows windowsOf(const Flags& flag, Index k) {
  const Flags always = flag | ~flag;
  Windows piece{flag, always};
  std::optional<Windows> result;
  for (Index length = 1; length <= k; length *= 2) {
    if ((k & length) != 0) result = result ? joined(*result, piece, length) : piece;
    if (2 * length <= k) piece = joined(piece, piece, length);
  }
  return result.value_or(Windows{always, always});
}

/// Whether the flag is set at all `k` places that end at a position; always for a `k` of 0.
Flags inARow(const Flags& flag, Index k) {
  if (k == 0) return flag | ~flag;
  Flags result = flag;
  Index length = 1;
  for (; 2 * length <= k; length *= 2) result &= result.later(length);
  // The two pieces may overlap.
  if (length < k) result &= result.later(k - length);
  return result;
}

/// The eight tests over one chart, each a formula on flags.
class Tests {
 public:
  Tests(const ChartLines& chart, const std::vector<Index>& phaseStarts)
      : chart_(chart), samePhase_(everywhereBut(phaseStarts)) {}

  Flags run(int test, Index k) const {
    switch (test) {
      case 1:
        return usable_ & (above(static_cast<double>(k)) | below(static_cast<double>(k)));
      case 2:
        // Deliberate: a point on the centre line is on neither side and counts with both.
        return inPhase(usable_, k) & (inARow(~above_, k) | inARow(~below_, k));
      case 3:
        // Deliberate: the point before the first step may lie in the phase before, or have no value.
        return plotted_ & inARow(samePhase_, k - 1) & (inARow(rises_, k) | inARow(falls_, k));
      case 4:
        return alternating(k);
      case 5:
        return mostlyBeyond(above(2), below(2), k);
      case 6:
        return mostlyBeyond(overOne_, underOne_, k);
      case 7:
        return inPhase(usable_ & ~(overOne_ | underOne_), k);
      default:
        return inPhase(usable_ & outside(), k);
    }
  }

 private:
  template <class Predicate>
  Flags where(Predicate predicate) const {
    return Flags(chart_.plotted.size(), predicate);
  }

  Flags everywhereBut(const std::vector<Index>& places) const {
    Flags others = where([](std::size_t) { return true; });
    for (const Index place : places) others.clear(static_cast<std::size_t>(place));
    return others;
  }

  /// `flag` at all `k` places that end at a position, none of which but the first begins a phase.
  Flags inPhase(const Flags& flag, Index k) const { return inARow(flag, k) & inARow(samePhase_, k - 1); }

  /// Points more than `k` sigma above or below the centre line, sigma being that of the side.
  Flags above(double k) const {
    return where([this, k](std::size_t i) {
      const double centre = chart_.centre[i];
      return chart_.plotted[i] > centre + k * (chart_.upper[i] - centre);
    });
  }
  Flags below(double k) const {
    return where([this, k](std::size_t i) {
      const double centre = chart_.centre[i];
      return chart_.plotted[i] < centre - k * (centre - chart_.lower[i]);
    });
  }

  /// Points beyond the one-sigma line of their side, by the line as it stands: one exactly on it is within,
  /// whatever the rounding of a distance.
  Flags outside() const {
    return where([this](std::size_t i) {
      const double y = chart_.plotted[i];
      return ((y > chart_.centre[i]) & (y > chart_.upper[i])) |
             ((y < chart_.centre[i]) & (y < chart_.lower[i]));
    });
  }

  Flags alternating(Index k) const {
    const Flags steps = (rises_ | falls_) & plotted_ & plotted_.later(1);
    const Flags turns = (rises_ & falls_.later(1)) | (falls_ & rises_.later(1));
    return inPhase(usable_, k) & inARow(steps, k) & inARow(turns, k - 1);
  }

  /// k out of k + 1 points far off. Deliberate: all k + 1 lie on one side of the centre line, and the last of
  /// them is one of the k, so that a signal stands where something is far off.
  Flags mostlyBeyond(const Flags& farAbove, const Flags& farBelow, Index k) const {
    const auto onSide = [&](const Flags& side, const Flags& far) {
      return inPhase(usable_ & side, k + 1) & windowsOf(far, k + 1).allButOne & far;
    };
    return onSide(above_, farAbove) | onSide(below_, farBelow);
  }

  ChartLines chart_;
  Flags samePhase_;  ///< the position does not begin a phase
  Flags plotted_ = where([this](std::size_t i) { return chart_.plotted[i] != NoValue; });
  Flags usable_ =
      plotted_ & where([this](std::size_t i) {
        return (chart_.centre[i] != NoValue) & (chart_.lower[i] != NoValue) & (chart_.upper[i] != NoValue);
      });
  Flags above_ = where([this](std::size_t i) { return chart_.plotted[i] > chart_.centre[i]; });
  Flags below_ = where([this](std::size_t i) { return chart_.plotted[i] < chart_.centre[i]; });
  Flags overOne_ = above(1);
  Flags underOne_ = below(1);
  Flags rises_ = where([this](std::size_t i) { return i > 0 && chart_.plotted[i] > chart_.plotted[i - 1]; });
  Flags falls_ = where([this](std::size_t i) { return i > 0 && chart_.plotted[i] < chart_.plotted[i - 1]; });
};

/// The number a parameter's text holds, nothing where it is blank.
std::optional<Index> parameterOf(std::string_view text, int test) {
  text = trimmed(text);
  if (text.empty()) return std::nullopt;
  const Index k = toInteger<std::int16_t>(toNumber(text, ("kvar" + std::to_string(test)).c_str()));
  // Tests 5 and 6 of 0 out of 1 point still ask something of that point; test 1 takes any distance.
  const Index least = test == 5 || test == 6 ? 0 : 1;
  if (test != 1 && k < least) {
    raise(FailureNumber::OutOfRange, "the parameter of test " + std::to_string(test) + " is too small");
  }
  return k;
}

/// Where a test signals, and the digit of its mark.
struct Signals {
  char digit;
  Flags flags;
};

}  // namespace

void markFailedTests(const ChartLines& chart, const std::vector<Index>& phaseStarts,
                     const TestParameters& parameters, StringArray& FailedTest) {
  const std::size_t n = chart.plotted.size();
  const Tests tests(chart, phaseStarts);
  std::vector<Signals> signals;
  Flags any = Flags(n, [](std::size_t) { return false; });
  for (int test = 1; test <= 8; ++test) {
    const std::optional<Index> k = parameterOf(parameters[static_cast<std::size_t>(test - 1)], test);
    if (!k) continue;
    signals.push_back({static_cast<char>('0' + test), tests.run(test, *k)});
    any |= signals.back().flags;
  }

  // All tests at once: on a chart of a million points the marks are far larger than the flags. For the same
  // reason marks of the same number are written over, and not made anew.
  const bool reused = FailedTest.dimensions() == 1 && FailedTest.rows() == static_cast<Index>(n);
  if (!reused) FailedTest = StringArray(static_cast<Index>(n));
  const std::span<std::string> marks = FailedTest.elements();
  if (reused) std::for_each(marks.begin(), marks.end(), [](std::string& mark) { mark.clear(); });
  any.forEach(n, [&](std::size_t i) {
    std::array<char, 24> text{};
    std::size_t length = 0;
    for (const Signals& signal : signals) {
      if (!signal.flags[i]) continue;
      for (const char c : {'#', signal.digit, '#'}) text[length++] = c;
    }
    marks[i].assign(text.data(), length);
  });
}

}  // namespace zelkova::control
