#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/lifeData.h"
#include "zelkova/reliability/locationModel.h"
#include "zelkova/reliability/percentiles.h"
#include "zelkova/reliability/relationLikelihood.h"
#include "zelkova/reliability/retry.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

constexpr std::string_view relations[] = {"Linear", "Arrhenius", "Inverse Temp", "Ln(Power)"};

bool isRelation(const std::string& accf) {
  return std::find(std::begin(relations), std::end(relations), accf) != std::end(relations);
}

/// A relation between stress and location: x is the transformed stress.
class Relation {
 public:
  explicit Relation(const std::string& accf) : name_("|" + accf) {}

  double x(double stress) const { return transformedStress(name_, stress); }
  double stress(double at) const { return stressAt(name_, at); }

 private:
  std::string name_;
};

/// The rows of each stress level, in the order of the levels.
std::vector<Sample> samplesOf(const Levels& levels, const DoubleArray& SA, const DoubleArray& EA,
                              const DoubleArray& FA) {
  struct Columns {
    std::vector<double> starts, ends, frequencies;
  };
  std::vector<Columns> columns(static_cast<std::size_t>(levels.count()));
  for (Index i = 1; i <= SA.rows(); ++i) {
    Columns& own = columns[static_cast<std::size_t>(levels.codes()[static_cast<std::size_t>(i - 1)])];
    own.starts.push_back(SA(i));
    own.ends.push_back(EA(i));
    own.frequencies.push_back(FA(i));
  }
  std::vector<Sample> samples;
  samples.reserve(columns.size());
  for (Columns& own : columns) {
    samples.push_back({DoubleArray(std::move(own.starts)), DoubleArray(std::move(own.ends)),
                       DoubleArray(std::move(own.frequencies))});
  }
  return samples;
}

/// A table with a column for each fit, the shorter ones filled up with `NoValue`; `columnOf` gives a span.
template <class ColumnOf>
DoubleArray sideBySide(const std::vector<SingleFit>& fits, ColumnOf columnOf) {
  std::size_t longest = 0;
  for (const SingleFit& fit : fits) longest = std::max(longest, columnOf(fit).size());
  DoubleArray table(static_cast<Index>(longest), static_cast<Index>(fits.size()), NoValue);
  for (std::size_t j = 0; j < fits.size(); ++j) {
    const std::span<const double> column = columnOf(fits[j]);
    for (std::size_t i = 0; i < column.size(); ++i) {
      table(static_cast<Index>(i + 1), static_cast<Index>(j + 1)) = column[i];
    }
  }
  return table;
}

/// A column of the probability line of each fit.
DoubleArray linesSideBySide(const std::vector<SingleFit>& fits, ProbabilityLine::Slot slot) {
  return sideBySide(fits, [slot](const SingleFit& fit) {
    return fit.fitted ? fit.PlotHVLU.column(slot) : std::span<const double>();
  });
}

/// Where the search for (spread, b0, b1) starts: the mean spread of the levels that could be fitted alone,
/// and the line of their locations on x.
DoubleArray startOf(WorksheetFunction& host, const LocationModel& model, const Relation& relation,
                    const DoubleArray& stresses, const std::vector<SingleFit>& fits) {
  std::vector<double> spreads, locations, x;
  for (std::size_t level = 0; level < fits.size(); ++level) {
    const SingleFit& fit = fits[level];
    if (!fit.fitted) continue;
    spreads.push_back(fit.P(fit.P.rows()));
    locations.push_back(model.location(fit.P(1)));
    x.push_back(relation.x(stresses(static_cast<Index>(level + 1))));
  }
  if (locations.empty()) return {1, 0, 0};
  const DoubleArray m(std::move(locations));
  const DoubleArray at(std::move(x));
  const double slope = m.rows() > 1 ? host.Slope(m, at) : 0;
  return {host.Average(DoubleArray(std::move(spreads))), host.Average(m) - slope * host.Average(at), slope};
}

/// The joint estimate: (spread, b0, b1) with the covariance matrix, 0 for held parameters.
struct JointFit {
  DoubleArray P;
  DoubleArray V;
  DoubleArray MLO;

  double location(double x) const { return P(2) + P(3) * x; }
  double locationVariance(double x) const { return V(2, 2) + 2 * x * V(2, 3) + x * x * V(3, 3); }
  double spreadCovariance(double x) const { return V(1, 2) + x * V(1, 3); }

