#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/RunningObjects.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/families.h"
#include "zelkova/reliability/percentiles.h"
#include "zelkova/reliability/relationLikelihood.h"
#include "zelkova/reliability/retry.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

constexpr std::string_view relations[] = {"Linear", "Arrhenius", "Inverse Temp", "Ln(Power)"};

/// A relation between stress and location: x is the transformed stress.
class Relation {
 public:
  explicit Relation(const std::string& accf) : name_("|" + accf) {}

  double x(double stress) const { return transformedStress(name_, stress); }

  /// The stress of an x.
  double stress(double at) const {
    constexpr double zeroCelsius = 273.16;
    if (name_ == "|Arrhenius") return checked::quotient(11604.83, at) - zeroCelsius;
    if (name_ == "|Inverse Temp") return checked::quotient(1, at) - zeroCelsius;
    if (name_ == "|Ln(Power)") return checked::exp(at);
    return at;
  }

 private:
  std::string name_;
};

/// A distribution as the joint model has it: location m = b0 + b1 x in the time or its logarithm, and a
/// spread.
class JointModel {
 public:
  JointModel(WorksheetFunction& host, LifeDistribution dist) : host_(&host), dist_(dist) {}

  LifeDistribution dist() const { return dist_; }
  double scaled(double time) const { return worksOnLogarithms(dist_) ? checked::log(time) : time; }

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

/// Columns of different length in one table, the shorter ones filled up with `NoValue`.
DoubleArray sideBySide(const std::vector<std::vector<double>>& columns) {
  std::size_t longest = 0;
  for (const auto& column : columns) longest = std::max(longest, column.size());
  DoubleArray table(static_cast<Index>(longest), static_cast<Index>(columns.size()), NoValue);
  for (std::size_t j = 0; j < columns.size(); ++j) {
    for (std::size_t i = 0; i < columns[j].size(); ++i) {
      table(static_cast<Index>(i + 1), static_cast<Index>(j + 1)) = columns[j][i];
    }
  }
  return table;
}

std::vector<double> copyOf(std::span<const double> values) { return {values.begin(), values.end()}; }

/// The rows of one stress level.
struct LevelRows {
  DoubleArray SA;
  DoubleArray EA;
  DoubleArray FA;
  bool hasFailure = false;
};

LevelRows rowsAt(double level, const DoubleArray& SA, const DoubleArray& EA, const DoubleArray& FA,
                 const DoubleArray& AA) {
  std::vector<double> starts;
  std::vector<double> ends;
  std::vector<double> frequencies;
  bool hasFailure = false;
  for (Index i = 1; i <= SA.rows(); ++i) {
    if (AA(i) != level) continue;
    starts.push_back(SA(i));
    ends.push_back(EA(i));
    frequencies.push_back(FA(i));
    hasFailure = hasFailure || EA(i) != NoValue;
  }
  return {DoubleArray(std::move(starts)), DoubleArray(std::move(ends)), DoubleArray(std::move(frequencies)),
          hasFailure};
}

/// The fit of one data set alone with its probability plot.
struct SinglePlot {
  DoubleArray P;
  DoubleArray PlotX;
  DoubleArray PlotY;
  DoubleArray PlotHVLU;
  bool fitted = false;
};

SinglePlot plotAlone(const yReliability& engine, const LevelRows& rows, const std::string& dist,
                     const std::string& pMtd, const std::string& estimate, double CLevel) {
  SinglePlot plot;
  DoubleArray PM, PMM, Para, ParaEst, SurvTable;
  StringArray PMS;
  double corr = 0;
  double var1 = NoValue;
  double var2 = NoValue;
  double covar12 = NoValue;
  double unused = 0;
  try {
    engine.ParaAnalysis(rows.SA, rows.EA, rows.FA, dist, pMtd, estimate, {}, {}, plot.P, PM, PMS, PMM, Para,
                        corr, plot.PlotX, plot.PlotY, ParaEst, SurvTable, {}, var1, var2, unused, covar12,
                        unused, unused);
    // Variances are there if and only if a search has ended well.
    if (var1 == NoValue) return plot;
    engine.ProbPlot(CLevel, plot.P(1), plot.P(plot.P.rows()), dist, var1, var2, covar12, plot.PlotHVLU);
    plot.fitted = true;
  } catch (const Failure&) {
    // A level that cannot be fitted alone still takes part in the joint fit.
  }
  return plot;
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
  LevelRows rows() const {
    const auto ends = end.elements();
    const bool hasFailure = std::any_of(ends.begin(), ends.end(), [](double t) { return t != NoValue; });
    return {start, end, DoubleArray(start.rows(), 1.0), hasFailure};
  }
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

/// Appends `rows` of tables to each other, each led by a stress.
class StressTable {
 public:
  void add(double stress, const DoubleArray& rows) {
    for (Index i = 1; i <= rows.rows(); ++i) {
      std::vector<double> row{stress};
      for (Index j = 1; j <= rows.columns(); ++j) row.push_back(rows(i, j));
      rows_.push_back(std::move(row));
    }
  }

  DoubleArray take() const {
    if (rows_.empty()) return {};
    DoubleArray table(static_cast<Index>(rows_.size()), static_cast<Index>(rows_.front().size()), 0);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      for (std::size_t j = 0; j < rows_[i].size(); ++j) {
        table(static_cast<Index>(i + 1), static_cast<Index>(j + 1)) = rows_[i][j];
      }
    }
    return table;
  }

 private:
  std::vector<std::vector<double>> rows_;
};

/// Percentiles at a stress: percent, percentile, standard error, limits.
DoubleArray percentileRows(const LifeFitted& life, const DoubleArray& Percent, double z) {
  const DoubleArray percentiles = percentileTable(life, Percent, z);
  DoubleArray rows(Percent.rows(), 5, 0);
  for (Index i = 1; i <= Percent.rows(); ++i) {
    rows(i, 1) = Percent(i);
    for (Index j = 1; j <= 4; ++j) rows(i, j + 1) = percentiles(i, j);
  }
  return rows;
}

/// Survivals at a stress: time, survival, standard error of the working quantity, limits.
DoubleArray survivalRows(const LifeFitted& fitted, const DoubleArray& times, double z) {
  const Life life = fitted.life();
  DoubleArray rows(times.rows(), 5, 0);
  for (Index i = 1; i <= times.rows(); ++i) {
    const double u = life.standardised(times(i));
    const double se =
        checked::root(standardisedVariance(fitted.dist, fitted.para1, fitted.para2, fitted.variance, u));
    rows(i, 1) = times(i);
    rows(i, 2) = life.survivalAt(u);
    rows(i, 3) = se;
    rows(i, 4) = life.survivalAt(u - z * se);
    rows(i, 5) = life.survivalAt(u + z * se);
  }
  return rows;
}

/// The stresses of the relation plot, even in x.
std::vector<double> stressGrid(const Relation& relation, const DoubleArray& levels,
                               const DoubleArray& predictT) {
  std::vector<double> stresses = copyOf(levels.elements());
  const auto wanted = predictT.elements();
  stresses.insert(stresses.end(), wanted.begin(), wanted.end());
  const auto [least, largest] = std::minmax_element(stresses.begin(), stresses.end());
  const double from = relation.x(*least);
  const double to = relation.x(*largest);
  constexpr int points = 50;
  std::vector<double> grid;
  for (int i = 0; i < points; ++i) grid.push_back(from + (to - from) * i / (points - 1));
  return grid;
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
  if (!distribution || std::find(std::begin(relations), std::end(relations), accf) == std::end(relations))
    return;
  WorksheetFunction& host = worksheetFunction();
  const double z = host.NormSInv((1 + CLevel) / 2);
  const Relation relation(accf);
  const JointModel model(host, *distribution);
  DoubleArray held(3, NoValue);
  for (Index k = 1; hold.filled() && k <= std::min<Index>(3, hold.rows()); ++k) held(k) = hold(k);
  if (*distribution == LifeDistribution::Exponential) held(1) = 1;

  // Each level alone, for its plot and for the start of the joint fit.
  DoubleArray levels;
  GetUniqueD(AA, levels);
  std::vector<std::vector<double>> x, y, H, V, L, U, line;
  std::vector<double> locations, levelX;
  double spread = 0;
  for (Index level = 1; level <= levels.rows(); ++level) {
    const LevelRows rows = rowsAt(levels(level), SA, EA, FA, AA);
    SinglePlot plot;
    if (rows.hasFailure) {
      plot = plotAlone(*this, rows, dist, pMtd, estimate, CLevel);
    } else {
      xlApp->messageBox(estimate == "Least squares" ? "Least square estimates cannot be calculated"
                                                    : "Cannot Find solution");
    }
    x.push_back(copyOf(plot.PlotX.elements()));
    y.push_back(copyOf(plot.PlotY.elements()));
    const auto column = [&](ProbabilityLine::Slot slot) {
      return plot.fitted ? copyOf(plot.PlotHVLU.column(slot)) : std::vector<double>();
    };
    H.push_back(column(ProbabilityLine::Share));
    V.push_back(column(ProbabilityLine::Score));
    L.push_back(column(ProbabilityLine::Lower));
    U.push_back(column(ProbabilityLine::Upper));
    line.push_back(column(ProbabilityLine::Time));
    if (!plot.fitted) continue;
    locations.push_back(model.location(plot.P(1)));
    levelX.push_back(relation.x(levels(level)));
    spread += plot.P(plot.P.rows());
  }
  idvl = levels;
  PlotXi = sideBySide(x);
  PlotYi = sideBySide(y);
  PlotHi = sideBySide(H);
  PlotVi = sideBySide(V);
  PlotLi = sideBySide(L);
  PlotUi = sideBySide(U);
  PlotLinei = sideBySide(line);

  DoubleArray start{1, 0, 0};
  if (!locations.empty()) {
    const DoubleArray m(locations);
    const DoubleArray at(levelX);
    start(1) = spread / static_cast<double>(locations.size());
    if (locations.size() > 1) start(3) = host.Slope(m, at);
    start(2) = host.Average(m) - start(3) * host.Average(at);
  }

  JointFit fit;
  const std::string text = dist + "|" + accf;
  const bool found = searchFrom(start, held, [&](const DoubleArray& from) {
    DoubleArray FM;
    fit.P = from;
    Para_ML(SA, EA, AA, text, fit.P, fit.MLO, FM, held);
    fit.V = MatInverse(FM);
    for (Index k = 1; k <= 3; ++k) {
      for (Index j = 1; j <= 3; ++j) {
        if (held(k) != NoValue || held(j) != NoValue) fit.V(k, j) = 0;
      }
      checked::root(fit.V(k, k));
    }
  });
  if (!found) {
    xlApp->messageBox("Cannot Find solution");
    return;
  }
  regtable = coefficients(host, fit, held, z);
  modelf = {fit.MLO(LifeFit::LogLikelihood), static_cast<double>(SA.rows()), fit.MLO(LifeFit::Iterations)};

  StressTable percentiles, survivals;
  for (Index i = 1; predictT.filled() && i <= predictT.rows(); ++i) {
    const LifeFitted life = fit.lifeAt(model, relation.x(predictT(i)));
    if (Percent.filled()) percentiles.add(predictT(i), percentileRows(life, Percent, z));
    if (times.filled()) survivals.add(predictT(i), survivalRows(life, times, z));
  }
  ptiletable = percentiles.take();
  timestable = survivals.take();

  const auto standardised = [&](Index i, double t) {
    return model.standardised(t, fit.location(relation.x(AA(i))), fit.P(1));
  };
  const Residuals standard = residualsOf(SA, EA, standardised);
  const Residuals coxSnell =
      residualsOf(SA, EA, [&](Index i, double t) { return model.coxSnell(standardised(i, t)); });
  SResitable = standard.table(SA, EA, AA);
  CSResitable = coxSnell.table(SA, EA, AA);
  const SinglePlot ofStandard =
      plotAlone(*this, standard.rows(), model.residualDistribution(), pMtd, estimate, CLevel);
  PlotX_RS = ofStandard.PlotX;
  PlotY_RS = ofStandard.PlotY;
  PlotHVLU_RS = ofStandard.PlotHVLU;
  const SinglePlot ofCoxSnell = plotAlone(*this, coxSnell.rows(), "Exponential", pMtd, estimate, CLevel);
  PlotX_RCS = ofCoxSnell.PlotX;
  PlotY_RCS = ofCoxSnell.PlotY;
  PlotHVLU_RCS = ofCoxSnell.PlotHVLU;

  std::vector<double> stresses, lives, lower, upper;
  const std::vector<double> grid = stressGrid(relation, levels, predictT);
  DoubleArray relationLine(static_cast<Index>(grid.size()), RelationLine::size, 0);
  for (std::size_t i = 0; i < grid.size(); ++i) {
    const DoubleArray life = percentileTable(fit.lifeAt(model, grid[i]), {relpercent}, z);
    stresses.push_back(relation.stress(grid[i]));
    lives.push_back(life(1, LifeEstimate::Estimate));
    lower.push_back(life(1, LifeEstimate::Lower));
    upper.push_back(life(1, LifeEstimate::Upper));
    relationLine(static_cast<Index>(i + 1), RelationLine::X) = grid[i];
    relationLine(static_cast<Index>(i + 1), RelationLine::M) = fit.location(grid[i]);
  }
  LineXYm = std::move(relationLine);
  RelX = DoubleArray(std::move(stresses));
  RelA = DoubleArray(std::move(lives));
  RelACIL = DoubleArray(std::move(lower));
  RelACIU = DoubleArray(std::move(upper));
}

}  // namespace zelkova
