#include "zelkova/reliability/modzLBFGS.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/sums.h"
#include "zelkova/reliability/modzDist.h"
#include "zelkova/reliability/modzRSAP.h"
#include "zelkova/reliability/modzRSGrad.h"

namespace zelkova {

namespace {

using Vector = std::vector<double>;

double dot(const Vector& a, const Vector& b) { return laneProduct(a, b); }
double norm(const Vector& a) { return checked::root(checked::finite(dot(a, a))); }

/// A trial of the line search: the step, the value there and the derivative along the direction.
struct Trial {
  double step = 0;
  double f = 0;
  double slope = 0;
};

/// The interval of uncertainty of a line search and the step to try next (More and Thuente 1994, section 4).
class StepInterval {
 public:
  explicit StepInterval(const Trial& start) : best_(start), other_(start) {}

  const Trial& best() const { return best_; }
  bool bracketed() const { return bracketed_; }
  double middle() const { return best_.step + 0.5 * (other_.step - best_.step); }
  double width() const { return std::abs(other_.step - best_.step); }
  double lower() const { return std::min(best_.step, other_.step); }
  double upper() const { return std::max(best_.step, other_.step); }

  /// Lowers (or raises back) the values at both ends by the line of the given slope through the start.
  void tilt(double slope) {
    for (Trial* end : {&best_, &other_}) {
      end->f -= end->step * slope;
      end->slope -= slope;
    }
  }

  /// Takes the trial `tried` into the interval and gives the next step, within `least` and `largest`; false
  /// where the trial does not belong to the interval.
  bool update(const Trial& tried, double least, double largest, double& next) {
    if (bracketed_ && (tried.step <= lower() || tried.step >= upper())) return false;
    if (best_.slope * (tried.step - best_.step) >= 0 || largest < least) return false;
    const bool signsDiffer = tried.slope * (best_.slope / std::abs(best_.slope)) < 0;

    const bool flattens = std::abs(tried.slope) < std::abs(best_.slope);
    const bool held = tried.f <= best_.f && !signsDiffer && flattens && bracketed_;
    double proposed = 0;
    if (tried.f > best_.f) {
      proposed = afterRise(tried);
      bracketed_ = true;
    } else if (signsDiffer) {
      proposed = afterTurn(tried);
      bracketed_ = true;
    } else if (flattens) {
      proposed = afterFlattening(tried, least, largest);
    } else {
      proposed = afterSteepFall(tried, least, largest);
    }

    if (tried.f > best_.f) {
      other_ = tried;
    } else {
      if (signsDiffer) other_ = best_;
      best_ = tried;
    }
    next = std::max(least, std::min(largest, proposed));
    if (held) {
      const double most = best_.step + 0.66 * (other_.step - best_.step);
      next = other_.step > best_.step ? std::min(most, next) : std::max(most, next);
    }
    return true;
  }

 private:
  /// The terms of the cubic through two trials: theta, and gamma from the scaled radicand.
  static double theta(const Trial& a, const Trial& b) {
    return 3 * checked::quotient(a.f - b.f, b.step - a.step) + a.slope + b.slope;
  }
  static double gamma(double theta, double slopeA, double slopeB, bool atLeastZero) {
    const double scale = std::max({std::abs(theta), std::abs(slopeA), std::abs(slopeB)});
    double radicand = RSSqr(checked::quotient(theta, scale)) - slopeA / scale * (slopeB / scale);
    if (atLeastZero) radicand = std::max(0.0, radicand);
    return scale * checked::root(radicand);
  }

  /// The value has risen: the minimum lies between; the cubic's or the mean of both, whichever is nearer.
  double afterRise(const Trial& tried) const {
    const double t = theta(best_, tried);
    double g = gamma(t, best_.slope, tried.slope, false);
    if (tried.step < best_.step) g = -g;
    const double r = checked::quotient(g - best_.slope + t, g - best_.slope + g + tried.slope);
    const double distance = tried.step - best_.step;
    const double cubic = best_.step + r * distance;
    const double quadratic =
        best_.step +
        checked::quotient(best_.slope, checked::quotient(best_.f - tried.f, distance) + best_.slope) / 2 *
            distance;
    const bool cubicNearer = std::abs(cubic - best_.step) < std::abs(quadratic - best_.step);
    return cubicNearer ? cubic : cubic + (quadratic - cubic) / 2;
  }

  /// The value fell and the slope turned: the minimum lies between; the step farther from the trial.
  double afterTurn(const Trial& tried) const {
    const double t = theta(best_, tried);
    double g = gamma(t, best_.slope, tried.slope, false);
    if (tried.step > best_.step) g = -g;
    const double r = checked::quotient(g - tried.slope + t, g - tried.slope + g + best_.slope);
    const double cubic = tried.step + r * (best_.step - tried.step);
    const double secant = secantStep(tried);
    return std::abs(cubic - tried.step) > std::abs(secant - tried.step) ? cubic : secant;
  }

