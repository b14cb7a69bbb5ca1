#include "zelkova/charts/yControlTest.h"

#include "zelkova/charts/Subgroups.h"
#include "zelkova/charts/specialCauses.h"

namespace zelkova {

void yControlTest::CCTest(const DoubleArray& CCL, const DoubleArray& LCL, const DoubleArray& UCL,
                          const DoubleArray& plotdata, const StringArray& dp, StringArray& FailedTest,
                          const std::string& kvar1s, const std::string& kvar2s, const std::string& kvar3s,
                          const std::string& kvar4s, const std::string& kvar5s, const std::string& kvar6s,
                          const std::string& kvar7s, const std::string& kvar8s) const {
  const control::ChartLines chart{CCL.vector(), LCL.vector(), UCL.vector(), plotdata.vector()};
  const std::size_t n = chart.plotted.size();
  if (chart.centre.size() < n || chart.lower.size() < n || chart.upper.size() < n) {
    raise(FailureNumber::OutOfRange, "the lines must be as long as the points");
  }
  std::vector<Index> phaseStarts{0};
  if (dp.filled()) phaseStarts = control::runStarts(dp.vector(), n);
  control::markFailedTests(chart, phaseStarts,
                           {kvar1s, kvar2s, kvar3s, kvar4s, kvar5s, kvar6s, kvar7s, kvar8s}, FailedTest);
}

}  // namespace zelkova
