#include "zelkova/reliability/modzDist.h"

#include <vector>

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
/// weight, so the probabilities are the relative frequencies at once. Differences move one or two
/// probabilities at a time, so the logarithms of the others are kept.
class SpanProbabilities : public Objective {
 public:
  explicit SpanProbabilities(const DoubleArray& FA) {
    double total = 0;
    for (const double f : FA.elements()) total += f;
    for (const double f : FA.elements()) share_.push_back(checked::quotient(f, total));
    last_.assign(share_.size(), 1);
    logarithm_.assign(share_.size(), 0);
  }

  double operator()(DoubleArray& P) override {
    const auto probabilities = P.vector();
    if (probabilities.size() > share_.size()) raise(FailureNumber::OutOfRange);
    double result = 0;
    for (std::size_t i = 0; i < probabilities.size(); ++i) {
      if (probabilities[i] != last_[i]) {
        if (probabilities[i] == 0) raise(FailureNumber::DivisionByZero);
        logarithm_[i] = checked::log(probabilities[i]);
        last_[i] = probabilities[i];
      }
      result += logarithm_[i];
      probabilities[i] = share_[i];
    }
    return -checked::finite(result);
  }

 private:
  std::vector<double> share_;
  std::vector<double> last_;
  std::vector<double> logarithm_;
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
