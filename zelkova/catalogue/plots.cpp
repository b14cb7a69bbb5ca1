#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/plots/yHistogram.h"

namespace zelkova {

void describePlots(std::vector<Class>& classes) {
  using Note = ArgumentNote;

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
}

}  // namespace zelkova
