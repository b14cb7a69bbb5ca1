#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/charts/yControlTest.h"

namespace zelkova {

void describeCharts(std::vector<Class>& classes) {
  using Note = ArgumentNote;

  const char* const testRules =
      "A mark stands at the last point of its pattern. No pattern crosses a phase (the point before the "
      "first "
      "step of test 3 or 4 may lie in the one before), and one with an empty point or line does not signal, "
      "but for test 3, which looks at its last point only. A point on the centre line counts with both sides "
      "in test 2. Tests 5 and 6 want all k + 1 points on one side of the centre line, the last of them among "
      "the far ones.";
  const Note k1("kvar1s", "test 1: a point more than k sigma from the centre line; blank for no test");
  const Note k2("kvar2s", "test 2: k points in a row on one side of the centre line");
  const Note k3("kvar3s", "test 3: k steps in a row, all up or all down");
  const Note k4("kvar4s", "test 4: k steps in a row, alternating up and down");
  const Note k5("kvar5s", "test 5: k out of k + 1 points more than 2 sigma from the centre line, one side");
  const Note k6("kvar6s", "test 6: k out of k + 1 points more than 1 sigma from the centre line, one side");
  const Note k7("kvar7s", "test 7: k points in a row within 1 sigma of the centre line, either side");
  const Note k8("kvar8s", "test 8: k points in a row more than 1 sigma from the centre line, either side");

  classes.push_back(
      Description<yControlTest>("yControlTest", "Tests for special causes on a finished control chart")
          .method("CCTest", &yControlTest::CCTest, "The eight tests for special causes, position by position",
                  Note("CCL", "the centre line"), Note("LCL", "the line one sigma below it"),
                  Note("UCL", "the line one sigma above it"), Note("plotdata", "the plotted points"),
                  Note("dp", "the phase of each point"),
                  Note("FailedTest", "for each point the tests that signal, such as #1##5#"), k1, k2, k3, k4,
                  k5, k6, k7, k8)
          .note(testRules)
          .done());
}

}  // namespace zelkova
