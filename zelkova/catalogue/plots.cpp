#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/plots/yBoxplot.h"
#include "zelkova/plots/yDotplot.h"
#include "zelkova/plots/yHistogram.h"
#include "zelkova/plots/yMatrix.h"
#include "zelkova/plots/yMultiVari.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

const Note data("dy", "the data");
constexpr const char* dataWithNoValue = "NoValue among the data is a number like any other.";

Class boxplot() {
  return Description<yBoxplot>("yBoxplot", "Box plots by one or two factors")
      .method("BoxplotOutput", &yBoxplot::BoxplotOutput,
              "Boxes, whiskers, limits of the median and outliers of each group, as series of a chart", data,
              Note("dx1", "the label of each row; left out, all rows make one box"),
              Note("dx2", "a second label of each row, within those of dx1; may be left out"),
              Note("CLevel", "the confidence of the limits of the median, a fraction"),
              Note("BoxValue", "a row for each box").table().slots(BoxplotGroup::names),
              Note("BoxX", "the outlines of the boxes, six slots each: five corners and a gap"),
              Note("BoxY", "their heights"),
              Note("MedianX", "the lines of the medians, three slots each: two ends and a gap"),
              Note("MedianY", "their heights"),
              Note("LimitX", "narrower outlines between the limits of the median, six slots each"),
              Note("LimitY", "their heights"),
              Note("WhiskerX", "the lower and the upper whisker of each box, three slots each"),
              Note("WhiskerY", "their heights"),
              Note("OutlierX", "the places of the outliers; unfilled where there is none"),
              Note("OutlierY", "the outliers, in the order of the rows"),
              Note("OutlierBox", "the number of the box of each"),
              Note("OutlierRow", "the number of the row of each"),
              Note("MeanY", "the mean of each box, at XAxisX"), Note("XAxisX", "the place of each box"),
              Note("XAxis1", "the label of each box by dx1; one empty text without dx1"),
              Note("XAxis2", "its label by dx2; unfilled for one factor"),
              Note("XGroupX", "the middle of each level of dx1 where there are two factors; else unfilled"),
              Note("XGroup", "the labels of these levels"), Note("YAxis", "the values of the axis"))
      .note(
          "Groups stand in numeric-aware order, those of dx2 within each level of dx1 and a step apart from "
          "the next. Pairs of labels without data have no box.")
      .note(
          "Quartiles are those of the descriptive statistics. A whisker ends at the last value within 1.5 "
          "interquartile ranges of the box, one at just that distance but for the rounding of decimals "
          "included; where that value lies inside the box, the whisker has no length. All values beyond that "
          "distance are outliers.")
      .note(
          "The limits of the median are those of the descriptive statistics at any confidence: "
          "distribution-free, interpolated between order statistics. One value has none; few values have "
          "their smallest and largest, though that confidence is out of reach.")
      .note(dataWithNoValue)
      .done();
}

Class dotplot() {
  return Description<yDotplot>("yDotplot", "Dot plots of one or more groups on one scale")
      .method("DotplotOutput", &yDotplot::DotplotOutput,
              "Dots stacked in columns, in a strip for each group, as series of a chart", data,
              Note("dx", "the group of each row; left out, all rows make one strip"),
              Note("BinWidth",
                   "the width of the columns; no value for data that agree in the digits of the scale"),
              Note("DotScale", "the most values that a dot stands for"),
              Note("DotX", "the places of the dots"), Note("DotY", "their heights, in dots"),
              Note("DotN", "how many values each stands for"),
              Note("DotGroup", "the number of the strip of each"),
              Note("BaseX", "the lines on which the strips stand, three slots each: two ends and a gap"),
              Note("BaseY", "their heights"), Note("XAxis", "the values of the scale"),
              Note("YAxisY", "the height of the line of each strip"),
              Note("GroupLabel",
                   "the label of each strip, in numeric-aware order from the top; one empty text without dx"),
              Note("MaxStack",
                   "the most dots in a column, a number whose whole part counts; where empty, 50 over the "
                   "number of strips, but at least 10")
                  .optional(std::string()))
      .note(
          "There are no more than 4 root n columns, nor 200 (Wilkinson, 1999). Data that lie whole steps "
          "apart, as recorded values do, have columns of a whole number of their greatest common step, such "
          "as 0.1 or 0.25: "
          "the smallest number that serves, of those that are 1, 2, 2.5 or 5 times a power of ten, in steps "
          "or in the units of the data. Such a column stands in the middle of the values that it can hold. "
          "Data without a step, or with one of less than about a thousandth of the width, have columns of "
          "such widths at their multiples. "
          "A value on a boundary counts in the upper column.")
      .note(
          "Where a column would be too tall, each dot stands for up to DotScale values, the same in all "
          "strips; the topmost dot of a column may stand for fewer.")
      .note(dataWithNoValue)
      .done();
}