  /// The value fell and the slope shrank: the cubic only where it tends to the right place.
  double afterFlattening(const Trial& tried, double least, double largest) const {
    const double t = theta(best_, tried);
    double g = gamma(t, best_.slope, tried.slope, true);
    if (tried.step > best_.step) g = -g;
    const double r = checked::quotient(g - tried.slope + t, g + (best_.slope - tried.slope) + g);
    double cubic = tried.step > best_.step ? largest : least;
    if (r < 0 && g != 0) cubic = tried.step + r * (best_.step - tried.step);
    const double secant = secantStep(tried);
    const bool cubicNearer = std::abs(tried.step - cubic) < std::abs(tried.step - secant);
    return cubicNearer == bracketed_ ? cubic : secant;
  }

  /// The value fell and the slope did not shrink: as far as the interval or the bounds let it.
  double afterSteepFall(const Trial& tried, double least, double largest) const {
    if (!bracketed_) return tried.step > best_.step ? largest : least;
    const double t = theta(other_, tried);
    double g = gamma(t, other_.slope, tried.slope, false);
    if (tried.step > other_.step) g = -g;
    const double r = checked::quotient(g - tried.slope + t, g - tried.slope + g + other_.slope);
    return tried.step + r * (other_.step - tried.step);
  }

  double secantStep(const Trial& tried) const {
    return tried.step + checked::quotient(tried.slope, tried.slope - best_.slope) * (best_.step - tried.step);
  }

  Trial best_;
  Trial other_;
  bool bracketed_ = false;
};

/// A point of the search with the objective's value and gradient there.
struct Point {
  DoubleArray x;
  double f = 0;
  Vector g;

  void evaluate(Objective& objective) {
    DoubleArray gradient;
    RSGradient(x, f, gradient, objective);
    checked::finite(f);
    g.assign(gradient.elements().begin(), gradient.elements().end());
  }
};

/// Moves `point` along `direction`, from a first trial of `step`, to where the value has fallen enough and
/// the slope is flat enough (the strong Wolfe conditions), or as near as rounding and the count of trials
/// allow. False where the direction does not descend.
bool searchLine(Point& point, const Vector& direction, double step, Objective& objective) {
  constexpr double valueTolerance = 1E-4;
  constexpr double slopeTolerance = 0.9;
  constexpr double widthTolerance = 5E-14;
  constexpr double leastStep = 1E-20;
  constexpr double largestStep = 1E20;
  constexpr double extrapolation = 4;
  constexpr int mostTrials = 20;

  const double startSlope = dot(point.g, direction);
  if (!(startSlope < 0) || step <= 0) return false;
  const DoubleArray start = point.x;
  const double startValue = point.f;
  const double wantedSlope = valueTolerance * startSlope;

  StepInterval interval({0, startValue, startSlope});
  bool stepKnown = true;
  bool firstStage = true;
  double width = largestStep - leastStep;
  double widthBefore = 2 * width;
  for (int trials = 0;;) {
    const bool bracketed = interval.bracketed();
    const double least = bracketed ? interval.lower() : interval.best().step;
    const double largest =
        bracketed ? interval.upper() : step + extrapolation * (step - interval.best().step);
    step = std::max(leastStep, std::min(largestStep, step));
    const bool tight = bracketed && largest - least <= widthTolerance * largest;
    const auto atBound = [&] { return bracketed && (step <= least || step >= largest); };
    if (atBound() || tight || !stepKnown || (bracketed && trials >= mostTrials - 1))
      step = interval.best().step;

    for (std::size_t i = 0; i < direction.size(); ++i) {
      point.x.elements()[i] = start.elements()[i] + step * direction[i];
    }
    point.evaluate(objective);
    ++trials;
    const Trial tried{step, point.f, dot(point.g, direction)};
    const double line = startValue + step * wantedSlope;

    // Why a search ends makes no difference to the method: the point that it has reached is taken.
    const bool wolfe = tried.f <= line && std::abs(tried.slope) <= slopeTolerance * -startSlope;
    const bool atLargest = step == largestStep && tried.f <= line && tried.slope <= wantedSlope;
    const bool atLeast = step == leastStep && (tried.f > line || tried.slope >= wantedSlope);
    const bool rounded = atBound() || tight || !stepKnown;
    if (wolfe || atLargest || atLeast || rounded || trials >= mostTrials) return true;

    if (firstStage && tried.f <= line &&
        tried.slope >= std::min(valueTolerance, slopeTolerance) * startSlope) {
      firstStage = false;
    }
    // At first the function less its wanted decrease is searched: its minimum is a step that falls enough.
    if (firstStage && tried.f <= interval.best().f && tried.f > line) {
      interval.tilt(wantedSlope);
      const Trial tilted{step, tried.f - step * wantedSlope, tried.slope - wantedSlope};
      stepKnown = interval.update(tilted, least, largest, step);
      interval.tilt(-wantedSlope);
    } else {
      stepKnown = interval.update(tried, least, largest, step);
    }
    if (interval.bracketed()) {
      if (interval.width() >= 0.66 * widthBefore) step = interval.middle();
      widthBefore = width;
      width = interval.width();
    }
  }
}

/// The last steps and the changes of the gradient over them, which stand for the second derivatives.
class Corrections {
 public:
  explicit Corrections(std::size_t slots) : pairs_(slots) {}

