#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "host/EmbeddedHost.h"
#include "zelkova/plots/yBoxplot.h"
#include "zelkova/plots/yDotplot.h"
#include "zelkova/plots/yMatrix.h"
#include "zelkova/plots/yMultiVari.h"

namespace zelkova {
namespace {

constexpr Index million = 1'000'000;

DoubleArray normalData(Index rows, Index columns) {
  std::mt19937_64 random(1);
  std::normal_distribution<double> normal(10, 2);
  DoubleArray data(rows, columns, 0.0);
  for (double& x : data.elements()) x = normal(random);
  return data;
}

DoubleArray normalColumn(Index rows) {
  const DoubleArray table = normalData(rows, 1);
  return DoubleArray(std::vector<double>(table.elements().begin(), table.elements().end()));
}

/// `levels` labels in turn, each for `run` rows.
StringArray labels(Index rows, Index levels, Index run) {
  StringArray result(rows);
  for (Index i = 0; i < rows; ++i) result(i + 1) = "Level " + std::to_string(i / run % levels);
  return result;
}

/// 10 by 5 boxes.
void boxplot(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray dy = normalColumn(million);
  const StringArray dx1 = labels(million, 10, 5);
  const StringArray dx2 = labels(million, 5, 1);
  DoubleArray values, boxX, boxY, medianX, medianY, limitX, limitY, whiskerX, whiskerY, outlierX, outlierY,
      outlierBox, outlierRow, mean, axisX, groupX, axis;
  StringArray axis1, axis2, group;
  for (auto _ : state) {
    yBoxplot().BoxplotOutput(dy, dx1, dx2, 0.95, values, boxX, boxY, medianX, medianY, limitX, limitY,
                             whiskerX, whiskerY, outlierX, outlierY, outlierBox, outlierRow, mean, axisX,
                             axis1, axis2, groupX, group, axis);
    benchmark::DoNotOptimize(values);
  }
}
BENCHMARK(boxplot)->Name("boxplot/1e6")->Unit(benchmark::kMillisecond);

/// 5 strips.
void dotplot(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray dy = normalColumn(million);
  const StringArray dx = labels(million, 5, 1);
  double width = 0, scale = 0;
  DoubleArray dotX, dotY, dotN, dotGroup, baseX, baseY, xAxis, yAxisY;
  StringArray groupLabel;
  for (auto _ : state) {
    yDotplot().DotplotOutput(dy, dx, width, scale, dotX, dotY, dotN, dotGroup, baseX, baseY, xAxis, yAxisY,
                             groupLabel);
    benchmark::DoNotOptimize(dotX);
  }
  state.counters["dots"] = static_cast<double>(dotX.size());
}
BENCHMARK(dotplot)->Name("dotplot/1e6")->Unit(benchmark::kMillisecond);

/// 20 panels of 3 groups, with lines.
void matrixPlot(benchmark::State& state) {
  startEmbeddedHost();
  constexpr Index rows = 100'000;
  const DoubleArray data = normalData(rows, 5);
  const StringArray dx = labels(rows, 3, 1);
  DoubleArray plotX, plotY, lineX, lineY, lineValue, gridX, gridY, labelX, labelY, xAxisX, xAxisY, xAxis,
      yAxisX, yAxisY, yAxis;
  StringArray groupLabel, label;
  for (auto _ : state) {
    yMatrix().MatrixOutput(data, {}, dx, plotX, plotY, groupLabel, lineX, lineY, lineValue, gridX, gridY,
                           labelX, labelY, label, xAxisX, xAxisY, xAxis, yAxisX, yAxisY, yAxis, "Full", true);
    benchmark::DoNotOptimize(plotY);
  }
}
BENCHMARK(matrixPlot)->Name("matrix/1e5x5")->Unit(benchmark::kMillisecond);

/// Four factors of 5 levels each.
void multiVari(benchmark::State& state) {
  startEmbeddedHost();
  const DoubleArray dy = normalColumn(million);
  const StringArray dx1 = labels(million, 5, 125);
  const StringArray dx2 = labels(million, 5, 25);
  const StringArray dx3 = labels(million, 5, 5);
  const StringArray dx4 = labels(million, 5, 1);
  DoubleArray plotX, plotY, plotN, meanX, meanY, dividerX, dividerY, valueX, valueY, axis;
  StringArray plotLabel;
  for (auto _ : state) {
    yMultiVari().MultiVariOutput(dy, dx1, dx2, dx3, dx4, plotX, plotY, plotN, plotLabel, meanX, meanY,
                                 dividerX, dividerY, valueX, valueY, axis, true);
    benchmark::DoNotOptimize(plotY);
  }
}
BENCHMARK(multiVari)->Name("multivari/1e6")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
