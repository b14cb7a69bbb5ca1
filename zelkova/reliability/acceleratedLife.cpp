#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/families.h"
#include "zelkova/reliability/lifeData.h"
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

/// A distribution as the joint model has it: location m = b0 + b1 x in the time or its logarithm, and a
/// spread.
class JointModel {
 public:
  JointModel(WorksheetFunction& host, LifeDistribution dist) : host_(&host), dist_(dist) {}

  LifeDistribution dist() const { return dist_; }
  double scaled(double time) const { return worksOnLogarithms(dist_) ? logTime(time) : time; }

  /// Location and spread of a life distribution with these parameters.
  double location(double para1) const { return hasScaleParameter() ? checked::log(para1) : para1; }

  /// The life distribution at a location, with the covariance of its parameters from that of location and
  /// spread.
  LifeFitted lifeAt(double m, double spread, double varM, double varSpread, double covar) const {
    if (!hasScaleParameter()) return {*host_, dist_, m, spread, {varM, varSpread, covar}};
    const double scale = checked::exp(m);
    return {*host_, dist_, scale, spread, {scale * scale * varM, varSpread, scale * covar}};
  }

  double standardised(double time, double m, double spread) const {
    const double distance = scaled(time) - m;
    return dist_ == LifeDistribution::Weibull ? distance * spread : checked::quotient(distance, spread);
  }

  /// -ln S at a standardised time.
  double coxSnell(double z) const {
    switch (dist_) {
      case LifeDistribution::Normal:
      case LifeDistribution::Lognormal:
        return -families::NormalFamily(*host_, 0).right(z);
      case LifeDistribution::Logistic:
      case LifeDistribution::Loglogistic:
        return -families::LogisticFamily(0).right(z);
      default:
        return -families::ExtremeValue(0).right(z);
    }
  }

  /// What standardised residuals are distributed as.
  const char* residualDistribution() const {
    switch (dist_) {
      case LifeDistribution::Normal:
      case LifeDistribution::Lognormal:
        return "Normal";
      case LifeDistribution::Logistic:
      case LifeDistribution::Loglogistic:
        return "Logistic";
      default:
        return "Smallest Extreme Value";
    }
  }

 private:
  bool hasScaleParameter() const {
    return dist_ == LifeDistribution::Weibull || dist_ == LifeDistribution::Exponential;
  }

  WorksheetFunction* host_;
  LifeDistribution dist_;
};

/// Life data of their own: those of a stress level, or residuals.
struct Sample {
  DoubleArray SA;
  DoubleArray EA;
  DoubleArray FA;

