#include "zelkova/capability/yCapabilityW.h"

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {
namespace {

using Slot = WeibullCapability;

// R's data set airquality, column Wind: miles per hour.
const DoubleArray wind{
    7.4,  8,    12.6, 11.5, 14.3, 14.9, 8.6,  13.8, 20.1, 8.6,  6.9,  9.7,  9.2,  10.9, 13.2, 11.5, 12,
    18.4, 11.5, 9.7,  9.7,  16.6, 9.7,  12,   16.6, 14.9, 8,    12,   14.9, 5.7,  7.4,  8.6,  9.7,  16.1,
    9.2,  8.6,  14.3, 9.7,  6.9,  13.8, 11.5, 10.9, 9.2,  8,    13.8, 11.5, 14.9, 20.7, 9.2,  11.5, 10.3,
    6.3,  1.7,  4.6,  6.3,  8,    8,    10.3, 11.5, 14.9, 8,    4.1,  9.2,  9.2,  10.9, 4.6,  10.9, 5.1,
    6.3,  5.7,  7.4,  8.6,  14.3, 14.9, 14.9, 14.3, 6.9,  10.3, 6.3,  5.1,  11.5, 6.9,  9.7,  11.5, 8.6,
    8,    8.6,  12,   7.4,  7.4,  7.4,  9.2,  6.9,  13.8, 7.4,  6.9,  7.4,  4.6,  4,    10.3, 8,    8.6,
    11.5, 11.5, 11.5, 9.7,  11.5, 10.3, 6.3,  7.4,  10.9, 10.3, 15.5, 14.3, 12.6, 9.7,  3.4,  8,    5.7,
    9.7,  2.3,  6.3,  6.3,  6.9,  5.1,  2.8,  4.6,  7.4,  15.5, 10.9, 10.3, 10.9, 9.7,  14.9, 15.5, 6.3,
    10.9, 11.5, 6.9,  13.8, 10.3, 10.3, 8,    12.6, 9.2,  10.3, 10.3, 16.6, 6.9,  13.2, 14.3, 8,    11.5};

struct Study {
  std::string usl = {}, lsl = {}, target = {}, shape = {}, scale = {};
  double confidence = 0.95;
  std::string unit = {};

  DoubleArray of(const DoubleArray& dy) const {
    DoubleArray result;
    yCapabilityW().CapabilityWOutput(dy, usl, lsl, target, shape, scale, confidence, unit, result);
    return result;
  }
};

class WeibullStudy : public WithHost {
 protected:
  int failureOf(const DoubleArray& dy, const Study& study) {
    return failureNumber([&] { study.of(dy); });
  }
};

// Faults: an estimate that is not at the maximum, limits that are not logarithmic or forget what is held, an
// index from the wrong quantile or side, a Z value of the far tail from 1 - p, fractions in the wrong slot.
// Expected: R, each figure by its definition with qweibull and pweibull; the estimates by survreg(Surv(y) ~
// 1), with a historical scale the root of the likelihood's derivative by uniroot. - is no value.
TEST_F(WeibullStudy, AgreesWithR) {
  const std::pair<Study, const char*> studies[] = {
      {{"20", "2"},
       "20 - 2 9.95751633987 153 3.05324793326 2.70613679485 3.44488237242 11.1360360074 10.5427514281 "
       "11.7627071836 1.27924399173 9.87637949595 20.6686689138 0.928341096878 0.938041977201 0.916163237404 "
       "0.916163237404 2.41763838317 2.80217473867 2.55740434973 6535.94771242 13071.8954248 19607.8431373 "
       "5272.827777 2537.96860949 7810.79638649"},
      {{.usl = " 20 ", .lsl = "2", .target = "10", .shape = "3", .confidence = 0.95},
       "20 10 2 9.95751633987 153 3 - - 11.1079230634 10.5364507381 11.7103907044 1.22793456319 "
       "9.83047908161 20.8440395413 0.917613360049 0.923363607586 0.910251503476 0.910251503476 "
       "2.37655677226 2.7569105667 2.52287305725 6535.94771242 13071.8954248 19607.8431373 5820.02058847 "
       "2917.51541661 8737.53600508"},
      {{.usl = "20", .lsl = "2", .scale = "11"},
       "20 - 2 9.95751633987 153 3.02523269409 2.70181310026 3.38736711747 11 - - 1.23854735183 "
       "9.7448924473 20.5334429539 0.932889214395 0.950554715063 0.910484157459 0.910484157459 "
       "2.40984817247 2.8424137622 2.52768210678 6535.94771242 13071.8954248 19607.8431373 5740.91306715 "
       "2238.66711008 7979.58017723"},
      {{.usl = "20", .lsl = "2", .shape = "3", .scale = "11", .confidence = 0.5},
       "20 - 2 9.95751633987 153 3 - - 11 - - 1.21600411869 9.73496748951 20.6415217 0.926616236848 "
       "0.941180166752 0.907970506835 0.907970506835 2.38908018744 2.81316595688 2.51258618223 6535.94771242 "
       "13071.8954248 19607.8431373 5992.4913768 2452.81629311 8445.30766991"},
      {{"30", "1.7"},
       "30 - 1.7 9.95751633987 153 3.05324793326 2.70613679485 3.44488237242 11.1360360074 10.5427514281 "
       "11.7627071836 1.27924399173 9.87637949595 20.6686689138 1.45955850231 1.86462943356 0.951058581307 "
       "0.951058581307 2.72515208851 5.97946926491 2.7251522035 0 0 0 3213.59254973 0.00111932897007 "
       "3213.59366905"},
      {{"5", "1"},
       "5 - 1 9.95751633987 153 3.05324793326 2.70613679485 3.44488237242 11.1360360074 10.5427514281 "
       "11.7627071836 1.27924399173 9.87637949595 20.6686689138 0.206298021529 -0.45183920734 1.03248105041 "
       "-0.45183920734 -1.388815746 -1.38464128086 3.22190887225 0 934640.522876 934640.522876 636.698144116 "
       "916918.908916 917555.60706"}};
  for (const auto& [study, expected] : studies) {
    std::istringstream words(expected);
    std::vector<double> numbers;
    for (std::string word; words >> word;) numbers.push_back(word == "-" ? NoValue : toNumber(word));
    EXPECT_TRUE(areClose(study.of(wind), DoubleArray(numbers), 2e-6)) << expected;
  }
  const DoubleArray ninety = Study{.confidence = 0.9}.of(wind);
  EXPECT_TRUE(isClose(ninety(Slot::ShapeLower), 2.75915603774, 1e-6));
  EXPECT_TRUE(isClose(ninety(Slot::ScaleUpper), 11.6596262192, 1e-6));
  EXPECT_EQ(ninety(Slot::Ppk), NoValue);
  // A narrow process, whose shape is large: mpmath, the root of the likelihood's derivative in 40 digits.
  DoubleArray narrow(10);
  for (Index i = 1; i <= 10; ++i) narrow(i) = 100 + 0.001 * static_cast<double>(i);
  EXPECT_TRUE(isClose(Study{}.of(narrow)(Slot::Shape), 38586.47532136, 1e-6));
  EXPECT_TRUE(isClose(Study{}.of(narrow)(Slot::Scale), 100.0069291184047));
}

// Faults: a side without a specification that gets a value, a fraction of 0 as an infinite Z value, the wrong
// unit or one where none is known. Expected: the figures above.
TEST_F(WeibullStudy, OneSidedAndUnits) {
  const DoubleArray upper = Study{.usl = "20", .unit = "Percentage"}.of(wind);
  for (const Index slot :
       {Slot::LSL, Slot::Pp, Slot::PPL, Slot::ZLSL, Slot::ObservedBelow, Slot::ExpectedBelow}) {
    EXPECT_EQ(upper(slot), NoValue) << slot;
  }
  EXPECT_EQ(upper(Slot::Ppk), upper(Slot::PPU));
  EXPECT_EQ(upper(Slot::ZBench), upper(Slot::ZUSL));
  EXPECT_TRUE(isClose(upper(Slot::ObservedTotal), 1.30718954248, 1e-10));
  EXPECT_TRUE(isClose(upper(Slot::ExpectedAbove), 0.253796860949, 2e-6));
  // Nothing lies below 0: the bound of the characteristic is no specification that it could miss.
  const DoubleArray bounded = Study{.usl = "20", .lsl = "0", .unit = "percent"}.of(wind);
  EXPECT_EQ(bounded(Slot::ZLSL), NoValue);
  EXPECT_EQ(bounded(Slot::ZBench), upper(Slot::ZUSL));
  EXPECT_EQ(bounded(Slot::ExpectedTotal), 0);
  // Both specifications far above: what lies between is exp(-36) - exp(-49), and R's qnorm of it.
  const DoubleArray apart = Study{.usl = "7", .lsl = "6", .shape = "2", .scale = "1"}.of({1, 2});
  EXPECT_TRUE(isClose(apart(Slot::ZBench), -8.12059504220853, 1e-11));
}

// Faults: a number for data that no Weibull distribution has, or a search for a maximum that is not there.
TEST_F(WeibullStudy, RefusesWhatHasNoAnswer) {
  EXPECT_EQ(failureOf({1, 2, 0}, {}), 5);
  EXPECT_EQ(failureOf({1, 2, NoValue}, {}), 5);
  EXPECT_EQ(failureOf({3, 3, 3}, {}), 5);
  EXPECT_EQ(failureOf({3}, {}), 5);
  EXPECT_EQ(failureOf({3, 3}, {.scale = "3"}), 5);
  EXPECT_EQ(failureOf(wind, {"2", "20"}), 5);
  EXPECT_EQ(failureOf(wind, {.shape = "0"}), 5);
  EXPECT_EQ(failureOf(wind, {.usl = "wide"}), 13);
  EXPECT_EQ(failureOf(wind, {.confidence = 1}), 5);
  EXPECT_EQ(failureOf({}, {}), 9);
  // By hand: with a shape of 2 the scale is the root mean square.
  EXPECT_TRUE(isClose(Study{.shape = "2"}.of({3})(Slot::Scale), 3));
  EXPECT_TRUE(isClose(Study{.shape = "2"}.of({1, 7})(Slot::Scale), 5));
  EXPECT_TRUE(isClose(Study{.shape = "1000"}.of({1, 7})(Slot::Scale), 7 * std::pow(0.5, 0.001)));
}

// Faults: a curve of another distribution or on another scale, an axis that leaves out what is specified, a
// line beside its place. Expected: the Weibull survival and the positions by hand.
TEST_F(WeibullStudy, DrawsTheHistogram) {
  DoubleArray x, y, curve, limitY, lower, upper, target;
  std::string usl = "25", lsl = "1";
  const auto draw = [&](const DoubleArray& dy, double shape, double scale) {
    yCapabilityW().CapabilityWChartOutput(dy, usl, lsl, "", shape, scale, x, y, curve, limitY, lower, upper,
                                          target);
  };
  draw(wind, 3, 11);
  const Index m = x.rows();
  ASSERT_GT(m, 5);
  double all = 0, heights = 0;
  for (const double count : y.elements()) all += count;
  for (const double height : curve.elements()) heights += height == NoValue ? 0 : height;
  EXPECT_EQ(all, 153);
  EXPECT_TRUE(isClose(heights, 153, 1e-6));
  const auto survival = [](double t) { return std::exp(-std::pow(t / 11, 3)); };
  const double half = (x(2) - x(1)) / 2;
  EXPECT_TRUE(isClose(curve(1), 153 * (1 - survival(x(1) + half)), 1e-9));
  EXPECT_TRUE(isClose(curve(4), 153 * (survival(x(4) - half) - survival(x(4) + half)), 1e-11));
  EXPECT_LE(x(1) - (x(2) - x(1)) / 2, 1);
  EXPECT_GE(x(m) + (x(2) - x(1)) / 2, 25);
  const double place = ((25 - x(1)) / (x(2) - x(1)) + 0.5) / static_cast<double>(m);
  EXPECT_TRUE(areClose(upper, {place, place}));
  EXPECT_EQ(target, (DoubleArray{NoValue, NoValue}));
  EXPECT_EQ(limitY, (DoubleArray{0, 1}));
  EXPECT_EQ(failureNumber([&] { draw({-1, 2}, 3, 11); }), 5);
  EXPECT_EQ(failureNumber([&] { draw(wind, 3, -1); }), 5);
  // Without a distribution there is no curve.
  draw(wind, NoValue, 11);
  EXPECT_EQ(curve, DoubleArray(x.rows(), NoValue));
  EXPECT_LE(x(x.rows()), 28);
  // Both specifications on one side of the data.
  for (const auto& [low, high] : {std::pair{"60", "70"}, std::pair{"0.01", "0.02"}}) {
    usl = high, lsl = low;
    draw({10, 11, 12, 13}, 9, 12);
    for (const double line : {lower(1), upper(1)}) EXPECT_TRUE(line > 0 && line < 1) << low;
  }
  usl = "1", lsl = "25";
  EXPECT_EQ(failureNumber([&] { draw(wind, 3, 11); }), 5);
}

}  // namespace
}  // namespace zelkova