  LifeFitted lifeAt(const LocationModel& model, double x) const {
    return model.lifeAt(location(x), P(1), locationVariance(x), V(1, 1), spreadCovariance(x));
  }
};

/// The covariance matrix from the information, 0 for held parameters; failure 5 for a negative variance.
DoubleArray covarianceOf(const DoubleArray& FM, const DoubleArray& held) {
  DoubleArray V = MatInverse(FM);
  for (Index k = 1; k <= 3; ++k) {
    for (Index j = 1; j <= 3; ++j) {
      if (held(k) != NoValue || held(j) != NoValue) V(k, j) = 0;
    }
    checked::root(V(k, k));
  }
  return V;
}

/// The transformed stresses of the relation plot: evenly from the least to the largest of all stresses.
std::vector<double> stressGrid(const Relation& relation, const DoubleArray& levels,
                               const DoubleArray& predictT) {
  const auto tested = levels.elements();
  const auto wanted = predictT.elements();
  std::vector<double> stresses(tested.begin(), tested.end());
  stresses.insert(stresses.end(), wanted.begin(), wanted.end());
  const auto [least, largest] = std::minmax_element(stresses.begin(), stresses.end());
  const double from = relation.x(*least);
  const double to = relation.x(*largest);
  constexpr int points = 50;
  std::vector<double> grid;
  grid.reserve(points);
  for (int i = 0; i < points; ++i) grid.push_back(from + (to - from) * i / (points - 1));
  return grid;
}

/// The location and a percentile with limits at each point of the grid.
struct RelationPlot {
  DoubleArray line;
  DoubleArray stress;
  DoubleArray life;
  DoubleArray lower;
  DoubleArray upper;
};

RelationPlot relationPlot(const LocationModel& model, const JointFit& fit, const Relation& relation,
                          const std::vector<double>& grid, double relpercent, double z) {
  const Index n = static_cast<Index>(grid.size());
  RelationPlot plot{DoubleArray(n, RelationLine::size, 0), DoubleArray(n), DoubleArray(n), DoubleArray(n),
                    DoubleArray(n)};
  for (Index i = 1; i <= n; ++i) {
    const double x = grid[static_cast<std::size_t>(i - 1)];
    const DoubleArray life = percentileTable(fit.lifeAt(model, x), {relpercent}, z);
    plot.line(i, RelationLine::X) = x;
    plot.line(i, RelationLine::M) = fit.location(x);
    plot.stress(i) = relation.stress(x);
    plot.life(i) = life(1, LifeEstimate::Estimate);
    plot.lower(i) = life(1, LifeEstimate::Lower);
    plot.upper(i) = life(1, LifeEstimate::Upper);
  }
  return plot;
}

}  // namespace

