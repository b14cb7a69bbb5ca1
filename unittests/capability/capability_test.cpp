#include "zelkova/capability/yCapability.h"

#include <sstream>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/charts/chartData.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {
namespace {

using Slot = NormalCapability;

// R's data set Nile, the first 30 years, and labels that part them into subgroups of 5, 5, 4, 5, 1, 5, 5.
const DoubleArray nile{1120, 1160, 963, 1210, 1160, 1160, 813,  1230, 1370, 1140, 995,  935,  1110, 994, 1020,
                       960,  1180, 799, 958,  1140, 1100, 1210, 1150, 1250, 1260, 1220, 1030, 1100, 774, 840};
const StringArray unequal{"a", "a", "a", "a", "a", "b", "b", "b", "b", "b", "c", "c", "c", "c", "d",
                          "d", "d", "d", "d", "e", "f", "f", "f", "f", "f", "a", "a", "a", "a", "a"};

struct Study {
  std::string estimate1 = "average moving range", estimate2 = "POOLED std dev", rangeLength = {};
  std::string usl = {}, lsl = {}, target = {}, tolerance = " ";
  std::string mean = {}, sd = {}, between = {}, within = {}, indices = {}, unit = {};
  bool bw = false;

  DoubleArray of(const DoubleArray& dy, const StringArray& dx) const {
    DoubleArray result;
    yCapability().CapabilityOutput(dy, dx, estimate1, estimate2, rangeLength, usl, lsl, target, tolerance,
                                   mean, sd, between, within, indices, unit, result, bw);
    return result;
  }
};

/// All slots of the study of `dy` agree with the numbers of a text, in which - is no value.
void expectStudy(const char* name, const DoubleArray& dy, const StringArray& dx, const Study& study,
                 const char* expected) {
  std::istringstream words(expected);
  std::vector<double> numbers;
  for (std::string word; words >> word;) numbers.push_back(word == "-" ? NoValue : toNumber(word));
  EXPECT_TRUE(areClose(study.of(dy, dx), DoubleArray(numbers), 1e-9)) << name;
}

const StringArray rings = inSamples(25, 5);
const StringArray years = inSamples(30, 1);

class Capability : public WithHost {};

// Faults: an estimate in the wrong slot, sides exchanged, a Cpm about the mean or with divisor n, Z values in
// the other display's place, fractions in the wrong unit or of the wrong sigma, a historical value that does
// not stand for that of the data, or moves what it must not. Expected: R, each figure by its definition, with
// c4, d2, d3 and d4 to the tables' digits. Published besides: sigma and Cp of the third from the piston
// rings' mean range, 0.02324/2.326 and 0.1/(6 sigma); Cp 1 and Cpk 0.6667 of the last, the example of the
// NIST/SEMATECH e-Handbook of Statistical Methods in its section on process capability.
TEST_F(Capability, OfTheDataAgreesWithR) {
  expectStudy("both sides", pistonRings, rings, {.usl = " 74.02", .lsl = "73.98 ", .target = "74.005"},
              "74.02 74.005 73.98 74.001176 125 0.0100508405658924 0.010219381618058 0.66329444019724 "
              "0.624292727113603 0.702296153280877 0.624292727113603 0.458815888518812 0.652355192890056 "
              "0.613996707548082 0.69071367823203 0.613996707548082 8000 24000 32000 17563.6245829986 "
              "30542.6043728167 48106.2289558153 19126.1452379586 32738.2973446065 51864.4425825652 0 0");
  expectStudy(
      "Z values", pistonRings, rings,
      {.usl = "74.02", .lsl = "73.98", .target = "74.005", .indices = "Z & Sigma", .unit = " Percentage"},
      "74.02 74.005 73.98 74.001176 125 0.0100508405658924 0.010219381618058 1.6634996647221 "
      "1.87287818134081 2.10688845984263 0.624292727113603 0.458815888518812 1.62703866983956 "
      "1.84199012264425 2.07214103469609 0.613996707548082 0.8 2.4 3.2 1.75636245829986 3.05426043728167 "
      "4.81062289558153 1.91261452379586 3.27382973446065 5.18644425825652 0 0");
  expectStudy(
      "mean range", pistonRings, rings,
      {.estimate2 = "RBar",
       .usl = "74.05",
       .lsl = "73.95",
       .target = "74",
       .indices = "Cp & Pp ",
       .unit = "Parts per million"},
      "74.05 74 73.95 74.001176 125 0.00999140154772146 0.010219381618058 1.66810097532979 1.62886724039 "
      "1.70733471026958 1.62886724039 1.62332390787064 1.63088798222537 1.5925294968834 1.66924646756735 "
      "1.5925294968834 0 0 0 0.151152633404716 0.512956667207384 0.6641093006121 0.275365148425332 "
      "0.887049917693877 1.16241506611921 0 0");
  expectStudy("upper side", nile, years,
              {.estimate2 = "no name", .usl = "1300", .target = "1100", .tolerance = "4"},
              "1300 1100 - 1078.36666666667 30 128.515529469308 151.24335903328 - 0.862282302568982 - "
              "0.862282302568982 0.65984311933237 - 0.732704347318037 - 0.732704347318037 - 33333.3333333333 "
              "33333.3333333333 - 42302.983368894 42302.983368894 - 71404.7233457551 71404.7233457551 0 0");
  expectStudy(
      "lower side", nile, years,
      {.estimate1 = "Median Moving Range",
       .rangeLength = " 3 ",
       .lsl = "800",
       .target = "1100",
       .indices = "Z & Sigma"},
      "- 1100 800 1078.36666666667 30 133.816120906801 151.24335903328 2.0802177254902 - 2.0802177254902 "
      "0.693405908496732 0.65984311933237 1.84052158353224 - 1.84052158353224 0.613507194510746 "
      "66666.6666666667 - 66666.6666666667 18752.7835703403 - 18752.7835703403 32845.8492430816 - "
      "32845.8492430816 0 0");
  expectStudy("historical mean", nile, unequal,
              {.estimate2 = "sBAR", .usl = "1300", .lsl = "800", .target = "1050", .mean = "1020"},
              "1300 1050 800 1020 30 137.990618111405 151.24335903328 0.6039057906535 0.676374485531919 "
              "0.53143709577508 0.53143709577508 0.545747065891329 0.550988379694719 0.617106985258085 "
              "0.484869774131353 0.484869774131353 66666.6666666667 33333.3333333333 1e+05 55433.1654108517 "
              "21222.8586512967 76656.0240621484 72888.7243478879 32061.6965333393 104950.420881227 0 0");
  expectStudy("historical mean and sigma", nile, years,
              {.usl = "20", .lsl = "8", .mean = "16", .sd = "2", .between = "not read"},
              "20 - 8 16 30 2 151.24335903328 1 0.666666666666667 1.33333333333333 0.666666666666667 - "
              "0.0132237211126733 0.0088158140751155 0.017631628150231 0.0088158140751155 0 1e+06 1e+06 "
              "31.6712418331199 22750.1319481792 22781.8031900123 478907.830154635 489450.226972204 "
              "968358.057126839 0 0");
}

// Faults: moving ranges of means of all sizes, a within component divided by the subgroup size, a negative
// difference of variances, historical components that do not replace the right one. Expected: R, as above;
// the last two by hand, for subgroups of one mean and subgroups of one value.
TEST_F(Capability, BetweenAndWithinAgreesWithR) {
  expectStudy("average range", nile, unequal,
              {.estimate2 = "RBAR", .usl = "1300", .lsl = "800", .sd = "not read", .bw = true},
              "1300 - 800 1078.36666666667 30 113.824125334619 144.92908430307 0.452202064777099 "
              "0.400892203827058 0.503511925727141 0.400892203827058 - 0.550988379694719 0.488469564878692 "
              "0.613507194510746 0.488469564878692 66666.6666666667 33333.3333333333 1e+05 65453.3837018949 "
              "114550.744041961 180004.127743856 32845.8492430816 71404.7233457551 104250.572588837 "
              "184.283398560797 151.24335903328");
  expectStudy("median range", nile, unequal,
              {.estimate1 = "MEDIAN Moving Range",
               .estimate2 = "Sbar",
               .rangeLength = "3",
               .usl = "1300",
               .lsl = "800",
               .indices = "Z & Sigma",
               .bw = true},
              "1300 - 800 1078.36666666667 30 117.386918893267 137.990618111405 0.943162055183524 "
              "1.22337194253002 1.53652866477188 0.407790647510008 - 1.25769758724144 1.46540869463607 "
              "1.84052158353224 0.488469564878692 66666.6666666667 33333.3333333333 1e+05 62204.3865208702 "
              "110594.622832454 172799.009353324 32845.8492430816 71404.7233457551 104250.572588837 "
              "181.165944410152 151.24335903328");
  const auto sigma = [](const Study& study) { return study.of(pistonRings, rings)(Slot::SDBetweenWithin); };
  EXPECT_TRUE(isClose(sigma({.between = " 0.004", .bw = true}), 0.0108175503733973)) << "sigma within of R";
  EXPECT_TRUE(isClose(sigma({.between = "0.004", .within = "0.003", .bw = true}), 0.005));
  EXPECT_EQ(sigma({.within = "0.01", .bw = true}), 0.01) << "nothing between";

  Study level;
  level.bw = true;
  level.usl = "9";
  const DoubleArray sameMeans = level.of({1, 9, 2, 8, 3, 7}, inSamples(3, 2));
  EXPECT_EQ(sameMeans(Slot::SDWithinOrBetween), 0);
  EXPECT_EQ(sameMeans(Slot::SDBetweenWithin), sameMeans(Slot::SDOverallOrWithin));
  // Without a subgroup of two there are no means whose ranges could tell the components apart.
  const DoubleArray single = level.of({1, 9, 2, 8, 3, 7}, inSamples(6, 1));
  for (const Index slot :
       {Slot::SDWithinOrBetween, Slot::SDBetweenWithin, Slot::Cpk, Slot::ExpectedWithinTotal}) {
    EXPECT_EQ(single(slot), NoValue) << slot;
  }
  EXPECT_EQ(single(Slot::SDOverallOrWithin), 0);
  EXPECT_NE(single(Slot::Ppk), NoValue);
}

// Faults: displays that fill the slots of an unknown text; a study without specifications that fails; limits
// of the extremes of Z.Bench; a sigma that does not exist taken for a number.
TEST_F(Capability, LeavesOutWhatIsNotGiven) {
  Study study;
  study.target = "74";
  const DoubleArray open = study.of(pistonRings, rings);
  for (Index slot = Slot::CpOrZBenchWithin; slot <= Slot::ExpectedOverallTotal; ++slot) {
    EXPECT_EQ(open(slot), NoValue) << slot;
  }
  study.usl = "74.05";
  study.indices = "z & sigma";
  study.unit = "percentage";
  const DoubleArray unknown = study.of(pistonRings, rings);
  for (Index slot = Slot::CpOrZBenchWithin; slot <= Slot::ExpectedOverallTotal; ++slot) {
    EXPECT_EQ(unknown(slot), 0) << slot;
  }

  study.unit = study.indices = "Z & Sigma";
  study.lsl = "70";
  study.usl = "78";
  EXPECT_EQ(study.of(pistonRings, rings)(Slot::CpOrZBenchWithin), NoValue) << "all within";
  study.usl = "70.01";
  EXPECT_EQ(study.of(pistonRings, rings)(Slot::PpOrZBenchOverall), NoValue) << "none within";

  Study longRange;
  longRange.usl = "1300";
  longRange.rangeLength = "31";
  const DoubleArray withoutSigma = longRange.of(nile, years);
  for (const Index slot :
       {Slot::SDWithinOrBetween, Slot::CPUOrZUSLWithin, Slot::Cpk, Slot::ExpectedWithinAbove}) {
    EXPECT_EQ(withoutSigma(slot), NoValue) << slot;
  }
  EXPECT_TRUE(isClose(withoutSigma(Slot::ExpectedOverallAbove), 71404.7233457551, 1e-9));
}

// Fault: bad arguments that end in a number, or in no clear failure.
TEST_F(Capability, RefusesWhatItCannotJudge) {
  struct Refusal {
    std::string Study::*text;
    const char* value;
    int number;
  };
  for (const auto& [text, value, number] : std::vector<Refusal>{{&Study::usl, "high", 13},
                                                                {&Study::target, "x", 13},
                                                                {&Study::rangeLength, "two", 13},
                                                                {&Study::mean, "1,5", 13},
                                                                {&Study::sd, "-1", 5},
                                                                {&Study::sd, "0", 11},
                                                                {&Study::tolerance, "0", 11},
                                                                {&Study::tolerance, "-6", 5},
                                                                {&Study::estimate2, "none", 11},
                                                                {&Study::usl, "73.9", 1004}}) {
    Study study;
    study.usl = "74.05";
    study.lsl = "73.95";
    study.*text = value;
    EXPECT_EQ(failureNumber([&] { study.of(pistonRings, rings); }), number) << value;
  }
  Study study;
  study.usl = "6";
  EXPECT_EQ(failureNumber([&] { study.of({5, 5, 5, 5}, inSamples(2, 2)); }), 11) << "no spread";
  EXPECT_EQ(failureNumber([&] { study.of({5}, {"1"}); }), 11) << "a single value";
  EXPECT_EQ(failureNumber([&] { study.of({5, 6}, {"1"}); }), 9) << "too few labels";
  EXPECT_EQ(failureNumber([&] { study.of({}, {}); }), 9) << "no data";
}

struct Histogram {
  DoubleArray x, y, within, overall, limitY, lsl, usl, target;

