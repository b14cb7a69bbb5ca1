#pragma once

#include "zelkova/frame/Array.h"
#include "zelkova/frame/HostBound.h"
#include "zelkova/frame/slots.h"

namespace zelkova {

/// The result of `yRunTest::RunTestOutput`: the runs about the median K, then the runs up and down.
ZELKOVA_SLOTS(RunsTest, N, K, Above, AtOrBelow, Runs, ExpectedRuns, Z, PClustering, PMixtures, RunsUpDown,
              ExpectedRunsUpDown, PTrends, POscillation);

/// Whether a series is random. Binds to the host.
class yRunTest : public HostBound {
 public:
  /// Runs tests of `dy` in the order it came, by the normal approximation: runs about the median (Wald and
  /// Wolfowitz, 1940) and runs up and down (Levene and Wolfowitz, 1944). Where the number of runs about the
  /// median cannot vary, Z is `NoValue` and both its p-values are 1; fewer than 3 values leave the runs up
  /// and down at `NoValue`. Failures: 11 for one value, 9 for an array that was never filled.
  void RunTestOutput(const DoubleArray& dy, DoubleArray& RunTest) const;
};

}  // namespace zelkova