  bool hasFailure() const {
    const auto ends = EA.elements();
    return std::any_of(ends.begin(), ends.end(), [](double t) { return t != NoValue; });
  }
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

/// The fit of one sample alone with its probability plot.
struct SingleFit {
  DoubleArray P;
  DoubleArray PlotX;
  DoubleArray PlotY;
  DoubleArray PlotHVLU;
  bool fitted = false;
};

SingleFit fitAlone(const yReliability& engine, const Sample& sample, const std::string& dist,
                   const std::string& pMtd, const std::string& estimate, double CLevel) {
  SingleFit fit;
  DoubleArray PM, PMM, Para, ParaEst, SurvTable;
  StringArray PMS;
  double corr = 0;
  double var1 = NoValue;
  double var2 = NoValue;
  double covar12 = NoValue;
  double unused = 0;
  try {
    engine.ParaAnalysis(sample.SA, sample.EA, sample.FA, dist, pMtd, estimate, {}, {}, fit.P, PM, PMS, PMM,
                        Para, corr, fit.PlotX, fit.PlotY, ParaEst, SurvTable, {}, var1, var2, unused, covar12,
                        unused, unused);
    // Variances are there if and only if a search has ended well.
    if (var1 == NoValue) return fit;
    engine.ProbPlot(CLevel, fit.P(1), fit.P(fit.P.rows()), dist, var1, var2, covar12, fit.PlotHVLU);
    fit.fitted = true;
  } catch (const Failure&) {
    // A level that cannot be fitted alone still takes part in the joint fit.
  }
  return fit;
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
DoubleArray startOf(WorksheetFunction& host, const JointModel& model, const Relation& relation,
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

  LifeFitted lifeAt(const JointModel& model, double x) const {
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

/// The table of the parameters; a held one has its value alone.
DoubleArray coefficients(WorksheetFunction& host, const JointFit& fit, const DoubleArray& hold, double z) {
  DoubleArray table(3, RelationCoefficient::size, NoValue);
  for (Index k = 1; k <= 3; ++k) {
    const double value = table(k, RelationCoefficient::Coefficient) = fit.P(k);
    if (hold(k) != NoValue) continue;
    const double se = checked::root(fit.V(k, k));
    const double ratio = checked::quotient(value, se);
    const double reach = z * se;
    const bool spread = k == 1;
    table(k, RelationCoefficient::SE) = se;
    table(k, RelationCoefficient::Z) = ratio;
    table(k, RelationCoefficient::PValue) = 2 * host.NormSDist(-std::abs(ratio));
    table(k, RelationCoefficient::Lower) = spread ? value * checked::exp(-reach / value) : value - reach;
    table(k, RelationCoefficient::Upper) = spread ? value * checked::exp(reach / value) : value + reach;
  }
  return table;
}

/// Residuals of the rows at the start and the end of their spans; no value where there is no time.
struct Residuals {
  DoubleArray start;
  DoubleArray end;

  DoubleArray table(const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& AA) const {
    DoubleArray result(SA.rows(), RelationResidual::size, NoValue);
    for (Index i = 1; i <= SA.rows(); ++i) {
      result(i, RelationResidual::Stress) = AA(i);
      result(i, RelationResidual::SA) = SA(i);
      result(i, RelationResidual::EA) = EA(i);
      result(i, RelationResidual::AtStart) = start(i);
      result(i, RelationResidual::AtEnd) = end(i);
    }
    return result;
  }

  /// As life data in which every row counts once, as in the joint fit.
  Sample sample() const { return {start, end, DoubleArray(start.rows(), 1.0)}; }
};

template <class Of>
Residuals residualsOf(const DoubleArray& SA, const DoubleArray& EA, Of of) {
  Residuals result{DoubleArray(SA.rows(), NoValue), DoubleArray(SA.rows(), NoValue)};
  for (Index i = 1; i <= SA.rows(); ++i) {
    if (SA(i) != NoValue) result.start(i) = of(i, SA(i));
    if (EA(i) != NoValue) result.end(i) = of(i, EA(i));
  }
  return result;
}

/// A row for each share of `Percent` at each stress of `predictT`.
DoubleArray percentilesAt(const DoubleArray& predictT, const DoubleArray& Percent, const JointModel& model,
                          const JointFit& fit, const Relation& relation, double z) {
  if (!predictT.filled() || !Percent.filled()) return {};
  DoubleArray table(predictT.rows() * Percent.rows(), RelationPercentile::size, NoValue);
  Index row = 0;
  for (const double stress : predictT.elements()) {
    const DoubleArray percentiles = percentileTable(fit.lifeAt(model, relation.x(stress)), Percent, z);
    for (Index i = 1; i <= Percent.rows(); ++i) {
      ++row;
      table(row, RelationPercentile::Stress) = stress;
      table(row, RelationPercentile::Percent) = Percent(i);
      table(row, RelationPercentile::Percentile) = percentiles(i, LifeEstimate::Estimate);
      table(row, RelationPercentile::SE) = percentiles(i, LifeEstimate::SE);
      table(row, RelationPercentile::Lower) = percentiles(i, LifeEstimate::Lower);
      table(row, RelationPercentile::Upper) = percentiles(i, LifeEstimate::Upper);
    }
  }
  return table;
}

/// A row for each of `times` at each stress of `predictT`.
DoubleArray survivalsAt(const DoubleArray& predictT, const DoubleArray& times, const JointModel& model,
                        const JointFit& fit, const Relation& relation, double z) {
  if (!predictT.filled() || !times.filled()) return {};
  DoubleArray table(predictT.rows() * times.rows(), RelationSurvival::size, NoValue);
  Index row = 0;
  for (const double stress : predictT.elements()) {
    const LifeFitted fitted = fit.lifeAt(model, relation.x(stress));
    const Life life = fitted.life();
    for (const double time : times.elements()) {
      const double u = life.standardised(time);
      const double se = fitted.standardisedError(u);
      ++row;
      table(row, RelationSurvival::Stress) = stress;
      table(row, RelationSurvival::Time) = time;
      table(row, RelationSurvival::Survival) = life.survivalAt(u);
      table(row, RelationSurvival::SE) = se;
      table(row, RelationSurvival::AtLowerU) = life.survivalAt(u - z * se);
      table(row, RelationSurvival::AtUpperU) = life.survivalAt(u + z * se);
    }
  }
  return table;
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

RelationPlot relationPlot(const JointModel& model, const JointFit& fit, const Relation& relation,
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
  const JointModel model(host, *distribution);
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
  regtable = coefficients(host, fit, held, z);
  modelf = {fit.MLO(LifeFit::LogLikelihood), static_cast<double>(SA.rows()), fit.MLO(LifeFit::Iterations)};
  ptiletable = percentilesAt(predictT, Percent, model, fit, relation, z);
  timestable = survivalsAt(predictT, times, model, fit, relation, z);

  const auto standardised = [&](Index i, double t) {
    return model.standardised(t, fit.location(relation.x(AA(i))), fit.P(1));
  };
  const Residuals standard = residualsOf(SA, EA, standardised);
  const Residuals coxSnell =
      residualsOf(SA, EA, [&](Index i, double t) { return model.coxSnell(standardised(i, t)); });
  SResitable = standard.table(SA, EA, AA);
  CSResitable = coxSnell.table(SA, EA, AA);
  SingleFit ofStandard =
      fitAlone(*this, standard.sample(), model.residualDistribution(), pMtd, estimate, CLevel);
  PlotX_RS = std::move(ofStandard.PlotX);
  PlotY_RS = std::move(ofStandard.PlotY);
  PlotHVLU_RS = std::move(ofStandard.PlotHVLU);
  SingleFit ofCoxSnell = fitAlone(*this, coxSnell.sample(), "Exponential", pMtd, estimate, CLevel);
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