  Histogram(const DoubleArray& dy, const std::string& USL, const std::string& LSL, const std::string& Target,
            double mean, double sd1, double sd2) {
    yCapability().CapabilityChartoutput(dy, {}, USL, LSL, Target, mean, sd1, sd2, x, y, within, overall,
                                        limitY, lsl, usl, target);
  }
};

class CapabilityChart : public WithHost {};

// Faults: a value on an edge in the lower bin, added ends that are counted, curves scaled by the bin width
// instead of their sum, curves along the axis, markers off by half a category. Expected: bins by hand (32
// values from 720 to 1440 aim at 9 bins, and of 10, 20, 25, 50 and 100 the width 100 comes nearest), the rest
// by R's findInterval and dnorm.
TEST_F(CapabilityChart, CountsAndDrawsOnOneScale) {
  const Histogram chart(nile, "1300", "800", " ", 1080, 120, 40);
  EXPECT_EQ(chart.x, (DoubleArray{700, 800, 900, 1000, 1100, 1200, 1300, 1400}));
  EXPECT_EQ(chart.y, (DoubleArray{0, 4, 1, 7, 6, 9, 2, 1}));
  EXPECT_TRUE(areClose(chart.within,
                       {0.066332104671983, 0.656118019159848, 3.24075919972665, 7.99315380592358,
                        9.84455720429178, 6.0545352739006, 1.85939667662947, 0.285147715696083},
                       1e-10));
  EXPECT_TRUE(areClose(chart.overall,
                       {NoValue, NoValue, 1.16810545299984e-03, 3.94570595050113, 25.7292348052281,
                        0.323883267517195, 7.87063263165561e-06, NoValue},
                       1e-10));
  EXPECT_EQ(chart.limitY, (DoubleArray{0, 1}));
  EXPECT_TRUE(areClose(chart.lsl, {1.5 / 8, 1.5 / 8}));
  EXPECT_TRUE(areClose(chart.usl, {6.5 / 8, 6.5 / 8}));
  EXPECT_EQ(chart.target, (DoubleArray{NoValue, NoValue}));
}

// Faults: an axis that ends before a specification or the target, or that a missing sigma stretches; a curve
// that falls between the midpoints, or an axis of one bin, taken for a division by zero.
TEST_F(CapabilityChart, CoversWhatItShows) {
  // The target alone moves the low end, the upper specification the high one.
  const Histogram far(nile, "2050", "", "410", 1080, NoValue, 100);
  EXPECT_LE(far.x(1) - (far.x(2) - far.x(1)) / 2, 410);
  EXPECT_GE(far.x(far.x.rows()) + (far.x(2) - far.x(1)) / 2, 2050);
  EXPECT_EQ(far.within, DoubleArray(far.x.rows(), NoValue));

  const Histogram narrow(nile, "", "", "", 1080, NoValue, 0);
  EXPECT_GT(narrow.x(1), 700);
  EXPECT_LT(narrow.x(narrow.x.rows()), 1450);
  EXPECT_EQ(narrow.overall, DoubleArray(narrow.x.rows(), NoValue));
  const Histogram needle(nile, "", "", "", 1087.3, 0.1, 120);
  EXPECT_EQ(needle.within, DoubleArray(needle.x.rows(), NoValue));

  const Histogram constant({5, 5, 5}, "5", "", "", 5, 0, 0);
  EXPECT_EQ(constant.x, (DoubleArray{5}));
  EXPECT_EQ(constant.y, (DoubleArray{3}));
  EXPECT_EQ(constant.overall, (DoubleArray{NoValue}));
  EXPECT_EQ(constant.usl, (DoubleArray{NoValue, NoValue}));

  EXPECT_EQ(failureNumber([] { Histogram(nile, "", "", "", 1080, -1, 100); }), 1004);
  EXPECT_EQ(failureNumber([] { Histogram(nile, "wide", "", "", 1080, 1, 100); }), 13);
}

}  // namespace
}  // namespace zelkova