void yReliability::ALTOutput(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                             const DoubleArray& AA, double CLevel, const std::string& dist,
                             const std::string& pMtd, const std::string& estimate, const std::string& accf,
                             const DoubleArray& Percent, double relpercent, const DoubleArray& predictT,
                             const DoubleArray& times, const DoubleArray& hold, DoubleArray& idvl,
                             DoubleArray& regtable, DoubleArray& modelf, DoubleArray& SResitable,
                             DoubleArray& CSResitable, DoubleArray& ptiletable, DoubleArray& timestable,
                             DoubleArray& PlotXi, DoubleArray& PlotYi, DoubleArray& PlotHi,
                             DoubleArray& PlotVi, DoubleArray& PlotLi, DoubleArray& PlotUi,
                             DoubleArray& PlotLinei, DoubleArray& LineXYm, DoubleArray& PlotX_RS,
                             DoubleArray& PlotY_RS, DoubleArray& PlotHVLU_RS, DoubleArray& PlotX_RCS,
                             DoubleArray& PlotY_RCS, DoubleArray& PlotHVLU_RCS, DoubleArray& RelX,
                             DoubleArray& RelA, DoubleArray& RelACIL, DoubleArray& RelACIU) const {
  const auto distribution = lifeDistribution(dist);
  if (!distribution || !isRelation(accf)) return;
  requireWholeRows(SA, EA, FA);
  if (AA.rows() < SA.rows()) raise(FailureNumber::OutOfRange, "there are fewer stresses than starts");
  WorksheetFunction& host = worksheetFunction();
  const double z = host.NormSInv((1 + CLevel) / 2);
  const Relation relation(accf);
  const LocationModel model(host, *distribution);
  DoubleArray held = heldOf(3, hold);
  if (*distribution == LifeDistribution::Exponential) held(1) = 1;

  // Each level alone, for its plot and for the start of the joint fit.
  const Levels levels(AA.vector());
  const DoubleArray stresses = levels.distinct(AA);
  std::vector<SingleFit> fits;
  for (const Sample& sample : samplesOf(levels, SA, EA, FA)) {
    if (sample.hasFailure()) {
      fits.push_back(fitAlone(*this, sample, dist, pMtd, estimate, CLevel));
      continue;
    }
    fits.emplace_back();
    xlApp->messageBox(estimate == "Least squares" ? "Least square estimates cannot be calculated"
                                                  : "Cannot Find solution");
  }
  idvl = stresses;
  PlotXi = sideBySide(fits, [](const SingleFit& fit) { return fit.PlotX.elements(); });
  PlotYi = sideBySide(fits, [](const SingleFit& fit) { return fit.PlotY.elements(); });
  PlotHi = linesSideBySide(fits, ProbabilityLine::Share);
  PlotVi = linesSideBySide(fits, ProbabilityLine::Score);
  PlotLi = linesSideBySide(fits, ProbabilityLine::Lower);
  PlotUi = linesSideBySide(fits, ProbabilityLine::Upper);
  PlotLinei = linesSideBySide(fits, ProbabilityLine::Time);

  JointFit fit;
  const DoubleArray start = startOf(host, model, relation, stresses, fits);
  const bool found = searchFrom(start, held, [&](const DoubleArray& from) {
    DoubleArray FM;
    fit.P = from;
    Para_ML(SA, EA, AA, dist + "|" + accf, fit.P, fit.MLO, FM, held);
    fit.V = covarianceOf(FM, held);
  });
  if (!found) {
    xlApp->messageBox("Cannot Find solution");
    return;
  }
  regtable = coefficientTable(host, fit.P, fit.V, held, z);
  modelf = {fit.MLO(LifeFit::LogLikelihood), static_cast<double>(SA.rows()), fit.MLO(LifeFit::Iterations)};
  std::vector<PredictedLife> predicted;
  for (const double stress : predictT.elements()) {
    predicted.push_back({stress, fit.lifeAt(model, relation.x(stress))});
  }
  ptiletable = percentilesOf(predicted, Percent, z);
  timestable = survivalsOf(predicted, times, z);

  const auto standardised = [&](Index i, double t) {
    return model.standardised(t, fit.location(relation.x(AA(i))), fit.P(1));
  };
  const Residuals standard = residualsOf(SA, EA, standardised);
  const Residuals coxSnell =
      residualsOf(SA, EA, [&](Index i, double t) { return model.coxSnell(standardised(i, t)); });
  SResitable = standard.table(SA, EA, AA.vector());
  CSResitable = coxSnell.table(SA, EA, AA.vector());
  // Every row counts once, as in the joint fit.
  const DoubleArray once(SA.rows(), 1.0);
  SingleFit ofStandard = fitAlone(*this, {standard.start, standard.end, once}, model.residualDistribution(),
                                  pMtd, estimate, CLevel);
  PlotX_RS = std::move(ofStandard.PlotX);
  PlotY_RS = std::move(ofStandard.PlotY);
  PlotHVLU_RS = std::move(ofStandard.PlotHVLU);
  SingleFit ofCoxSnell =
      fitAlone(*this, {coxSnell.start, coxSnell.end, once}, "Exponential", pMtd, estimate, CLevel);
  PlotX_RCS = std::move(ofCoxSnell.PlotX);
  PlotY_RCS = std::move(ofCoxSnell.PlotY);
  PlotHVLU_RCS = std::move(ofCoxSnell.PlotHVLU);

  RelationPlot plot =
      relationPlot(model, fit, relation, stressGrid(relation, stresses, predictT), relpercent, z);
  LineXYm = std::move(plot.line);
  RelX = std::move(plot.stress);
  RelA = std::move(plot.life);
  RelACIL = std::move(plot.lower);
  RelACIU = std::move(plot.upper);
}

}  // namespace zelkova
