#include "zelkova/reliability/modzDist.h"

#include "zelkova/frame/arithmetic.h"
#include "zelkova/reliability/lifeLikelihood.h"
#include "zelkova/reliability/relationLikelihood.h"

namespace zelkova {

namespace {

/// What a text that names no model gives.
class NoModel : public Objective {
 public:
  double operator()(DoubleArray&) override { return 0; }
};

/// One step of the self-consistency of Turnbull (1976), for spans that do not overlap: each keeps its own
/// weight, so the probabilities are the relative frequencies at once.
class SpanProbabilities : public Objective {
 public:
  explicit SpanProbabilities(DoubleArray FA) : FA_(std::move(FA)) {}

  double operator()(DoubleArray& P) override {
    double total = 0;
    for (const double f : FA_.elements()) total += f;
    double result = 0;
    for (Index i = 1; i <= P.rows(); ++i) {
      const double own = checked::quotient(P(i), P(i)) * FA_(i);
      result += checked::log(P(i));
      P(i) = checked::quotient(own, total);
    }
    return -checked::finite(result);
  }

 private:
  DoubleArray FA_;
};

}  // namespace

std::unique_ptr<Objective> negLogLik(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                                     std::string_view dist, const DoubleArray& hold) {
  if (auto life = lifeLikelihood(SA, EA, FA, dist, hold)) return life;
  if (dist == "ArbTurnbull") return std::make_unique<SpanProbabilities>(FA);
  if (auto acceleration = accelerationLikelihood(SA, EA, FA, dist, hold)) return acceleration;
  if (auto regression = regressionLikelihood(SA, EA, FA, dist)) return regression;
  return std::make_unique<NoModel>();
}

double NegLogLik(DoubleArray& P, const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                 std::string_view dist, const DoubleArray& hold) {
  return (*negLogLik(SA, EA, FA, dist, hold))(P);
}

}  // namespace zelkova
