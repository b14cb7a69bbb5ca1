#pragma once

#include <string>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// Tests for special causes on a finished control chart (Western Electric, 1956; Nelson, 1984). Binds to no
/// host.
class yControlTest {
 public:
  /// For each position the tests that signal there, as marks "#1#" to "#8#" in rising order; a mark stands at
  /// the last point of its pattern. `LCL` and `UCL` are the lines one sigma from the centre line `CCL`, in
  /// the units of `plotdata`; `dp` is the phase of each position (never filled for a single one), and no
  /// pattern crosses a change of phase. Each `kvar` is the text of its test's parameter k, rounded to a whole
  /// number; a blank one switches the test off. A window with `NoValue` among its points or lines does not
  /// signal, but for test 3, which looks at its last point only. Failures: 9 where an array is shorter than
  /// `plotdata` and for a k that makes no window, 13 for a k that is no number, 6 for one beyond 32767.
  void CCTest(const DoubleArray& CCL, const DoubleArray& LCL, const DoubleArray& UCL,
              const DoubleArray& plotdata, const StringArray& dp, StringArray& FailedTest,
              const std::string& kvar1s, const std::string& kvar2s, const std::string& kvar3s,
              const std::string& kvar4s, const std::string& kvar5s, const std::string& kvar6s,
              const std::string& kvar7s, const std::string& kvar8s) const;
};

}  // namespace zelkova