  void add(Vector step, Vector change) {
    const double product = dot(step, change);
    scale_ = checked::quotient(product, dot(change, change));
    pairs_[next_] = {std::move(step), std::move(change), checked::quotient(1, product), 0};
    next_ = (next_ + 1) % pairs_.size();
    held_ = std::min(held_ + 1, pairs_.size());
  }

  /// The direction of descent -H g, by the two-loop recursion.
  Vector direction(const Vector& gradient) {
    Vector d(gradient.size());
    for (std::size_t i = 0; i < d.size(); ++i) d[i] = -gradient[i];
    for (std::size_t back = 1; back <= held_; ++back) {
      Pair& pair = newest(back);
      pair.weight = pair.reciprocal * dot(pair.step, d);
      for (std::size_t i = 0; i < d.size(); ++i) d[i] -= pair.weight * pair.change[i];
    }
    for (double& element : d) element *= scale_;
    for (std::size_t back = held_; back >= 1; --back) {
      const Pair& pair = newest(back);
      const double correction = pair.weight - pair.reciprocal * dot(pair.change, d);
      for (std::size_t i = 0; i < d.size(); ++i) d[i] += correction * pair.step[i];
    }
    return d;
  }

 private:
  struct Pair {
    Vector step;
    Vector change;
    double reciprocal = 0;
    double weight = 0;
  };

  Pair& newest(std::size_t back) { return pairs_[(next_ + pairs_.size() - back) % pairs_.size()]; }

  std::vector<Pair> pairs_;
  std::size_t next_ = 0;
  std::size_t held_ = 0;
  double scale_ = 1;
};

Minimised minimise(std::size_t m, DoubleArray& x, double EpsG, double EpsF, double EpsX, int MaxIts,
                   int& Iter, Objective& objective) {
  Point point{x, 0, {}};
  point.evaluate(objective);
  x = point.x;
  if (norm(point.g) <= EpsG) return Minimised::GradientVanished;

  Corrections corrections(m);
  double step = 1 / norm(point.g);
  Vector direction = corrections.direction(point.g);
  for (;;) {
    const Point before = point;
    if (!searchLine(point, direction, step, objective)) return Minimised::Refused;
    x = point.x;
    ++Iter;

    Vector moved(direction.size());
    Vector change(direction.size());
    for (std::size_t i = 0; i < moved.size(); ++i) {
      moved[i] = point.x.elements()[i] - before.x.elements()[i];
      change[i] = point.g[i] - before.g[i];
    }
    if (norm(point.g) <= EpsG) return Minimised::GradientVanished;
    const double size = std::max({std::abs(before.f), std::abs(point.f), 1.0});
    if (before.f - point.f <= EpsF * size) return Minimised::ValueSettled;
    // deliberate: an absolute length, so that parameters near 0 are settled to the same digits as large ones.
    if (norm(moved) <= EpsX) return Minimised::PointSettled;
    if (Iter >= MaxIts) return Minimised::IterationLimit;

    corrections.add(std::move(moved), std::move(change));
    direction = corrections.direction(point.g);
    step = 1;
  }
}

}  // namespace

void LBFGSMinimize(int n, int m, DoubleArray& x, double EpsG, double EpsF, double EpsX, int MaxIts, int& Info,
                   int& Iter, Objective& objective) {
  Iter = 0;
  Info = static_cast<int>(Minimised::Refused);
  if (n <= 0 || m <= 0 || m > n || EpsG < 0 || EpsF < 0 || EpsX < 0 || MaxIts < 0) return;
  if (x.rows() != n) raise(FailureNumber::OutOfRange);
  Info =
      static_cast<int>(minimise(static_cast<std::size_t>(m), x, EpsG, EpsF, EpsX, MaxIts, Iter, objective));
}

void LBFGSMinimize(int n, int m, DoubleArray& x, double EpsG, double EpsF, double EpsX, int MaxIts, int& Info,
                   int& Iter, const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                   std::string_view dist, const DoubleArray& hold) {
  LBFGSMinimize(n, m, x, EpsG, EpsF, EpsX, MaxIts, Info, Iter, *negLogLik(SA, EA, FA, dist, hold));
}

}  // namespace zelkova
