#include "zelkova/plots/yDotplot.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/givenNumber.h"
#include "zelkova/frame/numberText.h"
#include "zelkova/gage/firstRows.h"
#include "zelkova/kit/dotColumns.h"
#include "zelkova/kit/modzStat.h"
#include "zelkova/kit/modzSupport.h"
#include "zelkova/kit/order.h"
#include "zelkova/plots/NestedGroups.h"
#include "zelkova/plots/Series.h"

namespace zelkova {

namespace {

/// The columns into which the data fall.
class Columns {
 public:
  explicit Columns(const DoubleArray& data)
      : width_(dotColumnWidth(data)), smallest_(GetMin(data)), largest_(GetMax(data)) {
    if (width_ > 0) first_ = dotColumnPlace(smallest_, width_);
  }

  /// 0 where all values are equal.
  double width() const { return width_; }

  /// The number of the column of `x`, from 0.
  order::Key numberOf(double x) const {
    return width_ > 0 ? static_cast<order::Key>(dotColumnPlace(x, width_) - first_) : 0;
  }

  /// Where a column stands, without the rounding of binary multiples: 0.3, not three times 0.1.
  double centreOf(order::Key number) const {
    if (width_ == 0) return smallest_;
    const double centre = checked::finite((first_ + static_cast<double>(number)) * width_);
    return std::abs(centre) < 1E12 * width_ ? toNumber(numberText(centre)) : centre;
  }

  /// The values of a scale that holds the data and the columns.
  DoubleArray scale() const {
    return GetAxisScale({smallest_, largest_, centreOf(0), centreOf(numberOf(largest_))}, false);
  }

 private:
  double width_;
  double smallest_, largest_;
  double first_ = 0;
};

struct Stack {
  std::size_t group;
  order::Key column;
  Index count;
};

/// The columns that hold a value, group by group.
std::vector<Stack> stacksOf(std::span<const double> values, const std::vector<Index>& codes,
                            const Columns& columns) {
  constexpr int half = 32;
  std::vector<order::Row> rows(values.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = {static_cast<order::Key>(codes[i]) << half | columns.numberOf(values[i]),
               static_cast<Index>(i)};
  }
  order::stableSort(rows);
  std::vector<Stack> stacks;
  for (std::size_t first = 0, next = 0; first < rows.size(); first = next) {
    while (next < rows.size() && rows[next].key == rows[first].key) ++next;
    constexpr order::Key columnBits = (order::Key{1} << half) - 1;
    stacks.push_back({static_cast<std::size_t>(rows[first].key >> half), rows[first].key & columnBits,
                      static_cast<Index>(next - first)});
  }
  return stacks;
}

Index tallestAllowed(const std::string& MaxStack, Index groups) {
  constexpr Index inAllStrips = 50;
  constexpr Index inEach = 10;
  const std::optional<double> given = givenNumber(MaxStack, "MaxStack");
  if (!given) return std::max(inAllStrips / groups, inEach);
  if (*given < 1) raise(FailureNumber::InvalidCall, "MaxStack must be at least 1");
  return toInteger<std::int32_t>(*given);
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

void yDotplot::DotplotOutput(const DoubleArray& dy, const StringArray& dx, const std::string& MaxStack,
                             double& BinWidth, double& DotScale, DoubleArray& DotX, DoubleArray& DotY,
                             DoubleArray& DotN, DoubleArray& DotGroup, DoubleArray& BaseX, DoubleArray& BaseY,
                             DoubleArray& XAxis, DoubleArray& YAxisY, StringArray& YAxis) const {
  const Index n = dy.rows();
  FactorGroups groups = (dx.filled() ? nestedGroups({firstRows(dx, n, "dx")}) : singleGroup(n)).front();
  const Index tallest = tallestAllowed(MaxStack, groups.count());
  const Columns columns(dy);
  const std::vector<Stack> stacks = stacksOf(dy.vector(), groups.codes, columns);
  const Scaling scaling(stacks, tallest);
  DoubleArray scale = columns.scale();
  DoubleArray bases = basesOf(groups.count(), scaling.height);

  Dots dots;
  for (const Stack& stack : stacks) {
    dots.add(stack, columns.centreOf(stack.column), bases(static_cast<Index>(stack.group) + 1),
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
  YAxis = StringArray(std::move(groups.labels));
}

}  // namespace zelkova
