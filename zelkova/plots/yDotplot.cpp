#include "zelkova/plots/yDotplot.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/dotColumns.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/order.h"
#include "zelkova/plots/NestedGroups.h"
#include "zelkova/plots/Series.h"

namespace zelkova {

namespace {

struct Stack {
  std::size_t group;
  Index column;
  Index count;
};

/// The columns that hold a value, group by group.
std::vector<Stack> stacksOf(std::span<const double> values, const std::vector<Index>& codes,
                            const DotColumns& columns) {
  constexpr int half = 32;
  std::vector<order::Row> rows(values.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = {
        static_cast<order::Key>(codes[i]) << half | static_cast<order::Key>(columns.numberOf(values[i])),
        static_cast<Index>(i)};
  }
  order::stableSort(rows);
  std::vector<Stack> stacks;
  for (std::size_t first = 0, next = 0; first < rows.size(); first = next) {
    while (next < rows.size() && rows[next].key == rows[first].key) ++next;
    constexpr order::Key columnBits = (order::Key{1} << half) - 1;
    stacks.push_back({static_cast<std::size_t>(rows[first].key >> half),
                      static_cast<Index>(rows[first].key & columnBits), static_cast<Index>(next - first)});
  }
  return stacks;
}

/// How many dots a column of a strip may hold, at most `n`.
Index tallestAllowed(const std::string& MaxStack, Index groups, Index n) {
  constexpr Index inAllStrips = 50;
  constexpr Index inEach = 10;
  const std::optional<double> given = givenNumber(MaxStack, "MaxStack");
  if (!given) return std::max(inAllStrips / groups, inEach);
  if (*given < 1) raise(FailureNumber::InvalidCall, "MaxStack must be at least 1");
  return static_cast<Index>(std::min(*given, static_cast<double>(n)));
}

Index ceilingOfQuotient(Index a, Index b) { return (a + b - 1) / b; }

/// How many values a dot stands for, and how high the tallest column is then.
struct Scaling {
  Scaling(const std::vector<Stack>& stacks, Index tallest) {
    const Index most = std::max_element(stacks.begin(), stacks.end(), [](const Stack& a, const Stack& b) {
                         return a.count < b.count;
                       })->count;
    valuesADot = std::max<Index>(ceilingOfQuotient(most, tallest), 1);
    height = ceilingOfQuotient(most, valuesADot);
  }

  Index valuesADot;
  Index height;
};

/// The heights at which the strips stand, the first on top, with room for a dot between them.
DoubleArray basesOf(Index groups, Index height) {
  DoubleArray bases(groups);
  for (Index group = 1; group <= groups; ++group) {
    bases(group) = static_cast<double>(groups - group) * static_cast<double>(height + 1);
  }
  return bases;
}

struct Dots {
  void add(const Stack& stack, double x, double base, Index valuesADot) {
    Index left = stack.count;
    for (double y = base + 0.5; left > 0; ++y) {
      points.add(x, y);
      values.push_back(static_cast<double>(std::min(left, valuesADot)));
      groups.push_back(static_cast<double>(stack.group + 1));
      left -= valuesADot;
    }
  }

  Series points;
  std::vector<double> values, groups;
};

}  // namespace

void yDotplot::DotplotOutput(const DoubleArray& dy, const StringArray& dx, double& BinWidth, double& DotScale,
                             DoubleArray& DotX, DoubleArray& DotY, DoubleArray& DotN, DoubleArray& DotGroup,
                             DoubleArray& BaseX, DoubleArray& BaseY, DoubleArray& XAxis, DoubleArray& YAxisY,
                             StringArray& GroupLabel, const std::string& MaxStack) const {
  const Index n = dy.rows();
  FactorGroups groups = (dx.filled() ? nestedGroups({firstRows(dx, n, "dx")}) : singleGroup(n)).front();
  const Index tallest = tallestAllowed(MaxStack, groups.count(), n);
  const DotColumns columns(dy);
  const std::vector<Stack> stacks = stacksOf(dy.vector(), groups.codes, columns);
  const Scaling scaling(stacks, tallest);
  DoubleArray scale =
      GetAxisScale({GetMin(dy), GetMax(dy), columns.placeOf(0), columns.placeOf(columns.count() - 1)}, false);
  DoubleArray bases = basesOf(groups.count(), scaling.height);

  Dots dots;
  for (const Stack& stack : stacks) {
    dots.add(stack, columns.placeOf(stack.column), bases(static_cast<Index>(stack.group) + 1),
             scaling.valuesADot);
  }
  Series baseLines;
  for (const double base : bases.elements()) {
    baseLines.addLine(scale(1), base, scale(scale.rows()), base);
  }

  BinWidth = columns.width() > 0 ? columns.width() : NoValue;
  DotScale = static_cast<double>(scaling.valuesADot);
  DotX = dots.points.takeX();
  DotY = dots.points.takeY();
  DotN = DoubleArray(std::move(dots.values));
  DotGroup = DoubleArray(std::move(dots.groups));
  BaseX = baseLines.takeX();
  BaseY = baseLines.takeY();
  XAxis = std::move(scale);
  YAxisY = std::move(bases);
  GroupLabel = StringArray(std::move(groups.labels));
}

}  // namespace zelkova
