#include "zelkova/reliability/plotPositions.h"

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzSort.h"
#include "zelkova/reliability/lifeData.h"

namespace zelkova {

namespace {

/// A failure: its row in the order of time, from 1, and the row's frequency.
struct Failed {
  Index row;
  double frequency;
};

/// Shares of the failures among n rows, some of them censored where there are fewer failures than rows.
class Positions {
 public:
  Positions(std::vector<Failed> failures, Index n, double total)
      : failures_(std::move(failures)), n_(static_cast<double>(n)), total_(total) {
    complete_ = static_cast<Index>(failures_.size()) == n;
  }

  std::vector<double> by(std::string_view pMtd) const {
    if (pMtd == "Median rank") return medianRank();
    if (pMtd == "Kaplan-Meier") return kaplanMeier();
    if (pMtd == "Modified Kaplan-Meier") return modifiedKaplanMeier();
    if (pMtd == "Herd-Johnson") return herdJohnson();
    if (pMtd == "Turnbull") return turnbull();
    return std::vector<double>(failures_.size());
  }

 private:
  std::vector<double> medianRank() const {
    std::vector<double> shares;
    double rank = 0;
    for (const Failed& failed : failures_) {
      rank += (n_ + 1 - rank) / (1 + (n_ + 1 - static_cast<double>(failed.row)));
      shares.push_back((rank - 0.3) / (n_ + 0.4));
    }
    return shares;
  }

  std::vector<double> kaplanMeier() const {
    std::vector<double> shares = productLimit(0);
    double before = 0;
    for (double& share : shares) {
      // The step to 1 has no score; nine tenths of it have.
      if (share == 1) share = before + 0.9 * (1 - before);
      before = share;
    }
    return shares;
  }

  std::vector<double> modifiedKaplanMeier() const {
    std::vector<double> shares = productLimit(0);
    if (complete_) {
      for (std::size_t k = 0; k < shares.size(); ++k) shares[k] = (static_cast<double>(k) + 0.5) / n_;
      return shares;
    }
    double before = 0;
    for (double& share : shares) {
      const double after = share;
      share = 1 - ((1 - after) + (1 - before)) / 2;
      before = after;
    }
    return shares;
  }

  std::vector<double> herdJohnson() const { return productLimit(1); }

  std::vector<double> turnbull() const {
    std::vector<double> shares;
    double cumulated = 0;
    for (const Failed& failed : failures_) {
      cumulated += failed.frequency;
      shares.push_back(checked::quotient(cumulated, total_));
    }
    if (!shares.empty() && shares.back() == 1) shares.pop_back();
    return shares;
  }

  /// 1 less the running product of (n - i + extra) / (n - i + 1 + extra) over the failures.
  std::vector<double> productLimit(double extra) const {
    std::vector<double> shares;
    double survival = 1;
    for (std::size_t k = 0; k < failures_.size(); ++k) {
      const double after = n_ - static_cast<double>(failures_[k].row) + extra;
      survival *= after / (after + 1);
      // Without censoring the product is a plain ratio.
      shares.push_back(complete_ ? static_cast<double>(k + 1) / (n_ + extra) : 1 - survival);
    }
    return shares;
  }

  std::vector<Failed> failures_;
  double n_;
  double total_;
  bool complete_ = false;
};

}  // namespace

PlotPositions placeFailures(DoubleArray& SA, DoubleArray& EA, DoubleArray& FA, std::string_view pMtd) {
  requireWholeRows(SA, EA, FA);
  const bool byEnd = pMtd == "Turnbull";
  byEnd ? QuickSortD3(EA, SA, FA) : QuickSortD3(SA, EA, FA);

  PlotPositions result;
  std::vector<Failed> failures;
  double total = 0;
  for (Index i = 1; i <= SA.rows(); ++i) {
    total += FA(i);
    if (EA(i) == NoValue) continue;
    failures.push_back({i, FA(i)});
    result.time.push_back(byEnd ? EA(i) : SA(i));
  }
  result.share = Positions(std::move(failures), SA.rows(), total).by(pMtd);
  result.time.resize(result.share.size());
  return result;
}

}  // namespace zelkova
