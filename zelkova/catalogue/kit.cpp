#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/kit/yDStat.h"

namespace zelkova {

void describeKit(std::vector<Class>& classes) {
  using Note = ArgumentNote;
  classes.push_back(
      Description<yDStat>("yDStat", "Descriptive statistics")
          .method("DesStatOutput", &yDStat::DesStatOutput,
                  "Summary of one column of data with 95 percent limits",
                  Note("dy", "the data, two values or more"),
                  Note("DSO", "the summary").slots(DescriptiveStatistics::names))
          .note("A quartile between two values always lies three quarters of the way from the outer to the "
                "inner one, "
                "whatever the fraction of (n + 1)/4: the weight is 0.75 for Q1 and 0.25 for Q3.")
          .note("The limits of the median come from non-linear interpolation between order statistics.")
          .done());
}

}  // namespace zelkova
