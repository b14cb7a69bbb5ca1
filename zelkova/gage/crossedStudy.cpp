#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "zelkova/charts/modzControl.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/gage/yGage.h"
#include "zelkova/kit/Levels.h"
#include "zelkova/models/TwoWay.h"

namespace zelkova {

namespace {

/// Below this a variance or a standard deviation counts as none. Deliberate: in the units of the readings,
/// whatever those are.
constexpr double none = 0.0000001;

DoubleArray emptyComponents() { return DoubleArray(GageSource::size, GageComponent::size, NoValue); }

/// The analysis of variance with both factors and their interaction.
DoubleArray anovaOfTwo(WorksheetFunction& host, const TwoWay& layout) {
  const double dfPart = layout.a - 1;
  const double dfOperator = layout.b - 1;
  const double dfInteraction = dfPart * dfOperator;
  const double dfError = layout.a * layout.b * (layout.r - 1);
  const double msPart = layout.ss1 / dfPart;
  const double msOperator = layout.ss2 / dfOperator;
  const double msInteraction = layout.ss12 / dfInteraction;
  const double msError = layout.within / dfError;

  DoubleArray result(GageAnova::size, NoValue);
  result(GageAnova::DFPart) = dfPart;
  result(GageAnova::DFOperator) = dfOperator;
  result(GageAnova::DFInteraction) = dfInteraction;
  result(GageAnova::DFError) = dfError;
  result(GageAnova::DFTotal) = layout.a * layout.b * layout.r - 1;
  result(GageAnova::SSPart) = layout.ss1;
  result(GageAnova::SSOperator) = layout.ss2;
  result(GageAnova::SSInteraction) = layout.ss12;
  result(GageAnova::SSError) = layout.within;
  result(GageAnova::SSTotal) = layout.total();
  result(GageAnova::MSPart) = msPart;
  result(GageAnova::MSOperator) = msOperator;
  result(GageAnova::MSInteraction) = msInteraction;
  result(GageAnova::MSError) = msError;
  const auto test = [&](GageAnova::Slot F, GageAnova::Slot p, double ms, double df, double against,
                        double dfAgainst) {
    if (against < none) return;
    result(F) = checked::quotient(ms, against);
    result(p) = host.FDist(result(F), df, dfAgainst);
  };
  test(GageAnova::FPart, GageAnova::PPart, msPart, dfPart, msInteraction, dfInteraction);
  test(GageAnova::FOperator, GageAnova::POperator, msOperator, dfOperator, msInteraction, dfInteraction);
  test(GageAnova::FInteraction, GageAnova::PInteraction, msInteraction, dfInteraction, msError, dfError);
  return result;
}

/// The analysis of variance of a single operator's study: parts and error.
DoubleArray anovaOfOne(WorksheetFunction& host, const TwoWay& layout) {
  const double dfPart = layout.a - 1;
  const double dfError = layout.a * (layout.r - 1);
  const double msPart = layout.ss1 / dfPart;
  const double msError = layout.within / dfError;

  DoubleArray result(GageAnova::size, NoValue);
  result(GageAnova::DFPart) = dfPart;
  result(GageAnova::DFError) = dfError;
  result(GageAnova::DFTotal) = layout.a * layout.r - 1;
  result(GageAnova::SSPart) = layout.ss1;
  result(GageAnova::SSError) = layout.within;
  result(GageAnova::SSTotal) = layout.ss1 + layout.within;
  result(GageAnova::MSPart) = msPart;
  result(GageAnova::MSError) = msError;
  if (msError >= none) {
    result(GageAnova::FPart) = checked::quotient(msPart, msError);
    result(GageAnova::PPart) = host.FDist(result(GageAnova::FPart), dfPart, dfError);
  }
  return result;
}

DoubleArray componentsOfTwo(WorksheetFunction& host, const TwoWay& layout, const DoubleArray& anova) {
  const double msInteraction = anova(GageAnova::MSInteraction);
  const double msError = anova(GageAnova::MSError);
  const double byOperator =
      host.Max((anova(GageAnova::MSOperator) - msInteraction) / (layout.a * layout.r), 0);
  const double interaction = host.Max((msInteraction - msError) / layout.r, 0);
  const double part = host.Max((anova(GageAnova::MSPart) - msInteraction) / (layout.b * layout.r), 0);
  const double reproducibility = byOperator + interaction;
  const double gage = msError + reproducibility;

  DoubleArray result = emptyComponents();
  result(GageSource::GageRR, GageComponent::Variance) = gage;
  result(GageSource::Repeatability, GageComponent::Variance) = msError;
  result(GageSource::Reproducibility, GageComponent::Variance) = reproducibility;
  result(GageSource::Operator, GageComponent::Variance) = byOperator;
  result(GageSource::OperatorByPart, GageComponent::Variance) = interaction;
  result(GageSource::PartToPart, GageComponent::Variance) = part;
  result(GageSource::TotalVariation, GageComponent::Variance) = gage + part;
  return result;
}

DoubleArray componentsOfOne(const TwoWay& layout, const DoubleArray& anova) {
  const double msError = anova(GageAnova::MSError);
  // Deliberate: not cut at 0. With one operator a negative component is the only sign that parts differ less
  // than repeated readings do.
  const double part = (anova(GageAnova::MSPart) - msError) / layout.r;

  DoubleArray result = emptyComponents();
  result(GageSource::GageRR, GageComponent::Variance) = msError;
  result(GageSource::Repeatability, GageComponent::Variance) = msError;
  result(GageSource::PartToPart, GageComponent::Variance) = part;
  result(GageSource::TotalVariation, GageComponent::Variance) = msError + part;
  return result;
}

double meanRangeOfCells(std::span<const double> readings, const Levels& parts, const Levels& operators) {
  struct Extremes {
    double least = std::numeric_limits<double>::max();
    double most = std::numeric_limits<double>::lowest();
  };
  std::vector<Extremes> cells(static_cast<std::size_t>(parts.count() * operators.count()));
  for (std::size_t i = 0; i < readings.size(); ++i) {
    Extremes& cell =
        cells[static_cast<std::size_t>(parts.codes()[i] * operators.count() + operators.codes()[i])];
    cell.least = std::min(cell.least, readings[i]);
    cell.most = std::max(cell.most, readings[i]);
  }
  double sum = 0;
  for (const Extremes& cell : cells) sum += cell.most - cell.least;
  return checked::finite(sum) / static_cast<double>(cells.size());
}

double rangeOf(const std::vector<double>& values) {
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  return *most - *least;
}

double square(double x) { return x * x; }

DoubleArray componentsOfRanges(const TwoWay& layout, double meanRange) {
  const double repeatability = square(meanRange / UnbiasD2(layout.r));
  // Deliberate: not cut at 0, so that operators who differ less than their readings do are seen as such.
  const double reproducibility =
      square(rangeOf(layout.effects2) / UnbiasD2Star(layout.b)) - repeatability / (layout.a * layout.r);
  const double part = square(rangeOf(layout.effects1) / UnbiasD2Star(layout.a));
  const double gage = repeatability + reproducibility;

  DoubleArray result = emptyComponents();
  result(GageSource::GageRR, GageComponent::Variance) = gage;
  result(GageSource::Repeatability, GageComponent::Variance) = repeatability;
  result(GageSource::Reproducibility, GageComponent::Variance) = reproducibility;
  result(GageSource::PartToPart, GageComponent::Variance) = part;
  result(GageSource::TotalVariation, GageComponent::Variance) = gage + part;
  return result;
}

/// Fills the columns beside the variances.
void complete(DoubleArray& components, double multiplier, std::optional<double> tolerance) {
  const double total = checked::finite(components(GageSource::TotalVariation, GageComponent::Variance));
  const double totalStudy = multiplier * checked::root(total);
  for (Index source = 1; source <= GageSource::size; ++source) {
    const double variance = components(source, GageComponent::Variance);
    if (variance == NoValue) continue;
    components(source, GageComponent::Contribution) = total < none ? 0 : checked::quotient(variance, total);
    if (variance < 0) continue;
    const double sd = checked::root(variance);
    const double study = multiplier * sd;
    components(source, GageComponent::SD) = sd;
    components(source, GageComponent::StudyVariation) = study;
    components(source, GageComponent::StudyShare) =
        totalStudy < none ? 0 : checked::quotient(study, totalStudy);
    if (tolerance) components(source, GageComponent::ToleranceShare) = checked::quotient(study, *tolerance);
  }
}

/// How many groups of parts the gage can tell apart.
double distinctCategories(const DoubleArray& components) {
  const double gage = components(GageSource::GageRR, GageComponent::SD);
  if (gage < none) return NoValue;
  const double part = components(GageSource::PartToPart, GageComponent::SD);
  if (part == NoValue) return 1;
  return std::max(std::floor(checked::quotient(1.41 * part, gage)), 1.0);
}

}  // namespace

void yGage::GageCrossedOutput(const DoubleArray& dy, const StringArray& dpart, const StringArray& dop,
                              const std::string& StudyV, const std::string& PTol, const std::string& AMethod,
                              DoubleArray& GCrossed_AN, DoubleArray& GCrossed_VC,
                              std::string& ErrorCode) const {
  const std::span<const double> readings = dy.vector();
  const Levels parts(firstRows(dpart, dy.rows(), "dpart"));
  const Levels operators(firstRows(dop, dy.rows(), "dop"));
  const bool byAnova = AMethod == "ANOVA";
  if (!isEvenlySpread(dy.rows(), parts, operators, true, true)) {
    ErrorCode = "Design must be balanced and with replicates";
    return;
  }
  if (!byAnova && operators.count() < 2) {
    ErrorCode = "At least 2 operator values required";
    return;
  }
  if (parts.count() < 2) {
    ErrorCode = "At least 2 part values required";
    return;
  }

  const TwoWay layout = analyseTwoWay(readings, parts, operators);
  DoubleArray anova(GageAnova::size, NoValue);
  DoubleArray components;
  if (!byAnova) {
    components = componentsOfRanges(layout, meanRangeOfCells(readings, parts, operators));
  } else if (operators.count() > 1) {
    anova = anovaOfTwo(worksheetFunction(), layout);
    components = componentsOfTwo(worksheetFunction(), layout, anova);
  } else {
    anova = anovaOfOne(worksheetFunction(), layout);
    components = componentsOfOne(layout, anova);
  }
  complete(components, givenWidth(StudyV, "StudyV").value_or(5), givenWidth(PTol, "PTol"));
  anova(GageAnova::DistinctCategories) = distinctCategories(components);
  checked::leaving(anova, components);
  GCrossed_AN = std::move(anova);
  GCrossed_VC = std::move(components);
}

}  // namespace zelkova
