#include <string>

#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/frame/TestType.h"
#include "zelkova/power/yPASS.h"

namespace zelkova {

namespace {

/// The columns of a result by what is found, from the names of their slots.
std::string columns(const char* ofSampleSize, const char* ofDifference, const char* ofPower) {
  return std::string("Columns: with 1 ") + ofSampleSize + "; with 2 " + ofDifference + "; with 3 " + ofPower +
         ".";
}

}  // namespace

void describePower(std::vector<Class>& classes) {
  using Note = ArgumentNote;

  const Note find =
      Note("obj", "what to find: 1 the sample size, 2 the difference or proportion, 3 the power")
          .choices({"1", "2", "3"});
  const Note sizes("SSize", "sample sizes, numbers with commas between; read with 2 and 3");
  const Note groupSizes("SSize", "sample sizes of each group, commas between; read with 2 and 3");
  const Note differences("Diff", "differences, true less tested, commas between; read with 1 and 3");
  const Note proportions("aP", "alternative proportions, commas between; read with 1 and 3");
  const Note targets("Power", "target powers as fractions, commas between; read with 1 and 2");
  const Note sigma("dSigma", "the standard deviation");
  const Note alternative = Note("TestType", "the alternative")
                               .choices({std::string(TestType::LessThan), std::string(TestType::GreaterThan),
                                         std::string(TestType::NotEquals)});
  const Note level("dSLevel", "significance level as a fraction, such as 0.05");
  const auto result = [](const char* name) { return Note(name, "what was found").table(); };

  const char* const rows =
      "A row for each pair of the two lists that are read, the first of them changing more slowly: "
      "differences or proportions before sizes and powers, sizes before powers. A row that the test does not "
      "admit has no value in any column: a difference against the alternative, a target power not above the "
      "level, a text that is no alternative.";
  const std::string ofMeans = columns(MeansSampleSize::names, MeansDifference::names, MeansPower::names);
  const std::string ofProportions =
      columns(ProportionsSampleSize::names, ProportionsSolution::names, ProportionsPower::names);
  const char* const nearTail =
      "Only the tail on the side of the difference counts, in the two-sided test too.";
  const char* const searches =
      "The sample size is the smallest from 2 on that reaches the target, found by doubling strides; a "
      "target that none up to 1000000000 reaches is a failure. The difference reaches its target within "
      "1E-5, or is what stands after 100 steps.";
  const char* const solutions =
      "LowerP and UpperP are searched from dHp in steps of 0.0001, away from it; they are the middle of the "
      "step that passes the target. A one-sided alternative fills its own side; no value where the search "
      "ends at 0 or 1.";

  classes.push_back(
      Description<yPASS>("yPASS", "Power and sample size: two of size, difference and power give the third")
          .method("PASSOneZOutput", &yPASS::PASSOneZOutput, "Plans a one-sample z test", find, sizes,
                  differences, targets, sigma, alternative, level, result("PASSOneZValue"))
          .note(ofMeans)
          .note(rows)
          .note(nearTail)
          .method("PASSOneTOutput", &yPASS::PASSOneTOutput, "Plans a one-sample t test", find, sizes,
                  differences, targets, sigma, alternative, level, result("PASSOneTValue"))
          .note(ofMeans)
          .note(rows)
          .note(searches)
          .method("PASSTwoTOutput", &yPASS::PASSTwoTOutput, "Plans a two-sample t test of equal groups", find,
                  groupSizes, differences, targets, sigma, alternative, level, result("PASSTwoTValue"))
          .note(ofMeans)
          .note(rows)
          .note(searches)
          .method("PASSOnePOutput", &yPASS::PASSOnePOutput, "Plans a test of one proportion", find, sizes,
                  proportions, targets, Note("dHp", "the tested proportion"), alternative, level,
                  result("PASSOnePValue"))
          .note(ofProportions)
          .note(rows)
          .note(nearTail)
          .note(solutions)
          .method("PASSTwoPOutput", &yPASS::PASSTwoPOutput, "Plans a test of two proportions, equal groups",
                  find, groupSizes, proportions, targets, Note("dHp", "the proportion of the second group"),
                  alternative, level, result("PASSTwoPValue"))
          .note(ofProportions)
          .note(rows)
          .note(nearTail)
          .note(solutions)
          .method("PASSOneANOVAOutput", &yPASS::PASSOneANOVAOutput,
                  "Plans a one-way analysis of variance of equal groups", find, groupSizes,
                  Note("Diff", "largest differences between two means, commas between; read with 1 and 3"),
                  targets, sigma, level, Note("dNumLevel", "number of groups"), result("PASSOneANOVAValue"))
          .note(columns(ANOVASampleSize::names, ANOVADifference::names, ANOVAPower::names))
          .note("SSMeans is the sum of squares of the group means about their own mean, where two groups lie "
                "the difference apart and all others in the middle: the least power that the difference "
                "allows.")
          .note(
              "A row for each pair of the two lists that are read, the first of them changing more slowly: "
              "differences before sizes and powers, sizes before powers. A target power not above the level "
              "has no value in any column.")
          .note(
              "The sample size is the smallest from 2 on that reaches the target, found by doubling strides; "
              "a target that none up to 1000000000 reaches is a failure. The difference reaches its target "
              "within 1E-6, or is what stands after 10000 steps.")
          .done());
}

}  // namespace zelkova