Class matrix() {
  return Description<yMatrix>("yMatrix", "Matrix plots: all pairs of columns")
      .method(
          "MatrixOutput", &yMatrix::MatrixOutput,
          "The scatter plots of all pairs of columns in one chart, with groups and regression lines",
          Note("M_X", "the data, a column a variable").table(),
          Note("XName", "the name of each column; left out, their numbers"),
          Note("dx", "the group of each row; left out, all rows make one group"),
          Note("PlotX", "the points panel by panel, along the rows of panels; a gap ends each panel"),
          Note("PlotY", "their heights, a column a group").table(),
          Note("GroupLabel", "the groups, in numeric-aware order; one empty text without dx"),
          Note("LineX", "the regression lines, three slots a panel and a column a group").table(),
          Note("LineY", "their heights").table(),
          Note("LineValue", "a row for each panel and group, in the units of the data")
              .table()
              .slots(MatrixLine::names),
          Note("GridX", "the borders of the panels, six slots each: five corners and a gap"),
          Note("GridY", "their heights"), Note("LabelX", "the middle of each panel on the diagonal"),
          Note("LabelY", "its height"), Note("Label", "the name of the column that belongs there"),
          Note("XAxisX", "the places of the scale values below each column of panels; a gap ends each scale"),
          Note("XAxisY", "their heights"), Note("XAxis", "the values"),
          Note("YAxisX", "the places of the scale values left of each row of panels; a gap ends each scale"),
          Note("YAxisY", "their heights"), Note("YAxis", "the values"),
          Note("MatrixType", "which panels there are; any other text counts as the first")
              .choices({"Full", "Lower left"})
              .optional(std::string("Full")),
          Note("FitLine", "whether each panel gets the least squares line of each group").optional(false))
      .note(
          "Column i of the data is y in the row of panels i from the top, and x in the column of panels i "
          "from the left. A panel is 10 units wide and high, and the scale of its column runs from 1 to 9 "
          "there; all panels of a column share one scale. Of a scale with more than six values the multiples "
          "of twice its step are "
          "shown.")
      .note(
          "A line is fitted to the values of its group in their own units. Lines span the values of x and "
          "end at the border of the scale. Without spread in x there is no "
          "line, without spread in y no R squared. Lines and LineValue stay unfilled unless asked for.")
      .note("At most 1E8 elements in points, lines and borders together.")
      .note(dataWithNoValue)
      .done();
}

Class multiVari() {
  return Description<yMultiVari>("yMultiVari", "Multi-vari charts of two to four factors")
      .method("MultiVariOutput", &yMultiVari::MultiVariOutput,
              "Means by factors within factors, joined within and across, as series of a chart", data,
              Note("dx1", "the first factor, whose levels are the panels"),
              Note("dx2", "the second, within the first"), Note("dx3", "the third; may be left out"),
              Note("dx4", "the fourth; may be left out"),
              Note("PlotX", "the places of the groups of each factor, a column a factor").table(),
              Note("PlotY", "the mean of each group; a gap ends each line").table(),
              Note("PlotN", "how many values each group has").table(),
              Note("PlotLabel", "the label of each group").table(),
              Note("GrandMeanX", "the two ends of the line of the grand mean"),
              Note("GrandMeanY", "the grand mean, twice"),
              Note("DividerX", "lines between the levels of dx1, three slots each: two ends and a gap"),
              Note("DividerY", "their heights"),
              Note("ValueX", "the place of each row; unfilled unless asked for"),
              Note("ValueY", "the value of each row; unfilled unless asked for"),
              Note("YAxis", "the values of the axis, which covers what is shown"),
              Note("ShowValues", "whether the single values are wanted").optional(false))
      .note(
          "The first factor is the outermost, and the levels of the last one stand side by side, in "
          "numeric-aware order. Combinations without data have no place. The means of a factor are joined "
          "within each group of the factor before, those of dx1 across the chart.")
      .note(
          "The mean of a group is that of all its values, each counting alike, whatever the sizes of the "
          "groups within; it stands halfway between the first and the last place of the last factor in it.")
      .note(dataWithNoValue)
      .done();
}

}  // namespace

void describePlots(std::vector<Class>& classes) {
  classes.push_back(
      Description<yHistogram>("yHistogram", "Histogram with a normal curve")
          .method(
              "HistogramOutput", &yHistogram::HistogramOutput,
              "Counts in intervals, and the fitted normal curve at their midpoints", Note("dy", "the data"),
              Note("GI", "the midpoints of the intervals, ascending; left out, they are chosen and come back")
                  .inOut(),
              Note("Interval", "a copy of the midpoints"), Note("Frequency", "the count of each interval"),
              Note("Normal", "the height of the normal curve at each midpoint, in counts"))
          .note("Neighbouring intervals meet halfway between their midpoints, and a value on that boundary "
                "counts in the upper one. The first and the last interval are open, so every value counts.")
          .note(
              "The curve has the mean and standard deviation of the data. Its heights add up to the number "
              "of values. It has no value where there is one midpoint, or where it vanishes at all of them.")
          .note("Data without spread at several midpoints are refused by NormDist; midpoints that were "
                "chosen stay.")
          .done());
  classes.push_back(boxplot());
  classes.push_back(dotplot());
  classes.push_back(matrix());
  classes.push_back(multiVari());
}

}  // namespace zelkova
