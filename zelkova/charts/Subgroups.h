#pragma once

#include <span>
#include <string>
#include <vector>

#include "zelkova/frame/Array.h"

/// The routines of modzControl in parts, for callers that need several of one column: they split it once.
namespace zelkova::control {

/// The runs of adjacent equal labels of a column, which must outlive them. Numbers count from 0.
class Subgroups {
 public:
  /// Failure 9 where there are fewer labels than values, 6 where a mean overflows.
  Subgroups(std::span<const double> y, std::span<const std::string> labels);

  Index count() const noexcept { return static_cast<Index>(means_.size()); }
  const std::vector<double>& means() const noexcept { return means_; }
  const std::vector<double>& sizes() const noexcept { return sizes_; }
  double size(Index i) const noexcept { return sizes_[static_cast<std::size_t>(i)]; }
  double mean(Index i) const noexcept { return means_[static_cast<std::size_t>(i)]; }

  std::span<const double> column() const noexcept { return y_; }
  std::span<const double> values(Index i) const {
    const auto place = static_cast<std::size_t>(i);
    return y_.subspan(static_cast<std::size_t>(starts_[place]),
                      static_cast<std::size_t>(starts_[place + 1] - starts_[place]));
  }

  /// `NoValue` for a subgroup of one value.
  double variance(Index i) const;
  double sd(Index i) const;
  double range(Index i) const;

  double largestSize() const;

  /// The most frequent size; of several the one that comes first.
  double modalSize() const;

 private:
  std::span<const double> y_;
  std::vector<Index> starts_;  ///< the first row of each, and one past the last row
  std::vector<double> sizes_;
  std::vector<double> means_;
};

/// Where a run of equal labels begins, among the first `n`, counted from 0; failure 9 where there are fewer.
std::vector<Index> runStarts(std::span<const std::string> labels, std::size_t n);

/// The mean; exactly the common value where all are equal, so that no rounding parts data from their centre.
double meanOf(std::span<const double> values);

/// As the routines `Sigma...` of modzControl.
double sigmaPooled(const Subgroups& subgroups);
double sigmaSbar(const Subgroups& subgroups);
double sigmaRbar(const Subgroups& subgroups);
double sigmaAvgMR(std::span<const double> y, double w);
double sigmaMedianMR(std::span<const double> y, double w);
double sigmaAvgMRMeans(const Subgroups& subgroups, double w);
double sigmaMedianMRMeans(const Subgroups& subgroups, double w);

}  // namespace zelkova::control
